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
