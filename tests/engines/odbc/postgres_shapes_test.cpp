// Statements that a session on PostgreSQL runs by their shapes do what they do as composed.
#include "doubles/file_content.h"
#include "doubles/postgres_server.h"
#include "engines/demo_jobs.h"
#include "engines/generated_statements.h"
#include "engines/odbc/counting_proxy.h"
#include "engines/twins.h"

namespace zenqay {
namespace {

constexpr const char* kTables =
    "CREATE TABLE loose (k varchar(10) PRIMARY KEY, txt text, num numeric, int integer, sma smallint, big bigint, "
    "rea double precision, dat timestamp, day date, short varchar(5), fixed char(4), uni integer UNIQUE, "
    "chk integer CHECK (chk < 1000), nn varchar(20) NOT NULL DEFAULT 'd', mny numeric(5,2), yes boolean, byt bytea);"
    "CREATE TABLE keyed (k integer PRIMARY KEY, txt varchar(30), num integer, int integer, sma integer, big bigint, "
    "rea integer, dat timestamp, day date, short varchar(7), fixed varchar(4), uni integer, chk integer, nn "
    "varchar(20), "
    "mny integer, yes integer, byt text);"
    "CREATE TABLE texts (k varchar(12) PRIMARY KEY, txt varchar(10), num varchar(10), int varchar(4), sma varchar(3), "
    "big varchar(20), rea text, dat varchar(10), day varchar(10), short varchar(5), fixed char(6), uni text, chk text, "
    "nn varchar(20), mny text, yes text, byt text);";

StatementWords PostgresWords() {
  return {
      .tables = {"LOOSE", "KEYED", "KEYED", "TEXTS", "TEXTS", "PASSING"},
      .columns = {"K", "TXT", "NUM", "INT", "SMA", "BIG", "REA", "DAT", "DAY", "SHORT", "FIXED", "UNI", "CHK", "NN",
                  "MNY", "YES", "BYT"},
      .keys = {"N'A1'", "N'A2'", "'1'", "'2'", "N'3'", "4", "5", "N'a1'", "NULL", "''", "N'7 '",
               "N'a key that is too long'"},
      .values = {"N'Plant'",
                 "N''",
                 "''",
                 "'it''s'",
                 "N'5'",
                 "'5'",
                 "'7'",
                 "'05'",
                 "'12345'",
                 "'a '",
                 "'abcde '",
                 "'123456 '",
                 "N'Größe'",
                 "N'東京都港区芝'",
                 "'back\\slash'",
                 "NULL",
                 "NULL",
                 "0",
                 "1",
                 "5",
                 "999",
                 "1000",
                 "40000",
                 "2147483648",
                 "999999999999999999",
                 "-5",
                 "-40000",
                 "'true'",
                 "'1.50'",
                 "'999.99'",
                 "'1000.5'",
                 "CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                 "CONVERT(DATETIME,'1/31/2004',101)",
                 "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')",
                 "{d '2004-01-31'}",
                 "'Jan 31, 2004 10:11:12 AM'",
                 "'2004-01-31'",
                 "'2004-01-31 10:11:12'"},
      .oddities = {"1.5",
                   ".5",
                   "1e3",
                   "9223372036854775808",
                   "-9223372036854775808",
                   "0x1F",
                   "x'61'",
                   "B'1'",
                   "TRUE",
                   "CAST('5' AS INTEGER)",
                   "CAST(7 AS VARCHAR(10))",
                   "'5'::int",
                   "(1)",
                   "('5')",
                   "'a'||'b'",
                   "1+1",
                   "abs(-5)",
                   "upper('x')",
                   "substr('abcdef',2,3)",
                   "coalesce(NULL,'q')",
                   "coalesce(NULL,5)",
                   "nullif('a','b')",
                   "\"txt\"",
                   "[TXT]",
                   "$1",
                   "$$a$$",
                   "?",
                   "E'a\\'b'",
                   "U&'d'",
                   "'unclosed",
                   "\"open",
                   "/* a /* b */ c */ 1",
                   "1 -- b\n",
                   "'a' COLLATE \"C\"",
                   "CASE WHEN true THEN 'a' ELSE 'b' END",
                   "CONVERT(DATETIME,'2004-02-30 10:11:12',120)",
                   "{d '2004-13-01'}",
                   "{x}",
                   "current_date - 5",
                   "date '2004-01-31'",
                   "timestamp '2004-01-31'",
                   "interval '1 day'",
                   "ARRAY['a]b','c']",
                   "(SELECT 1)",
                   "(SELECT max(k) FROM keyed)",
                   "to_date('2004','yyyy')",
                   "repeat('ab', 3)",
                   "lpad('a', 5, 'x')",
                   "DEFAULT",
                   "+5",
                   "- - 5",
                   "-'5'",
                   "greatest(1,'7')",
                   "'a'\n'b'",
                   "length('abc')",
                   "nextval('nothing')",
                   "'now'",
                   "'infinity'",
                   "to_char(5, '9')",
                   "1/0",
                   "pg_typeof(5)",
                   "pg_typeof('5')",
                   "array_length(string_to_array('a,b', ','), 1)"},
      .fitting = {{},
                  {"N'Plant'", "''", "N'it''s'", "'abcdefghi '", "NULL"},
                  {"5", "'5'", "NULL", "- 7"},
                  {"5", "'7'", "1000", "NULL"},
                  {"5", "'7'", "30000", "40000"},
                  {"5", "2147483648", "'7'"},
                  {"5", "'7'", "NULL"},
                  {"CONVERT(DATETIME,'2004-01-31 10:11:12',120)", "'Jan 31, 2004 10:11:12 AM'", "'2004-01-31'", "NULL"},
                  {"{d '2004-01-31'}", "'2004-01-31'", "NULL"},
                  {"N'a'", "N'abcde'", "N'abcdef'", "N'abcde   '", "N'東京都'", "N'it''s'"},
                  {"N'a'", "N'abcd'", "N'abcdef'", "''"},
                  {"5", "6", "NULL", "8", "9"},
                  {"5", "'7'", "999", "1000"},
                  {"N'some'", "N'other'", "N''"},
                  {"5", "'7'", "999", "1000", "'999'", "'1000'"},
                  {"NULL", "'1'"},
                  {"NULL", "'1'"}},
      .conditions = {"TXT LIKE N'P%'",
                     "TXT LIKE 'a\\%'",
                     "INT IN (1,5,'7')",
                     "TXT IN ('a','5')",
                     "K IN ('A1')",
                     "K IN ('1')",
                     "TXT BETWEEN 'a' AND 'b'",
                     "TXT IS NULL",
                     "K =NULL",
                     "NUM = 5",
                     "NUM = '5'",
                     "INT = 'x'",
                     "SHORT = 5",
                     "SHORT = 'longer than it is'",
                     "FIXED = 'a'",
                     "FIXED = 'a   '",
                     "BIG = 5",
                     "SMA = 40000",
                     "(TXT, NN) = ('a', 'b')",
                     "'a' = 'a'",
                     "(1) = (1)",
                     "('a') = ('a')",
                     "5 = INT",
                     "DAT < CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                     "DAT = '2004-01-31'",
                     "DAY = CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                     "DAT = 'yesterday or so'",
                     "DAY = {d '2004-01-31'}",
                     "YES = 'true'",
                     "NOT (NN = 'd')",
                     "TXT != N'a'",
                     "UNI = -5",
                     "TXT ~ 'a'",
                     "length(TXT) > (2)",
                     "coalesce(TXT, '') = ''",
                     "TXT = ANY ('{a,b}')",
                     "MNY = 1000000",
                     "false",
                     "1"},
      .statements = {"DELETE FROM LOOSE WHERE chk > (5)",
                     "DELETE FROM KEYED WHERE K > (5)",
                     "DELETE FROM TEXTS WHERE (1) = (1)",
                     "UPDATE KEYED SET INT = 5",
                     "INSERT INTO KEYED SELECT * FROM KEYED WHERE false",
                     "INSERT INTO KEYED (K,INT) VALUES (1,5) ON CONFLICT (K) DO UPDATE SET INT = 7, TXT = 'again'",
                     "INSERT INTO KEYED (K,TXT) SELECT 77,'a'",
                     "INSERT INTO LOOSE VALUES (1,2)",
                     "UPDATE KEYED SET (TXT,INT) = ('a',5)",
                     "UPDATE KEYED SET INT = 1; DELETE FROM KEYED WHERE K = 2",
                     "UPDATE KEYED SET INT = 6 WHERE K = 1 RETURNING 5",
                     "UPDATE NOWHERE SET A = 'x'",
                     "INSERT INTO KEYED (K,NOWHERE) VALUES (1,'x')",
                     "UPDATE TEXTS SET NUM = 'x' FROM KEYED WHERE KEYED.TXT = 'a'",
                     "DELETE FROM TEXTS USING KEYED WHERE TEXTS.K = KEYED.TXT AND KEYED.INT = 5",
                     "UPDATE STATISTICS KEYED",
                     "DROP TABLE PASSING",
                     "CREATE TABLE PASSING AS SELECT * FROM TEXTS",
                     "CREATE TABLE PASSING AS SELECT * FROM KEYED",
                     "CREATE TABLE PASSING (K varchar(5), TXT varchar(3), INT integer)",
                     "ALTER TABLE PASSING ALTER TXT TYPE text",
                     "ALTER TABLE PASSING RENAME INT TO INTEGERS",
                     "ANALYZE",
                     "DEALLOCATE ALL"}};
}

/// Vacuum by itself would come to one database earlier than to the other.
PostgresServer& SharedServer() {
  static PostgresServer server({"autovacuum=off"});
  return server;
}

class PostgresShapes : public testing::Test {
 protected:
  /// A new database, by its connection string.
  Text StringOf(Text database, const Text& script) {
    static int count = 0;
    database += std::to_string(++count);
    server_.Psql("postgres", "CREATE DATABASE " + database);
    server_.Psql(database, script);
    latest_ = database;
    return server_.ConnectionString(database);
  }

  PostgresServer& server_ = SharedServer();
  Text latest_;  // of the databases
};

TEST_F(PostgresShapes, GiveGeneratedStatementsBothWaysTheSameCountsErrorsAndBytes) {
  Twins twins(StringOf("shaped", kTables), StringOf("composed", kTables));
  const std::shared_ptr<TwinConnection> connection = twins.Opened();
  const auto compare = [&] {
    for (const char* table : {"loose", "keyed", "texts"}) {
      connection->Compare(Text("SELECT CAST(t.* AS text) AS everything FROM ") + table + " t ORDER BY 1");
    }
  };

  RunGenerated(*connection, GeneratedStatements(PostgresWords(), /*seed=*/1), compare, /*touching=*/20);
}

TEST_F(PostgresShapes, GiveEveryStatementOfTheDemosJobsBothWaysTheSameCountsAndBytes) {
  const DemoJobs jobs;
  const Text schema = ZENQAY_SHARE "/schema/";
  const Text script = ContentOf(schema + "postgresql.sql") + ContentOf(schema + "control-rows.sql");
  Twins twins(StringOf("shaped", script), StringOf("composed", script));
  const std::shared_ptr<TwinConnection> connection = twins.Opened();
  for (const int generation : {1, 3, 8}) {
    jobs.CopyExports("erp");
    jobs.Run(twins, {.connectionString = twins.shapedString(), .syncMethod = 1, .generation = generation});
    jobs.CopyExports("end");
    jobs.CopyExports("changes");
    jobs.Run(twins, {.connectionString = twins.shapedString(), .syncMethod = 2, .generation = generation});
    for (const char* table : {"site", "product", "problem", "priority", "symptom", "object", "sitecontract",
                              "contracts", "warranties", "serializeditem"}) {
      connection->Compare(Text("SELECT CAST(t.* AS text) AS everything FROM ") + table + " t ORDER BY 1");
    }
  }
}

/// Sessions and what the server logs of them.
class PostgresShapesOfASession : public PostgresShapes {
 protected:
  PostgresShapesOfASession() {
    connection_->PutConnectionString(
        StringOf("service",
                 "CREATE TABLE site (site varchar(10) PRIMARY KEY, description varchar(5), upd_flag smallint);"
                 "INSERT INTO site VALUES ('A1', 'a', 0), ('A2', 'b', 0)"));
    connection_->Open();
  }

  std::int64_t Run(const Text& statement) { return connection_->Run(statement, Connection::Count::Asked); }

  std::int64_t Update(const Text& site, const Text& description, const Text& flag = "1") {
    return Run("UPDATE site SET description = N'" + description + "', upd_flag = " + flag + " WHERE site =N'" + site +
               "'");
  }

  Text FailureOfUpdate(const Text& site, const Text& description, const Text& flag = "1") {
    try {
      Update(site, description, flag);
      return "none";
    } catch (const RuntimeError& failure) {
      return failure.description();
    }
  }

  Text Rows() { return server_.Psql(latest_, "SELECT site, description, upd_flag FROM site ORDER BY site"); }

  LocalDatabases databases_;
  std::shared_ptr<Connection> connection_ = databases_.CreateConnection();
};

TEST_F(PostgresShapesOfASession, RefuseAValueThatDoesNotFitWhetherThereIsARowOrNot) {
  for (const char* site : {"A1", "none", "none"}) Update(site, "c");
  const Text tooLong = "ERROR: value too long for type character varying(5); Error while executing the query";

  EXPECT_EQ(FailureOfUpdate("none", "123456"), tooLong);
  EXPECT_EQ(FailureOfUpdate("A1", "123456"), tooLong);
  EXPECT_EQ(FailureOfUpdate("none", "東京都港区芝"), tooLong);
  EXPECT_EQ(Update("none", "東京都港区"), 0);
  EXPECT_EQ(Update("A1", "it''s "), 1);
  EXPECT_EQ(FailureOfUpdate("none", "d", "40000"), "ERROR: smallint out of range; Error while executing the query");

  EXPECT_EQ(Rows(), "A1|it's |1\nA2|b|0\n");
}

TEST_F(PostgresShapesOfASession, FollowATableThatChanges) {
  for (int i = 0; i < 8; ++i) EXPECT_EQ(Update("A1", "c"), 1);
  server_.Psql(latest_, "ALTER TABLE site ADD note text");
  EXPECT_EQ(Update("A1", "d"), 1);
  server_.Psql(latest_, "ALTER TABLE site ALTER upd_flag TYPE text");
  EXPECT_EQ(Update("A1", "e", "2"), 1);
  EXPECT_EQ(Update("A2", "f", "3"), 1);
  EXPECT_EQ(Rows(), "A1|e|2\nA2|f|3\n");

  server_.Psql(latest_, "ALTER TABLE site RENAME TO place");
  const Text missing = "ERROR: relation \"site\" does not exist; Error while executing the query";
  EXPECT_EQ(FailureOfUpdate("A1", "g"), missing);
  server_.Psql(latest_, "ALTER TABLE place RENAME TO site");
  EXPECT_EQ(Update("A1", "h", "4"), 1);

  EXPECT_EQ(Rows(), "A1|h|4\nA2|f|3\n");
}

TEST_F(PostgresShapesOfASession, GoOnWhenTheServerHasForgottenThem) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Update("A1", "c"), 1);

  Run("DEALLOCATE ALL");

  for (int i = 0; i < 3; ++i) EXPECT_EQ(Update("A2", "d"), 1);
  EXPECT_EQ(Rows(), "A1|c|1\nA2|d|1\n");
}

TEST_F(PostgresShapesOfASession, TakeOneRoundTripEach) {
  CountingProxy proxy(server_.port());
  connection_->Close();
  connection_->PutConnectionString(Replaced(server_.ConnectionString(latest_), "Port=" + std::to_string(server_.port()),
                                            "Port=" + std::to_string(proxy.port())));
  connection_->Open();
  for (int i = 0; i < 3; ++i) Update("A1", "c");
  const int before = proxy.RoundTrips();

  for (int i = 0; i < 50; ++i) Update(i % 2 == 0 ? "A1" : "none", "d");

  EXPECT_EQ(proxy.RoundTrips() - before, 50);
  connection_->Close();
}

TEST_F(PostgresShapesOfASession, ArePlannedAnewAsTheirTableGrows) {
  server_.Psql(latest_, "DELETE FROM site; VACUUM ANALYZE site");
  for (int i = 0; i < 3000; ++i) {
    const Text site = "N'" + std::to_string(i) + "'";
    Run("UPDATE site SET upd_flag = 0 WHERE site =" + site);
    Run("INSERT INTO site (site,upd_flag)VALUES (" + site + ",0)");
  }

  const Text plans =
      server_.Psql(latest_, "SELECT seq_tup_read < 1000000 FROM pg_stat_user_tables WHERE relname = 'site'");

  EXPECT_EQ(plans, "t\n");
}

}  // namespace
}  // namespace zenqay
