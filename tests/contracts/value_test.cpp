#include "contracts/value.h"

#include <gtest/gtest.h>

#include "base/numbers.h"
#include "doubles/journal.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kOverflow = "6 ZenqayDBSync: Overflow";
constexpr const char* kMismatch = "13 ZenqayDBSync: Type mismatch";
constexpr const char* kNotSet = "91 ZenqayDBSync: Object variable not set";
constexpr const char* kNullUse = "94 ZenqayDBSync: Invalid use of Null";
constexpr const char* kNoDefault = "438 ZenqayDBSync: Object doesn't support this property or method";

// A pointer is no truth: what it points to is meant, or nothing.
static_assert(std::is_convertible_v<bool, Value> && std::is_convertible_v<const char*, Value>);
static_assert(!std::is_constructible_v<Value, Component*> && !std::is_constructible_v<Argument, Component*>);
static_assert(!std::is_constructible_v<Value, const void*> && !std::is_constructible_v<Value, std::nullptr_t>);
static_assert(!std::is_constructible_v<Value, void (*)()> && !std::is_constructible_v<Value, bool Object::*>);

/// An object that stands for a value, and one that stands for none.
class Standing : public Component {
 public:
  explicit Standing(Value value) : value_(std::move(value)) {}
  Value Call(std::string_view operation, Arguments) override { RaiseNoSuchOperation(operation, "Standing"); }
  Value Default() const override { return value_; }

 private:
  Value value_;
};

class Plain : public Component {
 public:
  Value Call(std::string_view operation, Arguments arguments) override {
    if (!EqualsIgnoringCase(operation, "count")) RaiseNoSuchOperation(operation, "Plain");
    return static_cast<std::int32_t>(arguments.size());
  }
};

Value StandingFor(Value value) {
  return Object(std::make_shared<Standing>(std::move(value)));
}
Value PlainObject() {
  return Object(std::make_shared<Plain>());
}
DateTime At(const DateTimeParts& parts) {
  return DateTime::FromParts(parts);
}

/// Everything that one value converts to.
struct Conversion {
  const char* name;
  Value value;
  Text text;
  Text joined;
  Text number;
  Text int16;
  Text int32;
  Text truth;
  Text dateTime;
};

Text TruthText(bool truth) {
  return truth ? "true" : "false";
}

void ExpectConversion(const Conversion& expected) {
  const Value& value = expected.value;
  EXPECT_EQ(OutcomeOf([&] { return value.AsText(); }), expected.text) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return Value(value).AsText(); }), expected.text) << expected.name << ", moved";
  EXPECT_EQ(OutcomeOf([&] { return value.Joined(); }), expected.joined) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return NumberText(value.AsDouble()); }), expected.number) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return std::to_string(value.AsInt16()); }), expected.int16) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return std::to_string(value.AsInt32()); }), expected.int32) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return TruthText(value.IsTrue()); }), expected.truth) << expected.name;
  EXPECT_EQ(OutcomeOf([&] { return IsoText(value.AsDateTime()); }), expected.dateTime) << expected.name;
}

TEST(ValueConversion, OfPlainValues) {
  const Conversion cases[] = {
      {"empty", Value(), "", "", "0", "0", "0", "false", "1899-12-30 00:00:00"},
      {"null", Null(), kNullUse, "", kNullUse, kNullUse, kNullUse, "false", kNullUse},
      {"true", true, "True", "True", "-1", "-1", "-1", "true", "1899-12-29 00:00:00"},
      {"false", false, "False", "False", "0", "0", "0", "false", "1899-12-30 00:00:00"},
      {"16-bit", std::int16_t{-7}, "-7", "-7", "-7", "-7", "-7", "true", "1899-12-23 00:00:00"},
      {"32-bit", std::int32_t{38017}, "38017", "38017", "38017", kOverflow, "38017", "true", "2004-01-31 00:00:00"},
      {"32-bit 0", std::int32_t{0}, "0", "0", "0", "0", "0", "false", "1899-12-30 00:00:00"},
      {"double", 2.5, "2.5", "2.5", "2.5", "2", "2", "true", "1900-01-01 12:00:00"},
      {"great double", 1e300, "1E+300", "1E+300", "1E+300", kOverflow, kOverflow, "true", kOverflow},
      {"negative double", -0.25, "-0.25", "-0.25", "-0.25", "0", "0", "true", "1899-12-29 18:00:00"},
      {"double of the first day", -693593.0, "-693593", "-693593", "-693593", kOverflow, "-693593", "true",
       "1-01-01 00:00:00"},
      {"double before it", -693594.0, "-693594", "-693594", "-693594", kOverflow, "-693594", "true", kOverflow},
      {"double of the last day", 2958465.0, "2958465", "2958465", "2958465", kOverflow, "2958465", "true",
       "9999-12-31 00:00:00"},
      {"double behind it", 2958466.0, "2958466", "2958466", "2958466", kOverflow, "2958466", "true", kOverflow},
  };
  for (const Conversion& expected : cases) ExpectConversion(expected);
}

TEST(ValueConversion, OfTexts) {
  const Conversion cases[] = {
      {"empty text", "", "", "", kMismatch, kMismatch, kMismatch, kMismatch, kMismatch},
      {"blank text", "   ", "   ", "   ", kMismatch, kMismatch, kMismatch, kMismatch, kMismatch},
      {"number", " 7", " 7", " 7", "7", "7", "7", "true", kMismatch},
      {"exponent", "1e3", "1e3", "1e3", "1000", "1000", "1000", "true", kMismatch},
      {"half", "2.5", "2.5", "2.5", "2.5", "2", "2", "true", kMismatch},
      {"zero", "0", "0", "0", "0", "0", "0", "false", kMismatch},
      {"great number", "1e999", "1e999", "1e999", kOverflow, kOverflow, kOverflow, kOverflow, kMismatch},
      {"number with a tail", "12abc", "12abc", "12abc", kMismatch, kMismatch, kMismatch, kMismatch, kMismatch},
      {"true", "True", "True", "True", kMismatch, kMismatch, kMismatch, "true", kMismatch},
      {"true in capitals", "TRUE", "TRUE", "TRUE", kMismatch, kMismatch, kMismatch, "true", kMismatch},
      {"false", "false", "false", "false", kMismatch, kMismatch, kMismatch, "false", kMismatch},
      {"date", "2004-01-31", "2004-01-31", "2004-01-31", kMismatch, kMismatch, kMismatch, kMismatch,
       "2004-01-31 00:00:00"},
      {"date-time", "2004-01-31 10:11:12", "2004-01-31 10:11:12", "2004-01-31 10:11:12", kMismatch, kMismatch,
       kMismatch, kMismatch, "2004-01-31 10:11:12"},
      {"Unicode", "東 é", "東 é", "東 é", kMismatch, kMismatch, kMismatch, kMismatch, kMismatch},
  };
  for (const Conversion& expected : cases) ExpectConversion(expected);
}

TEST(ValueConversion, OfDates) {
  const Conversion cases[] = {
      {"date", At({2004, 1, 31}), "1/31/2004", "1/31/2004", "38017", kOverflow, "38017", "true", "2004-01-31 00:00:00"},
      {"date with time", At({2004, 1, 31, 12}), "1/31/2004 12:00:00 PM", "1/31/2004 12:00:00 PM", "38017.5", kOverflow,
       "38018", "true", "2004-01-31 12:00:00"},
      {"time of day", At({1899, 12, 30, 6}), "6:00:00 AM", "6:00:00 AM", "0.25", "0", "0", "true",
       "1899-12-30 06:00:00"},
      {"midnight", DateTime(), "12:00:00 AM", "12:00:00 AM", "0", "0", "0", "false", "1899-12-30 00:00:00"},
  };
  for (const Conversion& expected : cases) ExpectConversion(expected);
}

TEST(ValueConversion, OfObjectsIsThatOfWhatTheyStandFor) {
  const Conversion cases[] = {
      {"16-bit", StandingFor(std::int16_t{5}), "5", "5", "5", "5", "5", "true", "1900-01-04 00:00:00"},
      {"text", StandingFor(" 7"), " 7", " 7", "7", "7", "7", "true", kMismatch},
      {"truth", StandingFor("True"), "True", "True", kMismatch, kMismatch, kMismatch, "true", kMismatch},
      {"date", StandingFor(At({2004, 1, 31})), "1/31/2004", "1/31/2004", "38017", kOverflow, "38017", "true",
       "2004-01-31 00:00:00"},
      {"empty", StandingFor(Value()), "", "", "0", "0", "0", "false", "1899-12-30 00:00:00"},
      {"null", StandingFor(Null()), kNullUse, "", kNullUse, kNullUse, kNullUse, "false", kNullUse},
      {"an object for 5", StandingFor(StandingFor(5)), "5", "5", "5", "5", "5", "true", "1900-01-04 00:00:00"},
      {"nothing", Object(), kNotSet, kNotSet, kNotSet, kNotSet, kNotSet, kNotSet, kNotSet},
      {"no default", PlainObject(), kNoDefault, kNoDefault, kNoDefault, kNoDefault, kNoDefault, kNoDefault, kNoDefault},
  };
  for (const Conversion& expected : cases) ExpectConversion(expected);
}

TEST(ValueComparison, WithANumberConvertsTextsStrictlyAndIsFalseForNull) {
  const struct {
    const char* name;
    Value value;
    Text equalsOne;
    Text isGreaterThanZero;
  } cases[] = {
      {"empty", Value(), "false", "false"},
      {"null", Null(), "false", "false"},
      {"true", true, "false", "false"},
      {"16-bit", std::int16_t{1}, "true", "true"},
      {"32-bit", std::int32_t{2}, "false", "true"},
      {"double", 1.0, "true", "true"},
      {"negative", -1.0, "false", "false"},
      {"text", " 1 ", "true", "true"},
      {"text with exponent", "10e-1", "true", "true"},
      {"empty text", "", kMismatch, kMismatch},
      {"blank text", " ", kMismatch, kMismatch},
      {"text with a tail", "1x", kMismatch, kMismatch},
      {"date", At({1899, 12, 31}), "true", "true"},
      {"object for 1", StandingFor(std::int16_t{1}), "true", "true"},
      {"object for null", StandingFor(Null()), "false", "false"},
      {"object for empty", StandingFor(Value()), "false", "false"},
      {"object for a word", StandingFor("x"), kMismatch, kMismatch},
      {"nothing", Object(), kNotSet, kNotSet},
      {"no default", PlainObject(), kNoDefault, kNoDefault},
  };
  for (const auto& [name, value, equalsOne, isGreaterThanZero] : cases) {
    EXPECT_EQ(OutcomeOf([&value = value] { return TruthText(value.EqualsNumber(1)); }), equalsOne) << name;
    EXPECT_EQ(OutcomeOf([&value = value] { return TruthText(value.IsGreaterThan(0)); }), isGreaterThanZero) << name;
  }
}

TEST(ValueAsObject, GivesTheReferenceOrAnEmptyOne) {
  const Object object(std::make_shared<Plain>());

  EXPECT_EQ(Value(object).AsObject(), object);
  EXPECT_TRUE(Value().AsObject().IsNothing());
  EXPECT_TRUE(Value(Null()).AsObject().IsNothing());
  EXPECT_TRUE(Value(Object()).AsObject().IsNothing());
  EXPECT_EQ(Raised([] { Value("x").AsObject(); }), kMismatch);
  EXPECT_EQ(Raised([] { Value("").AsObject(); }), kMismatch);
  EXPECT_EQ(Raised([] { Value(5).AsObject(); }), kMismatch);
}

TEST(ValueType, IsThatOfWhatItWasMadeFrom) {
  EXPECT_EQ(Shown(Value()), "empty");
  EXPECT_EQ(Shown(Value(Null())), "null");
  EXPECT_EQ(Shown(Value(true)), "true");
  EXPECT_EQ(Shown(Value(std::int16_t{1})), "i16(1)");
  EXPECT_EQ(Shown(Value(1)), "i32(1)");
  EXPECT_EQ(Shown(Value(1.0)), "dbl(1)");
  EXPECT_EQ(Shown(Value("x")), "\"x\"");
  EXPECT_EQ(Shown(Value(std::string_view("x"))), "\"x\"");
  EXPECT_EQ(Shown(Value(At({2004, 1, 31}))), "time(1/31/2004)");
  EXPECT_EQ(Shown(Value(Object())), "nothing");
}

TEST(ValueEquality, IsThatOfTypeAndValue) {
  EXPECT_EQ(Value(1), Value(1));
  EXPECT_NE(Value(1), Value(std::int16_t{1}));
  EXPECT_NE(Value(), Value(Null()));
  EXPECT_NE(Value(""), Value());
}

TEST(Object, RaisesAtEveryUseOfAnEmptyReference) {
  const Object nothing;

  EXPECT_EQ(Raised([&] { nothing.Call("List"); }), kNotSet);
  EXPECT_EQ(Raised([&] { nothing.Call("List", "", 1); }), kNotSet);
  EXPECT_EQ(Raised([&] { nothing.Get("Text"); }), kNotSet);
  EXPECT_EQ(Raised([&] { nothing.Put("Text", 1); }), kNotSet);
  EXPECT_EQ(Raised([&] { nothing.Default(); }), kNotSet);
}

TEST(Object, GivesItsComponentBackWhenItIsReleased) {
  const auto component = std::make_shared<Plain>();
  Object object(component);

  object.Release();

  EXPECT_TRUE(object.IsNothing());
  EXPECT_EQ(component.use_count(), 1);
}

TEST(Object, FindsOperationsWithoutRegardToCase) {
  const Object object(std::make_shared<Plain>());

  EXPECT_EQ(object.Call("COUNT").AsInt32(), 0);
  EXPECT_EQ(object.Call("Count", "a", std::int16_t{2}, 3.0).AsInt32(), 3);
}

TEST(Object, RaisesForAnOperationThatItDoesNotHave) {
  const Object object(std::make_shared<Plain>());
  const Text missing = "Object doesn't support this property or method: ";

  EXPECT_EQ(Raised([&] { object.Call("List"); }), "438 Plain: " + missing + "List");
  EXPECT_EQ(Raised([&] { object.Get("Text"); }), "438 ZenqayDBSync: " + missing + "Text");
  EXPECT_EQ(Raised([&] { object.Put("Text", 1); }), "438 ZenqayDBSync: " + missing + "Text");
}

TEST(RequireArguments, RaisesForAnotherNumberOfThem) {
  Argument arguments[] = {Argument(1), Argument("x")};

  EXPECT_EQ(Raised([&] { RequireArguments("List", arguments, 2, "Kv40"); }), "nothing");
  EXPECT_EQ(Raised([&] { RequireArguments("List", arguments, 1, "Kv40"); }),
            "450 Kv40: Wrong number of arguments: List");
  EXPECT_EQ(Raised([&] { RequireArguments("List", {}, 2, "Kv40"); }), "450 Kv40: Wrong number of arguments: List");
}

TEST(Argument, AssignsTheVariableThatItRefersTo) {
  Value variable = "before";
  Argument argument = Argument::ByReference(variable);

  argument.Assign("after");

  EXPECT_TRUE(argument.byReference());
  EXPECT_EQ(Shown(variable), "\"after\"");
  EXPECT_EQ(Shown(argument), "&\"after\"");
}

TEST(Argument, ChangesForTheOperationAloneWhenItWasPassedByValue) {
  const Value variable = std::int16_t{1};
  Argument argument(variable);

  argument.Assign(2);

  EXPECT_FALSE(argument.byReference());
  EXPECT_EQ(Shown(variable), "i16(1)");
  EXPECT_EQ(Shown(argument), "i32(2)");
}

}  // namespace
}  // namespace zenqay
