// A program to see the connection with: it takes the command line of a job, changes nothing, and says what works.
#include <exception>
#include <iostream>

#include "base/secrets.h"
#include "check/check.h"
#include "check/check_help.h"
#include "components/component_catalogue.h"
#include "engines/databases.h"
#include "startup/program_help.h"
#include "system/os_platform.h"

namespace {

using namespace zenqay;

bool Run(OsPlatform& platform) {
  const Text commandLine = platform.TakeCommandLine();
  if (const auto answer = AnswerToQuestion(commandLine, "zenqay-dbsync-check", CheckHelp())) {
    std::cout << *answer << std::flush;
    return true;
  }
  ComponentCatalogue catalogue(platform.ProgramDirectory());
  LocalDatabases databases;
  return RunCheck(platform, catalogue, databases, commandLine, std::cout);
}

}  // namespace

/// 0 when a job could run, 1 when something is to be mended first or the check itself failed.
int main(int argc, char** argv) {
  try {
    OsPlatform platform(argc, argv);
    const bool canRun = Run(platform);
    return canRun && std::cout.good() ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "zenqay-dbsync-check: " << WithoutSecrets(failure.what()) << '\n';
    return 1;
  }
}
