#include <gtest/gtest.h>

#include "components/jvm/jvm_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

TEST(CallJavaObject, MatchesNamesWithoutRegardToCase) {
  const Object date = SharedJvmHost().Create("java:java.util.Date");

  date.Call("setTime", 0);

  EXPECT_EQ(date.Call("GETYEAR"), Value(std::int32_t{70}));
  EXPECT_EQ(date.Call("getTimeZoneOffset"), date.Call("getTimezoneOffset"));
}

TEST(CallJavaObject, PrefersTheNameAsItIsSpelled) {
  EXPECT_EQ(NewSample().Call("Spelled"), Value("Spelled"));
  EXPECT_EQ(NewSample().Call("spelled"), Value("spelled"));
}

TEST(CallJavaObject, RaisesWhenTwoNamesDifferInNothingButCase) {
  EXPECT_EQ(Raised([] { NewSample().Call("SPELLED"); }),
            "13 sample.Everything: Type mismatch: SPELLED() fits more than one of Spelled(), spelled()");
}

TEST(CallJavaObject, IsRequiredByItsNameAndTheNumberOfItsArguments) {
  const Object sample = NewSample();

  EXPECT_EQ(Raised([&] { sample.RequireCallable("TAKESINT", 1); }), "nothing");
  EXPECT_EQ(Raised([&] { sample.RequireCallable("takesInt", 2); }),
            "450 sample.Everything: Wrong number of arguments: takesInt with 2 arguments, there is takesInt(int)");
  EXPECT_EQ(Raised([&] { sample.RequireCallable("missing", 0); }),
            "438 sample.Everything: Object doesn't support this property or method: missing");
}

TEST(CallJavaObject, ReachesInheritedAndStaticMethods) {
  EXPECT_EQ(NewSample().Call("inherited"), Value("inherited"));
  EXPECT_EQ(NewSample().Call("ofTheClass"), Value("static"));
}

TEST(CallJavaObject, ChoosesTheOverloadByItsArguments) {
  const Object sample = NewSample();
  const Value date = sample.Call("aDate");

  EXPECT_EQ(sample.Call("pick"), Value("nothing"));
  EXPECT_EQ(sample.Call("pick", "x"), Value("String"));
  EXPECT_EQ(sample.Call("pick", std::int16_t{1}), Value("int"));
  EXPECT_EQ(sample.Call("pick", std::int32_t{1}), Value("int"));
  EXPECT_EQ(sample.Call("pick", 1.0), Value("double"));
  EXPECT_EQ(sample.Call("pick", true), Value("boolean"));
  EXPECT_EQ(sample.Call("pick", date), Value("Date"));
  EXPECT_EQ(sample.Call("pick", sample), Value("Object"));
  EXPECT_EQ(sample.Call("pick", "x", 1), Value("String, int"));
  EXPECT_EQ(sample.Call("near", sample.Call("list")), Value("List"));
  EXPECT_EQ(sample.Call("near", Null()), Value("List"));
}

TEST(CallJavaObject, RaisesWhenOverloadsFitAlike) {
  EXPECT_EQ(Raised([] { NewSample().Call("either", Null()); }).substr(0, 84),
            "13 sample.Everything: Type mismatch: either(null) fits more than one of either(java.");
}

TEST(CallJavaObject, PassesReferencesAsValues) {
  Value text = "x";

  const Value answer = NewSample().Call("echo", Argument::ByReference(text));

  EXPECT_EQ(answer, Value("x"));
  EXPECT_EQ(text, Value("x"));
}

TEST(CallJavaObject, RaisesForANameThatIsNotThere) {
  EXPECT_EQ(Raised([] { NewSample().Call("getMissing"); }),
            "438 sample.Everything: Object doesn't support this property or method: getMissing");
  EXPECT_EQ(Raised([] { NewSample().Call("name"); }),
            "438 sample.Everything: Object doesn't support this property or method: name");
}

TEST(CallJavaObject, RaisesForAWrongNumberOfArguments) {
  EXPECT_EQ(Raised([] { NewSample().Call("echo"); }), "450 sample.Everything: Wrong number of arguments: echo");
  EXPECT_EQ(Raised([] { NewSample().Call("aByte", 1); }), "450 sample.Everything: Wrong number of arguments: aByte");
}

TEST(CallJavaObject, RaisesWhatTheOperationThrows) {
  EXPECT_EQ(Raised([] { NewSample().Call("fail"); }),
            "440 sample.Everything: Automation error: fail: java.lang.IllegalStateException: no session; caused by "
            "java.io.IOException: closed");
  EXPECT_EQ(Raised([] { NewSample().Call("failSilently"); }),
            "440 sample.Everything: Automation error: failSilently: java.lang.UnsupportedOperationException");
  EXPECT_EQ(Raised([] { NewSample().Call("failBeforeText"); }),
            "440 sample.Everything: Automation error: failBeforeText: java.lang.Exception: kaputt – ü");
  EXPECT_EQ(Raised([] { NewSample().Call("recurse"); }),
            "440 sample.Everything: Automation error: recurse: java.lang.StackOverflowError");
}

TEST(CallJavaObject, NamesTheClassOfAnObjectThatWasNotCreatedByClassId) {
  const Object rows = NewSample().Call("enumeration").AsObject();
  const Text raised = Raised([&] { rows.Call("missing"); });

  EXPECT_EQ(raised.substr(0, 18), "438 java.util.Coll");
}

Text Elements(const Object& enumeration) {
  Text elements;
  while (enumeration.Call("hasMoreElements").IsTrue()) elements += enumeration.Call("nextElement").AsText();
  return elements;
}

TEST(JavaEnumeration, AnswersUnderTheSameNamesInBothKinds) {
  EXPECT_EQ(Elements(NewSample().Call("enumeration").AsObject()), "ab");
  EXPECT_EQ(Elements(NewSample().Call("iterator").AsObject()), "ab");
}

TEST(GetJavaProperty, ReadsMethodThenFieldThenGetter) {
  const Object sample = NewSample();

  EXPECT_EQ(sample.Get("getTitle"), Value("untitled"));
  EXPECT_EQ(sample.Get("aByte"), Value(std::int16_t{-128}));
  EXPECT_EQ(sample.Get("NAME"), Value("field"));
  EXPECT_EQ(sample.Get("limit"), Value(std::int32_t{12}));
  EXPECT_EQ(sample.Get("title"), Value("untitled"));
  EXPECT_EQ(sample.Get("open"), Value(true));
  EXPECT_EQ(sample.Get("small"), Value(std::int16_t{7}));
  EXPECT_EQ(sample.Get("boxed"), Value(std::int32_t{8}));
  EXPECT_EQ(sample.Get("moment"), Value(Object()));
}

TEST(GetJavaProperty, RaisesForANameThatIsNotThere) {
  EXPECT_EQ(Raised([] { NewSample().Get("missing"); }),
            "438 sample.Everything: Object doesn't support this property or method: missing");
  EXPECT_EQ(Raised([] { NewSample().Get("needsArgument"); }),
            "450 sample.Everything: Wrong number of arguments: needsArgument");
}

TEST(PutJavaProperty, WritesFieldThenSetter) {
  const Object sample = NewSample();

  sample.Put("Name", "changed");
  sample.Put("Small", std::int32_t{9});
  sample.Put("boxed", std::int16_t{10});
  sample.Put("truth", false);
  sample.Put("moment", sample.Call("aDate"));
  sample.Put("shared", 4);
  sample.Put("title", "new");
  sample.Put("total", 1e10);

  EXPECT_EQ(sample.Get("name"), Value("changed"));
  EXPECT_EQ(sample.Get("small"), Value(std::int16_t{9}));
  EXPECT_EQ(sample.Get("boxed"), Value(std::int32_t{10}));
  EXPECT_EQ(sample.Get("truth"), Value(false));
  EXPECT_EQ(sample.Get("moment").AsObject().Call("getTime"), Value(0.0));
  EXPECT_EQ(sample.Get("shared"), Value(std::int32_t{4}));
  EXPECT_EQ(sample.Get("title"), Value("new"));
  EXPECT_EQ(sample.Get("total"), Value(1e10));
}

TEST(PutJavaProperty, RaisesWhatIsWrong) {
  EXPECT_EQ(Raised([] { NewSample().Put("missing", 1); }),
            "438 sample.Everything: Object doesn't support this property or method: missing");
  EXPECT_EQ(Raised([] { NewSample().Put("fixed", 1); }),
            "438 sample.Everything: Object doesn't support this property or method: fixed");
  EXPECT_EQ(Raised([] { NewSample().Put("small", "x"); }),
            "13 sample.Everything: Type mismatch: small is of type short, not text");
  EXPECT_EQ(Raised([] { NewSample().Put("small", 40000); }), "6 sample.Everything: Overflow: small");
  EXPECT_EQ(Raised([] { NewSample().Put("small", Null()); }), "94 sample.Everything: Invalid use of Null: small");
  EXPECT_EQ(Raised([] { NewSample().Put("title", 1); }),
            "13 sample.Everything: Type mismatch: title(32-bit integer) fits none of setTitle(java.lang.String)");
}

TEST(DefaultOfJavaObject, DoesNotExist) {
  EXPECT_EQ(Raised([] { NewSample().Default(); }),
            "438 sample.Everything: Object doesn't support this property or method: it has no default value");
}

}  // namespace
}  // namespace zenqay
