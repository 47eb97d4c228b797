// The process: makes what stands behind the three seams and hands its command line over.
#include <cstdio>

#include "base/memory_reserve.h"
#include "base/secrets.h"
#include "components/component_catalogue.h"
#include "engines/databases.h"
#include "startup/modStartUp.h"
#include "startup/program_help.h"
#include "system/os_platform.h"
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
  LocalDatabases databases;
  if (Trace* trace = catalogue.trace()) {
    TracedProcess traced(platform, catalogue, databases, *trace);
    RunProcess(traced.process, commandLine);
  } else {
    modDeclarations process{.platform = platform, .components = catalogue, .database = databases};
    RunProcess(process, commandLine);
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
