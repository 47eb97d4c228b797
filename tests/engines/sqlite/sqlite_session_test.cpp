#include "engines/sqlite/sqlite_session.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <limits>
#include <random>
#include <thread>

#include "doubles/temp_directory.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

using namespace std::chrono_literals;

/// A database file with a small table of two rows.
class SqliteFile {
 public:
  SqliteFile() {
    directory.Write("service.db", "");
    SqliteSession session(path);
    session.Run("CREATE TABLE SITES (SITE TEXT PRIMARY KEY, CUSTOMER TEXT NOT NULL, upd_flag INTEGER)", false);
    session.Run("INSERT INTO SITES VALUES ('A1', 'C1', 0), ('A2', 'C2', 0)", false);
  }

  /// What everybody may do with the file.
  void Allow(unsigned mode) const {
    std::filesystem::permissions(directory.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(path, std::filesystem::perms(mode));
  }

  TempDirectory directory;
  Text path = (directory.path() / "service.db").string();
};

/// The rows of a query: fields separated by "|", rows by ";".
Text Rows(EngineSession& session, const Text& query) {
  RowStore rows;
  session.Query(query, rows);
  Text shown;
  while (rows.Next()) {
    for (std::size_t column = 0; column < rows.columns().size(); ++column) {
      if (column > 0) shown += "|";
      shown += rows.Field(column).Joined();
    }
    shown += ";";
  }
  return shown;
}

ProviderError FailureOf(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.items().size(), 1u);
    EXPECT_EQ(failure.source(), "SQLite");
    return failure.items().front();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

/// Another process, so to speak: holds what `statements` lock for a while on a connection of its own.
class LockHolder {
 public:
  LockHolder(const Text& path, const char* statements, const char* atTheEnd) {
    sqlite3_open(path.c_str(), &database_);
    EXPECT_EQ(sqlite3_exec(database_, statements, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database_);
    thread_ = std::thread([this, atTheEnd] {
      std::this_thread::sleep_for(200ms);
      sqlite3_exec(database_, atTheEnd, nullptr, nullptr, nullptr);
      sqlite3_close(database_);
    });
  }
  ~LockHolder() { thread_.join(); }

 private:
  sqlite3* database_ = nullptr;
  std::thread thread_;
};

TEST(SqliteSessionOpen, RefusesAFileThatIsMissing) {
  TempDirectory directory;
  const Text path = directory.path().string() + "\\missing.db";

  const ProviderError failure = FailureOf([&] { SqliteSession session(path); });

  EXPECT_EQ(failure.Number, -2147467259);
  EXPECT_EQ(failure.Description, "unable to open database file: " + path + " (No such file or directory)");
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(SqliteSessionOpen, RefusesADirectory) {
  TempDirectory directory;
  const Text path = directory.path().string();

  const ProviderError failure = FailureOf([&] { SqliteSession session(path); });

  EXPECT_EQ(failure.Number, -2147467259);
  EXPECT_EQ(failure.Description, "unable to open database file: " + path + " (Is a directory)");
}

TEST(SqliteSessionOpen, RefusesAFileThatIsNoDatabase) {
  TempDirectory directory;
  const Text path = (directory.path() / "notes.txt").string();
  for (const Text& content : {Text("short"), Text(5000, 'x')}) {
    directory.Write("notes.txt", content);

    const ProviderError failure = FailureOf([&] { SqliteSession session(path); });

    EXPECT_EQ(failure.Number, -2147467259);
    EXPECT_EQ(failure.Description, "file is not a database: " + path);
    EXPECT_EQ(directory.Read("notes.txt"), content);
  }
}

/// Nothing is forbidden to root, so a test that runs as root gives that up for a while.
class WithoutRoot {
 public:
  WithoutRoot() { EXPECT_EQ(seteuid(isRoot_ ? kNobody : geteuid()), 0); }
  ~WithoutRoot() { EXPECT_EQ(seteuid(isRoot_ ? 0 : geteuid()), 0); }

 private:
  static constexpr uid_t kNobody = 65534;
  bool isRoot_ = geteuid() == 0;
};

TEST(SqliteSessionOpen, RefusesAFileThatMayNotBeWritten) {
  SqliteFile file;
  file.Allow(0444);
  WithoutRoot user;

  const ProviderError failure = FailureOf([&] { SqliteSession session(file.path); });

  EXPECT_EQ(failure.Number, -2147467259);
  EXPECT_EQ(failure.Description, "attempt to write a readonly database: " + file.path);
}

TEST(SqliteSessionOpen, RefusesAFileThatMayNotBeRead) {
  SqliteFile file;
  file.Allow(0222);
  WithoutRoot user;

  const ProviderError failure = FailureOf([&] { SqliteSession session(file.path); });

  EXPECT_EQ(failure.Number, -2147467259);
  EXPECT_EQ(failure.Description, "unable to open database file: " + file.path + " (Permission denied)");
}

TEST(SqliteSessionOpen, TakesEveryNameAsAFile) {
  EXPECT_EQ(FailureOf([] { SqliteSession session(":memory:"); }).Description,
            "unable to open database file: :memory: (No such file or directory)");
  EXPECT_EQ(FailureOf([] { SqliteSession session("file:none?mode=memory"); }).Description,
            "unable to open database file: file:none?mode (No such file or directory)");
  EXPECT_EQ(FailureOf([] { SqliteSession session(""); }).Description,
            "no file to open: the connection string has no Data Source");
}

TEST(SqliteSessionOpen, KeepsAPasswordBehindAForgottenSeparatorToItself) {
  EXPECT_EQ(FailureOf([] { SqliteSession session("C:\\none.db Password=secret"); }).Description,
            "unable to open database file: C:\\none.db Password (No such file or directory)");
}

TEST(SqliteSessionOpen, MapsTheSeparatorsOfThePath) {
  SqliteFile file;
  const Text path = "C:" + Replaced(file.path, "/", "\\");

  SqliteSession session(path);

  EXPECT_EQ(Rows(session, "SELECT SITE FROM SITES"), "A1;A2;");
}

TEST(SqliteSessionOpen, SetsTheJournalAndTheSynchronisation) {
  SqliteFile file;

  SqliteSession session(file.path);

  EXPECT_EQ(Rows(session, "PRAGMA journal_mode"), "wal;");
  EXPECT_EQ(Rows(session, "PRAGMA synchronous"), "1;");
}

TEST(SqliteSessionOpen, WaitsUntilTheJournalCanBeSwitched) {
  TempDirectory directory;
  directory.Write("service.db", "");
  const Text path = (directory.path() / "service.db").string();
  LockHolder reader(path, "CREATE TABLE T (a); BEGIN; SELECT * FROM T", "COMMIT");

  SqliteSession session(path);

  EXPECT_EQ(Rows(session, "PRAGMA journal_mode"), "wal;");
}

TEST(SqliteSessionOpen, SwitchesTheJournalWhileOthersDoTheSame) {
  constexpr int kRounds = 20;
  constexpr int kOthers = 4;
  for (int round = 0; round < kRounds; ++round) {
    TempDirectory directory;
    directory.Write("service.db", "");
    const Text path = (directory.path() / "service.db").string();
    const auto open = [&path] { SqliteSession session(path); };

    std::vector<std::thread> others;
    for (int other = 0; other < kOthers; ++other) others.emplace_back(open);
    open();
    for (std::thread& other : others) other.join();

    SqliteSession session(path);
    EXPECT_EQ(Rows(session, "PRAGMA journal_mode"), "wal;");
  }
}

TEST(SqliteSessionOpen, WaitsForAFileThatAnotherProcessHoldsWhole) {
  SqliteFile file;
  LockHolder owner(file.path, "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE SITES SET upd_flag = 5",
                   "COMMIT");

  SqliteSession session(file.path);

  EXPECT_EQ(Rows(session, "SELECT * FROM SITES"), "A1|C1|5;A2|C2|5;");
}

TEST(SqliteSessionRun, CountsTheRowsOfAllStatementsOfAText) {
  SqliteFile file;
  SqliteSession session(file.path);
  const std::pair<const char*, std::int64_t> cases[] = {
      {"INSERT INTO SITES VALUES ('B1','C1',0); UPDATE SITES SET upd_flag = 2; SELECT 1;", 4},
      {"SELECT * FROM SITES", 0},
      {"Alter session set current_schema= SERVICE", 0},
      {"-- nothing", 0},
      {";", 0},
      {"DELETE FROM SITES", 3},
  };
  for (const auto& [statement, rows] : cases) {
    EXPECT_EQ(session.Run(statement, true), rows) << statement;
  }
}

TEST(SqliteSessionRun, CountsNoRowsThatATriggerTouches) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run("CREATE TABLE LOG (SITE TEXT)", false);
  session.Run("CREATE TRIGGER LOGGING AFTER UPDATE ON SITES BEGIN INSERT INTO LOG VALUES (new.SITE), ('x'); END",
              false);

  EXPECT_EQ(session.Run("UPDATE SITES SET upd_flag = 1 WHERE SITE = 'A1'", true), 1);
  EXPECT_EQ(Rows(session, "SELECT * FROM LOG"), "A1;x;");
}

TEST(SqliteSessionRun, DropsTheRowsOfAQuery) {
  SqliteFile file;
  SqliteSession session(file.path);

  session.Run("SELECT * FROM SITES; UPDATE SITES SET upd_flag = 7", false);

  EXPECT_EQ(Rows(session, "SELECT upd_flag FROM SITES"), "7;7;");
}

TEST(SqliteSessionRun, ReportsWhatSqliteReports) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run("CREATE TABLE NUMBERS (NUMBER INTEGER PRIMARY KEY)", false);
  struct Case {
    const char* statement;
    std::int32_t number;
    const char* description;
  };
  const Case cases[] = {
      {"INSERT INTO SITES (NOTE) VALUES (1)", -2147217900, "table SITES has no column named NOTE"},
      {"UPDATE SITES SET upd_flag = 1 WHERE SITE = ", -2147217900, "incomplete input"},
      {"UPDATE UPDATE", -2147217900, "near \"UPDATE\": syntax error"},
      {"UPDATE STATISTICS ", -2147217900, "incomplete input"},
      {"SELECT * FROM SITES WHERE SITE = N'it", -2147217900, "unrecognized token: \"'it\""},
      {"INSERT INTO NUMBERS VALUES ('x')", -2147217913, "datatype mismatch"},
      {"UPDATE SITES SET CUSTOMER = zeroblob(1000000001)", -2147217833, "string or blob too big"},
      {"ATTACH '/' AS OTHER", -2147467259, "unable to open database: /"},
  };
  for (const auto& [statement, number, description] : cases) {
    const ProviderError failure = FailureOf([&, &text = statement] { session.Run(text, true); });

    EXPECT_EQ(failure.Number, number) << statement;
    EXPECT_EQ(failure.Description, description) << statement;
  }
  EXPECT_EQ(Rows(session, "SELECT * FROM SITES"), "A1|C1|0;A2|C2|0;");
}

TEST(SqliteSessionRun, FollowsASchemaThatChangesBetweenStatementsOfOneShape) {
  SqliteFile file;
  SqliteSession session(file.path);
  SqliteSession other(file.path);
  EXPECT_EQ(session.Run("UPDATE SITES SET upd_flag = 1 WHERE SITE = 'A1'", true), 1);

  other.Run("ALTER TABLE SITES ADD COLUMN NOTE TEXT", false);
  EXPECT_EQ(session.Run("UPDATE SITES SET upd_flag = 2 WHERE SITE = 'A2'", true), 1);
  other.Run("ALTER TABLE SITES RENAME TO PLACES", false);
  EXPECT_EQ(FailureOf([&] { session.Run("UPDATE SITES SET upd_flag = 3 WHERE SITE = 'A1'", true); }).Description,
            "no such table: SITES");
  other.Run("ALTER TABLE PLACES RENAME TO SITES", false);
  EXPECT_EQ(session.Run("UPDATE SITES SET upd_flag = 4 WHERE SITE = 'A1'", true), 1);

  EXPECT_EQ(Rows(session, "SELECT SITE, upd_flag FROM SITES"), "A1|4;A2|2;");
}

/// The pages that a statement adds to the log.
std::uintmax_t PagesOf(EngineSession& session, const SqliteFile& file, const Text& statement) {
  constexpr std::uintmax_t kFrame = 4096 + 24;
  const std::uintmax_t before = std::filesystem::file_size(file.path + "-wal");
  session.Run(statement, false);
  return (std::filesystem::file_size(file.path + "-wal") - before) / kFrame;
}

TEST(SqliteSessionRun, WritesTheIndexOfAKeyOnlyWhereTheKeyChanges) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run("UPDATE SITES SET upd_flag = 1", false);  // now there is a log

  EXPECT_EQ(PagesOf(session, file, "UPDATE SITES SET SITE = N'A1', CUSTOMER = N'C3', upd_flag = 0WHERE SITE =N'A1'"),
            1);
  EXPECT_EQ(PagesOf(session, file, "UPDATE SITES SET SITE = N'A3', CUSTOMER = N'C4', upd_flag = 0WHERE SITE =N'A2'"),
            2);
  EXPECT_EQ(PagesOf(session, file, "UPDATE SITES SET SITE = N'A3', CUSTOMER = N'C5', upd_flag = 2WHERE SITE =N'A3'"),
            1);
  EXPECT_EQ(session.Run("UPDATE SITES SET SITE = N'A4', CUSTOMER = N'C5', upd_flag = 2WHERE SITE =N'A4'", true), 0);

  EXPECT_EQ(Rows(session, "SELECT * FROM SITES"), "A1|C3|0;A3|C5|2;");
  EXPECT_EQ(Rows(session, "PRAGMA integrity_check"), "ok;");
}

TEST(SqliteSessionRun, SetsAKeyThatIsEqualWithoutBeingTheSame) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run(
      "CREATE TABLE KEYS (CASELESS TEXT COLLATE NOCASE, BLANKS TEXT COLLATE RTRIM, NUM NUMERIC, LOOSE, N INTEGER);"
      "INSERT INTO KEYS VALUES ('a', 'b ', 5, '05', 0)",
      false);

  EXPECT_EQ(session.Run("UPDATE KEYS SET CASELESS = 'A', N = 1 WHERE CASELESS = 'A'", true), 1);
  EXPECT_EQ(session.Run("UPDATE KEYS SET BLANKS = 'b', N = 2 WHERE BLANKS = 'b'", true), 1);
  EXPECT_EQ(session.Run("UPDATE KEYS SET NUM = '5x', N = 3 WHERE NUM = 5", true), 1);
  EXPECT_EQ(session.Run("UPDATE KEYS SET LOOSE = '05', N = 4 WHERE LOOSE = '05'", true), 1);

  EXPECT_EQ(Rows(session, "SELECT CASELESS, BLANKS, NUM, LOOSE, N FROM KEYS"), "A|b|5x|05|4;");
}

TEST(SqliteSessionRun, LetsATriggerAndACheckSeeAKeyThatIsSetAgain) {
  SqliteFile file;
  SqliteSession session(file.path);
  SqliteSession other(file.path);
  const Text update = "UPDATE SITES SET SITE = 'A1', upd_flag = 1 WHERE SITE = 'A1'";
  session.Run("CREATE TABLE LOG (WHAT)", false);
  EXPECT_EQ(session.Run(update, true), 1);

  other.Run("CREATE TRIGGER SEES AFTER UPDATE OF SITE ON SITES BEGIN INSERT INTO LOG VALUES (new.SITE); END", false);
  EXPECT_EQ(session.Run(update, true), 1);
  EXPECT_EQ(session.Run(update, true), 1);
  EXPECT_EQ(Rows(session, "SELECT WHAT FROM LOG"), "A1;A1;");
  other.Run("DROP TRIGGER SEES", false);
  EXPECT_EQ(session.Run(update, true), 1);
  EXPECT_EQ(Rows(session, "SELECT WHAT FROM LOG"), "A1;A1;");

  other.Run("PRAGMA ignore_check_constraints = 1", false);
  other.Run("CREATE TABLE CHECKED (K TEXT CHECK (K <> 'A1'), N INTEGER); INSERT INTO CHECKED VALUES ('A1', 0)", false);
  EXPECT_EQ(FailureOf([&] { session.Run("UPDATE CHECKED SET K = 'A1', N = 1 WHERE K = 'A1'", true); }).Description,
            "CHECK constraint failed: K <> 'A1'");
}

TEST(SqliteSessionRun, ReportsWhatFailsBesideAKeyThatIsSetAgain) {
  SqliteFile file;
  SqliteSession session(file.path);
  const auto update = [&](const Text& customer) {
    return session.Run("UPDATE SITES SET SITE = 'A1', CUSTOMER = " + customer + " WHERE SITE = 'A1'", true);
  };
  EXPECT_EQ(update("'C3'"), 1);

  const ProviderError failure = FailureOf([&] { update("NULL"); });
  EXPECT_EQ(failure.Number, -2147217873);
  EXPECT_EQ(failure.Description, "NOT NULL constraint failed: SITES.CUSTOMER");
  EXPECT_EQ(update("'C4'"), 1);
  EXPECT_EQ(Rows(session, "SELECT * FROM SITES"), "A1|C4|0;A2|C2|0;");
}

TEST(SqliteSessionRun, LeavesNoRowOfAStatementBehindThatFailsBetweenOthersOfItsShape) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run("UPDATE SITES SET upd_flag = 7 WHERE SITE = 'A2'", false);
  session.Run("CREATE UNIQUE INDEX SITES_FLAG ON SITES (upd_flag)", false);
  const auto update = [&](const Text& flag) {
    return session.Run("UPDATE SITES SET upd_flag = " + flag + " WHERE SITE IN ('A1','A1')", true);
  };

  EXPECT_EQ(update("1"), 1);
  EXPECT_EQ(FailureOf([&] { update("7"); }).Description, "UNIQUE constraint failed: SITES.upd_flag");
  EXPECT_EQ(update("2"), 1);

  EXPECT_EQ(Rows(session, "SELECT SITE, upd_flag FROM SITES"), "A1|2;A2|7;");
}

TEST(SqliteSessionRun, ReportsAFullDiskBetweenStatementsOfOneShapeAndGoesOnWhenThereIsRoom) {
  SqliteFile file;
  SqliteSession session(file.path);
  int inserted = 0;
  const auto insert = [&](const Text& front) {
    const Text site = "'B" + std::to_string(inserted) + "'";
    session.Run(front + "INSERT INTO SITES (SITE,CUSTOMER)VALUES (" + site + ",N'" + Text(3000, 'x') + "')", true);
    ++inserted;
  };
  session.Run("PRAGMA max_page_count = 20", false);

  const ProviderError failure = FailureOf([&] {
    while (inserted < 100) insert("");
  });
  const ProviderError composed = FailureOf([&] { insert("/**/"); });  // a comment is not taken apart
  session.Run("PRAGMA max_page_count = 1000", false);
  insert("");

  EXPECT_EQ(failure.Number, -2147467259);
  EXPECT_EQ(failure.Description, "database or disk is full");
  EXPECT_EQ(composed.Number, failure.Number);
  EXPECT_EQ(composed.Description, failure.Description);
  EXPECT_GT(inserted, 5);
  EXPECT_EQ(Rows(session, "SELECT count(*) FROM SITES"), std::to_string(inserted + 2) + ";");
  EXPECT_EQ(Rows(session, "PRAGMA integrity_check"), "ok;");
}

TEST(SqliteSession, LeavesNoLargeLogToTheSessionsThatGoOn) {
  SqliteFile file;
  SqliteSession other(file.path);
  {
    SqliteSession session(file.path);
    session.Run("CREATE TABLE LARGE (A)", false);
    for (int i = 0; i < 40; ++i) {
      session.Run(
          "INSERT INTO LARGE WITH RECURSIVE N (I) AS (VALUES (1) UNION ALL SELECT I + 1 FROM N WHERE I < 100) "
          "SELECT zeroblob(4000) FROM N",
          false);
    }
    EXPECT_GT(std::filesystem::file_size(file.path + "-wal"), 10'000'000u);
  }

  EXPECT_EQ(std::filesystem::file_size(file.path + "-wal"), 0u);
  EXPECT_EQ(Rows(other, "SELECT count(*) FROM LARGE"), "4000;");
}

TEST(SqliteSession, WaitsForNobodyWhenItEnds) {
  SqliteFile file;
  auto session = std::make_unique<SqliteSession>(file.path);
  session->Run("CREATE TABLE LARGE (A)", false);
  session->Run("INSERT INTO LARGE VALUES (zeroblob(8000000))", false);
  sqlite3* reader = nullptr;
  sqlite3_open(file.path.c_str(), &reader);
  sqlite3_exec(reader, "BEGIN; SELECT * FROM SITES", nullptr, nullptr, nullptr);

  session.reset();

  sqlite3_exec(reader, "COMMIT", nullptr, nullptr, nullptr);
  EXPECT_GT(std::filesystem::file_size(file.path + "-wal"), 8'000'000u);
  sqlite3_close(reader);
}

TEST(SqliteSessionRun, WaitsForTheWritersLock) {
  SqliteFile file;
  SqliteSession session(file.path);
  LockHolder writer(file.path, "BEGIN IMMEDIATE; UPDATE SITES SET CUSTOMER = 'C9'", "COMMIT");

  const std::int64_t rows = session.Run("UPDATE SITES SET upd_flag = 1", true);

  EXPECT_EQ(rows, 2);
  EXPECT_EQ(Rows(session, "SELECT * FROM SITES"), "A1|C9|1;A2|C9|1;");
}

TEST(SqliteSessionRun, LetsTwoSessionsWriteByTurns) {
  SqliteFile file;
  SqliteSession first(file.path);
  SqliteSession second(file.path);
  for (int turn = 0; turn < 200; ++turn) {
    SqliteSession& session = turn % 2 == 0 ? first : second;
    ASSERT_EQ(session.Run("UPDATE SITES SET upd_flag = upd_flag + 1 WHERE SITE = 'A1'", true), 1);
  }

  EXPECT_EQ(Rows(first, "SELECT upd_flag FROM SITES"), "200;0;");
  EXPECT_EQ(Rows(second, "SELECT upd_flag FROM SITES"), "200;0;");
}

TEST(SqliteSessionRun, LetsTwoSessionsWriteAtOnce) {
  constexpr int kUpdates = 500;
  SqliteFile file;
  const auto write = [&file] {
    SqliteSession session(file.path);
    for (int update = 0; update < kUpdates; ++update) {
      session.Run("UPDATE SITES SET upd_flag = upd_flag + 1 WHERE SITE = 'A1'", true);
    }
  };

  std::thread other(write);
  write();
  other.join();

  SqliteSession session(file.path);
  EXPECT_EQ(Rows(session, "SELECT upd_flag FROM SITES"), "1000;0;");
}

TEST(SqliteSessionQuery, GivesEachFieldItsType) {
  SqliteFile file;
  SqliteSession session(file.path);
  session.Run(
      "CREATE TABLE T (a INTEGER, b INTEGER, c INTEGER, d REAL, e TEXT, f BLOB, g DATETIME, h Date, i timestamp, "
      "j DATETIME, k DATETIME, l DATETIME, m TEXT)",
      false);
  session.Run(
      "INSERT INTO T VALUES (7, -2147483648, 2147483648, 0.5, N'Größe', x'4142', '2004-01-31 10:11:12', '2004-01-31', "
      "'0098-01-31 00:00:00', 'soon', NULL, 5, '2004-01-31')",
      false);
  RowStore rows;

  session.Query("SELECT * FROM T", rows);

  const DateTime day = DateTime::FromParts({.year = 2004, .month = 1, .day = 31});
  const DateTime time =
      DateTime::FromParts({.year = 2004, .month = 1, .day = 31, .hour = 10, .minute = 11, .second = 12});
  const DateTime ancient = DateTime::FromParts({.year = 98, .month = 1, .day = 31});
  const Value expected[] = {7,
                            std::numeric_limits<std::int32_t>::min(),
                            2147483648.0,
                            0.5,
                            "Größe",
                            "AB",
                            time,
                            day,
                            ancient,
                            "soon",
                            Null(),
                            5,
                            "2004-01-31"};
  ASSERT_TRUE(rows.Next());
  ASSERT_EQ(rows.columns().size(), std::size(expected));
  for (std::size_t column = 0; column < std::size(expected); ++column) {
    EXPECT_EQ(rows.Field(column), expected[column]) << rows.columns()[column];
  }
}

TEST(SqliteSessionQuery, NamesTheColumnsAsTheTableDeclaresThem) {
  SqliteFile file;
  SqliteSession session(file.path);
  RowStore rows;

  session.Query("SELECT a.site, b.*, count(*) AS Total FROM SITES a, SITES b", rows);

  EXPECT_EQ(rows.columns(), (std::vector<Text>{"SITE", "SITE", "CUSTOMER", "upd_flag", "Total"}));
}

TEST(SqliteSessionQuery, ReadsBackEveryLiteralAsItWasWritten) {
  static const char* const kContents[] = {
      "'",    "''",   "N'", "1WHERE", "{d '2004-01-31'}", "CONVERT(DATETIME,'x',120)", "a", " ", "\"", "[", "--", "/*",
      "東京", "\x7f", ";",  "\r\n"};
  SqliteFile file;
  SqliteSession session(file.path);
  std::mt19937 generator(4010);
  const auto random = [&generator](std::size_t below) { return static_cast<std::size_t>(generator()) % below; };
  for (int round = 0; round < 2000; ++round) {
    Text query = "SELECT 1";
    std::vector<Text> values;
    for (std::size_t columns = random(4); columns > 0; --columns) {
      Text value;
      for (std::size_t pieces = random(6); pieces > 0; --pieces) value += kContents[random(std::size(kContents))];
      query += (random(2) == 0 ? ",N'" : ", '") + Replaced(value, "'", "''") + "'";
      values.push_back(value);
    }
    RowStore rows;

    session.Query(query + "WHERE 1=1AND 2=2", rows);

    ASSERT_TRUE(rows.Next());
    for (std::size_t column = 0; column < values.size(); ++column) {
      ASSERT_EQ(rows.Field(column + 1), Value(values[column])) << query;
    }
  }
}

TEST(SqliteSessionDefaultDatabase, IsANameThatIsKept) {
  SqliteFile file;
  SqliteSession session(file.path);
  EXPECT_EQ(session.DefaultDatabase(), "");

  session.PutDefaultDatabase(" SERVICE ");

  EXPECT_EQ(session.DefaultDatabase(), " SERVICE ");
}

TEST(SqliteSession, KeepsOtherSessionsFromTheLockOfANameUntilItGivesItBackOrEnds) {
  SqliteFile file;
  SqliteSession second(file.path);
  {
    SqliteSession first(file.path);
    EXPECT_TRUE(first.TakeLock("Site"));
    EXPECT_FALSE(second.TakeLock("SITE"));
    EXPECT_TRUE(second.TakeLock("OBJECT"));
    first.GiveLockBack("SITE");
    EXPECT_TRUE(second.TakeLock("site"));
    second.GiveLockBack("site");
    EXPECT_TRUE(first.TakeLock("site"));
  }

  EXPECT_TRUE(second.TakeLock("site"));
}

}  // namespace
}  // namespace zenqay
