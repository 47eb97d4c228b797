#include "trace/traced_database.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/scripted_database.h"
#include "doubles/temp_directory.h"
#include "doubles/trace_text.h"

namespace zenqay {
namespace {

const RuntimeError kRefused(-2147467259, "Driver", "refused");

class TracedDatabaseTest : public testing::Test {
 protected:
  Text Lines() const { return WithoutTimes(directory.Read("trace.jsonl")); }

  TempDirectory directory;
  Journal journal;
  ScriptedDatabase inner{journal};
  Trace trace{(directory.path() / "trace.jsonl").string(), "1.2.3"};
  TracedDatabase database{inner, trace};
};

TEST_F(TracedDatabaseTest, WritesALineForEachThingThatAConnectionIsAsked) {
  inner.AffectNext({7, 40'000});
  const auto connection = database.CreateConnection();
  connection->PutConnectionTimeout(0);
  connection->PutCommandTimeout(0);
  connection->PutConnectionString("Provider=SQLOLEDB;User ID=sync;Password=secret");
  std::int16_t small = 0;
  std::int32_t large = 0;

  connection->Open();
  connection->Execute("SET DATEFORMAT YMD");
  connection->PutDefaultDatabase(" SERVICE ");
  const Text name = connection->DefaultDatabase();
  connection->Execute("UPDATE Site SET SITE = N'Zürich \"1\"\\' WHERE SITE =N'Zürich'", small);
  connection->Execute("UPDATE OBJECT SET WEXPIRY_DATE = NULL", large);
  connection->Close();

  EXPECT_EQ(Lines(),
            R"({"n":1,"kind":"open","connection":1})"
            "\n"
            R"({"n":2,"kind":"sql","connection":1,"text":"SET DATEFORMAT YMD"})"
            "\n"
            R"({"n":3,"kind":"database","connection":1,"put":" SERVICE "})"
            "\n"
            R"({"n":4,"kind":"database","connection":1,"get":" SERVICE "})"
            "\n"
            R"({"n":5,"kind":"sql","connection":1,"text":"UPDATE Site SET SITE = N'Zürich \"1\"\\' WHERE SITE )"
            R"(=N'Zürich'","affected":7})"
            "\n"
            R"({"n":6,"kind":"sql","connection":1,"text":"UPDATE OBJECT SET WEXPIRY_DATE = NULL","affected":40000})"
            "\n"
            R"({"n":7,"kind":"close","connection":1})"
            "\n");
  EXPECT_EQ(name, " SERVICE ");
  EXPECT_EQ(small, 7);
  EXPECT_EQ(large, 40'000);
}

TEST_F(TracedDatabaseTest, PassesEverythingToTheDatabaseAsItCame) {
  inner.showSettings = true;
  inner.showQueryOptions = true;
  const auto connection = database.CreateConnection();
  connection->PutConnectionTimeout(0);
  connection->PutCommandTimeout(5);
  connection->PutConnectionString("Provider=MSDAORA");
  connection->Open();
  connection->PutDefaultDatabase("SERVICE");
  connection->DefaultDatabase();
  const auto recordset = database.CreateRecordset();
  recordset->PutActiveConnection(connection);
  recordset->Open("SELECT 1", connection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
  recordset->Close();
  connection->Execute("DELETE FROM Site");
  connection->Close();

  EXPECT_EQ(journal.Take(),
            "put ConnectionTimeout 0\n"
            "put CommandTimeout 5\n"
            "put ConnectionString Provider=MSDAORA\n"
            "open\n"
            "put DefaultDatabase SERVICE\n"
            "get DefaultDatabase\n"
            "put ActiveConnection\n"
            "query SELECT 1 [keyset optimistic text]\n"
            "close recordset\n"
            "sql DELETE FROM Site\n"
            "close\n");
}

TEST_F(TracedDatabaseTest, NumbersTheConnectionsAsTheyAreMade) {
  const auto first = database.CreateConnection();
  const auto second = database.CreateConnection();

  second->Open();
  first->Open();

  EXPECT_EQ(Lines(), R"({"n":1,"kind":"open","connection":2})"
                     "\n"
                     R"({"n":2,"kind":"open","connection":1})"
                     "\n");
}

TEST_F(TracedDatabaseTest, WritesAQueryWithTheNumberOfItsRowsAndNotItsReading) {
  inner.Answer("SELECT tableid FROM tstreenodes", {{{"tableid", 5}}, {{"tableid", Null()}}});
  database.CreateConnection();
  const auto connection = database.CreateConnection();
  const auto recordset = database.CreateRecordset();
  recordset->PutActiveConnection(connection);

  EXPECT_EQ(recordset->State(), 0);
  recordset->Open("SELECT tableid FROM tstreenodes", connection, CursorType::Static, LockType::ReadOnly,
                  CommandType::Unspecified);

  EXPECT_EQ(recordset->State(), 1);
  EXPECT_EQ(recordset->RecordCount(), 2);
  EXPECT_FALSE(recordset->AtBeginning());
  EXPECT_EQ(recordset->FieldValue("TableID"), Value(5));
  recordset->MoveNext();
  EXPECT_EQ(recordset->FieldValue("TableID"), Value(Null()));
  EXPECT_FALSE(recordset->AtEnd());
  recordset->MoveNext();
  EXPECT_TRUE(recordset->AtEnd());
  recordset->Close();
  EXPECT_EQ(Lines(), R"({"n":1,"kind":"query","connection":2,"text":"SELECT tableid FROM tstreenodes","rows":2})"
                     "\n");
}

TEST_F(TracedDatabaseTest, WritesTheQueryOfARecordsetWhoseConnectionWasPutBefore) {
  const auto connection = database.CreateConnection();
  const auto recordset = database.CreateRecordset();
  recordset->PutActiveConnection(connection);

  recordset->Open("SELECT 1", nullptr, CursorType::Static, LockType::ReadOnly, CommandType::Unspecified);

  EXPECT_EQ(Lines(), R"({"n":1,"kind":"query","connection":1,"text":"SELECT 1","rows":0})"
                     "\n");
}

TEST_F(TracedDatabaseTest, WritesNothingOfARecordsetWithoutAConnectionWhichRefusesAsWithoutATrace) {
  const auto recordset = database.CreateRecordset();

  EXPECT_EQ(Raised([&] {
              recordset->Open("SELECT 1", nullptr, CursorType::Static, LockType::ReadOnly, CommandType::Unspecified);
            }),
            "3709 ZenqayDBSync: The connection cannot be used to perform this operation. It is either closed or "
            "invalid in this context.");
  recordset->PutActiveConnection(nullptr);

  EXPECT_EQ(Lines(), "");
}

TEST_F(TracedDatabaseTest, WritesAsAnErrorWhateverWasThrown) {
  const auto connection = database.CreateConnection();
  journal.FailAtLine(0, std::make_exception_ptr(std::bad_alloc()));

  EXPECT_THROW(connection->Execute("DELETE FROM Site"), std::bad_alloc);

  EXPECT_EQ(Lines(), R"({"n":1,"kind":"sql","connection":1,"text":"DELETE FROM Site","error":{"number":7,)"
                     R"("source":"ZenqayDBSync","description":"Out of memory"}})"
                     "\n");
}

TEST_F(TracedDatabaseTest, WritesTheErrorInPlaceOfTheResultAndPassesItOn) {
  inner.FailCall("open", kRefused);
  inner.FailCall("close", {3704, "ADODB", "not \"open\""});
  inner.FailCall("put DefaultDatabase", {911, "Driver", "no such database"});
  inner.FailCall("get DefaultDatabase", {911, "Driver", "no database"});
  inner.FailOn("Site", {-2147217865, "Driver", "no such table"});
  const auto connection = database.CreateConnection();
  const auto recordset = database.CreateRecordset();
  std::int16_t rows = 0;

  EXPECT_EQ(Raised([&] { connection->Open(); }), "-2147467259 Driver: refused");
  EXPECT_EQ(Raised([&] { connection->PutDefaultDatabase("SERVICE"); }), "911 Driver: no such database");
  EXPECT_EQ(Raised([&] { connection->DefaultDatabase(); }), "911 Driver: no database");
  EXPECT_EQ(Raised([&] { connection->Execute("DELETE FROM Site"); }), "-2147217865 Driver: no such table");
  EXPECT_EQ(Raised([&] { connection->Execute("UPDATE Site", rows); }), "-2147217865 Driver: no such table");
  EXPECT_EQ(Raised([&] {
              recordset->Open("SELECT * FROM Site", connection, CursorType::Keyset, LockType::Optimistic,
                              CommandType::SqlText);
            }),
            "-2147217865 Driver: no such table");
  EXPECT_EQ(Raised([&] { connection->Close(); }), "3704 ADODB: not \"open\"");

  EXPECT_EQ(Lines(),
            R"({"n":1,"kind":"open","connection":1,"error":{"number":-2147467259,"source":"Driver",)"
            R"("description":"refused"}})"
            "\n"
            R"({"n":2,"kind":"database","connection":1,"put":"SERVICE","error":{"number":911,"source":"Driver",)"
            R"("description":"no such database"}})"
            "\n"
            R"({"n":3,"kind":"database","connection":1,"error":{"number":911,"source":"Driver",)"
            R"("description":"no database"}})"
            "\n"
            R"({"n":4,"kind":"sql","connection":1,"text":"DELETE FROM Site","error":{"number":-2147217865,)"
            R"("source":"Driver","description":"no such table"}})"
            "\n"
            R"({"n":5,"kind":"sql","connection":1,"text":"UPDATE Site","error":{"number":-2147217865,)"
            R"("source":"Driver","description":"no such table"}})"
            "\n"
            R"({"n":6,"kind":"query","connection":1,"text":"SELECT * FROM Site","error":{"number":-2147217865,)"
            R"("source":"Driver","description":"no such table"}})"
            "\n"
            R"({"n":7,"kind":"close","connection":1,"error":{"number":3704,"source":"ADODB",)"
            R"("description":"not \"open\""}})"
            "\n");
}

TEST_F(TracedDatabaseTest, WritesTheCountOfAStatementWhoseReceiverIsTooSmallForIt) {
  inner.AffectNext({40'000});
  const auto connection = database.CreateConnection();
  std::int16_t rows = 0;

  EXPECT_EQ(Raised([&] { connection->Execute("DELETE FROM Site", rows); }), "6 ZenqayDBSync: Overflow");

  EXPECT_EQ(Lines(), R"({"n":1,"kind":"sql","connection":1,"text":"DELETE FROM Site","affected":40000})"
                     "\n");
}

TEST_F(TracedDatabaseTest, GivesTheLiveErrorCollectionOfTheConnection) {
  inner.FailOn("Site", kRefused, {{-2147217865, "Driver", "no such table"}});
  const auto connection = database.CreateConnection();
  const std::shared_ptr<Errors> errors = connection->ErrorCollection();

  EXPECT_EQ(Raised([&] { connection->Execute("DELETE FROM Site"); }), "-2147467259 Driver: refused");

  EXPECT_EQ(errors->count(), 1);
  EXPECT_EQ(errors, connection->ErrorCollection());
}

TEST_F(TracedDatabaseTest, NeverWritesTheConnectionString) {
  inner.FailCall("open", kRefused);
  const auto connection = database.CreateConnection();
  connection->PutConnectionString("Provider=SQLOLEDB;Password=secret");

  EXPECT_EQ(Raised([&] { connection->Open(); }), "-2147467259 Driver: refused");

  EXPECT_EQ(Lines().find("secret"), Text::npos);
  EXPECT_EQ(Lines().find("Provider"), Text::npos);
}

}  // namespace
}  // namespace zenqay
