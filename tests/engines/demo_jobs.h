// The jobs of the demo, run in this process by the way that the program takes.
//
//     DemoJobs jobs;
//     jobs.CopyExports("erp");
//     jobs.Run(databases, connectionString, /*syncMethod=*/1, /*platform=*/1, /*generation=*/3);
#pragma once

#include <ctime>

#include "components/component_catalogue.h"
#include "doubles/temp_directory.h"
#include "startup/modStartUp.h"
#include "system/os_platform.h"

namespace zenqay {

class DemoJobs {
 public:
  DemoJobs() {
    std::filesystem::create_directories(home_.path() / "erp");
    std::filesystem::create_directories(home_.path() / "log");
    std::filesystem::copy_file(ZENQAY_SHARE "/I18nText.xml", home_.path() / "I18nText.xml");
    home_.Write("Components.xml", kCatalogue);
  }

  /// Puts the exports of share/demo, or their changes as of now, where jobs find them.
  void CopyExports(const Text& directory) const {
    for (const auto& file : std::filesystem::directory_iterator(ZENQAY_SHARE "/demo/" + directory)) {
      const Text content = ContentOf(file.path());
      home_.Write("erp/" + file.path().filename().string(), Replaced(content, "@NOW@", NowInUtc()));
    }
  }

  /// All tables. 1 is the full copy, 2 the pass over what has changed.
  void Run(Database& databases, const Text& connectionString, int syncMethod, int platform, int generation) const {
    ::setenv("ZENQAY_HOME", home_.path().c_str(), 1);
    ::setenv("TZ", "UTC", 1);
    const Text commandLine = connectionString + "{}public{}128{}" + std::to_string(syncMethod) + "{}" +
                             (home_.path() / "log").string() + "{}100{}-1{}{}" + std::to_string(platform) + "{}0{}" +
                             std::to_string(generation) + "{}no status component";
    Text program = "zenqay-dbsync";
    char* argv[] = {program.data(), nullptr};
    OsPlatform platformOfJob(1, argv);
    ComponentCatalogue catalogue(platformOfJob.ProgramDirectory());
    modDeclarations process{.platform = platformOfJob, .components = catalogue, .database = databases};
    RunProcess(process, commandLine);
  }

  static Text ContentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  static constexpr const char* kCatalogue = R"(<COMPONENTS>
  <HOST prefix="java:com.korvel." kind="files" directory="erp"/>
  <HOST prefix="Kv" kind="files" directory="erp"/>
  <HOST prefix="NetListSelectionCriteria." kind="files" directory="erp"/>
  <HOST prefix="java:java.util." kind="builtin"/>
</COMPONENTS>
)";

  static Text NowInUtc() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
  }

  TempDirectory home_;
};

}  // namespace zenqay
