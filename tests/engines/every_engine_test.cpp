#include "engines/every_engine.h"

namespace zenqay {
namespace {

constexpr const char* kClosed = "3704 ZenqayDBSync: Operation is not allowed when the object is closed.";
constexpr const char* kOpenAlready = "3705 ZenqayDBSync: Operation is not allowed when the object is open.";
constexpr const char* kNoCommandText = "-2147217908 ZenqayDBSync: Command text was not set for the command object.";

TEST_P(EveryConnection, RefusesEveryOperationWhileItIsClosed) {
  const auto opened = Connect();
  opened->Close();
  for (const auto& connection : {databases_.CreateConnection(), opened}) {
    EXPECT_EQ(Raised([&] { connection->Execute("SELECT 1"); }), kClosed);
    EXPECT_EQ(Raised([&] { connection->Execute(""); }), kClosed);
    EXPECT_EQ(Raised([&] { connection->PutDefaultDatabase("SERVICE"); }), kClosed);
    EXPECT_EQ(Raised([&] { connection->DefaultDatabase(); }), kClosed);
    EXPECT_EQ(Raised([&] { connection->Close(); }), kClosed);
    EXPECT_EQ(Raised([&] { Query(connection, "SELECT 1"); }), kClosed);
  }
}

TEST_P(EveryConnection, CanBeOpenedAgainOnceItIsClosed) {
  const auto connection = Connect();
  EXPECT_EQ(Raised([&] { connection->Open(); }), kOpenAlready);

  connection->Close();
  connection->Open();

  EXPECT_EQ(Raised([&] { connection->Execute("SELECT 1"); }), "nothing");
}

TEST_P(EveryConnection, KeepsTheDefaultDatabaseAsAName) {
  const auto connection = Connect();

  connection->PutDefaultDatabase("SERVICE");

  EXPECT_EQ(connection->DefaultDatabase(), "SERVICE");
}

TEST_P(EveryConnection, RefusesAnEmptyStatementWithoutAnItem) {
  const auto connection = Connect();
  for (const char* statement : {"", " ", "    "}) {
    EXPECT_EQ(Raised([&] { connection->Execute(statement); }), kNoCommandText);
    EXPECT_EQ(connection->ErrorCollection()->count(), 0);
    EXPECT_EQ(Raised([&] { Query(connection, statement); }), kNoCommandText);
  }
}

TEST_P(EveryDatabase, CountsTheRowsThatAStatementTouches) {
  const auto connection = ConnectToSites();
  const std::pair<const char*, std::int32_t> cases[] = {
      {"UPDATE SITES SET upd_flag = 1 ", 2},
      {"UPDATE SITES SET upd_flag = 0WHERE SITE =N'A1'", 1},
      {"UPDATE SITES SET upd_flag = 0 WHERE SITE =N'none'", 0},
      {"SELECT * FROM SITES", 0},
      {"INSERT INTO SITES (SITE,upd_flag )VALUES (N'A3',1)", 1},
      {"INSERT INTO SITES (SITE,upd_flag )VALUES (N'A4',1), (N'A5',1)", 2},
      {"CREATE INDEX FLAGS ON SITES (upd_flag)", 0},
      {"UPDATE STATISTICS SITES", 0},
      {"SET DATEFORMAT YMD", 0},
      {"DELETE FROM SITES WHERE upd_flag = 1", 4},
  };
  for (const auto& [statement, rows] : cases) {
    std::int32_t touched = -1;
    connection->Execute(statement, touched);
    EXPECT_EQ(touched, rows) << statement;
  }
}

TEST_P(EveryDatabase, PutsTheCountIntoEachReceiver) {
  const auto connection = ConnectToSites();
  std::int16_t narrow = -1;
  std::int32_t wide = -1;
  Text text;

  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9'", narrow);
  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9' WHERE SITE =N'A1'", wide);
  connection->Execute("UPDATE SITES SET CUSTOMER = N'C9' WHERE SITE =N'A9'", text);

  EXPECT_EQ(narrow, 2);
  EXPECT_EQ(wide, 1);
  EXPECT_EQ(text, "0");
}

TEST_P(EveryDatabase, RaisesOverflowForMoreRowsThanTheReceiverHoldsAfterTheStatementHasRun) {
  const auto connection = Connect();
  connection->Execute(
      "CREATE TABLE T AS WITH RECURSIVE n(a) AS (SELECT 1 UNION ALL SELECT a + 1 FROM n WHERE a < 40000) SELECT a FROM "
      "n");
  std::int16_t narrow = -1;
  std::int32_t wide = -1;

  EXPECT_EQ(Raised([&] { connection->Execute("UPDATE T SET a = 0", narrow); }), "6 ZenqayDBSync: Overflow");
  connection->Execute("DELETE FROM T WHERE a = 0", wide);

  EXPECT_EQ(narrow, -1);
  EXPECT_EQ(wide, 40000);
}

TEST_P(EveryDatabase, ReadsTheRowsForward) {
  const auto connection = ConnectToSites();

  const auto sites = Query(connection, "SELECT * FROM SITES WHERE SITE LIKE N'A%' ORDER BY SITE");

  EXPECT_EQ(sites->State(), 1);
  EXPECT_EQ(sites->RecordCount(), 2);
  EXPECT_FALSE(sites->AtBeginning());
  EXPECT_FALSE(sites->AtEnd());
  EXPECT_EQ(sites->FieldValue("SITE"), Value("A1"));
  EXPECT_EQ(sites->FieldValue("Customer"), Value("C1"));
  EXPECT_EQ(sites->FieldValue("lutm").AsText(), "1/31/2004 10:11:12 AM");
  EXPECT_EQ(sites->FieldValue("UPD_FLAG"), Value(0));
  sites->MoveNext();
  EXPECT_EQ(sites->FieldValue("site"), Value("A2"));
  EXPECT_TRUE(sites->FieldValue("customer").IsNull());
  EXPECT_TRUE(sites->FieldValue("LUTM").IsNull());
  sites->MoveNext();
  EXPECT_TRUE(sites->AtEnd());
  EXPECT_FALSE(sites->AtBeginning());
  EXPECT_EQ(sites->RecordCount(), 2);
  sites->Close();
  EXPECT_EQ(sites->State(), 0);
}

TEST_P(EveryDatabase, KnowsTheFieldsOfAnEmptyResult) {
  const auto connection = ConnectToSites();

  const auto sites = Query(connection, "SELECT * FROM SITES WHERE SITE = N'none'");

  EXPECT_TRUE(sites->AtBeginning());
  EXPECT_TRUE(sites->AtEnd());
  EXPECT_EQ(sites->RecordCount(), 0);
  EXPECT_TRUE(Raised([&] { sites->FieldValue("SITE"); }).starts_with("3021 "));
  EXPECT_TRUE(Raised([&] { sites->FieldValue("Nothing"); }).starts_with("3265 "));
}

TEST_P(EveryDatabase, TakesTheFirstFieldOfANameThatAJoinHasTwice) {
  const auto connection = Connect();
  connection->Execute("CREATE TABLE OBJECT (OBJECT VARCHAR(10), WARRANTY VARCHAR(10))");
  connection->Execute("CREATE TABLE WARRANTIES (WARRANTY VARCHAR(10), PERIODS INTEGER)");
  connection->Execute("INSERT INTO OBJECT VALUES (N'O1', N'W\\12')");
  connection->Execute("INSERT INTO WARRANTIES VALUES (N'W\\%', 5)");

  const auto joined =
      Query(connection, "SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY");

  ASSERT_EQ(joined->RecordCount(), 1);
  EXPECT_EQ(joined->FieldValue("warranty"), Value("W\\12"));
  EXPECT_EQ(joined->FieldValue("OBJECT"), Value("O1"));
  EXPECT_EQ(joined->FieldValue("PERIODS"), Value(5));
}

TEST_P(EveryDatabase, KeepsARecordsetAsItWasWhileStatementsRun) {
  const auto connection = ConnectToSites();
  const auto other = Connect();
  const auto sites = Query(connection, "SELECT * FROM SITES ORDER BY SITE");

  Text seen;
  for (; !sites->AtEnd(); sites->MoveNext()) {
    const Text site = sites->FieldValue("SITE").AsText();
    std::int16_t touched = 0;
    connection->Execute("UPDATE SITES SET SITE = N'" + site + "x', CUSTOMER = N'C7' WHERE SITE = N'" + site + "'",
                        touched);
    other->Execute("INSERT INTO SITES (SITE,upd_flag) VALUES (N'B" + site + "',0)");
    seen += site + "|" + sites->FieldValue("CUSTOMER").Joined() + "|" + std::to_string(touched) + "\n";
  }

  EXPECT_EQ(seen, "A1|C1|1\nA2||1\n");
  EXPECT_EQ(sites->RecordCount(), 2);
  EXPECT_EQ(Query(other, "SELECT * FROM SITES WHERE CUSTOMER = N'C7'")->RecordCount(), 2);
  EXPECT_EQ(Query(connection, "SELECT * FROM SITES")->RecordCount(), 4);
}

TEST_P(EveryDatabase, KeepsARecordsetWhoseConnectionIsGone) {
  auto connection = ConnectToSites();
  const auto sites = Query(connection, "SELECT * FROM SITES ORDER BY SITE");
  connection->Close();
  sites->PutActiveConnection(nullptr);
  connection.reset();

  sites->MoveNext();

  EXPECT_EQ(sites->FieldValue("SITE"), Value("A2"));
}

TEST_P(EveryDatabase, ReadsBackWhatALiteralHolds) {
  const auto connection = Connect();
  connection->Execute("CREATE TABLE TEXTS (NUMBER INTEGER, CONTENT TEXT)");
  const std::vector<Text> contents = {"",
                                      " ",
                                      "Größe 東京 😀",
                                      "it's",
                                      "a\\n\\",
                                      "1WHERE",
                                      "{d '2004-01-31'}",
                                      "CONVERT(DATETIME,'x',120)",
                                      "N'x",
                                      "\"[",
                                      "-- /*",
                                      ";",
                                      Text(100'000, 'x'),
                                      "\r\n",
                                      "?",
                                      "%_"};
  for (std::size_t i = 0; i < contents.size(); ++i) {
    connection->Execute("INSERT INTO TEXTS VALUES (" + std::to_string(i) + ",N'" + Replaced(contents[i], "'", "''") +
                        "')");
  }

  const auto rows = Query(connection, "SELECT * FROM TEXTS ORDER BY NUMBER");

  for (const Text& content : contents) {
    EXPECT_EQ(rows->FieldValue("CONTENT"), Value(content)) << content.substr(0, 50);
    rows->MoveNext();
  }
  EXPECT_TRUE(rows->AtEnd());
}

TEST_P(EveryDatabase, ReadsBackEveryFormOfADate) {
  const auto connection = ConnectToSites();
  const std::pair<const char*, const char*> cases[] = {
      {"CONVERT(DATETIME,'2004-02-29 23:59:59',120)", "2004-02-29 23:59:59"},
      {"CONVERT(DATETIME,'1/31/2004',101)", "2004-01-31 00:00:00"},
      {"TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')", "2004-01-31 10:11:12"},
      {"{d '2004-01-31'}", "2004-01-31 00:00:00"},
      {"'Jan 31, 2004 10:11:12 PM'", "2004-01-31 22:11:12"},
      {"'2004-01-31 00:00:00'", "2004-01-31 00:00:00"},
      {"CONVERT(DATETIME,'0987-06-05 00:00:00',120)", "987-06-05 00:00:00"},
      {"NULL", ""},
  };
  for (const auto& [literal, date] : cases) {
    connection->Execute(Text("UPDATE SITES SET LUTM = ") + literal + " WHERE SITE =N'A1'");
    const Value value = Query(connection, "SELECT LUTM FROM SITES WHERE SITE =N'A1'")->FieldValue("lutm");
    EXPECT_EQ(value.IsNull() ? "" : IsoText(value.AsDateTime()), date) << literal;
    EXPECT_TRUE(value.IsNull() || value.Is<DateTime>()) << literal;
  }
}

TEST_P(EveryDatabase, NumbersWhatItRefusesAndGoesOn) {
  const auto connection = ConnectToSites();
  const auto errors = connection->ErrorCollection();
  const std::pair<const char*, std::int32_t> cases[] = {
      {"INSERT INTO SITES (SITE,upd_flag) VALUES (N'A1',0)", -2147217873},
      {"INSERT INTO SITES (SITE,upd_flag) VALUES (N'A9',NULL)", -2147217873},
      {"UPDATE NOWHERE SET a = 1", -2147217865},
      {"UPDATE STATISTICS NOWHERE", -2147217865},
      {"SELECT * FROM NOWHERE", -2147217865},
      {"UPDATE SITES SET NOTHING = 1", -2147217900},
      {"UPDATE SITES SET", -2147217900},
      {"SELECT * FROM SITES WHERE SITE = N'it's'", -2147217900},
      {"UPDATE SITES SET LUTM = {d '2003-02-29'}", -2147217913},
      {"UPDATE SITES SET LUTM = CONVERT(DATETIME,'x',120)", -2147217913},
  };
  for (const auto& [statement, number] : cases) {
    SCOPED_TRACE(statement);
    for (const bool isQuery : {false, true}) {
      try {
        isQuery ? void(Query(connection, statement)) : connection->Execute(statement);
        ADD_FAILURE();
      } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), number);
        EXPECT_EQ(error.sqlState().size(), 5u);
        EXPECT_EQ(error.statement(), statement);
        EXPECT_EQ(error.description().find('\n'), Text::npos);
        ASSERT_EQ(errors->count(), 1);
        EXPECT_EQ(errors->begin()->Number, number);
        EXPECT_EQ(errors->begin()->Description, error.description());
        EXPECT_EQ(errors->begin()->SqlState, error.sqlState());
      }
    }
  }
  EXPECT_EQ(Query(connection, "SELECT * FROM SITES")->RecordCount(), 2);
  EXPECT_EQ(errors->count(), 1);  // a success leaves them
  EXPECT_EQ(Raised([&] { connection->Execute(""); }), kNoCommandText);
  EXPECT_EQ(errors->count(), 0);  // a failure that the database knows nothing of does not
  EXPECT_EQ(errors, connection->ErrorCollection());
}

TEST_P(EveryDatabase, NamesItselfAsTheSource) {
  const auto connection = Connect();

  EXPECT_TRUE(Raised([&] {
                connection->Execute("UPDATE NOWHERE SET a = 1");
              }).starts_with("-2147217865 " + database_->source + ": "));
}

TEST_P(EveryDatabase, CommitsEachStatementByItself) {
  const auto connection = ConnectToSites();
  const auto other = Connect();

  Raised([&] { connection->Execute("UPDATE SITES SET NOTHING = 1"); });
  connection->Execute("UPDATE SITES SET CUSTOMER = N'C5'");

  EXPECT_EQ(Query(other, "SELECT * FROM SITES WHERE CUSTOMER = N'C5'")->RecordCount(), 2);
}

}  // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryConnection);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryDatabase);

}  // namespace zenqay
