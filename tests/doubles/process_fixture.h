// The process-wide values between doubles: what the units below the job work on.
//
//     ProcessFixture fixture;
//     fixture.Connect();
//     SetCopyInProgress(fixture.process, "Site");
//     EXPECT_EQ(fixture.journal.Take(), "…");
#pragma once

#include <stdlib.h>
#include <time.h>

#include "doubles/fake_platform.h"
#include "doubles/scripted_components.h"
#include "doubles/scripted_database.h"
#include "doubles/temp_directory.h"
#include "process/modDeclarations.h"

namespace zenqay {

class ProcessFixture {
 public:
  /// A process of generation 1 on the platform, with the texts of share/I18nText.xml and its run log in a directory of
  /// its own. The clock and the date objects stand at 31 January 2004, 10:11:12, and the time zone is set to UTC.
  explicit ProcessFixture(std::int16_t databasePlatform = 1, const Text& programDirectory = ZENQAY_SHARE)
      : ProcessFixture(databasePlatform, programDirectory, nullptr) {}

  /// The same on a real database, on platform 1.
  explicit ProcessFixture(Database& realDatabase) : ProcessFixture(1, ZENQAY_SHARE, &realDatabase) {}

  TempDirectory directory;
  Journal journal;
  FakePlatform platform;
  ScriptedComponents components;
  ScriptedDatabase database;
  modDeclarations process;

  /// Gives the process a LocalConnection, with its error collection where the logs look for it, as a table's copy does.
  void Connect() {
    process.LocalConnection = database.CreateConnection();
    process.LocalErrors = process.LocalConnection->ErrorCollection();
  }

  /// The run log as it stands, "" when there is none; its lines ended by "\r\n".
  Text RunLog() const {
    return std::filesystem::exists(directory.path() / "run.log") ? directory.Read("run.log") : Text();
  }

  /// Lets every log record fail with 76.
  void LoseRunLog() { process.LogFilePath = "C:\\no-such-directory\\run.log"; }

  /// The causes that were named on standard error, a line each.
  Text Causes() const {
    Text causes;
    for (const Text& cause : platform.causes) causes += cause + "\n";
    return causes;
  }

 private:
  ProcessFixture(std::int16_t databasePlatform, const Text& programDirectory, Database* realDatabase)
      : platform(journal, programDirectory),
        components(journal),
        database(journal),
        process{.platform = platform,
                .components = components,
                .database = realDatabase == nullptr ? database : *realDatabase} {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    components.nowMilliseconds = 1075543872000.0;  // 2004-01-31T10:11:12Z
    process.ErpGeneration = "1";
    process.DatabasePlatform = databasePlatform;
    process.LogFilePath = directory.path().string() + "\\run.log";
  }
};

}  // namespace zenqay
