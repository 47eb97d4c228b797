// The process: makes what stands behind the three seams and hands its command line over.
#include <cstdio>
#include <exception>
#include <optional>

#include "base/secrets.h"
#include "components/component_catalogue.h"
#include "engines/databases.h"
#include "startup/modStartUp.h"
#include "system/os_platform.h"
#include "trace/traced_components.h"
#include "trace/traced_database.h"

namespace {

using namespace zenqay;

void Run(OsPlatform& platform) {
  const Text commandLine = platform.TakeCommandLine();
  ComponentCatalogue catalogue(platform.ProgramDirectory());
  if (!catalogue.remark().empty()) platform.NameCause(catalogue.remark());
  LocalDatabases databases;
  Trace* trace = catalogue.trace();
  std::optional<TracedComponents> tracedComponents;
  std::optional<TracedDatabase> tracedDatabase;
  if (trace != nullptr) {
    tracedComponents.emplace(catalogue, *trace);
    tracedDatabase.emplace(databases, *trace);
  }
  modDeclarations process{
      .platform = platform,
      .components = trace != nullptr ? static_cast<ComponentHost&>(*tracedComponents) : catalogue,
      .database = trace != nullptr ? static_cast<Database&>(*tracedDatabase) : databases,
      .trace = trace,
  };
  RunProcess(process, commandLine);
}

}  // namespace

/// 0 for every end but one: a failure that no log could take ends the process with 70.
int main(int argc, char** argv) {
  try {
    OsPlatform platform(argc, argv);
    Run(platform);
  } catch (const RuntimeError& fatal) {
    std::fprintf(stderr, "zenqay-dbsync: fatal error %d: %s\n", fatal.number(),
                 WithoutSecrets(fatal.description()).c_str());
    return 70;
  } catch (const std::exception& fatal) {
    std::fprintf(stderr, "zenqay-dbsync: fatal error: %s\n", fatal.what());
    return 70;
  }
  return 0;
}
