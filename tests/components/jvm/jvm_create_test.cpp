#include <gtest/gtest.h>

#include "components/jvm/jvm_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

Text Creation(const Text& classId) {
  return Raised([&] { SharedJvmHost().Create(classId); });
}

TEST(CreateJavaObject, TakesTheNameOfAClassWithOrWithoutItsPrefix) {
  for (const char* classId : {"sample.Everything", "java:sample.Everything", "java:java.util.Date",
                              "Kv50QTMtsctmServiceContracts.ServiceContractsManager"}) {
    EXPECT_EQ(Creation(classId), "nothing") << classId;
  }
}

TEST(CreateJavaObject, RaisesForAClassThatIsNotThere) {
  EXPECT_EQ(Creation("java:sample.Missing"),
            "429 java:sample.Missing: Component can't create object: java:sample.Missing "
            "(java.lang.NoClassDefFoundError: sample/Missing; caused by java.lang.ClassNotFoundException: "
            "sample.Missing)");
}

TEST(CreateJavaObject, ComparesTheNameExactly) {
  EXPECT_EQ(Creation("sample.everything").substr(0, 21), "429 sample.everything");
}

TEST(CreateJavaObject, RaisesForWhatIsNoNameOfAClass) {
  for (const Text classId : {"java:", "[I", "sample/Everything", "Lsample.Everything;"}) {
    EXPECT_EQ(Creation(classId),
              "429 " + classId + ": Component can't create object: " + classId + " (that is no name of a class)");
  }
}

TEST(CreateJavaObject, RaisesWithoutAPublicConstructor) {
  EXPECT_EQ(Creation("sample.Secretive"),
            "429 sample.Secretive: Component can't create object: sample.Secretive (it has no public constructor "
            "without arguments: java.lang.NoSuchMethodException: sample.Secretive.<init>())");
}

TEST(CreateJavaObject, RaisesForAnAbstractClass) {
  EXPECT_EQ(Creation("sample.Abstraction"),
            "429 sample.Abstraction: Component can't create object: sample.Abstraction "
            "(java.lang.InstantiationException: sample.Abstraction)");
}

TEST(CreateJavaObject, RaisesWhatTheConstructorThrows) {
  EXPECT_EQ(Creation("sample.Unwilling"),
            "429 sample.Unwilling: Component can't create object: sample.Unwilling "
            "(java.lang.IllegalArgumentException: not today)");
}

TEST(CreateJavaObject, RaisesWhenTheClassCannotBeInitialized) {
  EXPECT_EQ(Creation("sample.Unready"),
            "429 sample.Unready: Component can't create object: sample.Unready "
            "(java.lang.ExceptionInInitializerError; caused by java.lang.NumberFormatException: For input string: "
            "\"x\")");
}

}  // namespace
}  // namespace zenqay
