// Jobs and connections on a PostgreSQL server of the tests' own.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <set>
#include <thread>

#include "doubles/file_content.h"
#include "doubles/outcome.h"
#include "doubles/postgres_server.h"
#include "doubles/temp_directory.h"
#include "engines/connection_string.h"
#include "engines/databases.h"
#include "engines/demo_jobs.h"
#include "engines/odbc/odbc_session.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

using namespace std::chrono_literals;

constexpr const char* kLocations =
    "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
    "A1,Plant,C1\n";

/// The server that the tests share; each test has a database of its own on it.
PostgresServer& SharedServer() {
  static PostgresServer server;
  return server;
}

/// A database with the reference schema and the control rows, and a home directory for jobs on it.
class PostgresTest : public testing::Test {
 protected:
  explicit PostgresTest(PostgresServer& server = SharedServer()) : server_(server) {
    static int count = 0;
    database_ = "service" + std::to_string(++count);
    server_.Psql("postgres", "CREATE DATABASE " + database_);
    const Text schema = ZENQAY_SHARE "/schema/";
    server_.PsqlFiles(database_, {schema + "postgresql.sql", schema + "control-rows.sql"});
  }

  Text ConnectionString() const { return server_.ConnectionString(database_); }

  std::shared_ptr<Connection> Connect() {
    const std::shared_ptr<Connection> connection = databases_.CreateConnection();
    connection->PutConnectionString(ConnectionString());
    connection->Open();
    return connection;
  }

  /// Runs a job on the table Site in this process, by the way that the program takes.
  void RunJob(int syncMethod, int platform) { RunJob(ConnectionString(), 1, syncMethod, platform, /*generation=*/1); }

  void RunJob(const Text& connectionString, int tableId, int syncMethod, int platform, int generation) {
    demo_.Run(databases_, {.connectionString = connectionString,
                           .database = platform == 2 ? "public" : database_,
                           .tableId = tableId,
                           .syncMethod = syncMethod,
                           .platform = platform,
                           .generation = generation});
  }

  /// The same in a process of its own, which the caller waits for.
  pid_t StartJob(int syncMethod) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    try {
      RunJob(syncMethod, 1);
    } catch (...) {
      ::_exit(1);
    }
    ::_exit(0);
  }

  static int ExitOf(pid_t process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// Waits until this many sessions of the database wait for a lock.
  void AwaitWaiting(const Text& sessions) {
    const Text query =
        "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock' AND datname = '" + database_ + "'";
    for (int attempt = 0; attempt < 4000; ++attempt) {
      if (server_.Psql("postgres", query) == sessions + "\n") return;
      std::this_thread::sleep_for(25ms);
    }
    ADD_FAILURE() << "nobody waits";
  }

  Text Log(const Text& file) const {
    const std::filesystem::path log = home_.path() / "log" / file;
    return std::filesystem::exists(log) ? home_.Read("log/" + file) : "";
  }

  Text RunLog() const {
    for (const auto& file : std::filesystem::directory_iterator(home_.path() / "log")) {
      const Text name = file.path().filename().string();
      if (name.starts_with("SITE_")) return Log(name);
    }
    return "";
  }

  Text Rows(const Text& query) const { return server_.Psql(database_, query); }

  PostgresServer& server_;
  Text database_;
  DemoJobs demo_;
  TempDirectory& home_ = demo_.home;
  LocalDatabases databases_;
};

constexpr const char* kSites = "SELECT site, description, customer, upd_flag FROM site ORDER BY site";

TEST_F(PostgresTest, TakesAFullCopyAndItsChangesOnEitherPlatform) {
  for (const int platform : {1, 2}) {
    server_.Psql(database_, "DELETE FROM site; UPDATE tstables SET lutm = NULL, in_use = 0");
    home_.Write("erp/Kv40QTMtssmaLocations.csv",
                "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                "A1,Plant 😀 d'été \\n,C1\n"
                "A2,東京,\"\"\n"
                "A3,\"\",C3\n");

    RunJob(1, platform);

    const Text blank = platform == 2 ? " " : "";  // an empty text becomes a blank for Oracle
    EXPECT_EQ(Rows(kSites), "A1|Plant 😀 d'été \\n|C1|0\nA2|東京|" + blank + "|0\nA3|" + blank + "|C3|0\n");
    EXPECT_EQ(Rows("SELECT in_use, lutm > now() - interval '1 day' FROM tstables WHERE tablename = 'SITE'"), "0|t\n");

    home_.Write("erp/Kv40QTMtssmaLocations.changes.csv",
                "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n" +
                    DemoJobs::NowInUtc() + ",U,A1,Changed,C1\n" + DemoJobs::NowInUtc() + ",I,A4,New,C4\n" +
                    DemoJobs::NowInUtc() + ",D,A3,,\n");
    RunJob(2, platform);

    EXPECT_EQ(Rows(kSites), "A1|Changed|C1|0\nA2|東京|" + blank + "|0\nA4|New|C4|0\n");
  }
}

/// The rows of every data table: fields joined by "|", rows in the order of their texts.
Text AllRows(LocalDatabases& databases, const Text& connectionString) {
  const std::pair<Text, std::vector<Text>> tables[] = {
      {"SITE", {"SITE", "DESCRIPTION", "CUSTOMER"}},
      {"PRODUCT", {"PRODUCT", "DESCRIPTION", "SITE", "CONTRACT", "EFFECTIVE_DATE", "EXPIRY_DATE", "WARRANTY"}},
      {"PROBLEM", {"PROBLEM", "DESCRIPTION", "CALLTYPE"}},
      {"PRIORITY", {"PRIORITY", "DESCRIPTION"}},
      {"SYMPTOM", {"SYMPTOM", "DESCRIPTION"}},
      {"OBJECT", {"SITE", "OBJECT", "OBJECTNR", "ITEM", "WARRANTY", "INSTALLATION_DATE", "WEXPIRY_DATE"}},
      {"SITECONTRACT", {"SITE", "CONTRACT", "OBJECT", "OBJECTNR", "TERM", "LINE", "EFFECTIVE_DATE", "EXPIRY_DATE"}},
      {"CONTRACTS", {"CONTRACT", "CONTRACTS", "CDESCRIPTION"}},
      {"WARRANTIES", {"WARRANTY", "WDESCRIPTION", "NUMBER_OF_PERIODS", "PERIOD_UNIT", "WARRANTY_TYPE"}},
      {"SERIALIZEDITEM", {"OBJECT", "OBJECTNR", "SITE", "SERIALNUMBER", "INSTALLATION_DATE", "CUSTOMER"}},
      {"tstables", {"tablename", "in_use", "reqd"}},
  };
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionString(connectionString);
  connection->Open();
  Text all;
  for (const auto& [table, columns] : tables) {
    const std::shared_ptr<Recordset> rows = databases.CreateRecordset();
    rows->Open("SELECT * FROM " + table, connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    std::set<Text> lines;
    for (; !rows->AtEnd(); rows->MoveNext()) {
      Text line = table;
      for (const Text& column : columns) {
        const Value value = rows->FieldValue(column);
        line += "|" + (value.IsNull() ? "NULL" : value.AsText());
      }
      lines.insert(line + "\n");
    }
    for (const Text& line : lines) all += line;
  }
  return all;
}

TEST_F(PostgresTest, TakesEveryTableAsTheEmbeddedDatabaseDoes) {
  const Text file = (home_.path() / "service.db").string();
  const Text embedded = "Provider=SQLite;Data Source=" + file;
  for (const int generation : {1, 3, 8}) {
    for (const int platform : {1, 2}) {
      SCOPED_TRACE("generation " + std::to_string(generation) + ", platform " + std::to_string(platform));
      server_.Psql(database_, "DROP SCHEMA public CASCADE; CREATE SCHEMA public");
      home_.Write("service.db", "");
      const std::shared_ptr<Connection> sqlite = databases_.CreateConnection();
      sqlite->PutConnectionString(embedded);
      sqlite->Open();
      const Text schema = ZENQAY_SHARE "/schema/";
      for (const char* script : {"sqlite.sql", "control-rows.sql"}) sqlite->Execute(ContentOf(schema + script));
      server_.PsqlFiles(database_, {schema + "postgresql.sql", schema + "control-rows.sql"});

      demo_.CopyExports("erp");
      for (const Text& database : {embedded, ConnectionString()}) RunJob(database, 128, 1, platform, generation);
      const Text full = AllRows(databases_, embedded);
      EXPECT_EQ(AllRows(databases_, ConnectionString()), full);
      EXPECT_GT(full.size(), 900u);

      demo_.CopyExports("end");
      demo_.CopyExports("changes");
      for (const Text& database : {embedded, ConnectionString()}) RunJob(database, 128, 2, platform, generation);
      const Text changed = AllRows(databases_, embedded);
      EXPECT_EQ(AllRows(databases_, ConnectionString()), changed);
      EXPECT_NE(changed, full);

      sqlite->Close();
      for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(file + suffix);
    }
  }
}

TEST_F(PostgresTest, WritesARecordOfTheCopy) {
  home_.Write("erp/Kv40QTMtssmaLocations.csv", kLocations);

  RunJob(1, 1);

  const Text log = RunLog();
  EXPECT_EQ(log.substr(log.find('\n') + 1), "\"Rows copied: SITE -  1\"\r\n") << log;
  EXPECT_EQ(Log("ZenqayDBSync.log"), "");
}

TEST_F(PostgresTest, ReadsABackslashAsItselfWhateverTheUserIsSetTo) {
  server_.Psql(database_, "ALTER DATABASE " + database_ + " SET standard_conforming_strings = off");
  const auto connection = Connect();

  connection->Execute("INSERT INTO site (site, description, upd_flag) VALUES (N'A1', N'a\\n''b\\', 0)");

  EXPECT_EQ(Rows("SELECT description FROM site"), "a\\n'b\\\n");
}

TEST_F(PostgresTest, GivesEachTypeItsValue) {
  const auto connection = Connect();
  const auto rows = databases_.CreateRecordset();

  rows->Open(
      "SELECT 7 AS i, 3000000000 AS big, 1.5::numeric AS d, 7::numeric AS whole, 0.25::float8 AS f, date '2004-01-31' "
      "AS "
      "day, timestamp '2004-01-31 10:11:12.5' AS moment, 'x'::char(3) AS padded, NULL AS nothing",
      connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);

  EXPECT_EQ(rows->FieldValue("i"), Value(7));
  EXPECT_EQ(rows->FieldValue("big"), Value(3000000000.0));
  EXPECT_EQ(rows->FieldValue("d"), Value(1.5));
  EXPECT_EQ(rows->FieldValue("whole"), Value(7));
  EXPECT_EQ(rows->FieldValue("f"), Value(0.25));
  EXPECT_EQ(rows->FieldValue("day").AsText(), "1/31/2004");
  EXPECT_EQ(rows->FieldValue("moment").AsText(), "1/31/2004 10:11:12 AM");
  EXPECT_EQ(rows->FieldValue("padded"), Value("x  "));
  EXPECT_TRUE(rows->FieldValue("nothing").IsNull());
}

TEST_F(PostgresTest, CommitsEachStatementAlsoWhenDeclareFetchIsAskedFor) {
  OdbcSession session(ConnectionString() + ";UseDeclareFetch=1;Fetch=1");
  RowStore rows;

  session.Run("INSERT INTO site (site) VALUES (N'A1')", false);
  session.Query("SELECT name FROM pg_cursors", rows);

  EXPECT_EQ(rows.count(), 0);
  EXPECT_EQ(Rows("SELECT site FROM site"), "A1\n");
}

TEST_F(PostgresTest, WaitsForTheDiskAsTheServerIsSetToAtStatementsOnTheControlTable) {
  server_.Psql("postgres", "ALTER DATABASE " + database_ + " SET synchronous_commit = local");
  OdbcSession session(ConnectionString());
  const auto setting = [&session] {
    RowStore rows;
    session.Query("SHOW synchronous_commit", rows);
    rows.Next();
    return rows.Field(0).AsText();
  };

  session.Run("INSERT INTO site (site) VALUES (N'A1')", false);
  EXPECT_EQ(setting(), "off");
  session.Run("UPDATE tstables SET in_use = 0WHERE tablename = N'SITE'", false);
  EXPECT_EQ(setting(), "local");
  session.Run("DELETE FROM site", false);
  EXPECT_EQ(setting(), "off");
}

TEST_F(PostgresTest, NumbersWhatTheServerRefuses) {
  const auto connection = Connect();
  connection->Execute("INSERT INTO site (site) VALUES (N'A1')");
  const std::pair<const char*, std::int32_t> cases[] = {
      {"UPDATE site SET site = NULL", -2147217873},      {"UPDATE site SET site = N'longer than ten'", -2147217833},
      {"UPDATE site SET upd_flag = N'x'", -2147217913},  {"UPDATE site SET upd_flag = 3000000000", -2147217833},
      {"UPDATE site SET upd_flag = 1 / 0", -2147217913},
  };
  for (const auto& [statement, number] : cases) {
    try {
      connection->Execute(statement);
      ADD_FAILURE() << statement;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), number) << statement;
      EXPECT_EQ(error.source(), "PostgreSQL Unicode");
    }
    EXPECT_EQ(connection->ErrorCollection()->count(), 1) << statement;
  }
  EXPECT_EQ(Rows("SELECT site FROM site"), "A1\n");
}

TEST_F(PostgresTest, KeepsTheDefaultDatabaseAsANameAndTheSchemaAsThePath) {
  const auto connection = Connect();
  EXPECT_EQ(connection->DefaultDatabase(), database_);

  connection->PutDefaultDatabase("SERVICE");
  connection->Execute("CREATE SCHEMA other");
  connection->Execute("Alter session set current_schema= OTHER");
  connection->Execute("CREATE TABLE here (a integer)");

  EXPECT_EQ(connection->DefaultDatabase(), "SERVICE");
  EXPECT_EQ(Rows("SELECT schemaname FROM pg_tables WHERE tablename = 'here'"), "other\n");
}

TEST_F(PostgresTest, DoesNotRepeatAPasswordThatIsRefused) {
  const Text failure = Raised([&] { OdbcSession session(server_.ConnectionString(database_, "wrong;secret")); });

  EXPECT_TRUE(failure.starts_with("-2147217843 PostgreSQL Unicode: ")) << failure;
  EXPECT_NE(failure.find("password authentication failed for user \"zenqay\""), Text::npos) << failure;
  EXPECT_EQ(failure.find("secret"), Text::npos) << failure;
}

TEST_F(PostgresTest, NumbersAConnectionThatFails) {
  const Text port = std::to_string(server_.port());
  const Text start = "Driver=PostgreSQL Unicode;Port=" + port + ";Database=" + database_ + ";PWD=x;";
  const Text unknownUser = Raised([&] { OdbcSession session(start + "Server=127.0.0.1;UID=nobody"); });
  const Text unknownDatabase = Raised([&] { OdbcSession session(server_.ConnectionString("nowhere")); });
  const Text unknownHost = Raised([&] { OdbcSession session(start + "Server=nowhere.invalid;UID=zenqay"); });

  EXPECT_TRUE(unknownUser.starts_with("-2147217843 PostgreSQL Unicode: ")) << unknownUser;
  EXPECT_TRUE(unknownDatabase.starts_with("-2147467259 PostgreSQL Unicode: ")) << unknownDatabase;
  EXPECT_NE(unknownDatabase.find("database \"nowhere\" does not exist"), Text::npos) << unknownDatabase;
  EXPECT_TRUE(unknownHost.starts_with("-2147467259 PostgreSQL Unicode: ")) << unknownHost;
  EXPECT_EQ((unknownUser + unknownDatabase + unknownHost).find('\n'), Text::npos);
}

TEST_F(PostgresTest, NumbersARightThatIsMissing) {
  server_.Psql("postgres", "DROP ROLE IF EXISTS reader; CREATE ROLE reader LOGIN PASSWORD 'secret'");
  const Text anybody = WithoutEntry(WithoutEntry(ConnectionString(), "Uid"), "Pwd");
  OdbcSession session(anybody + ";Uid=reader;Pwd=secret");

  EXPECT_EQ(Raised([&] { session.Run("DELETE FROM site", false); }),
            "-2147217900 PostgreSQL Unicode: ERROR: permission denied for table site; Error while executing the query");
}

TEST_F(PostgresTest, KeepsOtherSessionsFromTheLockOfANameUntilItGivesItBackOrEnds) {
  OdbcSession second(ConnectionString());
  {
    OdbcSession first(ConnectionString());
    EXPECT_FALSE(second.IsLockHeld("SITE"));
    EXPECT_TRUE(first.TakeLock("SITE"));
    EXPECT_TRUE(OdbcSession(ConnectionString(), {.access = Access::ReadOnly}).IsLockHeld("site"));
    EXPECT_FALSE(second.TakeLock("site"));
    EXPECT_TRUE(second.TakeLock("OBJECT"));
    first.GiveLockBack("SITE");
    EXPECT_TRUE(second.TakeLock("SITE"));
    second.GiveLockBack("SITE");
    EXPECT_TRUE(first.TakeLock("SITE"));
  }
  for (int attempt = 0; attempt < 400 && !second.TakeLock("SITE"); ++attempt) std::this_thread::sleep_for(25ms);

  EXPECT_FALSE(OdbcSession(ConnectionString()).TakeLock("SITE"));
}

/// A pooler in front of the server, which gives a connection a session of the server's for a transaction or for good.
class Pooler {
 public:
  Pooler(const PostgresServer& server, const std::string& mode) : port_(FreePort()) {
    directory_.Write("users", "\"zenqay\" \"\"\n");
    directory_.Write("pooler.ini",
                     "[databases]\n* = host=127.0.0.1 port=" + std::to_string(server.port()) +
                         " user=zenqay password='" + Replaced(PostgresServer::kPassword, "'", "''") +
                         "'\n[pgbouncer]\nlisten_addr = 127.0.0.1\nlisten_port = " + std::to_string(port_) +
                         "\nunix_socket_dir =\nauth_type = any\npool_mode = " + mode +
                         "\nignore_startup_parameters = extra_float_digits\n");
    std::filesystem::permissions(directory_.path(), std::filesystem::perms::all);
    const std::string file = (directory_.path() / "pooler.ini").string();
    process_ = ::fork();
    if (process_ != 0) return;
    if (::freopen("/dev/null", "w", stderr) == nullptr) ::_exit(1);
    if (::geteuid() == 0) {
      ::execl("/usr/sbin/pgbouncer", "pgbouncer", "-q", "-u", "nobody", file.c_str(), nullptr);
    } else {
      ::execl("/usr/sbin/pgbouncer", "pgbouncer", "-q", file.c_str(), nullptr);
    }
    ::_exit(1);
  }
  Pooler(const Pooler&) = delete;
  Pooler& operator=(const Pooler&) = delete;
  ~Pooler() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

  /// A session through the pooler, once it is up.
  std::unique_ptr<OdbcSession> Connect(const Text& connectionString, const PostgresServer& server) const {
    const Text text =
        Replaced(connectionString, "Port=" + std::to_string(server.port()), "Port=" + std::to_string(port_));
    for (int attempt = 0;; ++attempt) {
      try {
        return std::make_unique<OdbcSession>(text);
      } catch (const RuntimeError&) {
        if (attempt == 400) throw;
        std::this_thread::sleep_for(25ms);
      }
    }
  }

 private:
  TempDirectory directory_;
  int port_;
  pid_t process_ = -1;
};

TEST_F(PostgresTest, FindsOutThatALockBehindAPoolerOfTransactionsExcludesNobody) {
  const Pooler pooler(server_, "transaction");

  const std::unique_ptr<OdbcSession> session = pooler.Connect(ConnectionString(), server_);

  EXPECT_EQ(Raised([&] { session->TakeLock("SITE"); }),
            "-2147467259 ZenqayDBSync: The lock of table SITE excludes nobody: the statements of one connection reach "
            "several sessions of the server, as behind a pooler in transaction mode. Connect the job to the server "
            "itself, or to a pool in session mode.");
}

TEST_F(PostgresTest, TakesALockBehindAPoolerOfSessions) {
  const Pooler pooler(server_, "session");

  const std::unique_ptr<OdbcSession> session = pooler.Connect(ConnectionString(), server_);

  EXPECT_TRUE(session->TakeLock("SITE"));
}

TEST_F(PostgresTest, RunsStatementsOfOneShapeBehindAPoolerOfTransactions) {
  server_.Psql(database_, "INSERT INTO site VALUES ('A1', 'Old', 'C1', 0), ('A2', 'Old', 'C2', 0)");
  const Pooler pooler(server_, "transaction");
  const std::unique_ptr<OdbcSession> session = pooler.Connect(ConnectionString(), server_);
  const std::unique_ptr<OdbcSession> other = pooler.Connect(ConnectionString(), server_);
  const auto update = [](OdbcSession& by, const Text& flag) {
    return by.Run("UPDATE site SET upd_flag = " + flag + " WHERE site =N'A1'", true);
  };
  for (const char* flag : {"1", "2", "3"}) EXPECT_EQ(update(*session, flag), 1);

  other->Run("BEGIN", false);  // on the session of the server where the shape is prepared
  EXPECT_EQ(update(*session, "4"), 1);
  other->Run("COMMIT", false);
  for (const char* flag : {"5", "6", "7"}) EXPECT_EQ(update(*other, flag), 1);
  EXPECT_EQ(update(*session, "8"), 1);

  EXPECT_EQ(Rows("SELECT site, upd_flag FROM site ORDER BY site"), "A1|8\nA2|0\n");
}

/// Asked from the start.
class AskedToStop : public Interruption {
 public:
  bool isRequested() const override { return true; }
};

TEST_F(PostgresTest, CancelsAStatementThatGoesOnAfterTheJobHasBeenAskedToStop) {
  const auto interruption = std::make_shared<AskedToStop>();
  OdbcSession session(ConnectionString(), {.interruption = interruption});
  interruption->Allow();

  EXPECT_EQ(Raised([&] { session.Run("SELECT pg_sleep(600)", false); }), "18 ZenqayDBSync: User interrupt occurred");

  interruption->Forbid();
  EXPECT_EQ(session.Run("INSERT INTO site VALUES ('A1', 'Old', 'C1', 1)", true), 1);
}

TEST_F(PostgresTest, CancelsAStatementOfAShapeThatGoesOnAfterTheJobHasBeenAskedToStop) {
  const auto interruption = std::make_shared<AskedToStop>();
  OdbcSession session(ConnectionString(), {.interruption = interruption});
  OdbcSession other(ConnectionString());
  const auto update = [&](const Text& flag) { return session.Run("UPDATE site SET upd_flag = " + flag, true); };
  session.Run("INSERT INTO site VALUES ('A1', 'Old', 'C1', 0)", true);
  for (const char* flag : {"1", "2", "3"}) EXPECT_EQ(update(flag), 1);
  other.Run("BEGIN", false);
  other.Run("UPDATE site SET customer = 'C9'", false);

  interruption->Allow();
  EXPECT_EQ(Raised([&] { update("4"); }), "18 ZenqayDBSync: User interrupt occurred");
  interruption->Forbid();

  other.Run("COMMIT", false);
  EXPECT_EQ(update("5"), 1);
  EXPECT_EQ(Rows("SELECT site, customer, upd_flag FROM site"), "A1|C9|5\n");
}

TEST_F(PostgresTest, WaitsForARowThatAnotherSessionHolds) {
  server_.Psql(database_, "INSERT INTO site VALUES ('A1', 'Old', 'C1', 1)");
  home_.Write("erp/Kv40QTMtssmaLocations.csv", kLocations);
  OdbcSession other(ConnectionString());
  other.Run("BEGIN", false);
  other.Run("UPDATE site SET customer = 'C9' WHERE site = 'A1'", false);

  const pid_t job = StartJob(1);
  AwaitWaiting("1");
  other.Run("COMMIT", false);

  EXPECT_EQ(ExitOf(job), 0);
  EXPECT_EQ(Rows("SELECT site, customer, upd_flag FROM site"), "A1|C1|0\n");
}

TEST_F(PostgresTest, LetsTwoProcessesWorkAtOnce) {
  Text locations = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  for (int row = 0; row < 300; ++row) locations += "L" + std::to_string(row) + ",Site,C1\n";
  home_.Write("erp/Kv40QTMtssmaLocations.csv", locations);
  server_.Psql(database_, "INSERT INTO site SELECT 'L' || n, 'Old', 'C1', 1 FROM generate_series(0, 299) n");
  OdbcSession other(ConnectionString());
  other.Run("BEGIN", false);
  other.Run("UPDATE tstables SET reqd = 0 WHERE tablename = 'SITE'", false);

  const pid_t first = StartJob(1);
  const pid_t second = StartJob(1);
  AwaitWaiting("2");  // both have read that the table is free
  other.Run("COMMIT", false);

  EXPECT_EQ(ExitOf(first), 0);
  EXPECT_EQ(ExitOf(second), 0);
  EXPECT_EQ(Rows("SELECT description, upd_flag, count(*) FROM site GROUP BY 1, 2"), "Site|0|300\n");
  EXPECT_EQ(Rows("SELECT in_use FROM tstables WHERE tablename = 'SITE'"), "0\n");
}

TEST_F(PostgresTest, NumbersALostConnectionAlikeByAShapeAndAsComposed) {
  server_.Psql(database_, "INSERT INTO site VALUES ('A1', 'Old', 'C1', 0)");
  OdbcSession shaped(ConnectionString());
  OdbcSession composed(ConnectionString());
  const auto update = [](OdbcSession& session, const Text& front) {
    return session.Run(front + "UPDATE site SET upd_flag = 1 WHERE site =N'A1'", true);
  };
  const Text whole = "/**/";  // a comment is not taken apart
  for (int i = 0; i < 3; ++i) EXPECT_EQ(update(shaped, "") + update(composed, whole), 2);

  Rows("SELECT pg_terminate_backend(pid, 60000) FROM pg_stat_activity WHERE datname = '" + database_ +
       "' AND pid <> pg_backend_pid()");

  const Text lost = "-2147467259 PostgreSQL Unicode: FATAL: ";
  EXPECT_EQ(Raised([&] { update(composed, whole); }),
            lost + "terminating connection due to administrator command; The connection has been lost");
  EXPECT_EQ(Raised([&] { update(shaped, ""); }),
            lost +
                " terminating connection due to administrator command server closed the connection unexpectedly "
                "\tThis probably means the server terminated abnormally \tbefore or while processing the request. ; "
                "The connection has been lost");
  for (int i = 0; i < 2; ++i) {
    const Text further = "-2147467259 PostgreSQL Unicode: SQLExecDirectW unable due to the connection lost";
    EXPECT_EQ(Raised([&] { update(composed, whole); }), further);
    EXPECT_EQ(Raised([&] { update(shaped, ""); }), further);
  }
}

/// A test that loses its server has one of its own.
class PostgresLossTest : public PostgresTest {
 protected:
  PostgresLossTest() : PostgresTest(OwnServer()) {}

 private:
  static PostgresServer& OwnServer() {
    static PostgresServer server;
    return server;
  }
};

TEST_F(PostgresLossTest, FailsTheCopyWhoseServerGoesAway) {
  server_.Psql(database_, "INSERT INTO site VALUES ('A1', 'Old', 'C1', 1)");
  home_.Write("erp/Kv40QTMtssmaLocations.csv", kLocations);
  OdbcSession other(ConnectionString());
  other.Run("BEGIN", false);
  other.Run("UPDATE site SET customer = 'C9' WHERE site = 'A1'", false);
  const pid_t job = StartJob(1);
  AwaitWaiting("1");

  server_.Kill();

  EXPECT_EQ(ExitOf(job), 0);
  const Text runLog = RunLog();
  EXPECT_NE(runLog.find("\"PostgreSQL Unicode\",-2147467259,"), Text::npos) << runLog;
  EXPECT_EQ(runLog.find(PostgresServer::kPassword), Text::npos);
  EXPECT_NE(Log("ZenqayDBSync.log"), "");  // giving the table back failed as well
}

}  // namespace
}  // namespace zenqay
