// The job handler: how it comes to its status component, and what its sinks tell it.
#include "startup/clsDataCopyHandler.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "startup/start_fixture.h"

namespace zenqay {
namespace {

/// A handler with its status component, whose job has failed before its first event: the sinks are called by the test.
struct SinkFixture : StartFixture {
  explicit SinkFixture(const Text& programDirectory = ZENQAY_SHARE) : StartFixture(programDirectory) {
    process.InstanceNumber = 7;
    process.StatusHandle = 5;
    process.TableStatusEnabled = true;
    SetEntry(1, "Branch", " tssma110 ", "Branches");
    SetEntry(18, "Contracts", "tssma300", "Contracts");
    SetEntry(99, "Extra", "tssma999", "Extras");
    database.FailCall("open", RuntimeError(1, "driver", "kept closed"));
    handler.HandleDataCopy("", "", 1, 1, directory.path().string(), "100", 1);
    journal.Take();
  }

  clsDataCopyHandler handler{process};
  const Value time = DateTime::FromParts({1899, 12, 30, 10, 11, 12});

  void SetEntry(std::size_t id, const Text& name, const Text& erpTableId, const Text& caption) {
    process.TableRegistry[id] = {.ERPTableID = erpTableId, .TableName = name, .Text = caption};
  }

  void RaiseStarted(const Value& id) { handler.DataCopyJob_DataCopyStarted(time, id); }
  void RaiseInProgress(const Value& id) { handler.DataCopyJob_DataCopyAlreadyInProgress(time, id); }
  void RaiseComplete(const Value& id) { handler.DataCopyJob_DataCopyComplete(time, id, 12, 3, 4); }
  void RaiseError(const Value& id) {
    handler.DataCopyJob_DataCopyError(time, id, std::int16_t{-1}, "See the log file C:\\logs\\Branch_20040131.log.");
  }

  /// The field of a row whose table id is this.
  Value FieldOf(const Value& id) {
    database.Answer("Q", {{{"tableid", id}}});
    const auto connection = database.CreateConnection();
    const auto rows = database.CreateRecordset();
    rows->Open("Q", connection, CursorType::Keyset, LockType::Optimistic, CommandType::Unspecified);
    journal.Take();
    return Object(std::make_shared<Field>(rows, "TableID"));
  }
};

// The four combinations of the two guards.

struct SinkCase {
  const char* name;
  void (SinkFixture::*raise)(const Value&);
  Text messages;     // while a status component is wanted
  Text tableStatus;  // while the table's status is wanted
};

const SinkCase kSinks[] = {
    {"Started", &SinkFixture::RaiseStarted,
     "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
     "status.UpdateSyncStatus(&i16(1), i16(1))\n",
     "status.UpdateStatusByTable(&i32(5), &i16(1), i32(2), &\"\")\n"},
    {"Complete", &SinkFixture::RaiseComplete,
     "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) complete: 12 copied, 3 "
     "updated, 4 deleted.\")\n"
     "status.UpdateSyncStatus(&i16(1), i16(2))\n",
     "status.UpdateStatusByTable(&i32(5), &i16(1), i32(4), &\"\")\n"},
    {"AlreadyInProgress", &SinkFixture::RaiseInProgress,
     "status.writeToMessageBox(&time(10:11:12 AM), &\"Branches (ERP table tssma110) is being copied by another job. "
     "Nothing was done.\")\n",
     "status.UpdateStatusByTable(&i32(5), &i16(1), i32(8), &\"\")\n"},
    {"Error", &SinkFixture::RaiseError,
     "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) failed.\")\n"
     "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Branch could not be copied (-1). See the log file "
     "C:\\logs\\Branch_20040131.log.\")\n"
     "status.UpdateSyncStatus(&i16(1), i16(3))\n",
     "status.UpdateStatusByTable(&i32(5), &i16(1), i32(16), &\"\")\n"},
};

TEST(Sinks, HeedTheTwoGuardsApart) {
  for (const SinkCase& sink : kSinks) {
    for (const bool noStatusComponent : {false, true}) {
      for (const bool tableStatusEnabled : {false, true}) {
        SinkFixture fixture;
        fixture.process.NoStatusComponent = noStatusComponent;
        fixture.process.TableStatusEnabled = tableStatusEnabled;

        (fixture.*sink.raise)(std::int16_t{1});

        EXPECT_EQ(fixture.journal.Take(),
                  (noStatusComponent ? "" : sink.messages) + (tableStatusEnabled ? sink.tableStatus : ""))
            << sink.name << ", no status component " << noStatusComponent << ", table status " << tableStatusEnabled;
      }
    }
  }
}

TEST(DataCopydone, ReleasesTheStatusComponentUnlessThereIsNone) {
  for (const bool noStatusComponent : {false, true}) {
    for (const bool tableStatusEnabled : {false, true}) {
      SinkFixture fixture;
      fixture.process.NoStatusComponent = noStatusComponent;
      fixture.process.TableStatusEnabled = tableStatusEnabled;
      const long held = fixture.status.use_count();

      fixture.handler.DataCopyJob_DataCopydone();

      EXPECT_EQ(fixture.status.use_count(), noStatusComponent ? held : held - 1);
      EXPECT_EQ(fixture.journal.Take(), "");
    }
  }
}

TEST(DataCopydone, LeavesNoStatusComponentForALaterEvent) {
  SinkFixture fixture;
  fixture.handler.DataCopyJob_DataCopydone();

  EXPECT_EQ(Raised([&] { fixture.RaiseStarted(std::int16_t{1}); }), "91 ZenqayDBSync: Object variable not set");
}

// Table ids.

TEST(Sinks, TakeAFieldOfARecordsetForTheTableId) {
  const SinkCase& started = kSinks[0];
  SinkFixture fixture;
  const Value field = fixture.FieldOf(std::int32_t{1});

  (fixture.*started.raise)(field);

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) started.\")\n"
            "status.UpdateSyncStatus(&field(TableID=1), i16(1))\n"
            "status.UpdateStatusByTable(&i32(5), &field(TableID=1), i32(2), &\"\")\n");
}

TEST(Sinks, TakeTableId99AsItIsUnderThisProduct) {
  for (const char* product : {"4010", "4009", "", "1028 "}) {
    SinkFixture fixture;
    fixture.process.ProductId = product;

    fixture.RaiseError(std::int16_t{99});

    EXPECT_EQ(fixture.journal.Take(),
              "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Extras (ERP table tssma999) failed.\")\n"
              "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Extra could not be copied (-1). See the log file "
              "C:\\logs\\Branch_20040131.log.\")\n"
              "status.UpdateSyncStatus(&i16(99), i16(3))\n"
              "status.UpdateStatusByTable(&i32(5), &i16(99), i32(16), &\"\")\n");
  }
}

TEST(Sinks, LookTableId99UpAs18UnderTheRelatedProductAndSendItUnchanged) {
  SinkFixture fixture;
  fixture.process.ProductId = "1028";

  fixture.RaiseStarted(std::int16_t{99});
  fixture.RaiseComplete(std::int16_t{99});
  fixture.RaiseInProgress(std::int16_t{99});
  fixture.RaiseError(std::int16_t{99});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Contracts (ERP table tssma300) started.\")\n"
            "status.UpdateSyncStatus(&i16(99), i16(1))\n"
            "status.UpdateStatusByTable(&i32(5), &i16(99), i32(2), &\"\")\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Contracts (ERP table tssma300) complete: 12 "
            "copied, 3 updated, 4 deleted.\")\n"
            "status.UpdateSyncStatus(&i16(99), i16(2))\n"
            "status.UpdateStatusByTable(&i32(5), &i16(99), i32(4), &\"\")\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Contracts (ERP table tssma300) is being copied by another "
            "job. Nothing was done.\")\n"
            "status.UpdateStatusByTable(&i32(5), &i16(99), i32(8), &\"\")\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Contracts (ERP table tssma300) failed.\")\n"
            "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Contracts could not be copied (-1). See the log file "
            "C:\\logs\\Branch_20040131.log.\")\n"
            "status.UpdateSyncStatus(&i16(99), i16(3))\n"
            "status.UpdateStatusByTable(&i32(5), &i16(99), i32(16), &\"\")\n");
}

TEST(Sinks, LookEveryFormOfTableId99UpAs18UnderTheRelatedProduct) {
  SinkFixture fixture;
  fixture.process.ProductId = "1028";
  fixture.process.TableStatusEnabled = false;
  const std::pair<Value, const char*> cases[] = {
      {std::int32_t{99}, "i32(99)"}, {99.0, "dbl(99)"}, {"99", "\"99\""}, {fixture.FieldOf(99), "field(TableID=99)"}};
  for (const auto& [id, shown] : cases) {
    fixture.RaiseStarted(id);

    EXPECT_EQ(
        fixture.journal.Take(),
        Text("status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Contracts (ERP table tssma300) started.\")\n"
             "status.UpdateSyncStatus(&") +
            shown + ", i16(1))\n");
  }
}

TEST(Sinks, LookEveryOtherTableIdUpAsItIsUnderTheRelatedProduct) {
  SinkFixture fixture;
  fixture.process.ProductId = "1028";

  fixture.RaiseInProgress(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(), kSinks[2].messages + kSinks[2].tableStatus);
}

TEST(Sinks, FailForATableIdOutsideTheRegistryBeforeAnyCall) {
  for (const Value& id : {Value(std::int16_t{129}), Value(std::int16_t{-1})}) {
    SinkFixture fixture;

    for (const SinkCase& sink : kSinks) {
      EXPECT_EQ(Raised([&] { (fixture.*sink.raise)(id); }), "9 ZenqayDBSync: Subscript out of range") << sink.name;
    }
    EXPECT_EQ(fixture.journal.Take(), "");
  }
}

TEST(Sinks, FailForATableIdThatIsNoNumber) {
  SinkFixture fixture;

  EXPECT_EQ(Raised([&] { fixture.RaiseStarted("Site"); }), "13 ZenqayDBSync: Type mismatch");
  EXPECT_EQ(Raised([&] { fixture.RaiseStarted(Null()); }), "94 ZenqayDBSync: Invalid use of Null");
  EXPECT_EQ(Raised([&] { fixture.RaiseStarted("2147483648"); }), "6 ZenqayDBSync: Overflow");
  EXPECT_EQ(fixture.journal.Take(), "");
}

// Texts.

TEST(Sinks, ReplaceThePlaceholdersThatACaptionBringsAlong) {
  SinkFixture fixture;
  fixture.process.TableStatusEnabled = false;
  fixture.SetEntry(1, "%1%2%3", "T", "%2|%3|%4|%5|%1");

  fixture.RaiseStarted(std::int16_t{1});
  fixture.RaiseComplete(std::int16_t{1});
  fixture.RaiseError(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of T|%3|%4|%5|%1 (ERP table T) started.\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(1))\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of T|12|3|4|%1 (ERP table T) complete: 12 copied, 3 "
            "updated, 4 deleted.\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(2))\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of T|%3|%4|%5|%1 (ERP table T) failed.\")\n"
            "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table %1-1See the log file C:\\logs\\Branch_20040131.log. "
            "could not be copied (-1). See the log file C:\\logs\\Branch_20040131.log.\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(3))\n");
}

TEST(Sinks, ReplaceAPlaceholderThatTheErpTableIdBringsAlong) {
  SinkFixture fixture;
  fixture.process.TableStatusEnabled = false;
  fixture.SetEntry(1, "Branch", "%5%1%2", "Branches");

  fixture.RaiseComplete(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table 4%1%2) complete: 12 copied, 3 "
            "updated, 4 deleted.\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(2))\n");
}

TEST(Sinks, TakeQuotesBlanksAndUnicodeOfACaptionAsTheyAre) {
  SinkFixture fixture;
  fixture.process.TableStatusEnabled = false;
  fixture.SetEntry(1, "Branch", "  ", "  \"Zweig\" 'é' 東 😀 ");

  fixture.RaiseInProgress(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"  \"Zweig\" 'é' 東 😀  (ERP table ) is being copied by "
            "another job. Nothing was done.\")\n");
}

TEST(Sinks, ShowEmptyTextsForATableWithoutAnEntry) {
  SinkFixture fixture;
  fixture.process.TableStatusEnabled = false;

  fixture.RaiseInProgress(std::int16_t{0});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\" (ERP table ) is being copied by another job. Nothing was "
            "done.\")\n");
}

TEST(Sinks, ShowTheKeyOfALabelThatIsMissingAndReplaceNothingInIt) {
  TempDirectory home;
  home.Write("I18nText.xml", "<I18NTEXT><SLBL0006>%2 failed: %1 %3</SLBL0006></I18NTEXT>");
  SinkFixture fixture(home.path().string());
  fixture.process.TableStatusEnabled = false;

  fixture.RaiseStarted(std::int16_t{1});
  fixture.RaiseError(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"SLBL0009\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(1))\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"tssma110 failed: Branches %3\")\n"
            "status.WriteToAlertBox(&time(10:11:12 AM), &\"SLBL0133\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(3))\n");
}

TEST(Sinks, ShowNumbersInTheirPlainDecimalText) {
  SinkFixture fixture;
  fixture.process.TableStatusEnabled = false;

  fixture.handler.DataCopyJob_DataCopyComplete(fixture.time, std::int16_t{1}, 2147483647, 0, -1);

  EXPECT_EQ(
      fixture.journal.Take(),
      "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) complete: 2147483647 "
      "copied, 0 updated, -1 deleted.\")\n"
      "status.UpdateSyncStatus(&i16(1), i16(2))\n");
}

// What the status component hands back by reference.

TEST(Sinks, SendTheDetailThatTheStatusComponentHandedBack) {
  SinkFixture fixture;
  fixture.process.NoStatusComponent = true;
  fixture.status->Does("UpdateStatusByTable", [](Arguments arguments) {
    arguments[3].Assign("seen");
    return Value();
  });

  fixture.RaiseStarted(std::int16_t{1});
  fixture.RaiseComplete(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.UpdateStatusByTable(&i32(5), &i16(1), i32(2), &\"\")\n"
            "status.UpdateStatusByTable(&i32(5), &i16(1), i32(4), &\"seen\")\n");
}

TEST(Sinks, SendTheHandleThatTheStatusComponentHandedBack) {
  SinkFixture fixture;
  fixture.process.NoStatusComponent = true;
  fixture.status->Does("UpdateStatusByTable", [](Arguments arguments) {
    arguments[0].Assign(6);
    return Value();
  });

  fixture.RaiseStarted(std::int16_t{1});
  fixture.RaiseComplete(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.UpdateStatusByTable(&i32(5), &i16(1), i32(2), &\"\")\n"
            "status.UpdateStatusByTable(&i32(6), &i16(1), i32(4), &\"\")\n");
}

TEST(Sinks, KeepWhatTheStatusComponentAssignsForTheRestOfTheEventAlone) {
  SinkFixture fixture;
  const auto assignBoth = [](Arguments arguments) {
    arguments[0].Assign("later");
    arguments[1].Assign("changed");
    return Value();
  };
  fixture.status->Does("writeToMessageBox", assignBoth);
  fixture.status->Does("UpdateSyncStatus", [](Arguments arguments) {
    arguments[0].Assign(17);
    arguments[1].Assign(18);
    return Value();
  });

  fixture.RaiseError(std::int16_t{1});
  fixture.RaiseInProgress(std::int16_t{1});

  EXPECT_EQ(fixture.journal.Take(),
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) failed.\")\n"
            "status.WriteToAlertBox(&\"later\", &\"Table Branch could not be copied (-1). See the log file "
            "C:\\logs\\Branch_20040131.log.\")\n"
            "status.UpdateSyncStatus(&i16(1), i16(3))\n"
            "status.UpdateStatusByTable(&i32(5), &i32(17), i32(16), &\"\")\n"
            "status.writeToMessageBox(&time(10:11:12 AM), &\"Branches (ERP table tssma110) is being copied by another "
            "job. Nothing was done.\")\n"
            "status.UpdateStatusByTable(&i32(5), &i16(1), i32(8), &\"\")\n");
}

// A status component that fails.

TEST(Sinks, LetTheErrorOfAStatusCallThroughAndMakeNoCallBehindIt) {
  const Text message =
      "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Branches (ERP table tssma110) failed.\")\n";
  const Text alert =
      "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Branch could not be copied (-1). See the log file "
      "C:\\logs\\Branch_20040131.log.\")\n";
  const Text syncStatus = "status.UpdateSyncStatus(&i16(1), i16(3))\n";
  const Text tableStatus = "status.UpdateStatusByTable(&i32(5), &i16(1), i32(16), &\"\")\n";
  const std::pair<const char*, Text> cases[] = {
      {"writeToMessageBox", message},
      {"WriteToAlertBox", message + alert},
      {"UpdateSyncStatus", message + alert + syncStatus},
      {"UpdateStatusByTable", message + alert + syncStatus + tableStatus},
  };
  for (const auto& [operation, journal] : cases) {
    SinkFixture fixture;
    fixture.status->Fails(operation, RuntimeError(PlatformFault::Automation, "gone", "status"));

    EXPECT_EQ(Raised([&] { fixture.RaiseError(std::int16_t{1}); }),
              Text("440 status: Automation error: gone: ") + operation);
    EXPECT_EQ(fixture.journal.Take(), journal);
  }
}

// The status component of a job.

TEST(HandleDataCopy, ReleasesTheCreatedObjectAndKeepsTheOneOfTheInstance) {
  StartFixture fixture;
  fixture.database.FailCall("open", RuntimeError(1, "driver", "kept closed"));
  const long handles = fixture.handle.use_count();
  const long statuses = fixture.status.use_count();
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 1);

  EXPECT_EQ(fixture.handle.use_count(), handles);
  EXPECT_EQ(fixture.status.use_count(), statuses + 1);
}

TEST(HandleDataCopy, ReleasesTheCreatedObjectBeforeItMissesTheOneOfTheInstance) {
  StartFixture fixture;
  fixture.handle->Answers("getInstance", Object());
  fixture.components.showReleases = true;
  fixture.platform.showClock = true;
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 1);

  EXPECT_EQ(fixture.journal.Take(),
            "create ZenqayInstHandler.InstanceHandle\n"
            "handle.getInstance(&i16(0))\n"
            "put handle.CurrentInstanceNumber = i16(0)\n"
            "release handle\n"
            "now\n");  // of the record
}

TEST(HandleDataCopy, KeepsTheCreatedObjectUntilItsFailureIsRecorded) {
  StartFixture fixture;
  fixture.handle->Fails("getInstance", RuntimeError(440, "handle", "Automation error"));
  fixture.components.showReleases = true;
  fixture.platform.showClock = true;
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 1);

  EXPECT_EQ(fixture.journal.Take(),
            "create ZenqayInstHandler.InstanceHandle\n"
            "handle.getInstance(&i16(0))\n"
            "now\n"  // of the record
            "release handle\n");
}

TEST(HandleDataCopy, PutsTheInstanceNumberThatTheComponentHandedBack) {
  StartFixture fixture;
  fixture.process.InstanceNumber = 7;
  fixture.handle->Does("getInstance", [status = Value(Object(fixture.status))](Arguments arguments) {
    arguments[0].Assign(std::int16_t{8});
    return status;
  });
  fixture.database.FailCall("open", RuntimeError(1, "driver", "kept closed"));
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 1);

  EXPECT_EQ(fixture.journal.Take(),
            "create ZenqayInstHandler.InstanceHandle\n"
            "handle.getInstance(&i16(7))\n"
            "put handle.CurrentInstanceNumber = i16(8)\n"
            "open\n");
}

/// What a job on a status component of this behaviour leaves in the journal and in the start-up log.
Text FailedStart(const std::function<void(StartFixture&)>& break_) {
  StartFixture fixture;
  break_(fixture);
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 1);

  return fixture.journal.Take() + fixture.StartupLog();
}

TEST(HandleDataCopy, RecordsWhatKeepsItFromItsStatusComponent) {
  const Text create = "create ZenqayInstHandler.InstanceHandle\n";
  const Text getInstance = create + "handle.getInstance(&i16(0))\n";
  const Text put = getInstance + "put handle.CurrentInstanceNumber = i16(0)\n";
  const RuntimeError gone(PlatformFault::Automation, "gone", "status");

  EXPECT_EQ(FailedStart([&](StartFixture& fixture) { fixture.components.FailCreation(kStatusClass, gone); }),
            create + StartFixture::StartupRecord("440: Automation error: gone"));
  EXPECT_EQ(FailedStart([&](StartFixture& fixture) { fixture.handle->Fails("getInstance", gone); }),
            getInstance + StartFixture::StartupRecord("440: Automation error: gone: getInstance"));
  EXPECT_EQ(FailedStart([](StartFixture& fixture) { fixture.handle->Answers("getInstance", "no object"); }),
            getInstance + StartFixture::StartupRecord("13: Type mismatch: getInstance"));
  EXPECT_EQ(FailedStart([&](StartFixture& fixture) { fixture.handle->Fails("CurrentInstanceNumber", gone); }),
            put + StartFixture::StartupRecord("440: Automation error: gone: CurrentInstanceNumber"));
  for (const Value& nothing : {Value(Object()), Value(), Value(Null())}) {
    EXPECT_EQ(FailedStart([&](StartFixture& fixture) { fixture.handle->Answers("getInstance", nothing); }),
              put + StartFixture::StartupRecord("100: The status component gave no object for this instance."));
  }
}

TEST(HandleDataCopy, LetsAFailureThroughOnlyWhenItsRecordCannotBeWritten) {
  StartFixture fixture;
  fixture.handle->Answers("getInstance", Object());
  clsDataCopyHandler handler(fixture.process);

  EXPECT_EQ(Raised([&] { handler.HandleDataCopy("", "", 1, 1, "C:\\no\\such\\directory", "100", 1); }),
            "76 ZenqayDBSync: Path not found: C:\\no\\such\\directory\\ZenqayDBSync.log");
  EXPECT_EQ(fixture.Causes(),
            "error 100 from \"Handle Data Copy\": The status component gave no object for this instance.\n");
}

TEST(HandleDataCopy, SetsTheAllTablesSettingForTable128Alone) {
  for (const auto& [tableId, allTables] : {std::pair(1, false), std::pair(127, false), std::pair(128, true)}) {
    StartFixture fixture;
    fixture.process.NoStatusComponent = true;
    fixture.process.AllTablesRun = !allTables;
    fixture.database.FailCall("open", RuntimeError(1, "driver", "kept closed"));
    clsDataCopyHandler handler(fixture.process);

    handler.HandleDataCopy("", "", static_cast<std::int16_t>(tableId), 1, fixture.directory.path().string(), "100", 2);

    EXPECT_EQ(fixture.process.AllTablesRun, allTables) << tableId;
    EXPECT_EQ(fixture.process.DatabasePlatform, 2);
  }
}

TEST(HandleDataCopy, RecordsAPlatformBeyond16Bits) {
  StartFixture fixture;
  fixture.process.NoStatusComponent = true;
  clsDataCopyHandler handler(fixture.process);

  handler.HandleDataCopy("", "", 1, 1, fixture.directory.path().string(), "100", 40000);

  EXPECT_EQ(fixture.journal.Take(), "");
  EXPECT_EQ(fixture.StartupLog(), StartFixture::StartupRecord("6: Overflow"));
}

}  // namespace
}  // namespace zenqay
