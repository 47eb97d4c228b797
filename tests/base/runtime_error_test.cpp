#include "base/runtime_error.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <tuple>
#include <type_traits>

namespace zenqay {
namespace {

TEST(RuntimeError, HasTheNumberAndTextOfThePlatformsOwnErrors) {
  const std::tuple<PlatformFault, int, const char*> cases[] = {
      {PlatformFault::InvalidCall, 5, "Invalid procedure call or argument"},
      {PlatformFault::Overflow, 6, "Overflow"},
      {PlatformFault::OutOfMemory, 7, "Out of memory"},
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

TEST(RuntimeError, SpeaksWithItsFirstItemAndKeepsAll) {
  const RuntimeError error(std::vector<ProviderError>{{-2147217900, "FreeTDS", "first", "42000", 102},
                                                      {-2147467259, "FreeTDS", "second", "01000", 3621}});

  EXPECT_EQ(error.number(), -2147217900);
  EXPECT_EQ(error.source(), "FreeTDS");
  EXPECT_EQ(error.description(), "first");
  EXPECT_EQ(error.sqlState(), "42000");
  EXPECT_EQ(error.nativeError(), 102);
  ASSERT_EQ(error.items().size(), 2u);
  EXPECT_EQ(error.items()[1].Description, "second");
  EXPECT_EQ(error.items()[1].SqlState, "01000");
  EXPECT_EQ(error.items()[1].NativeError, 3621);
}

TEST(RuntimeError, HasNothingOfADatabaseWhereNoneReported) {
  const RuntimeError error(PlatformFault::Overflow);

  EXPECT_EQ(error.sqlState(), "");
  EXPECT_EQ(error.nativeError(), 0);
  EXPECT_TRUE(error.items().empty());
  EXPECT_EQ(error.statement(), "");
}

TEST(RuntimeError, CanBeGivenTheStatementThatItIsAbout) {
  const RuntimeError error(
      std::vector<ProviderError>{{-2147217873, "SQLite", "UNIQUE constraint failed", "23000", 1555}});

  const RuntimeError about = error.With("INSERT INTO Site (SITE ) VALUES (N'A1')");

  EXPECT_EQ(about.statement(), "INSERT INTO Site (SITE ) VALUES (N'A1')");
  EXPECT_EQ(about.number(), -2147217873);
  EXPECT_EQ(about.description(), "UNIQUE constraint failed");
  EXPECT_EQ(about.sqlState(), "23000");
  EXPECT_EQ(about.nativeError(), 1555);
  EXPECT_EQ(error.statement(), "");
  EXPECT_EQ(about.With("").statement(), about.statement());
}

TEST(RuntimeError, NamesTheFirstCallThatItWasAndBehindItTheRow) {
  const RuntimeError isNull(PlatformFault::InvalidUseOfNull);
  const RuntimeError noColumn(PlatformFault::NoSuchOperation, "getCustomer (S.csv has no column Customer)", "S");

  EXPECT_EQ(isNull.OfCall("getCustomer").description(), "Invalid use of Null: getCustomer");
  EXPECT_EQ(isNull.OfCall("getCustomer").call(), "getCustomer");
  EXPECT_EQ(isNull.OfCall("getCustomer").OfCall("List").description(), "Invalid use of Null: getCustomer");
  EXPECT_EQ(isNull.OfCall("getCustomer").OfRow("Location=A1").description(),
            "Invalid use of Null: getCustomer of Location=A1");
  EXPECT_EQ(noColumn.OfCall("getCustomer").OfRow("Location=A1").description(),
            "Object doesn't support this property or method: getCustomer (S.csv has no column Customer): Location=A1");
  EXPECT_EQ(isNull.OfCall("getCustomer").OfRow("").description(), "Invalid use of Null: getCustomer");
  EXPECT_EQ(isNull.OfRow("Location=A1").description(), "Invalid use of Null");
  EXPECT_EQ(isNull.OfRow("Location=A1").row(), "Location=A1");
}

TEST(RuntimeError, IsCopiedWithoutFailing) {
  static_assert(std::is_nothrow_copy_constructible_v<RuntimeError>);
  static_assert(std::is_nothrow_copy_assignable_v<RuntimeError>);
  static_assert(std::is_nothrow_move_constructible_v<RuntimeError>);
  const RuntimeError error(5, "source", Text(1000, 'x'));

  RuntimeError copy(PlatformFault::Overflow);
  copy = error;
  const RuntimeError moved = std::move(copy);

  EXPECT_EQ(moved.description().data(), error.description().data());  // shared
  EXPECT_EQ(copy.number(), 5);                                        // NOLINT: it stays what it was
}

/// What a failure path gets to handle for what was thrown.
template <typename Thrown>
RuntimeError Met(const Thrown& thrown) {
  try {
    throw thrown;
  } catch (...) {
    return ErrorInFlight();
  }
}

TEST(ErrorInFlight, IsARuntimeErrorWhateverWasThrown) {
  const std::filesystem::filesystem_error unreadable("cannot walk", "/erp", std::make_error_code(std::errc::io_error));
  const std::pair<RuntimeError, Text> cases[] = {
      {Met(RuntimeError(100, "Handle Data Copy", "no status")), "100 Handle Data Copy: no status"},
      {Met(std::bad_alloc()), "7 ZenqayDBSync: Out of memory"},
      {Met(std::runtime_error("no such page")), "440 ZenqayDBSync: Automation error: no such page"},
      {Met(unreadable), "440 ZenqayDBSync: Automation error: filesystem error: cannot walk: Input/output error [/erp]"},
      {Met(5), "440 ZenqayDBSync: Automation error"},
  };
  for (const auto& [error, text] : cases) {
    EXPECT_EQ(std::to_string(error.number()) + " " + error.source() + ": " + error.description(), text);
  }
}

TEST(ErrorInFlight, KeepsWhatARuntimeErrorHolds) {
  const RuntimeError error(std::vector<ProviderError>{{-2147217865, "SQLite", "no such table", "42S02", 1}});

  const RuntimeError met = Met(error.With("SELECT 1"));

  EXPECT_EQ(met.sqlState(), "42S02");
  EXPECT_EQ(met.statement(), "SELECT 1");
}

}  // namespace
}  // namespace zenqay
