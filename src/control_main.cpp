// zenqayctl: starts the jobs of a job file, and says what became of them.
#include <stdlib.h>

#include <exception>
#include <iostream>

#include "base/secrets.h"
#include "check/check.h"
#include "components/component_catalogue.h"
#include "control/command_line.h"
#include "control/exit_status.h"
#include "control/history.h"
#include "engines/databases.h"
#include "system/os_platform.h"
#include "system/own_process.h"

namespace {

using namespace zenqay;

/// In a process of its own, whose environment this may change.
bool CheckJob(const Text& home, const Text& commandLine, std::ostream& out) {
  ::setenv("ZENQAY_HOME", home.c_str(), 1);
  OsPlatform platform(0, nullptr);
  ComponentCatalogue catalogue(platform.ProgramDirectory());
  LocalDatabases databases;
  return RunCheck(platform, catalogue, databases, commandLine, out);
}

int Run(const std::vector<Text>& arguments) {
  const Environment environment = Environment::OfProcess();
  const Text named = environment.Value("ZENQAY_DBSYNC");
  Surroundings surroundings = {.environment = environment,
                               .jobProgram = named.empty() ? ProgramDirectory() + "/zenqay-dbsync" : named,
                               .ctlProgram = ProgramDirectory() + "/zenqayctl",
                               .historyPath = HistoryPath(),
                               .out = std::cout,
                               .err = std::cerr,
                               .terminal = StandardOutputSize,
                               .check = CheckJob};
  return RunZenqayctl(arguments, surroundings);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    KeepMemoryPrivate();
    OutliveClosedPipes();
    return Run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "zenqayctl: " << WithoutSecrets(failure.what()) << '\n';
    return kCouldNotBegin;
  }
}
