// The calendar and the arithmetic under the warranty periods. The expected dates were worked out by a Python program:
// datetime.timedelta for days, and for months and years a clamp of its own over a list of the months' lengths.
#include <gtest/gtest.h>

#include <limits>

#include "base/date_time.h"
#include "base/numbers.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kOverflow = "6 ZenqayDBSync: Overflow";
constexpr const char* kNoSuchYear = "5 ZenqayDBSync: Invalid procedure call or argument: year outside 1 to 9999";
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

/// Where a count of days, months or years leads from a date; or the error that it ends in.
struct Step {
  const char* from;
  std::int32_t count;
  const char* to;
};

DateTime Read(const char* text) {
  DateTime value;
  EXPECT_TRUE(ReadIsoText(text, value)) << text;
  return value;
}

/// "2004-01-31", and the time behind it when it has one.
Text Written(DateTime value) {
  const Text iso = IsoText(value);
  return value.TimeOnly() == DateTime() ? iso.substr(0, iso.find(' ')) : iso;
}

template <typename Operation, std::size_t n>
void ExpectSteps(Operation add, const Step (&steps)[n]) {
  for (const Step& step : steps) {
    SCOPED_TRACE(Text(step.from) + " and " + std::to_string(step.count));
    EXPECT_EQ(OutcomeOf([&] { return Written(add(Read(step.from), step.count)); }), step.to);
  }
}

TEST(AddDays, CountsDaysOfTheCalendarAndKeepsTheTimeOfDay) {
  const Step steps[] = {
      {"2004-02-28", 0, "2004-02-28"},
      {"2004-02-28", 1, "2004-02-29"},
      {"2004-02-29", 1, "2004-03-01"},
      {"2003-02-28", 1, "2003-03-01"},
      {"1900-02-28", 1, "1900-03-01"},
      {"2000-02-28", 1, "2000-02-29"},
      {"2004-12-31", 1, "2005-01-01"},
      {"2005-01-01", -1, "2004-12-31"},
      {"2004-03-01", -1, "2004-02-29"},
      {"2003-03-01", -1, "2003-02-28"},
      {"2004-03-15", 365, "2005-03-15"},
      {"2003-03-15", 365, "2004-03-14"},
      {"2004-01-31 10:11:12", 29, "2004-02-29 10:11:12"},
      {"2004-01-31 00:00:01", -31, "2003-12-31 00:00:01"},
      {"1899-12-31", -1, "1899-12-30"},
      {"1899-12-30", -1, "1899-12-29"},
      {"1899-12-29 18:00:00", 1, "1899-12-30 18:00:00"},
      {"1900-01-02", -5, "1899-12-28"},
      {"1600-02-28", 1, "1600-02-29"},
      {"0001-01-01", 0, "1-01-01"},
      {"0001-01-01", -1, kOverflow},
      {"0001-01-01", 3652058, "9999-12-31"},
      {"9999-12-31 23:59:59", 0, "9999-12-31 23:59:59"},
      {"9999-12-31", 1, kOverflow},
      {"9999-12-31", -3652058, "1-01-01"},
      {"9999-12-31", -3652059, kOverflow},
      {"2004-03-15", kHighest, kOverflow},
      {"2004-03-15", kLowest, kOverflow},
  };
  ExpectSteps(AddDays, steps);
}

TEST(AddMonths, ClampsTheDayToTheMonthThatItLeadsTo) {
  const Step steps[] = {
      {"2004-01-31", 0, "2004-01-31"},
      {"2004-01-31", 1, "2004-02-29"},
      {"2003-01-31", 1, "2003-02-28"},
      {"2000-01-31", 1, "2000-02-29"},
      {"1900-01-31", 1, "1900-02-28"},
      {"2003-01-30", 1, "2003-02-28"},
      {"2003-01-29", 1, "2003-02-28"},
      {"2003-01-28", 1, "2003-02-28"},
      {"2003-03-31", 1, "2003-04-30"},
      {"2003-05-31", 1, "2003-06-30"},
      {"2003-08-31", 1, "2003-09-30"},
      {"2003-10-31", 1, "2003-11-30"},
      {"2003-04-30", 1, "2003-05-30"},
      {"2004-02-29", 1, "2004-03-29"},
      {"2004-02-29", 12, "2005-02-28"},
      {"2004-02-29", 48, "2008-02-29"},
      {"2003-12-31", 1, "2004-01-31"},
      {"2003-12-31", 2, "2004-02-29"},
      {"2003-11-30", 15, "2005-02-28"},
      {"2003-01-31", -1, "2002-12-31"},
      {"2003-03-31", -1, "2003-02-28"},
      {"2004-03-31", -1, "2004-02-29"},
      {"2003-01-15", -12, "2002-01-15"},
      {"2003-01-15", -13, "2001-12-15"},
      {"2003-12-15", -11, "2003-01-15"},
      {"2003-12-15", -12, "2002-12-15"},
      {"2004-01-31 10:11:12", 1, "2004-02-29 10:11:12"},
      {"1899-12-29 18:00:00", -10, "1899-02-28 18:00:00"},
      {"1899-11-30 06:00:00", 1, "1899-12-30 06:00:00"},
      {"0001-01-31", 1, "1-02-28"},
      {"0001-01-31", -1, kNoSuchYear},
      {"9999-11-30", 1, "9999-12-30"},
      {"9999-12-31", 1, kNoSuchYear},
      {"9999-12-31", -119987, "1-01-31"},
      {"9999-12-31", -119988, kNoSuchYear},
      {"2004-03-15", kHighest, kNoSuchYear},
      {"2004-03-15", kLowest, kNoSuchYear},
  };
  ExpectSteps(AddMonths, steps);
}

TEST(AddYears, ClampsTheLeapDay) {
  const Step steps[] = {
      {"2004-02-29", 0, "2004-02-29"},
      {"2004-02-29", 1, "2005-02-28"},
      {"2004-02-29", 4, "2008-02-29"},
      {"2004-02-29", -1, "2003-02-28"},
      {"2004-02-29", -4, "2000-02-29"},
      {"2000-02-29", 100, "2100-02-28"},
      {"2000-02-29", -100, "1900-02-28"},
      {"2000-02-29", 400, "2400-02-29"},
      {"1896-02-29", 4, "1900-02-28"},
      {"2003-02-28", 1, "2004-02-28"},
      {"2003-01-31", 1, "2004-01-31"},
      {"2003-12-31", -103, "1900-12-31"},
      {"2004-06-30 23:59:59", 1, "2005-06-30 23:59:59"},
      {"1899-12-30", 1, "1900-12-30"},
      {"1899-12-30 06:00:00", -1, "1898-12-30 06:00:00"},
      {"0001-12-31", 9998, "9999-12-31"},
      {"0001-12-31", 9999, kNoSuchYear},
      {"0001-12-31", -1, kNoSuchYear},
      {"9999-01-01", -9998, "1-01-01"},
      {"9999-01-01", 1, kNoSuchYear},
      {"2004-03-15", kHighest, kNoSuchYear},
      {"2004-03-15", kLowest, kNoSuchYear},
  };
  ExpectSteps(AddYears, steps);
}

TEST(CheckedMultiply, RaisesOverflowBeyond32Bits) {
  const struct {
    std::int32_t left;
    std::int32_t right;
    const char* product;
  } cases[] = {
      {0, kHighest, "0"},
      {7, 0, "0"},
      {7, 52, "364"},
      {7, -1, "-7"},
      {7, 306'783'378, "2147483646"},
      {7, 306'783'379, kOverflow},  // 2,147,483,653
      {7, -306'783'378, "-2147483646"},
      {7, -306'783'379, kOverflow},  // -2,147,483,653
      {3, 715'827'882, "2147483646"},
      {3, 715'827'883, kOverflow},  // 2,147,483,649
      {3, -715'827'882, "-2147483646"},
      {3, -715'827'883, kOverflow},  // -2,147,483,649
      {1, kHighest, "2147483647"},
      {1, kLowest, "-2147483648"},
      {-1, kHighest, "-2147483647"},
      {-1, kLowest, kOverflow},
      {2, -1'073'741'824, "-2147483648"},
      {2, 1'073'741'824, kOverflow},
      {kHighest, kHighest, kOverflow},
      {kLowest, kLowest, kOverflow},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(std::to_string(row.left) + " * " + std::to_string(row.right));
    EXPECT_EQ(OutcomeOf([&] { return std::to_string(CheckedMultiply(row.left, row.right)); }), row.product);
  }
}

}  // namespace
}  // namespace zenqay
