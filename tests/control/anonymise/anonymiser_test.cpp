// What changes in values, statements and messages, and what stays.
#include "control/anonymise/anonymiser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>

#include "control/anonymise/word_lists.h"
#include "doubles/file_content.h"
#include "marked_texts.h"

namespace zenqay {
namespace {

const Anonymiser& Subject() {
  static const Anonymiser anonymiser(kTestKey);
  return anonymiser;
}

TEST(Anonymiser, KeepsNumbersAndDatesWhereTheJobReadsThem) {
  const struct {
    const char* operation;
    Text marked;
  } cases[] = {
      {"getLocation", "‹DUB01›"},
      {"getDescription", "‹2004›-‹01›-‹31›"},
      {"getDescription", "  ‹St›. ‹Stephen›'‹s› ‹Green› "},
      {"getCustomer", ""},
      {"getContract", "   "},
      {"GetObjectNumber", "12"},
      {"getObjectNumber", "‹A12›"},
      {"getPriority", " 7"},
      {"getContractStatus", "10"},
      {"hasDescription", "true"},
      {"hasDescription", "‹maybe›"},
      {"getEffectiveDate", "2004-01-31"},
      {"getEffectiveDate", "2004-13-45"},
      {"getEffectiveDate", "‹n›/‹a›"},
      {"toLocaleString", "Jan 31, 2004 10:11:12 AM"},
      {"getActionType", "U "},
      {"getOther", "‹A1›"},
      {"getOther", "‹4711›"},
      {"getOther", "‹4711›-‹12›"},
      {"getEffectiveDate", "‹20040131›"},
      {"getOther", "2004-01-31T10:11:12"},
      {"setFieldName", "cloc"},
      {"setTo", "9999"},
      {"NetListLocations", "tssma110"},
      {"List", "\x7f\x7f\x7f"},
      {"List", "‹C7›"},
      {"Initialize", "‹MAIN›"},
      {"get getVersion", "2.4"},
      {"setContractTerms", "3"},
      {"writeToMessageBox", "Copy of Sites (ERP table 110) started."},
      {"writeToMessageBox", "10:11:12 AM"},
      {"writeToMessageBox", "Copy of ‹Anlagen› (ERP table 110) complete: 123456 copied, 0 updated, 0 deleted."},
  };
  for (const auto& [operation, marked] : cases) {
    const Meaning meaning = Subject().vocabulary().OfOperation(operation);

    EXPECT_EQ(Subject().Value(meaning, Original(marked)), Expected(marked)) << operation;
  }
}

TEST(Anonymiser, ChangesANumberAsItsText) {
  const TextMapping mapping(kTestKey);

  EXPECT_EQ(std::to_string(Subject().Number(100234)), mapping.Changed("100234"));
  EXPECT_EQ(std::to_string(Subject().Number(-7)), mapping.Changed("-7"));
  EXPECT_EQ(Subject().Number(0), 0);
}

TEST(Anonymiser, KnowsTheColumnsOfNumbersAndDates) {
  const Vocabulary& vocabulary = Subject().vocabulary();
  const struct {
    const char* table;
    const char* column;
    Meaning meaning;
  } cases[] = {{"Site", "SITE", Meaning::Words},
               {"OBJECT", "objectnr", Meaning::Number},
               {"SERIALIZEDITEM", "OBJECTNR", Meaning::Words},
               {"sitecontract", "OBJECTNR", Meaning::Words},
               {"SITECONTRACT", "TERM", Meaning::Number},
               {"PRIORITY", "PRIORITY", Meaning::Number},
               {"WARRANTIES", "PERIOD_UNIT", Meaning::Number},
               {"PRODUCT", "WEXPIRY_DATE", Meaning::Date},
               {"tstables", "tablename", Meaning::System},
               {"tstables", "owner", Meaning::Words},
               {"TSI18NTEXT", "TEXT", Meaning::Message},
               {"other", "number", Meaning::Words}};
  for (const auto& [table, column, meaning] : cases) {
    EXPECT_EQ(vocabulary.OfColumn(table, column), meaning) << table << "." << column;
  }
}

TEST(Anonymiser, ChangesTheLiteralsOfStatements) {
  for (const Text& marked : {
           Text("SET DATEFORMAT YMD"),
           Text("Alter session set current_schema= ‹ACME›_‹PROD›"),
           Text("UPDATE tstables SET in_use = 1WHERE tablename = N'Site'"),
           Text("INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(N'Site','2026-02-01 00:00:00',1,1)"),
           Text("SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where "
                "a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label"),
           Text("UPDATE Site SET upd_flag = 1 "),
           Text("UPDATE SITE SET SITE = N'‹DUB01›', DESCRIPTION = N'‹St›. ‹Stephen›''‹s› ‹Green›', CUSTOMER = N'', "
                "upd_flag = 0 WHERE SITE =N'‹DUB01›'"),
           Text("INSERT INTO SITE (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'‹TYO01›',N'‹東京›',N' ',0)"),
           Text("DELETE FROM OBJECT WHERE SITE = N'‹C1›' AND OBJECT = N'‹17›' AND OBJECTNR = N'17'"),
           Text("UPDATE OBJECT SET SITE = N'‹C1›',OBJECT = N'‹17›', OBJECTNR = N'17', SERIALNUMBER= N'‹17›', "
                "INSTALLATION_DATE= {d '2004-01-31'}, DELIVERY_DATE= {d ''}, upd_flag = 0 WHERE SITE = N'‹C1›'AND "
                "OBJECT "
                "= N'‹17›'AND OBJECTNR = N'17'"),
           Text("INSERT INTO OBJECT (SITE, OBJECT, OBJECTNR ,WARRANTY ,INSTALLATION_DATE ,upd_flag )VALUES "
                "(N'‹C1›',N'‹17›',N'17',N'‹17›',{d '2004-01-31'},0)"),
           Text("UPDATE PRIORITY SET PRIORITY = 5, DESCRIPTION = N'‹5›' WHERE PRIORITY =N'5'"),
           Text("UPDATE SITECONTRACT SET SITE = N'‹S1›', TERM = 5, LINE = 30 WHERE SITE =N'‹S1›' AND CONTRACT "
                "=N'‹4711›'AND TERM = 5AND LINE = 30"),
           Text("UPDATE SERIALIZEDITEM SET OBJECT = NULL, INSTALLATION_DATE= 'Jan 31, 2004 10:11:12 AM', upd_flag = 0  "
                "WHERE SITE = NULL AND OBJECT = NULL AND OBJECTNR = N'‹123›'"),
           Text("UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'1/31/2004 10:11:12 AM',101) Where OBJECT.SITE = "
                "N'‹C1›' And OBJECT.OBJECT = N'‹O1›' And OBJECT.OBJECTNR = 3"),
           Text("UPDATE PRODUCT SET EFFECTIVE_DATE = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')"),
           Text("SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY"),
           Text("SELECT COUNT(*) AS counted FROM SITE WHERE upd_flag = 1"),
           Text("UPDATE SITE SET DESCRIPTION = '‹never› ‹closed›"),
           Text("SELECT \"SITE\", [‹Acme›] FROM \"‹Acme›\" -- ‹by› ‹Miller›"),
           Text(""),
       }) {
    EXPECT_EQ(Subject().Statement(Original(marked)), Expected(marked));
  }
}

TEST(Anonymiser, ChangesInDeclarationsWhatIsNotTheProgramsAndKeepsWhatTheyHold) {
  for (const Text& marked : {
           Text("CREATE TABLE SITE (SITE NVARCHAR(10) NOT NULL PRIMARY KEY, ‹ACME›_‹CODE› NVARCHAR2(20) DEFAULT "
                "'‹Acme›', upd_flag INTEGER NOT NULL DEFAULT 0)"),
           Text("CREATE TABLE \"SITE\" (\"SITE\" NVARCHAR(10) CONSTRAINT \"SITE.SITE takes 10 characters\" CHECK "
                "(length(rtrim(\"SITE\", ' ')) <= 10), \"upd_flag\" INT CONSTRAINT \"SITE.upd_flag takes numbers\" "
                "CHECK (typeof(\"upd_flag\") <> 'text'))"),
           Text("CREATE TABLE OBJECT (WEXPIRY_DATE DATE CHECK (WEXPIRY_DATE IS NULL OR WEXPIRY_DATE GLOB "
                "'[0-9]*-[0-9]*-[0-9]*' OR coalesce(date(WEXPIRY_DATE), '') >= '1753-01-01'))"),
           Text("CREATE INDEX SITE_match ON SITE (CUSTOMER)"),
           Text("CREATE VIEW ‹acme›_SITE AS SELECT * FROM SITE WHERE CUSTOMER IN ('‹4711›', '‹Acme›')"),
       }) {
    EXPECT_EQ(Subject().Statement(Original(marked)), Expected(marked));
  }
}

TEST(Anonymiser, KeepsTheWordsOfFailuresAndChangesWhatTheyQuote) {
  for (const Text& marked : {
           Text("Invalid use of Null: getCustomer of Location=‹A1›"),
           Text("Invalid use of Null: getCustomer of Configuration=‹Login› ‹failed›, Object=‹a=b›, ‹c›, "
                "ObjectNumber=12"),
           Text("Type mismatch: NUMBER_OF_PERIODS of SITE=‹C1›, OBJECT=‹Pump›, OBJECTNR=3"),
           Text("UNIQUE constraint failed: SITE.SITE"),
           Text("near \"‹Login›\": syntax error"),
           Text("table \"SITE\" is locked"),
           Text("no such column: ‹ACME›"),
           Text("Violation of PRIMARY KEY constraint '‹PK›_‹acme›'. Cannot insert duplicate key in object 'SITE'. The "
                "duplicate key value is (‹Login› ‹4711›)."),
           Text(
               "duplicate key value violates unique constraint \"‹site›_‹pkey›\" DETAIL:  Key (site)=(‹Login›) already "
               "exists."),
           Text("Failing row contains (‹A1›, ‹North›, ‹123›)."),
           Text("[unixODBC][FreeTDS][SQL Server]String or binary data would be truncated."),
           Text("ORA-12899: value too large for column \"‹ACME›\".\"SITE\".\"DESCRIPTION\" (actual: 31, maximum: 30)"),
           Text("could not connect to server: host \"‹db›.‹acme›.‹example›\", port 5432"),
           Text("customer ‹100234› not found, 12 rows read"),
           Text("Path/File access error: /data/‹acme›/log"),
           Text("The ERP's session isn't open"),
           Text(""),
       }) {
    EXPECT_EQ(Subject().Failure(Original(marked)), Expected(marked));
  }
}

TEST(Anonymiser, ReadsTheRecordsOfLogs) {
  for (const Text& marked : {
           Text("Date: 11/22/2026 Time: 3:52:07 AM"),
           Text("\"Rows copied: SITE -  123456\""),
           Text("\"Date-Time :11/22/2026 : 3:52:07 AM\""),
           Text("\"SQLite\",-2147217873,\"UNIQUE constraint failed: SITE.SITE\""),
           Text("\"ZenqayDBSync\",\"Invalid use of Null: getCustomer of Location=‹A1› \"‹b›\",‹c›\""),
           Text("\"Data copy: Site - Only Changed\",\"Sites could not be copied from the ERP (generation 3).\""),
           Text("Error is - 2021003: The synchronisation method must be 1 (full copy) or 2 (only changed), not "
                "\"‹acme›\".\r\nThe data copy cannot start. Please inform your system administrator."),
           Text("The data copy failed."),
           Text("\""),
           Text(""),
       }) {
    EXPECT_EQ(Subject().LogLine(Original(marked)), Expected(marked));
  }
}

TEST(Anonymiser, KnowsEveryOperationThatTheJobCallsAndEverySourceOfAFailure) {
  const std::regex literal(
      "\"((get|set|has|add|put|create|NetList|write|Update|to|next|kxi)[A-Za-z_]+|[A-Za-z]+ - Only Changed)\"",
      std::regex::icase);
  const std::filesystem::path sources = std::filesystem::path(ZENQAY_SHARE).parent_path() / "src";
  std::set<Text> unknown;
  int count = 0;
  for (const char* folder : {"entities", "erp", "localdb", "job", "startup"}) {
    for (const auto& file : std::filesystem::directory_iterator(sources / folder)) {
      const Text source = ContentOf(file.path());
      for (std::sregex_iterator found(source.begin(), source.end(), literal), end; found != end; ++found) {
        ++count;
        const Text text = (*found)[1];
        if (Subject().Failure(text) != text) unknown.insert(text);
      }
    }
  }

  EXPECT_GT(count, 300);
  EXPECT_EQ(unknown, std::set<Text>());
}

TEST(Anonymiser, KeepsEveryTextThatThePageOfFailuresQuotes) {
  const std::vector<std::string_view> parts = Split(FailuresPage(), "`");
  ASSERT_GT(parts.size(), 200U);
  for (std::size_t i = 1; i < parts.size(); i += 2) {
    if (parts[i].find_first_of("\"'=") != std::string_view::npos) continue;  // an example with values
    EXPECT_EQ(Subject().Failure(parts[i]), parts[i]);
  }
}

}  // namespace
}  // namespace zenqay
