#include "base/date_time.h"

#include <gtest/gtest.h>

#include <limits>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

DateTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return DateTime::FromParts({year, month, day, hour, minute, second});
}

TEST(DateTimeFromParts, CountsSecondsFromTheZeroDate) {
  EXPECT_EQ(DateTime().seconds(), 0);
  EXPECT_EQ(At(1899, 12, 30).seconds(), 0);
  EXPECT_EQ(At(1899, 12, 31).seconds(), 86'400);
  EXPECT_EQ(At(1899, 12, 29).seconds(), -86'400);
  EXPECT_EQ(At(1899, 12, 30, 10, 11, 12).seconds(), 36'672);
  EXPECT_EQ(At(1900, 1, 1).seconds(), 2 * 86'400);
  EXPECT_EQ(At(1970, 1, 1).seconds(), 25'569LL * 86'400);
  EXPECT_EQ(At(2004, 1, 31).seconds(), 38'017LL * 86'400);
}

TEST(DateTimeFromParts, CarriesPartsOutOfTheirRangeOver) {
  const struct {
    DateTimeParts parts;
    const char* text;
  } cases[] = {
      {{2004, 1, 32}, "2004-02-01 00:00:00"},
      {{2004, 2, 30}, "2004-03-01 00:00:00"},
      {{2003, 2, 29}, "2003-03-01 00:00:00"},
      {{2004, 1, 0}, "2003-12-31 00:00:00"},
      {{2004, 1, -1}, "2003-12-30 00:00:00"},
      {{2004, 13, 1}, "2005-01-01 00:00:00"},
      {{2004, 25, 1}, "2006-01-01 00:00:00"},
      {{2004, 0, 1}, "2003-12-01 00:00:00"},
      {{2004, -11, 1}, "2003-01-01 00:00:00"},
      {{2004, -12, 1}, "2002-12-01 00:00:00"},
      {{2004, 1, 1, 24}, "2004-01-02 00:00:00"},
      {{2004, 1, 1, -1}, "2003-12-31 23:00:00"},
      {{2004, 1, 1, 0, -5}, "2003-12-31 23:55:00"},
      {{2004, 1, 1, 3, 14 + 330, 7}, "2004-01-01 08:44:07"},
      {{2004, 1, 1, 0, 0, 86'400}, "2004-01-02 00:00:00"},
      {{2004, 12, 31, 23, 59, 60}, "2005-01-01 00:00:00"},
  };
  for (const auto& [parts, text] : cases) EXPECT_EQ(IsoText(DateTime::FromParts(parts)), text);
}

TEST(DateTimeFromParts, RefusesAYearOutside1To9999) {
  const Text refusal = "5 ZenqayDBSync: Invalid procedure call or argument: year outside 1 to 9999";
  EXPECT_EQ(Raised([] { At(0, 12, 31); }), refusal);
  EXPECT_EQ(Raised([] { At(1, 0, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(10000, 1, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(9999, 13, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(9999, 2'147'483'647, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(2'147'483'647, 12, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(-2'147'483'647, -12, 1); }), refusal);
  EXPECT_EQ(IsoText(At(1, 1, 1)), "1-01-01 00:00:00");
  EXPECT_EQ(IsoText(At(9999, 12, 31, 23, 59, 59)), "9999-12-31 23:59:59");
}

TEST(DateTimeFromParts, RefusesTheFarthestYearsToo) {
  const Text refusal = "5 ZenqayDBSync: Invalid procedure call or argument: year outside 1 to 9999";
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  EXPECT_EQ(Raised([] { At(kMost, 1, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(kLeast, 12, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(2004, kMost, 1); }), refusal);
  EXPECT_EQ(Raised([] { At(2004, kLeast, 1); }), refusal);
  // 2,147,507,640 months and as many taken off again, but for 1999 years and 4 months
  EXPECT_EQ(IsoText(DateTime::FromParts({178'958'970, -2'147'483'647, 1})), "1999-05-01 00:00:00");
}

TEST(CalendarArithmetic, RefusesWhatLeadsOutsideTheYears1To9999HoweverFar) {
  const Text refusal = "5 ZenqayDBSync: Invalid procedure call or argument: year outside 1 to 9999";
  const DateTime value = At(2004, 1, 31);
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
  for (const std::int64_t number : {kMost, kLeast, kMost / 12 + 1, std::int64_t{120'000}, std::int64_t{-120'000}}) {
    EXPECT_EQ(Raised([&] { AddMonths(value, number); }), refusal) << number;
    EXPECT_EQ(Raised([&] { AddYears(value, number); }), refusal) << number;
  }
  for (const std::int64_t number : {kMost, kLeast, std::int64_t{3'660'000}, std::int64_t{-3'660'000}}) {
    EXPECT_EQ(Raised([&] { AddDays(value, number); }), "6 ZenqayDBSync: Overflow") << number;
  }
  EXPECT_EQ(IsoText(AddMonths(At(1, 1, 1), 9'998 * 12 + 11)), "9999-12-01 00:00:00");
  EXPECT_EQ(IsoText(AddYears(At(9999, 12, 31, 10, 11, 12), -9'998)), "1-12-31 10:11:12");
  EXPECT_EQ(IsoText(AddDays(At(1, 1, 1), 3'652'058)), "9999-12-31 00:00:00");
}

TEST(DateTimeParts, AreThoseThatItWasMadeFrom) {
  for (const DateTime value : {At(1, 1, 1), At(1600, 2, 29, 23, 59, 59), At(1899, 12, 29, 6, 0, 1), At(1899, 12, 30),
                               At(1900, 2, 28), At(2000, 2, 29, 12, 0, 0), At(2004, 1, 31, 10, 11, 12),
                               At(2038, 1, 19, 3, 14, 7), At(9999, 12, 31, 23, 59, 59)}) {
    EXPECT_EQ(DateTime::FromParts(value.Parts()), value);
  }
}

TEST(DateTimeParts, AreApartAsDayAndTimeOfDay) {
  const DateTime before = At(1899, 12, 29, 18, 30, 15);

  EXPECT_EQ(before.DateOnly(), At(1899, 12, 29));
  EXPECT_EQ(before.TimeOnly(), At(1899, 12, 30, 18, 30, 15));
  EXPECT_EQ(At(2004, 1, 31, 10, 11, 12).DateOnly(), At(2004, 1, 31));
  EXPECT_EQ(At(2004, 1, 31, 10, 11, 12).TimeOnly(), At(1899, 12, 30, 10, 11, 12));
  EXPECT_EQ(At(2004, 1, 31).TimeOnly(), DateTime());
}

TEST(DateTimeOrder, IsTheOrderOfTime) {
  EXPECT_LT(At(2004, 1, 31), At(2004, 1, 31, 0, 0, 1));
  EXPECT_LT(At(1899, 12, 29, 23, 59, 59), DateTime());
}

/// Every text form of one value.
struct Forms {
  DateTime value;
  const char* shortDate;
  const char* longTime;
  const char* defaultText;
  const char* isoText;
  const char* compactDate;
};

TEST(DateTimeText, HasOneFormForEachUse) {
  const Forms cases[] = {
      {At(2004, 1, 31, 10, 11, 12), "1/31/2004", "10:11:12 AM", "1/31/2004 10:11:12 AM", "2004-01-31 10:11:12",
       "20040131"},
      {At(2004, 1, 31), "1/31/2004", "12:00:00 AM", "1/31/2004", "2004-01-31 00:00:00", "20040131"},
      {At(2004, 12, 1, 0, 0, 1), "12/1/2004", "12:00:01 AM", "12/1/2004 12:00:01 AM", "2004-12-01 00:00:01",
       "20041201"},
      {At(2004, 12, 1, 0, 59, 59), "12/1/2004", "12:59:59 AM", "12/1/2004 12:59:59 AM", "2004-12-01 00:59:59",
       "20041201"},
      {At(2004, 2, 29, 1, 0, 0), "2/29/2004", "1:00:00 AM", "2/29/2004 1:00:00 AM", "2004-02-29 01:00:00", "20040229"},
      {At(2004, 2, 29, 9, 5, 3), "2/29/2004", "9:05:03 AM", "2/29/2004 9:05:03 AM", "2004-02-29 09:05:03", "20040229"},
      {At(2004, 2, 29, 11, 59, 59), "2/29/2004", "11:59:59 AM", "2/29/2004 11:59:59 AM", "2004-02-29 11:59:59",
       "20040229"},
      {At(2004, 2, 29, 12, 0, 0), "2/29/2004", "12:00:00 PM", "2/29/2004 12:00:00 PM", "2004-02-29 12:00:00",
       "20040229"},
      {At(2004, 2, 29, 12, 59, 59), "2/29/2004", "12:59:59 PM", "2/29/2004 12:59:59 PM", "2004-02-29 12:59:59",
       "20040229"},
      {At(2004, 2, 29, 13, 0, 0), "2/29/2004", "1:00:00 PM", "2/29/2004 1:00:00 PM", "2004-02-29 13:00:00", "20040229"},
      {At(2004, 2, 29, 23, 59, 59), "2/29/2004", "11:59:59 PM", "2/29/2004 11:59:59 PM", "2004-02-29 23:59:59",
       "20040229"},
      {At(1899, 12, 30, 10, 11, 12), "12/30/1899", "10:11:12 AM", "10:11:12 AM", "1899-12-30 10:11:12", "18991230"},
      {At(1899, 12, 30), "12/30/1899", "12:00:00 AM", "12:00:00 AM", "1899-12-30 00:00:00", "18991230"},
      {At(1899, 12, 29), "12/29/1899", "12:00:00 AM", "12/29/1899", "1899-12-29 00:00:00", "18991229"},
      {At(1899, 12, 29, 18, 0, 0), "12/29/1899", "6:00:00 PM", "12/29/1899 6:00:00 PM", "1899-12-29 18:00:00",
       "18991229"},
      {At(987, 6, 5), "6/5/987", "12:00:00 AM", "6/5/987", "987-06-05 00:00:00", "09870605"},
      {At(9999, 12, 31), "12/31/9999", "12:00:00 AM", "12/31/9999", "9999-12-31 00:00:00", "99991231"},
  };
  for (const Forms& forms : cases) {
    EXPECT_EQ(ShortDate(forms.value), forms.shortDate);
    EXPECT_EQ(LongTime(forms.value), forms.longTime);
    EXPECT_EQ(DefaultText(forms.value), forms.defaultText);
    EXPECT_EQ(IsoText(forms.value), forms.isoText);
    EXPECT_EQ(CompactDate(forms.value), forms.compactDate);
  }
}

TEST(ReadIsoText, ReadsADateAndADateWithATime) {
  const std::pair<const char*, const char*> cases[] = {
      {"2004-01-31", "2004-01-31 00:00:00"},
      {"2004-01-31 10:11:12", "2004-01-31 10:11:12"},
      {"2004-01-31T10:11:12", "2004-01-31 10:11:12"},
      {"2004-01-31 23:59:59", "2004-01-31 23:59:59"},
      {"2004-01-31 10:11:12.9", "2004-01-31 10:11:12"},
      {"2004-01-31 10:11:12.000", "2004-01-31 10:11:12"},
      {"2004-01-31T10:11:12.123456789", "2004-01-31 10:11:12"},
      {"2004-02-29", "2004-02-29 00:00:00"},
      {"987-06-05", "987-06-05 00:00:00"},
      {"1-01-01", "1-01-01 00:00:00"},
      {"0001-01-01", "1-01-01 00:00:00"},
      {"9999-12-31", "9999-12-31 00:00:00"},
  };
  for (const auto& [text, read] : cases) {
    DateTime value;
    EXPECT_TRUE(ReadIsoText(text, value)) << text;
    EXPECT_EQ(IsoText(value), read);
  }
}

TEST(ReadIsoText, RefusesEveryOtherFormAndLeavesTheValueAlone) {
  for (const char* text : {"",
                           " ",
                           "2004",
                           "2004-01",
                           "2004-1-31",
                           "2004-01-1",
                           "20040131",
                           "2004/01/31",
                           "1/31/2004",
                           "12004-01-31",
                           "0-01-01",
                           "0000-01-01",
                           "-2004-01-31",
                           "2004-00-31",
                           "2004-13-01",
                           "2004-01-00",
                           "2004-01-32",
                           "2004-02-30",
                           "2003-02-29",
                           "1900-02-29",
                           "2004-01-31 ",
                           " 2004-01-31",
                           "2004-01-31T",
                           "2004-01-31 10",
                           "2004-01-31 10:11",
                           "2004-01-31 1:11:12",
                           "2004-01-31 24:00:00",
                           "2004-01-31 10:60:00",
                           "2004-01-31 10:11:60",
                           "2004-01-31x10:11:12",
                           "2004-01-31  10:11:12",
                           "2004-01-31 10:11:12 ",
                           "2004-01-31 10:11:12.",
                           "2004-01-31 10:11:12.x",
                           "2004-01-31 10:11:12.1234567890",
                           "2004-01-31T10:11:12Z",
                           "2004-01-31 10:11:12 AM"}) {
    DateTime value = At(1999, 9, 9);

    EXPECT_FALSE(ReadIsoText(text, value)) << "\"" << text << "\"";
    EXPECT_EQ(value, At(1999, 9, 9));
  }
}

}  // namespace
}  // namespace zenqay
