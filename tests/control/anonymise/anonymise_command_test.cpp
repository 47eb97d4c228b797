// zenqayctl anonymise: what it makes, and what it says.
#include <gtest/gtest.h>

#include "../control_setup.h"

namespace zenqay {
namespace {

constexpr const char* kTrace =
    R"({"kind":"trace","version":2,"program":"1.1.0","pid":4711,"started":"2026-11-21T22:00:00.000Z"}
{"n":1,"kind":"call","id":3,"op":"getLocation","args":[],"returns":"AMSTERDAM01","ms":1}
{"n":2,"kind":"sql","connection":1,"text":"UPDATE SITE SET SITE = N'AMSTERDAM01'","ms":1}
)";

constexpr const char* kKept =
    "\n"
    "Kept: operations, names of tables and columns, labels, statements without their literals, numbers, dates,\n"
    "lengths, upper and lower case, digits as digits, signs, what is equal to what. Changed: every other word.\n"
    "Look it through before you send it. What it was made by is kept nowhere: it cannot be turned back.\n";

class AnonymiseCommand : public testing::Test {
 protected:
  AnonymiseCommand() { setup.directory.Write("trace.jsonl", kTrace); }

  Text Query(const Text& file, const Text& query) const {
    const auto connection = LocalDatabases().CreateConnection();
    connection->PutConnectionString("Provider=SQLite;Mode=Read;Data Source=" + setup.Path(file));
    connection->Open();
    const auto rows = LocalDatabases().CreateRecordset();
    rows->Open(query, connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
    Text text;
    for (; !rows->AtEnd(); rows->MoveNext()) text += rows->FieldValue("shown").Joined() + "\n";
    return text;
  }

  ControlSetup setup;
};

TEST_F(AnonymiseCommand, MakesATraceAndAScratchFileThatBelongTogether) {
  setup.Sql("INSERT INTO SITE VALUES ('AMSTERDAM01', 'Herengracht''s AMSTERDAM01', NULL, 1)");
  setup.Sql("INSERT INTO SITE VALUES ('BERLIN02', '', ' ', 0)");
  setup.Sql(
      "INSERT INTO OBJECT (SITE, OBJECT, OBJECTNR, INSTALLATION_DATE, WARRANTY) VALUES "
      "('AMSTERDAM01', 'PUMP', 17, '2024-01-31', '1717')");

  EXPECT_EQ(setup.Ctl({"anonymise", setup.Path("trace.jsonl"), "--scratch", setup.Path("service.db"), "--out",
                       setup.Path("out")}),
            Text("Made HOME/out/trace.jsonl: 3 lines, 2 values changed\n"
                 "Made HOME/out/scratch.db:\n"
                 "    tstables: 10 rows, 0 values changed\n"
                 "    tsi18ntext: 11 rows, 0 values changed\n"
                 "    tstreenodes: 24 rows, 0 values changed\n"
                 "    SITE: 2 rows, 3 values changed\n"
                 "    PRODUCT: 0 rows, 0 values changed\n"
                 "    PROBLEM: 0 rows, 0 values changed\n"
                 "    PRIORITY: 0 rows, 0 values changed\n"
                 "    SYMPTOM: 0 rows, 0 values changed\n"
                 "    OBJECT: 1 rows, 3 values changed\n"
                 "    SITECONTRACT: 0 rows, 0 values changed\n"
                 "    CONTRACTS: 0 rows, 0 values changed\n"
                 "    WARRANTIES: 0 rows, 0 values changed\n"
                 "    SERIALIZEDITEM: 0 rows, 0 values changed\n") +
                kKept + "= 0\n");

  const Text trace = setup.directory.Read("out/trace.jsonl");
  const Text key = trace.substr(trace.find("N'") + 2, Text("AMSTERDAM01").size());
  EXPECT_EQ(trace, Replaced(kTrace, "AMSTERDAM01", key));
  const Text sites = Query("out/scratch.db",
                           "SELECT SITE || '|' || DESCRIPTION || '|' || coalesce(CUSTOMER, 'NULL') || '|' || upd_flag "
                           "AS shown FROM SITE");
  const Text name = sites.substr(key.size() + 1, Text("Herengracht").size());
  const Text mark = sites.substr(key.size() + name.size() + 2, 1);
  EXPECT_EQ(sites.substr(0, sites.find('\n')), key + "|" + name + "'" + mark + " " + key + "|NULL|1");
  EXPECT_EQ(sites.substr(sites.find('\n') + Text("\nBERLIN02").size()), "|| |0\n");
  EXPECT_EQ(sites.find("Herengracht"), Text::npos);
  EXPECT_EQ(sites.find("BERLIN02"), Text::npos);
  const Text object =
      Query("out/scratch.db", "SELECT SITE || '|' || OBJECTNR || '|' || INSTALLATION_DATE AS shown FROM OBJECT");
  EXPECT_EQ(object, key + "|17|2024-01-31\n");
  EXPECT_EQ(setup.directory.Read("trace.jsonl"), kTrace);
}

TEST_F(AnonymiseCommand, LeavesNothingOfTheCustomerInTheFilesBytes) {
  setup.Sql("INSERT INTO SITE VALUES ('AMSTERDAM01', 'Herengracht', 'Acmeworks', 0)");
  setup.Sql("DELETE FROM SITE");
  setup.Sql("INSERT INTO SITE VALUES ('AMSTERDAM01', 'Herengracht', 'Acmeworks', 0)");

  setup.Ctl(
      {"anonymise", setup.Path("trace.jsonl"), "--scratch", setup.Path("service.db"), "--out", setup.Path("out")});

  const Text made = setup.directory.Read("out/scratch.db") + setup.directory.Read("out/trace.jsonl");
  for (const char* word : {"AMSTERDAM", "Herengracht", "Acmeworks"}) EXPECT_EQ(made.find(word), Text::npos) << word;
}

TEST_F(AnonymiseCommand, TakesARowThatIsOlderThanALimitOfItsTable) {
  setup.Sql("DROP TABLE SITE");
  setup.Sql(
      "CREATE TABLE SITE (SITE NVARCHAR(10) CONSTRAINT \"SITE.SITE takes 5 characters\" CHECK (length(SITE) <= 5), "
      "DESCRIPTION NVARCHAR(100), CUSTOMER NVARCHAR(20), upd_flag INTEGER)");
  setup.Sql("PRAGMA ignore_check_constraints = ON; INSERT INTO SITE VALUES ('17-17-17', NULL, NULL, 0)");

  const Text said = setup.Ctl(
      {"anonymise", setup.Path("trace.jsonl"), "--scratch", setup.Path("service.db"), "--out", setup.Path("out")});

  EXPECT_NE(said.find("    SITE: 1 rows, 1 values changed\n"), Text::npos) << said;
  EXPECT_EQ(Query("out/scratch.db", "SELECT length(SITE) AS shown FROM SITE"), "8\n");
}

TEST_F(AnonymiseCommand, ClosesWhatItMakesToOthers) {
  setup.Ctl(
      {"anonymise", setup.Path("trace.jsonl"), "--scratch", setup.Path("service.db"), "--out", setup.Path("out")});

  const auto rights = [&](const Text& name) { return std::filesystem::status(setup.Path(name)).permissions(); };
  EXPECT_EQ(rights("out"), std::filesystem::perms::owner_all);
  for (const char* file : {"out/trace.jsonl", "out/scratch.db"}) {
    EXPECT_EQ(rights(file), std::filesystem::perms::owner_read | std::filesystem::perms::owner_write) << file;
  }
}

TEST_F(AnonymiseCommand, SaysItInJson) {
  EXPECT_EQ(setup.Ctl({"anonymise", setup.Path("trace.jsonl"), "--out", setup.Path("out"), "--json"}),
            "{\"trace\":\"HOME/out/trace.jsonl\",\"lines\":3,\"changed\":2,\"end_is_cut\":false}\n= 0\n");
  setup.directory.Write("cut.jsonl", kTrace + Text("{\"n\":3,"));
  EXPECT_EQ(setup.Ctl({"anonymise", setup.Path("cut.jsonl"), "--out", setup.Path("cut")}),
            Text("Made HOME/cut/trace.jsonl: 3 lines, 2 values changed\n"
                 "    its last line was cut off and is left out\n") +
                kKept + "= 0\n");
}

TEST_F(AnonymiseCommand, WritesOverNothingAndLeavesNoHalf) {
  const Text trace = setup.Path("trace.jsonl");

  EXPECT_EQ(setup.Ctl({"anonymise", trace, "--out", setup.home()}),
            "! zenqayctl: HOME exists; nothing was changed\n= 2\n");
  EXPECT_EQ(setup.Ctl({"anonymise", trace}), "! zenqayctl: --out is required (zenqayctl anonymise --help)\n= 2\n");
  EXPECT_EQ(setup.Ctl({"anonymise", setup.Path("none"), "--out", setup.Path("out")}),
            "! zenqayctl: HOME/none cannot be read\n= 2\n");
  EXPECT_EQ(setup.Ctl({"anonymise", trace, "--scratch", setup.Path("none"), "--out", setup.Path("out")}),
            "! zenqayctl: HOME/none is no file\n= 2\n");
  EXPECT_EQ(setup.Ctl({"anonymise", trace, "--scratch", trace, "--out", setup.Path("out")}),
            "! zenqayctl: file is not a database: HOME/trace.jsonl\n= 4\n");
  EXPECT_EQ(setup.Ctl({"anonymise", trace, "--out", setup.Path("none/out")}),
            "! zenqayctl: Path not found: HOME/none/out\n= 4\n");
  EXPECT_FALSE(std::filesystem::exists(setup.Path("out")));
}

}  // namespace
}  // namespace zenqay
