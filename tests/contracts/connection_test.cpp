#include "contracts/connection.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/scripted_database.h"

namespace zenqay {
namespace {

struct Statements {
  Journal journal;
  ScriptedDatabase database{journal};
  std::shared_ptr<Connection> connection = database.CreateConnection();
};

TEST(Execute, AsksForTheCountOnlyWithAReceiver) {
  Statements statements;
  statements.database.AffectNext({7, 8, 9});
  std::int16_t short16 = 0;
  std::int32_t long32 = 0;
  Text text;

  statements.connection->Execute("A");
  statements.connection->Execute("B", short16);
  statements.connection->Execute("C", long32);
  statements.connection->Execute("D", text);

  EXPECT_EQ(statements.journal.Take(), "sql A\nsql B -> 7\nsql C -> 8\nsql D -> 9\n");
  EXPECT_EQ(short16, 7);
  EXPECT_EQ(long32, 8);
  EXPECT_EQ(text, "9");
}

TEST(Execute, RaisesForACountThatDoesNotFitItsReceiverWhenTheStatementHasRun) {
  Statements statements;
  statements.database.AffectNext({32768, 2147483648, 2147483648});
  std::int16_t short16 = 1;
  std::int32_t long32 = 1;
  Text text;

  EXPECT_EQ(Raised([&] { statements.connection->Execute("A", short16); }), "6 ZenqayDBSync: Overflow");
  EXPECT_EQ(Raised([&] { statements.connection->Execute("B", long32); }), "6 ZenqayDBSync: Overflow");
  statements.connection->Execute("C", text);

  EXPECT_EQ(statements.journal.Take(), "sql A -> 32768\nsql B -> 2147483648\nsql C -> 2147483648\n");
  EXPECT_EQ(short16, 1);
  EXPECT_EQ(long32, 1);
  EXPECT_EQ(text, "2147483648");
}

TEST(Errors, AreReplacedByTheNextFailureAndCleared) {
  Errors errors;

  errors.Replace({{1, "driver", "one"}, {2, "driver", "two"}});
  EXPECT_EQ(errors.count(), 2);
  errors.Replace({{3, "driver", "three"}});
  EXPECT_EQ(errors.count(), 1);
  EXPECT_EQ(errors.begin()->Number, 3);
  errors.Clear();

  EXPECT_EQ(errors.count(), 0);
  EXPECT_TRUE(errors.begin() == errors.end());
}

constexpr const char* kClosed = "3704 ZenqayDBSync: Operation is not allowed when the object is closed.";
constexpr const char* kNoUsableConnection =
    "3709 ZenqayDBSync: The connection cannot be used to perform this operation. It is either closed or invalid in "
    "this "
    "context.";

struct Query : Statements {
  Text Open(const std::shared_ptr<Connection>& over) {
    return Raised([&] { rows->Open("Q", over, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText); });
  }

  std::shared_ptr<Recordset> rows = database.CreateRecordset();
};

TEST(Recordset, AsksItsConnectionForTheRows) {
  Query query;
  query.database.Answer("Q", {{{"site", "A1"}}, {{"site", "A2"}}});

  EXPECT_EQ(query.Open(query.connection), "nothing");

  EXPECT_EQ(query.rows->RecordCount(), 2);
  EXPECT_EQ(query.rows->FieldValue("SITE"), Value("A1"));
  query.rows->MoveNext();
  EXPECT_EQ(query.rows->FieldValue("SITE"), Value("A2"));
  EXPECT_EQ(query.journal.Take(), "query Q\n");
}

TEST(Recordset, TakesTheConnectionOfItsOpeningOrTheOneThatWasPut) {
  Query query;
  EXPECT_EQ(query.Open(nullptr), kNoUsableConnection);

  query.rows->PutActiveConnection(query.connection);
  EXPECT_EQ(query.Open(nullptr), "nothing");
  query.rows->Close();
  query.rows->PutActiveConnection(nullptr);
  EXPECT_EQ(query.Open(nullptr), kNoUsableConnection);
  EXPECT_EQ(query.Open(query.connection), "nothing");
  query.rows->Close();
  EXPECT_EQ(query.Open(nullptr), "nothing");  // it has become the active one
}

TEST(Recordset, CannotBeOpenedTwiceNorReadWhileItIsClosed) {
  Query query;
  const auto expectClosed = [&] {
    EXPECT_EQ(query.rows->State(), 0);
    EXPECT_EQ(Raised([&] { query.rows->AtEnd(); }), kClosed);
    EXPECT_EQ(Raised([&] { query.rows->AtBeginning(); }), kClosed);
    EXPECT_EQ(Raised([&] { query.rows->RecordCount(); }), kClosed);
    EXPECT_EQ(Raised([&] { query.rows->MoveNext(); }), kClosed);
    EXPECT_EQ(Raised([&] { query.rows->FieldValue("a"); }), kClosed);
    EXPECT_EQ(Raised([&] { query.rows->Close(); }), kClosed);
  };

  expectClosed();
  EXPECT_EQ(query.Open(query.connection), "nothing");
  EXPECT_EQ(query.rows->State(), 1);
  EXPECT_EQ(query.Open(query.connection), "3705 ZenqayDBSync: Operation is not allowed when the object is open.");
  query.rows->Close();
  expectClosed();
  query.database.FailOn("Q", RuntimeError(1, "Driver", "refused"));
  EXPECT_EQ(query.Open(query.connection), "1 Driver: refused");
  expectClosed();
}

TEST(Recordset, KnowsItsFieldsWithoutARowAndItsRowsWithoutAField) {
  Query query;
  query.database.Answer("Q", {{{"site", "A1"}}});
  query.Open(query.connection);
  const Text noField =
      "3265 ZenqayDBSync: Item cannot be found in the collection corresponding to the requested name or ordinal.: b";
  const Text noRow =
      "3021 ZenqayDBSync: Either BOF or EOF is True, or the current record has been deleted. Requested operation "
      "requires a current record.";

  EXPECT_EQ(Raised([&] { query.rows->FieldValue("b"); }), noField);
  query.rows->MoveNext();

  EXPECT_EQ(Raised([&] { query.rows->FieldValue("b"); }), noField);
  EXPECT_EQ(Raised([&] { query.rows->FieldValue("site"); }), noRow);
  EXPECT_EQ(Raised([&] { query.rows->MoveNext(); }), noRow);
}

TEST(Field, StandsForWhatItHoldsInTheCurrentRow) {
  Statements statements;
  statements.database.Answer("Q", {{{"tableid", std::int32_t{5}}}, {{"tableid", Null()}}});
  const auto rows = statements.database.CreateRecordset();
  rows->Open("Q", statements.connection, CursorType::Keyset, LockType::Optimistic, CommandType::Unspecified);
  const Object field(std::make_shared<Field>(rows, "TableID"));

  EXPECT_EQ(Shown(Value(field)), "field(TableID=5)");
  EXPECT_EQ(Value(field).AsText(), "5");
  EXPECT_EQ(Shown(field.Get("value")), "i32(5)");
  EXPECT_EQ(Shown(field.Get("Name")), "\"TableID\"");
  rows->MoveNext();

  EXPECT_EQ(Shown(field.Get("Value")), "null");
  EXPECT_FALSE(Value(field).EqualsNumber(99));
  EXPECT_EQ(Raised([&] { Value(field).AsText(); }), "94 ZenqayDBSync: Invalid use of Null");
}

TEST(Field, HasNoOtherOperation) {
  const Object field(std::make_shared<Field>(nullptr, "TableID"));

  EXPECT_EQ(Raised([&] { field.Call("Value"); }), "438 TableID: Object doesn't support this property or method: Value");
  EXPECT_EQ(Raised([&] { field.Get("Size"); }), "438 TableID: Object doesn't support this property or method: Size");
}

}  // namespace
}  // namespace zenqay
