#include "base/runtime_error.h"

#include <gtest/gtest.h>

#include <tuple>

namespace zenqay {
namespace {

TEST(RuntimeError, HasTheNumberAndTextOfThePlatformsOwnErrors) {
  const std::tuple<PlatformFault, int, const char*> cases[] = {
      {PlatformFault::InvalidCall, 5, "Invalid procedure call or argument"},
      {PlatformFault::Overflow, 6, "Overflow"},
      {PlatformFault::SubscriptOutOfRange, 9, "Subscript out of range"},
      {PlatformFault::TypeMismatch, 13, "Type mismatch"},
      {PlatformFault::BadFileNumber, 52, "Bad file name or number"},
      {PlatformFault::FileNotFound, 53, "File not found"},
      {PlatformFault::FileAlreadyOpen, 55, "File already open"},
      {PlatformFault::DiskFull, 61, "Disk full"},
      {PlatformFault::PermissionDenied, 70, "Permission denied"},
      {PlatformFault::PathAccess, 75, "Path/File access error"},
      {PlatformFault::PathNotFound, 76, "Path not found"},
      {PlatformFault::ObjectNotSet, 91, "Object variable not set"},
      {PlatformFault::InvalidUseOfNull, 94, "Invalid use of Null"},
      {PlatformFault::CannotCreateObject, 429, "Component can't create object"},
      {PlatformFault::NoSuchOperation, 438, "Object doesn't support this property or method"},
      {PlatformFault::Automation, 440, "Automation error"},
      {PlatformFault::WrongNumberOfArguments, 450, "Wrong number of arguments"},
  };
  for (const auto& [fault, number, description] : cases) {
    const RuntimeError error(fault);

    EXPECT_EQ(error.number(), number);
    EXPECT_EQ(error.source(), "ZenqayDBSync");
    EXPECT_EQ(error.description(), description);
  }
}

TEST(RuntimeError, NamesTheThingItWasAboutBehindAColon) {
  const RuntimeError error(PlatformFault::CannotCreateObject, "Kv40.Manager", "Kv40.Manager");

  EXPECT_EQ(error.number(), 429);
  EXPECT_EQ(error.source(), "Kv40.Manager");
  EXPECT_EQ(error.description(), "Component can't create object: Kv40.Manager");
}

TEST(RuntimeError, KeepsWhatItWasRaisedWith) {
  const RuntimeError error(2021004, "zenqa Data Copy - Start", "first\r\nsecond");

  EXPECT_EQ(error.number(), 2021004);
  EXPECT_EQ(error.source(), "zenqa Data Copy - Start");
  EXPECT_EQ(error.description(), "first\r\nsecond");
  EXPECT_STREQ(error.what(), "first\r\nsecond");
}

}  // namespace
}  // namespace zenqay
