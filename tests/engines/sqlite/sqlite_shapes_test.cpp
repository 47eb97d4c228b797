// Statements that a SQLite session runs by their shapes do what they do as composed.
#include "doubles/file_content.h"
#include "doubles/temp_directory.h"
#include "engines/demo_jobs.h"
#include "engines/generated_statements.h"
#include "engines/twins.h"

namespace zenqay {
namespace {

constexpr const char* kTables[] = {
    R"(CREATE TABLE LOOSE (K NVARCHAR(10) PRIMARY KEY, TXT TEXT, NUM NUMERIC, INT INTEGER, REA REAL, BLO BLOB,
        DAT DATETIME, NOC TEXT COLLATE NOCASE, RTR TEXT COLLATE RTRIM, UNI INTEGER UNIQUE,
        CHK INTEGER CHECK (CHK < 1000), NN NVARCHAR(5) NOT NULL DEFAULT 'd', NONE))",
    R"(CREATE TABLE KEYED (K INTEGER PRIMARY KEY CHECK (K < 100000000), TXT TEXT, NUM NUMERIC, INT INTEGER, REA REAL,
        BLO BLOB, DAT DATETIME, NOC TEXT COLLATE NOCASE, RTR TEXT COLLATE RTRIM, UNI INTEGER, CHK INTEGER,
        NN NVARCHAR(5), NONE))",
    R"(CREATE TABLE FIRM (K TEXT PRIMARY KEY, TXT TEXT, NUM REAL, INT INT, REA REAL, BLO ANY, DAT TEXT, NOC TEXT,
        RTR TEXT, UNI ANY, CHK INTEGER, NN ANY, NONE ANY) STRICT, WITHOUT ROWID)",
    "CREATE TABLE LOG (WHAT)",
    "CREATE INDEX LOOSE_TXT ON LOOSE (TXT)",
    "CREATE INDEX LOOSE_SOME ON LOOSE (INT) WHERE NUM = 5",
    "CREATE INDEX LOOSE_SUM ON LOOSE (INT + 1)",
    R"(CREATE TRIGGER LOGGING AFTER UPDATE OF CHK ON LOOSE BEGIN INSERT INTO LOG VALUES (typeof(new.CHK) || new.CHK);
        SELECT RAISE(ABORT, 'too many') WHERE (SELECT count(*) FROM LOG) > 200; END)",
};

StatementWords SqliteWords() {
  return {.tables = {"LOOSE", "LOOSE", "KEYED", "FIRM", "PASSING"},
          .columns = {"K", "TXT", "NUM", "INT", "REA", "BLO", "DAT", "NOC", "RTR", "UNI", "CHK", "NN", "NONE"},
          .keys = {"N'A1'", "N'A2'", "N'A3'", "'a1'", "1", "2", "'3'", "N'4'", "NULL", "''", "N'5 '", "6"},
          .values = {"N'Plant'",
                     "N''",
                     "''",
                     "'it''s'",
                     "N''''",
                     "N'5'",
                     "'05'",
                     "'5.0'",
                     "' 7'",
                     "'1e2'",
                     "'-0'",
                     "N'a'",
                     "N'A'",
                     "'a '",
                     "N'Größe 東京'",
                     "'%a_'",
                     "'0x1F'",
                     "'9223372036854775808'",
                     "NULL",
                     "NULL",
                     "0",
                     "1",
                     "5",
                     "007",
                     "999",
                     "1000",
                     "2147483648",
                     "999999999999999999",
                     "-5",
                     "- 5",
                     "-0",
                     "CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                     "CONVERT(DATETIME,'1/31/2004',101)",
                     "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')",
                     "{d '2004-01-31'}",
                     "'Jan 31, 2004 10:11:12 AM'",
                     "'2004-01-31'"},
          .oddities = {"1.5",
                       "-0.0",
                       ".5",
                       "1e300",
                       "1e400",
                       "1.10",
                       "0.1000000000000000055511151231257827",
                       "9223372036854775807",
                       "9223372036854775808",
                       "-9223372036854775808",
                       "-9223372036854775809",
                       "0x1F",
                       "x'6162'",
                       "X'0'",
                       "TRUE",
                       "CAST('5' AS INTEGER)",
                       "CAST(7 AS CHAR(10))",
                       "(1)",
                       "('x')",
                       "'a'||'b'",
                       "1+1",
                       "abs(-5)",
                       "upper('x')",
                       "substr('abcdef',2,3)",
                       "coalesce(NULL,'q')",
                       "nullif('a','a')",
                       "\"dq\"",
                       "\"TXT\"",
                       "[TXT]",
                       "`TXT`",
                       "?",
                       "?1",
                       ":p",
                       "@p",
                       "$p",
                       "#p",
                       "TXT@p",
                       "'unclosed",
                       "N'open",
                       "\"open",
                       "[open",
                       "/* a */ 1",
                       "1 -- b\n",
                       "'a' COLLATE NOCASE",
                       "CASE WHEN 1 THEN 'a' ELSE 'b' END",
                       "CONVERT(DATETIME,'2004-02-30 10:11:12',120)",
                       "{d '2004-13-01'}",
                       "CONVERT(CHAR,'x',120)",
                       "{x}",
                       "likelihood(1,0.5)",
                       "iif(INT > 3, 'a', 5)",
                       "typeof(5)",
                       "typeof('5')",
                       "quote(N'x''y')",
                       "(SELECT 1)",
                       "(SELECT max(K) FROM KEYED)",
                       "printf('%d', 5)",
                       "json('[1]') -> 0",
                       "'a'\v",
                       "1_000",
                       "+5",
                       "~5",
                       "NOT 5",
                       "- - 5",
                       "-'5'",
                       "-NULL",
                       "'a' = 'a'",
                       "5 = '5'",
                       "''''''",
                       "'-- x'",
                       "'/*'",
                       "N'{d ''x''}'"},
          .conditions = {"TXT LIKE N'P%'",
                         "TXT LIKE 'a\\%' ESCAPE '\\'",
                         "INT IN (1,5,'7')",
                         "TXT IN ('a','5',5)",
                         "K IN (1)",
                         "NUM IN (NULL,5)",
                         "INT BETWEEN 1 AND 5",
                         "INT BETWEEN '1' AND '5'",
                         "TXT IS NULL",
                         "INT IS 5",
                         "K =NULL",
                         "NOC = 'PLANT'",
                         "RTR = 'a'",
                         "NONE = 5",
                         "NONE = '5'",
                         "'5' = INT",
                         "5 = TXT",
                         "INT + 0 = '5'",
                         "+TXT = 5",
                         "NUM = 5 AND INT = '5'",
                         "(TXT, INT) = ('a', 5)",
                         "REA > '1'",
                         "BLO = 'a'",
                         "TXT GLOB 'P*'",
                         "rowid = '1'",
                         "INT = (1)",
                         "abs(INT) = 5",
                         "length(TXT) > (2)",
                         "'a' = 'a'",
                         "(1) = (1)",
                         "5",
                         "0",
                         "NOT (INT = 5)",
                         "DAT < CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                         "TXT == 'a'",
                         "TXT != N'a'",
                         "INT % 2 = 1",
                         "INT = 5 COLLATE NOCASE",
                         "UNI = -5",
                         "INT + 1 = 6",
                         "max(INT, 5) = 5"},
          .statements = {
              "DELETE FROM LOOSE WHERE rowid % 3 = 0",
              "DELETE FROM KEYED WHERE K > (5)",
              "DELETE FROM LOG",
              "UPDATE LOOSE SET INT = 5",
              "UPDATE OR IGNORE LOOSE SET UNI = 5",
              "UPDATE OR REPLACE LOOSE SET UNI = 7",
              "UPDATE OR FAIL LOOSE SET CHK = INT",
              "INSERT OR REPLACE INTO LOOSE (K,UNI) VALUES ('A1',5)",
              "INSERT INTO LOOSE (K,INT) VALUES ('A1',5) ON CONFLICT (K) DO UPDATE SET INT = INT + 1, TXT = 'again'",
              "INSERT INTO KEYED SELECT * FROM KEYED WHERE 0",
              "INSERT INTO KEYED (K,TXT) SELECT 77,'a'",
              "INSERT INTO LOOSE VALUES (1,2)",
              "INSERT INTO LOOSE ('K','INT') VALUES ('q1',5)",
              "UPDATE LOOSE SET ('TXT','INT') = ('a',5)",
              "UPDATE 'LOOSE' SET 'INT' = 5 WHERE 'K' = 'K'",
              "UPDATE LOOSE SET INT = 1; DELETE FROM LOOSE WHERE K = 'A2'",
              "UPDATE LOOSE SET INT = 1;",
              "UPDATE LOOSE SET INT = 6 WHERE K = 'A1' RETURNING 5",
              "DELETE FROM LOOSE ORDER BY K, 1 LIMIT 2",
              "UPDATE LOOSE SET INT = 3 WHERE INT = 5 ORDER BY TXT, (2) LIMIT (1)",
              "UPDATE NOWHERE SET A = 'x'",
              "INSERT INTO LOOSE (K,NOWHERE) VALUES ('A1','x')",
              "UPDATE LOOSE SET INT = 'x' WHERE NOWHERE = 5",
              "UPDATE STATISTICS LOOSE",
              "SET DATEFORMAT YMD",
              "Alter session set current_schema= SERVICE",
              "DROP INDEX IF EXISTS LOOSE_TXT",
              "CREATE INDEX IF NOT EXISTS LOOSE_TXT ON LOOSE (TXT)",
              "DROP INDEX IF EXISTS LOOSE_SOME",
              "DROP TABLE PASSING",
              "CREATE TABLE PASSING AS SELECT * FROM LOOSE",
              "CREATE TABLE PASSING AS SELECT K, TXT, INT FROM LOOSE",
              "CREATE UNIQUE INDEX PASSING_K ON PASSING (K, TXT)",
              "ALTER TABLE PASSING RENAME COLUMN INT TO NONE",
              "ALTER TABLE PASSING RENAME COLUMN NONE TO INT",
              "UPDATE LOOSE SET K = 'A' || rowid",
              "PRAGMA case_sensitive_like = 1",
              "PRAGMA case_sensitive_like = 0",
              "REPLACE INTO KEYED (K,TXT) VALUES (5,'r')",
              "VALUES ('a')",
              "SELECT 'a'",
              "",
              " "}};
}

class SqliteShapes : public testing::Test {
 protected:
  Text StringOf(const Text& name) {
    directory_.Write(name, "");
    return "Provider=SQLite;Data Source=" + (directory_.path() / name).string();
  }

  TempDirectory directory_;
  Twins twins_{StringOf("shaped.db"), StringOf("composed.db")};
};

TEST_F(SqliteShapes, GiveGeneratedStatementsBothWaysTheSameCountsErrorsAndBytes) {
  const std::shared_ptr<TwinConnection> connection = twins_.Opened();
  for (const char* table : kTables) connection->Execute(table);
  const auto compare = [&] {
    connection->Compare("SELECT * FROM sqlite_master");
    Text fields = "SELECT hex(K)";
    for (const char* column :
         {"K", "TXT", "NUM", "INT", "REA", "BLO", "DAT", "NOC", "RTR", "UNI", "CHK", "NN", "NONE"}) {
      fields += Text(", typeof(") + column + "), quote(" + column + ")";
    }
    connection->Compare(fields + " FROM FIRM");
    connection->Compare(fields + ", rowid FROM KEYED");
    connection->Compare(fields + ", rowid FROM LOOSE");
    connection->Compare("SELECT quote(WHAT), rowid FROM LOG");
  };

  RunGenerated(*connection, GeneratedStatements(SqliteWords(), /*seed=*/1), compare, /*touching=*/10);
}

TEST_F(SqliteShapes, GiveEveryStatementOfTheDemosJobsBothWaysTheSameCountsAndBytes) {
  const DemoJobs jobs;
  const std::shared_ptr<TwinConnection> connection = twins_.Opened();
  const Text schema = ZENQAY_SHARE "/schema/";
  connection->Execute(ContentOf(schema + "sqlite.sql") + ContentOf(schema + "control-rows.sql"));
  for (const int generation : {1, 3, 8}) {
    for (const int platform : {1, 2}) {
      jobs.CopyExports("erp");
      jobs.Run(
          twins_,
          {.connectionString = twins_.shapedString(), .syncMethod = 1, .platform = platform, .generation = generation});
      jobs.CopyExports("end");
      jobs.CopyExports("changes");
      jobs.Run(
          twins_,
          {.connectionString = twins_.shapedString(), .syncMethod = 2, .platform = platform, .generation = generation});
      for (const char* table : {"SITE", "PRODUCT", "PROBLEM", "PRIORITY", "SYMPTOM", "OBJECT", "SITECONTRACT",
                                "CONTRACTS", "WARRANTIES", "SERIALIZEDITEM"}) {
        connection->Compare(Text("SELECT *, rowid FROM ") + table);
      }
    }
  }
}

}  // namespace
}  // namespace zenqay
