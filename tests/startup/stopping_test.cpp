// A job that is asked to stop: asked at each place at which it looks, on the demo's exports and an embedded file.
#include <gtest/gtest.h>

#include "components/component_catalogue.h"
#include "contracts/heard_events.h"
#include "doubles/fake_platform.h"
#include "doubles/file_content.h"
#include "doubles/scripted_components.h"
#include "doubles/temp_directory.h"
#include "doubles/tries_all.h"
#include "engines/databases.h"
#include "process/interruptible_components.h"
#include "startup/modStartUp.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr int kNever = 1'000'000;

/// Is asked from its look number `from` on.
class AskedAtLook : public Interruption {
 public:
  explicit AskedAtLook(int from) : from_(from) {}

  bool isRequested() const override { return ++looks_ >= from_; }
  int looks() const { return looks_; }

 private:
  int from_;
  mutable int looks_ = 0;
};

/// What is the same in every run that ends undisturbed: all rows of the tables, and the flags.
constexpr const char* kTables[] = {"SITE",   "PRODUCT",    "PROBLEM",      "SYMPTOM",   "PRIORITY",
                                   "OBJECT", "WARRANTIES", "SITECONTRACT", "CONTRACTS", "SERIALIZEDITEM"};

class StoppingTest : public testing::TestWithParam<const char*> {
 protected:
  StoppingTest() {
    const fs::path share = ZENQAY_SHARE;
    for (const char* name : {"I18nText.xml", "Components.xml"}) fs::copy_file(share / name, home_.path() / name);
    fs::copy(share / "demo" / "erp", home_.path() / "erp");
    home_.Write("service.db", "");
    RunStatements(ContentOf(share / "schema" / "sqlite.sql"));
    RunStatements("BEGIN;" + ContentOf(share / "schema" / "control-rows.sql") + "COMMIT;");
    Open()->Execute("PRAGMA wal_checkpoint(TRUNCATE)");
    fs::copy_file(home_.path() / "service.db", home_.path() / "fresh.db");
  }

  /// Puts everything back to where a first job finds it.
  void Refresh() {
    for (const char* name : {"service.db-wal", "service.db-shm"}) fs::remove(home_.path() / name);
    fs::copy_file(home_.path() / "fresh.db", home_.path() / "service.db", fs::copy_options::overwrite_existing);
    ForgetLogs();
  }

  void ForgetLogs() {
    fs::remove_all(home_.path() / "log");
    fs::create_directory(home_.path() / "log");
  }

  /// Runs a job that is asked to stop at a look; gives the events, and by `looks` how often it looked.
  Text Run(int tableId, int syncMethod, int askedAt, int* looks = nullptr) {
    const auto interruption = std::make_shared<AskedAtLook>(askedAt);
    Journal journal;
    FakePlatform platform(journal, home_.path().string());
    ComponentCatalogue catalogue(home_.path().string());
    InterruptibleComponents components(catalogue, *interruption);
    LocalDatabases databases(interruption);
    Text names;
    std::optional<HeardEvents> events;
    modDeclarations process{.platform = platform,
                            .components = components,
                            .database = databases,
                            .eventsThrough = [&](DataCopyEvents& sinks) -> DataCopyEvents& {
                              return events.emplace(
                                  sinks, [&](std::string_view name, std::span<const Value> arguments) {
                                    names += Text(name) + (arguments.empty() ? "" : " " + arguments[1].AsText()) + "\n";
                                  });
                            },
                            .interruption = interruption};
    const Text line = connectionString_ + "{}SERVICE{}" + std::to_string(tableId) + "{}" + std::to_string(syncMethod) +
                      "{}" + (home_.path() / "log").string() + "{}MAIN{}-1{}{}1{}0{}" + GetParam() + "{}";
    RunProcess(process, line);
    if (looks != nullptr) *looks = interruption->looks();
    return names;
  }

  Text Query(const Text& query) {
    LocalDatabases databases;
    const std::shared_ptr<Connection> connection = Open();
    const std::unique_ptr<QueryRows> rows =
        connection->RowsOf(query, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    Text text;
    while (rows->Next()) {
      for (std::size_t column = 0; column < rows->columns().size(); ++column) {
        const Value value = rows->Field(column);
        text += (value.IsNull() ? "NULL" : value.AsText()) + "|";
      }
      text += "\n";
    }
    return text;
  }

  Text TableRows() {
    Text all;
    for (const char* table : kTables) all += Query(Text("SELECT * FROM ") + table + " ORDER BY 1, 2, 3");
    return all + Query("SELECT tablename, in_use, lutm IS NULL AS fresh FROM tstables ORDER BY tablename");
  }

  Text TakenTables() { return Query("SELECT tablename FROM tstables WHERE in_use <> 0"); }

  Text StartupLog() const { return ContentOf(home_.path() / "log" / "ZenqayDBSync.log"); }

  /// The run logs of all tables, one behind the other.
  Text RunLogs() const {
    Text all;
    for (const auto& entry : fs::directory_iterator(home_.path() / "log")) {
      if (entry.path().filename() != "ZenqayDBSync.log") all += ContentOf(entry.path());
    }
    return all;
  }

 private:
  std::shared_ptr<Connection> Open() {
    LocalDatabases databases;
    std::shared_ptr<Connection> connection = databases.CreateConnection();
    connection->PutConnectionString(connectionString_);
    connection->Open();
    return connection;
  }

  void RunStatements(const Text& statements) { Open()->Execute(statements); }

  TempDirectory home_;
  Text connectionString_ = "Provider=SQLite;Data Source=" + (home_.path() / "service.db").string();
};

bool EndsWithRecords(const Text& log, int count) {
  const Text first = "\"ZenqayDBSync\",\"User interrupt occurred\"\r\n";
  const std::size_t at = log.find(first);
  if (at == Text::npos) return false;
  const Text rest = log.substr(at + first.size());
  const auto lines = std::count(rest.begin(), rest.end(), '\n');
  return lines == count - 1;
}

TEST_P(StoppingTest, AnywhereInATablesCopyLeavesItFreeAndARerunEndsAsIfUndisturbed) {
  const int step = TriesAll() ? 1 : 5;
  for (const int syncMethod : {1, 2}) {
    Refresh();
    int looks = 0;
    ASSERT_EQ(Run(1, syncMethod, kNever, &looks), "DataCopyStarted 1\nDataCopyComplete 1\nDataCopydone\n");
    const Text undisturbed = TableRows();
    for (int askedAt = 1; askedAt <= looks; askedAt += step) {
      SCOPED_TRACE("method " + std::to_string(syncMethod) + ", asked at look " + std::to_string(askedAt));
      Refresh();
      const Text before = TableRows();

      const Text events = Run(1, syncMethod, askedAt);

      EXPECT_EQ(TakenTables(), "");
      if (events.empty()) {
        EXPECT_EQ(StartupLog(),
                  "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
                  "The data copy failed.\r\n"
                  "Error is - 18: User interrupt occurred\r\n");
        EXPECT_EQ(RunLogs(), "");
        EXPECT_EQ(TableRows(), before);
      } else {
        EXPECT_EQ(events, "DataCopyStarted 1\nDataCopyError 1\nDataCopydone\n");
        const bool isInPass = EndsWithRecords(RunLogs(), 2);
        EXPECT_TRUE(isInPass || EndsWithRecords(RunLogs(), 1)) << RunLogs();
        EXPECT_EQ(StartupLog(), "");
      }
      Run(1, syncMethod, kNever);
      EXPECT_EQ(TableRows(), undisturbed);
    }
  }
}

TEST_P(StoppingTest, AllTablesBeginsNoFurtherOneAndClosesAsAtItsEnd) {
  const int step = TriesAll() ? 1 : 97;
  Refresh();
  int looks = 0;
  Run(kAllTables, 1, kNever, &looks);
  Run(kAllTables, 1, kNever);  // a row that was inserted and one that was updated may differ
  const Text undisturbed = TableRows();
  for (int askedAt = 1; askedAt <= looks; askedAt += step) {
    SCOPED_TRACE("asked at look " + std::to_string(askedAt));
    Refresh();

    const Text events = Run(kAllTables, 1, askedAt);

    EXPECT_EQ(TakenTables(), "");
    EXPECT_EQ(StartupLog(), "");
    EXPECT_TRUE(events.ends_with("done\n"));
    const std::size_t error = events.find("DataCopyError ");
    if (error != Text::npos) {
      EXPECT_EQ(events.substr(events.find('\n', error) + 1), "DataCopydone\n");
    }
    Run(kAllTables, 1, kNever);
    Run(kAllTables, 1, kNever);
    EXPECT_EQ(TableRows(), undisturbed);
  }
}

INSTANTIATE_TEST_SUITE_P(Generations, StoppingTest, testing::Values("1", "3", "8"));

TEST(InterruptibleComponents, HandTheComponentItsOwnObjectsAndTakeBackWhatItAssigns) {
  Journal journal;
  ScriptedComponents scripted(journal);
  Interruption interruption;
  InterruptibleComponents components(scripted, interruption);
  const auto inner = scripted.Register("A", "a");
  const auto given = scripted.Register("B", "b");
  const auto assigned = scripted.Make("c");
  assigned->Answers("Name", "C");
  inner->Does("Swap", [&](Arguments arguments) -> Value {
    arguments[0].Assign(Object(assigned));
    return {};
  });
  const Object a = components.Create("A");
  Value variable = components.Create("B");

  a.Call("Swap", Argument::ByReference(variable));
  const Value name = variable.AsObject().Call("Name");

  EXPECT_EQ(name, Value("C"));
  EXPECT_EQ(journal.Take(), "create A\ncreate B\na.Swap(&<b>)\nc.Name()\n");
}

}  // namespace
}  // namespace zenqay
