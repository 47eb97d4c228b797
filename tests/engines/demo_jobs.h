// The jobs of the demo, run in this process by the way that the program takes.
//
//     DemoJobs jobs;
//     jobs.CopyExports("erp");
//     jobs.Run(databases, {.connectionString = connectionString, .generation = 3});
#pragma once

#include <ctime>

#include "components/component_catalogue.h"
#include "doubles/file_content.h"
#include "doubles/temp_directory.h"
#include "startup/modStartUp.h"
#include "system/os_platform.h"

namespace zenqay {

/// What a command line says.
struct DemoJob {
  Text connectionString;
  Text database = "public";
  int tableId = 128;   // all tables
  int syncMethod = 1;  // the full copy; 2 is the pass over what has changed
  int platform = 1;
  int generation = 1;
};

class DemoJobs {
 public:
  DemoJobs() {
    std::filesystem::create_directories(home.path() / "erp");
    std::filesystem::create_directories(home.path() / "log");
    std::filesystem::copy_file(ZENQAY_SHARE "/I18nText.xml", home.path() / "I18nText.xml");
    home.Write("Components.xml", kCatalogue);
  }

  TempDirectory home;

  /// Puts the exports of share/demo, or their changes as of now, where jobs find them.
  void CopyExports(const Text& directory) const {
    for (const auto& file : std::filesystem::directory_iterator(ZENQAY_SHARE "/demo/" + directory)) {
      const Text content = ContentOf(file.path());
      home.Write("erp/" + file.path().filename().string(), Replaced(content, "@NOW@", NowInUtc()));
    }
  }

  void Run(Database& databases, const DemoJob& job) const {
    ::setenv("ZENQAY_HOME", home.path().c_str(), 1);
    ::setenv("TZ", "UTC", 1);
    const Text commandLine = job.connectionString + "{}" + job.database + "{}" + std::to_string(job.tableId) + "{}" +
                             std::to_string(job.syncMethod) + "{}" + (home.path() / "log").string() + "{}100{}-1{}{}" +
                             std::to_string(job.platform) + "{}0{}" + std::to_string(job.generation) +
                             "{}no status component";
    Text program = "zenqay-dbsync";
    char* argv[] = {program.data(), nullptr};
    OsPlatform platform(1, argv);
    ComponentCatalogue catalogue(platform.ProgramDirectory());
    modDeclarations process{.platform = platform, .components = catalogue, .database = databases};
    RunProcess(process, commandLine);
  }

  static Text NowInUtc() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
  }

 private:
  static constexpr const char* kCatalogue = R"(<COMPONENTS>
  <HOST prefix="java:com.korvel." kind="files" directory="erp"/>
  <HOST prefix="Kv" kind="files" directory="erp"/>
  <HOST prefix="NetListSelectionCriteria." kind="files" directory="erp"/>
  <HOST prefix="java:java.util." kind="builtin"/>
</COMPONENTS>
)";
};

}  // namespace zenqay
