#include <gtest/gtest.h>

#include "components/jvm/jvm_fixture.h"
#include "contracts/connection.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kAllPlanes = "A \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80 \xF4\x8F\xBF\xBF";

Text Outcome(const Text& operation, const Value& argument) {
  Text outcome;
  const Text raised = Raised([&] { outcome = NewSample().Call(operation, argument).AsText(); });
  return raised == "nothing" ? outcome : raised;
}

/// One row of one field, and how often the field was read.
struct CountedField {
  Value value;
  int readings = 0;
};

class Rows : public QueryRows {
 public:
  explicit Rows(CountedField& field) : field_(field) {}

  const std::vector<Text>& columns() const override { return columns_; }
  std::int64_t count() const override { return 1; }
  bool Next() override { return true; }
  bool atRow() const override { return true; }
  Value Field(std::size_t) const override {
    ++field_.readings;
    return field_.value;
  }

 private:
  CountedField& field_;
  std::vector<Text> columns_ = {"TableID"};
};

/// A connection that answers every query with that row.
class RowsConnection : public Connection {
 public:
  explicit RowsConnection(CountedField& field) : field_(field) {}

  void PutConnectionTimeout(std::int16_t) override {}
  void PutCommandTimeout(std::int16_t) override {}
  void PutConnectionString(const Text&) override {}
  void Open() override {}
  void PutDefaultDatabase(const Text&) override {}
  Text DefaultDatabase() override { return ""; }
  std::shared_ptr<Errors> ErrorCollection() override { return std::make_shared<Errors>(); }
  void Close() override {}
  bool TakeLock(const Text&) override { return true; }
  void GiveLockBack(const Text&) override {}
  std::int64_t Run(const Text&, Count) override { return 0; }
  std::unique_ptr<QueryRows> RowsOf(const Text&, CursorType, LockType, CommandType) override {
    return std::make_unique<Rows>(field_);
  }

 private:
  CountedField& field_;
};

std::shared_ptr<Recordset> RowsOf(CountedField& field) {
  auto rows = std::make_shared<Recordset>();
  rows->Open("", std::make_shared<RowsConnection>(field), CursorType::Keyset, LockType::Optimistic,
             CommandType::SqlText);
  return rows;
}

TEST(JavaResult, KeepsItsType) {
  const Object sample = NewSample();
  const struct {
    const char* operation;
    Value expected;
  } cases[] = {
      {"aByte", std::int16_t{-128}},
      {"aChar", "\xC3\xA4"},
      {"aShort", std::int16_t{-32768}},
      {"anInt", std::int32_t{2147483647}},
      {"aLong", 4294967296.0},
      {"aFloat", 1.5},
      {"aDouble", 0.1},
      {"aBoolean", true},
      {"boxedInt", std::int32_t{5}},
      {"boxedText", "text"},
      {"aDecimal", 12.5},
      {"aBigInteger", 10.0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(sample.Call(c.operation), c.expected) << c.operation;
  }
}

TEST(JavaResult, IsEmptyWithoutAResult) {
  EXPECT_EQ(NewSample().Call("setTitle", "x"), Value());
}

TEST(JavaResult, IsNullWhereAValueWasDeclaredOrMayHaveBeen) {
  const Object sample = NewSample();

  for (const char* operation : {"nullText", "nullNumber", "nullAnything"}) {
    EXPECT_EQ(sample.Call(operation), Value(Null())) << operation;
  }
}

TEST(JavaResult, IsAnEmptyReferenceWhereAnObjectWasDeclared) {
  EXPECT_EQ(NewSample().Call("nullObject"), Value(Object()));
}

TEST(JavaResult, StaysAnObjectWhenItIsADate) {
  const Object date = NewSample().Call("aDate").AsObject();

  EXPECT_EQ(date.Call("getTime"), Value(0.0));
}

TEST(JavaResult, RaisesWhenNoValueHoldsIt) {
  EXPECT_EQ(Raised([] { NewSample().Call("tooLong"); }), "6 sample.Everything: Overflow: tooLong()");
  EXPECT_EQ(Raised([] { NewSample().Call("notANumber"); }), "6 sample.Everything: Overflow: notANumber()");
  EXPECT_EQ(Raised([] { NewSample().Call("halfCharacter"); }),
            "13 sample.Everything: Type mismatch: the text holds half of a character");
}

TEST(JavaText, GoesBothWaysInEveryPlane) {
  const Text text(1000, 'x');

  for (const Text& each : {Text(), Text(kAllPlanes), text, text + kAllPlanes, Text("a\0b", 3)}) {
    EXPECT_EQ(NewSample().Call("echo", each), Value(each));
  }
}

TEST(JavaText, RaisesForWhatIsNoUtf8) {
  for (const char* flawed : {"\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xFF"}) {
    EXPECT_EQ(Outcome("echo", flawed), "13 sample.Everything: Type mismatch: the text is no UTF-8");
  }
}

TEST(JavaArgument, TakesANumberOfAnyTypeThatHasRoomForIt) {
  const struct {
    const char* operation;
    Value argument;
    const char* expected;
  } cases[] = {
      {"takesByte", std::int16_t{-128}, "byte -128"},
      {"takesByte", std::int32_t{127}, "byte 127"},
      {"takesShort", std::int32_t{32767}, "short 32767"},
      {"takesInt", std::int16_t{9}, "int 9"},
      {"takesInt", 2.5, "int 2"},
      {"takesInt", 3.5, "int 4"},
      {"takesInt", -2147483648.0, "int -2147483648"},
      {"takesLong", std::int32_t{9}, "long 9"},
      {"takesLong", 1e15, "long 1000000000000000"},
      {"takesFloat", 1.5, "float 1.5"},
      {"takesDouble", std::int32_t{2}, "double 2.0"},
      {"takesInteger", std::int16_t{9}, "Integer 9"},
      {"takesBoolean", true, "boolean true"},
      {"takesObject", std::int16_t{9}, "Short 9"},
      {"takesObject", std::int32_t{9}, "Integer 9"},
      {"takesObject", 0.5, "Double 0.5"},
      {"takesObject", false, "Boolean false"},
      {"takesObject", "text", "String text"},
  };
  for (const auto& c : cases) EXPECT_EQ(Outcome(c.operation, c.argument), c.expected) << c.operation;
}

TEST(JavaArgument, RaisesWhenThereIsNoRoom) {
  const struct {
    const char* operation;
    Value argument;
    const char* signature;
  } cases[] = {
      {"takesByte", std::int16_t{128}, "takesByte(byte)"},
      {"takesShort", std::int32_t{-32769}, "takesShort(short)"},
      {"takesInt", 2147483647.6, "takesInt(int)"},
      {"takesInteger", 1e10, "takesInteger(java.lang.Integer)"},
      {"takesLong", 1e19, "takesLong(long)"},
      {"takesFloat", 1e300, "takesFloat(float)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Outcome(c.operation, c.argument), Text("6 sample.Everything: Overflow: ") + c.signature);
  }
}

TEST(JavaArgument, IsNullForEveryKindOfNothing) {
  for (const Value& nothing : {Value(), Value(Null()), Value(Object())}) {
    EXPECT_EQ(Outcome("takesObject", nothing), "null");
    EXPECT_EQ(Outcome("takesDate", nothing), "null");
    EXPECT_EQ(Outcome("takesInteger", nothing), "Integer null");
    EXPECT_EQ(Outcome("takesInt", nothing), "94 sample.Everything: Invalid use of Null: takesInt(int)");
  }
}

TEST(JavaArgument, HandsJavaObjectsOn) {
  const Object sample = NewSample();
  const Object other = NewSample();
  const Value date = sample.Call("aDate");

  EXPECT_EQ(sample.Call("takesSelf", sample), Value("this"));
  EXPECT_EQ(sample.Call("takesSelf", other), Value("another"));
  EXPECT_EQ(sample.Call("takesDate", date), Value("Date 0"));
}

TEST(JavaArgument, IsADateOrATextForATime) {
  const Object sample = NewSample();
  const DateTime moment = DateTime::FromParts({2004, 1, 31, 10, 11, 12});
  const DateTime time = moment.TimeOnly();

  EXPECT_EQ(Outcome("takesDate", moment), "Date " + sample.Call("millisOf", 104, 0, 31, 10, 11, 12).AsText());
  EXPECT_EQ(Outcome("takesDate", time), "Date " + sample.Call("millisOf", -1, 11, 30, 10, 11, 12).AsText());
  EXPECT_EQ(Outcome("echo", moment), "1/31/2004 10:11:12 AM");
  EXPECT_EQ(Outcome("echo", time), "10:11:12 AM");
  EXPECT_EQ(sample.Call("timeOrText", moment), Value("Date"));
  EXPECT_EQ(sample.Call("textOrObject", moment), Value("String"));
}

TEST(JavaArgument, IsWhatAFieldHoldsInTheCurrentRow) {
  CountedField field;
  const Value id = Object(std::make_shared<Field>(RowsOf(field), "TableID"));

  field.value = std::int32_t{7};
  EXPECT_EQ(Outcome("takesInt", id), Outcome("takesInt", std::int32_t{7}));
  field.value = "seven";
  EXPECT_EQ(Outcome("echo", id), "seven");
  EXPECT_EQ(field.readings, 2);

  field.value = std::int16_t{8};
  const Object sample = NewSample();
  sample.Put("small", id);
  EXPECT_EQ(sample.Get("small"), Value(std::int16_t{8}));
  EXPECT_EQ(field.readings, 3);
}

class ForeignObject : public Component {
 public:
  Value Call(std::string_view, Arguments) override { return {}; }
};

TEST(JavaArgument, RaisesWhenTheOperationDoesNotUnderstandIt) {
  const Value foreign = Object(std::make_shared<ForeignObject>());
  const Value date = NewSample().Call("aDate");
  const struct {
    const char* operation;
    Value argument;
    const char* about;
  } cases[] = {
      {"takesInt", "7", "takesInt(text) fits none of takesInt(int)"},
      {"takesInt", true, "takesInt(boolean) fits none of takesInt(int)"},
      {"echo", std::int32_t{7}, "echo(32-bit integer) fits none of echo(java.lang.String)"},
      {"takesBoolean", std::int16_t{1}, "takesBoolean(16-bit integer) fits none of takesBoolean(boolean)"},
      {"takesInt", DateTime(), "takesInt(date-time) fits none of takesInt(int)"},
      {"takesDate", foreign, "takesDate(object of another host) fits none of takesDate(java.util.Date)"},
      {"takesSelf", date, "takesSelf(object of java.util.Date) fits none of takesSelf(sample.Everything)"},
      {"takesObject", foreign, "takesObject(object of another host) fits none of takesObject(java.lang.Object)"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Outcome(c.operation, c.argument), Text("13 sample.Everything: Type mismatch: ") + c.about);
  }
}

}  // namespace
}  // namespace zenqay
