// The process: makes what stands behind the three seams and hands its command line over.
#include <cstdio>

#include "base/secrets.h"
#include "components/component_catalogue.h"
#include "engines/databases.h"
#include "process/interruptible_components.h"
#include "startup/modStartUp.h"
#include "startup/program_help.h"
#include "system/os_platform.h"
#include "system/stop_request.h"
#include "trace/traced_process.h"

namespace {

using namespace zenqay;

void Run(OsPlatform& platform) {
  const Text commandLine = platform.TakeCommandLine();
  if (const auto answer = AnswerToQuestion(commandLine, "zenqay-dbsync", JobHelp())) {
    std::fputs(answer->c_str(), stdout);
    return;
  }
  ComponentCatalogue catalogue(platform.ProgramDirectory());
  if (!catalogue.remark().empty()) platform.NameCause(catalogue.remark());
  ListenForStopRequests();
  const auto stopRequest = std::make_shared<StopRequest>();
  LocalDatabases databases(stopRequest);
  if (Trace* trace = catalogue.trace()) {
    TracedProcess traced(platform, catalogue, databases, *trace, stopRequest);
    RunProcess(traced.process, commandLine);
  } else {
    InterruptibleComponents components(catalogue, *stopRequest);
    modDeclarations process{
        .platform = platform, .components = components, .database = databases, .interruption = stopRequest};
    RunProcess(process, commandLine);
  }
}

}  // namespace

/// 0 for every end but one: a failure that no log could take ends the process with 70.
int main(int argc, char** argv) {
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
