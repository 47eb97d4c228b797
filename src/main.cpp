// The process: makes what stands behind the three seams and hands its command line over.
#include <cstdio>
#include <cstdlib>

#include "base/memory_reserve.h"
#include "base/secrets.h"
#include "channel/control_channel.h"
#include "components/component_catalogue.h"
#include "contracts/control_channel.h"
#include "contracts/heard_events.h"
#include "engines/databases.h"
#include "process/interruptible_components.h"
#include "startup/modStartUp.h"
#include "startup/program_help.h"
#include "system/os_platform.h"
#include "system/stop_request.h"
#include "trace/traced_process.h"

namespace {

using namespace zenqay;

/// The descriptor on which whoever started the job hears of it; null where nobody asks to.
std::unique_ptr<ChannelDescriptor> ChannelOfStarter(OsPlatform& platform) {
  const char* number = std::getenv(channel::kDescriptorVariable);
  if (number == nullptr || *number == '\0') return nullptr;
  const Text digits = number;
  const bool isNumber = digits.size() < 7 && digits.find_first_not_of("0123456789") == Text::npos;
  auto descriptor = std::make_unique<ChannelDescriptor>(isNumber ? std::stoi(digits) : -1);
  if (descriptor->isOpen()) return descriptor;
  platform.NameCause(Text(channel::kDescriptorVariable) + " is no open descriptor: " + digits);
  return nullptr;
}

void RunTold(modDeclarations& process, const Text& commandLine, ChannelDescriptor& descriptor) {
  const auto channel = std::make_shared<ControlChannel>(descriptor);
  std::optional<HeardEvents> events;
  process.listener = channel;
  process.eventsThrough = [&, through = process.eventsThrough](DataCopyEvents& sinks) -> DataCopyEvents& {
    return events.emplace(through(sinks), [&channel](std::string_view name, std::span<const Value> arguments) {
      channel->Event(name, arguments);
    });
  };
  channel->Begin(ProgramVersion());
  RunProcess(process, commandLine);
  channel->End();
}

void Run(OsPlatform& platform) {
  const Text commandLine = platform.TakeCommandLine();
  if (const auto answer = AnswerToQuestion(commandLine, "zenqay-dbsync", JobHelp())) {
    std::fputs(answer->c_str(), stdout);
    return;
  }
  ListenForStopRequests();
  const auto stopRequest = std::make_shared<StopRequest>();
  const auto descriptor = ChannelOfStarter(platform);
  if (descriptor) stopRequest->Watch(*descriptor);
  ComponentCatalogue catalogue(platform.ProgramDirectory());
  if (!catalogue.remark().empty()) platform.NameCause(catalogue.remark());
  LocalDatabases databases(stopRequest);
  const auto run = [&](modDeclarations& process) {
    process.safeguards = catalogue.safeguards();
    process.LabelLanguage = catalogue.language();
    if (!descriptor) return RunProcess(process, commandLine);
    RunTold(process, commandLine, *descriptor);
  };
  if (!catalogue.traceFile().empty()) {
    Trace trace(catalogue.traceFile(), ProgramVersion());
    TracedProcess traced(platform, catalogue, databases, trace, stopRequest);
    run(traced.process);
  } else {
    InterruptibleComponents components(catalogue, *stopRequest);
    modDeclarations process{
        .platform = platform, .components = components, .database = databases, .interruption = stopRequest};
    run(process);
  }
}

}  // namespace

/// 0 for every end but one: a failure that no log could take ends the process with 70.
int main(int argc, char** argv) {
  SetMemoryAside();
  try {
    OsPlatform platform(argc, argv);
    Run(platform);
  } catch (...) {
    const RuntimeError fatal = ErrorInFlight();
    std::fprintf(stderr, "zenqay-dbsync: fatal error %d: %s\n", fatal.number(),
                 WithoutSecrets(fatal.description()).c_str());
    return 70;
  }
  return 0;
}
