// The warranty expiry of objects: the pass over the joined rows, the period arithmetic, and when the job runs the pass.
#include <gtest/gtest.h>

#include <limits>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kJoin = "SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY";

constexpr std::int32_t kDays = 5;
constexpr std::int32_t kWeeks = 10;
constexpr std::int32_t kMonths = 15;
constexpr std::int32_t kQuarters = 20;
constexpr std::int32_t kYears = 25;

constexpr const char* kOverflow = "6 ZenqayDBSync: Overflow";
constexpr const char* kNoSuchYear = "5 ZenqayDBSync: Invalid procedure call or argument: year outside 1 to 9999";
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

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

/// A row of the join: object O1 at site S1, number 7, delivered 15 March 2004 and not installed, with a warranty of one
/// year from delivery. `changes` replaces fields of it.
TableRow Joined(const TableRow& changes = {}) {
  TableRow row = {{"warranty_type", 5},
                  {"number_of_periods", 1},
                  {"period_unit", kYears},
                  {"installation_date", Null()},
                  {"delivery_date", Read("2004-03-15")},
                  {"site", "S1"},
                  {"object", "O1"},
                  {"objectnr", 7}};
  for (const auto& [field, value] : changes) row[field] = value;
  return row;
}

TEST(ComputeWarrantyExpiry, EndsThePeriodOnTheDayBeforeItIsOver) {
  // Worked out by a Python program: datetime.timedelta for days and weeks, and for months, quarters and years a clamp
  // of its own over a list of the months' lengths, the months before the years.
  const struct {
    const char* baseDate;
    std::int32_t numberOfPeriods;
    std::int32_t periodUnit;
    const char* expiry;
  } cases[] = {
      {"2004-03-15", 0, kDays, "2004-03-14"},
      {"2004-03-15", 1, kDays, "2004-03-15"},
      {"2004-03-15", 365, kDays, "2005-03-14"},
      {"2003-03-01", 1, kDays, "2003-03-01"},
      {"2004-03-01", 0, kDays, "2004-02-29"},
      {"2003-03-01", 0, kDays, "2003-02-28"},
      {"1900-03-01", 0, kDays, "1900-02-28"},
      {"2000-03-01", 0, kDays, "2000-02-29"},
      {"2004-12-31", 2, kDays, "2005-01-01"},
      {"2005-01-01", 0, kDays, "2004-12-31"},
      {"2004-02-28", 2, kDays, "2004-02-29"},
      {"2003-02-28", 2, kDays, "2003-03-01"},
      {"2004-03-15", -1, kDays, "2004-03-13"},
      {"2004-01-01", -366, kDays, "2002-12-30"},
      {"2004-01-31 10:11:12", 30, kDays, "2004-02-29 10:11:12"},
      {"1899-12-31", 0, kDays, "1899-12-30"},
      {"1899-12-31", 1, kDays, "1899-12-31"},
      {"1899-12-31", -1, kDays, "1899-12-29"},
      {"1900-01-01", -40, kDays, "1899-11-21"},
      {"9999-12-31", 0, kDays, "9999-12-30"},
      {"9999-12-31", 1, kDays, kOverflow},
      {"9999-12-30", 1, kDays, "9999-12-30"},
      {"0001-01-02", 0, kDays, "1-01-01"},
      {"2004-03-15", kHighest, kDays, kOverflow},
      {"2004-03-15", kLowest, kDays, kOverflow},
      {"2004-03-15", 0, kWeeks, "2004-03-14"},
      {"2004-03-15", 1, kWeeks, "2004-03-21"},
      {"2004-02-23", 1, kWeeks, "2004-02-29"},
      {"2003-02-23", 1, kWeeks, "2003-03-01"},
      {"2003-12-28", 1, kWeeks, "2004-01-03"},
      {"2004-03-15", 52, kWeeks, "2005-03-13"},
      {"2004-03-15", -1, kWeeks, "2004-03-07"},
      {"2004-02-23 23:59:59", 4, kWeeks, "2004-03-21 23:59:59"},
      {"2004-03-15", 417000, kWeeks, "9996-02-25"},
      {"2004-03-15", 417309, kWeeks, kOverflow},
      {"2004-03-15", 306783378, kWeeks, kOverflow},
      {"2004-03-15", 306783379, kWeeks, kOverflow},
      {"2004-03-15", -306783378, kWeeks, kOverflow},
      {"2004-03-15", -306783379, kWeeks, kOverflow},
      {"2004-03-15", kHighest, kWeeks, kOverflow},
      {"2004-01-31", 1, kMonths, "2004-02-28"},
      {"2003-01-31", 1, kMonths, "2003-02-27"},
      {"1900-01-31", 1, kMonths, "1900-02-27"},
      {"2000-01-31", 1, kMonths, "2000-02-28"},
      {"2003-01-31", 14, kMonths, "2004-03-30"},
      {"2004-01-31", 14, kMonths, "2005-03-30"},
      {"2003-01-31", 13, kMonths, "2004-02-27"},
      {"2003-03-31", 1, kMonths, "2003-04-29"},
      {"2003-05-31", 1, kMonths, "2003-06-29"},
      {"2003-08-31", 1, kMonths, "2003-09-29"},
      {"2003-10-31", 1, kMonths, "2003-11-29"},
      {"2003-10-31", 4, kMonths, "2004-02-28"},
      {"2003-12-31", 2, kMonths, "2004-02-28"},
      {"2003-03-31", 11, kMonths, "2004-02-28"},
      {"2003-03-31", 12, kMonths, "2004-03-30"},
      {"2004-02-29", 12, kMonths, "2005-02-27"},
      {"2004-02-29", 48, kMonths, "2008-02-28"},
      {"2004-02-29", 11, kMonths, "2005-01-28"},
      {"2004-02-29", 24, kMonths, "2006-02-27"},
      {"2003-02-28", 12, kMonths, "2004-02-27"},
      {"2003-01-29", 1, kMonths, "2003-02-27"},
      {"2003-01-30", 1, kMonths, "2003-02-27"},
      {"2004-01-30", 1, kMonths, "2004-02-28"},
      {"2003-03-15", 0, kMonths, "2003-03-14"},
      {"2003-03-01", 0, kMonths, "2003-02-28"},
      {"2003-03-15", 6, kMonths, "2003-09-14"},
      {"2003-03-15", 36, kMonths, "2006-03-14"},
      {"2003-03-15", 120, kMonths, "2013-03-14"},
      {"2003-03-31", -1, kMonths, "2003-02-27"},
      {"2004-03-31", -1, kMonths, "2004-02-28"},
      {"2003-01-31", -2, kMonths, "2002-11-29"},
      {"2003-01-15", -12, kMonths, "2002-01-14"},
      {"2003-01-31", -14, kMonths, "2001-11-29"},
      {"2004-02-29", -12, kMonths, "2003-02-27"},
      {"2005-04-30", -14, kMonths, "2004-02-28"},  // months alone, no year and two months
      {"2003-12-15", 1, kMonths, "2004-01-14"},
      {"2003-11-30", 3, kMonths, "2004-02-28"},
      {"2003-08-31", 18, kMonths, "2005-02-27"},
      {"2003-07-31", 7, kMonths, "2004-02-28"},
      {"2004-01-31 10:11:12", 1, kMonths, "2004-02-28 10:11:12"},
      {"2003-12-31 23:59:59", 2, kMonths, "2004-02-28 23:59:59"},
      {"2004-03-15", 95940, kMonths, "9999-03-14"},
      {"2004-03-15", 95955, kMonths, kNoSuchYear},
      {"2004-03-15", -24035, kMonths, "1-04-14"},
      {"2004-03-15", -24026, kMonths, "2-01-14"},
      {"0001-01-01", 0, kMonths, kOverflow},
      {"2004-03-15", kHighest, kMonths, kNoSuchYear},
      {"2004-03-15", kLowest, kMonths, kNoSuchYear},
      {"2003-01-31", 0, kQuarters, "2003-01-30"},
      {"2003-01-31", 1, kQuarters, "2003-04-29"},
      {"2005-05-31", -5, kQuarters, "2004-02-28"},
      {"2002-11-30", 1, kQuarters, "2003-02-27"},
      {"2003-11-30", 1, kQuarters, "2004-02-28"},
      {"2003-08-31", 2, kQuarters, "2004-02-28"},
      {"2003-05-31", 1, kQuarters, "2003-08-30"},
      {"2003-01-31", 3, kQuarters, "2003-10-30"},
      {"2003-01-31", 4, kQuarters, "2004-01-30"},
      {"2003-01-31", 5, kQuarters, "2004-04-29"},
      {"2002-11-30", 5, kQuarters, "2004-02-27"},
      {"2004-02-29", 4, kQuarters, "2005-02-27"},
      {"2004-02-29", 16, kQuarters, "2008-02-28"},
      {"2004-05-31", -1, kQuarters, "2004-02-28"},
      {"2003-05-31", -1, kQuarters, "2003-02-27"},
      {"2003-01-15", -4, kQuarters, "2002-01-14"},
      {"2003-01-15", -5, kQuarters, "2001-10-14"},
      {"2003-03-15", 7, kQuarters, "2004-12-14"},
      {"2003-03-15 06:30:00", 8, kQuarters, "2005-03-14 06:30:00"},
      {"2004-03-15", 31985, kQuarters, kNoSuchYear},
      {"2004-03-15", 715827882, kQuarters, kNoSuchYear},
      {"2004-03-15", 715827883, kQuarters, kOverflow},
      {"2004-03-15", -715827882, kQuarters, kNoSuchYear},
      {"2004-03-15", -715827883, kQuarters, kOverflow},
      {"2004-03-15", 0, kYears, "2004-03-14"},
      {"2004-03-15", 1, kYears, "2005-03-14"},
      {"2004-02-29", 1, kYears, "2005-02-27"},
      {"2004-02-29", 4, kYears, "2008-02-28"},
      {"2004-02-29", 3, kYears, "2007-02-27"},
      {"2000-02-29", 100, kYears, "2100-02-27"},
      {"2000-02-29", 400, kYears, "2400-02-28"},
      {"1896-02-29", 8, kYears, "1904-02-28"},
      {"2003-02-28", 1, kYears, "2004-02-27"},
      {"2004-03-01", 1, kYears, "2005-02-28"},
      {"2003-03-01", 1, kYears, "2004-02-29"},
      {"2004-03-01", -4, kYears, "2000-02-29"},
      {"2004-02-29", -1, kYears, "2003-02-27"},
      {"2004-02-29", -4, kYears, "2000-02-28"},
      {"2004-12-31", 1, kYears, "2005-12-30"},
      {"2004-01-01", 1, kYears, "2004-12-31"},
      {"2004-06-30 12:00:00", 2, kYears, "2006-06-29 12:00:00"},
      {"2004-03-15", 7995, kYears, "9999-03-14"},
      {"2004-03-15", 7996, kYears, kNoSuchYear},
      {"2004-03-15", -2003, kYears, "1-03-14"},
      {"2004-03-15", -2004, kYears, kNoSuchYear},
      {"2004-03-15", kHighest, kYears, kNoSuchYear},
      {"2004-03-15", kLowest, kYears, kNoSuchYear},
      {"2004-03-15", 12, 0, "1899-12-29"},
      {"2004-03-15", 12, 1, "1899-12-29"},
      {"2004-03-15", 12, 4, "1899-12-29"},
      {"2004-03-15", 12, 6, "1899-12-29"},
      {"2004-03-15", 12, 14, "1899-12-29"},
      {"2004-03-15", 12, 26, "1899-12-29"},
      {"2004-03-15", 12, -5, "1899-12-29"},
      {"2004-03-15", 12, kHighest, "1899-12-29"},
      {"2004-03-15 10:11:12", 0, 0, "1899-12-29"},
  };
  CopyFixture copy("3");
  for (const auto& row : cases) {
    SCOPED_TRACE(Text(row.baseDate) + ", " + std::to_string(row.numberOfPeriods) + " of unit " +
                 std::to_string(row.periodUnit));
    EXPECT_EQ(OutcomeOf([&] {
                return Written(copy.WarrantyExpiry(Read(row.baseDate), row.numberOfPeriods, row.periodUnit));
              }),
              row.expiry);
  }
}

TEST(ComputeWarrantyExpiry, StartsEveryCountAnew) {
  CopyFixture copy("3");
  copy.WarrantyExpiry(Read("2003-01-31"), 14, kMonths);

  const DateTime expiry = copy.WarrantyExpiry(Read("2003-01-31"), 14, kMonths);

  EXPECT_EQ(Written(expiry), "2004-03-30");
}

TEST(ClampWarrantyDay, GoesByTheCountsOfMonthsAndYears) {
  const struct {
    std::int32_t months;
    std::int32_t years;
    std::int32_t day;
    std::int32_t clamped;
  } cases[] = {
      // Half of the months is 0: below 8 months there are 30 days.
      {0, 0, 31, 30},
      {1, 0, 31, 30},
      {-1, 0, 31, 30},
      {0, 0, 30, 30},
      {1, 4, 29, 29},
      // Half of the months is not 0: above 8 months there are 30 days.
      {3, 0, 31, 31},
      {4, 0, 31, 31},
      {5, 0, 31, 31},
      {6, 0, 31, 31},
      {7, 0, 31, 31},
      {8, 0, 31, 31},
      {9, 0, 31, 30},
      {10, 0, 31, 30},
      {11, 0, 31, 30},
      {12, 0, 31, 30},
      {11, 7, 30, 30},
      {9, 0, 1, 1},
      {-2, 0, 31, 31},
      {-9, 0, 31, 31},
      {kLowest, 0, 31, 31},
      {kHighest, 0, 31, 30},
      // Two months: 29 days while a quarter of the years is 0, else 28.
      {2, 0, 31, 29},
      {2, 0, 30, 29},
      {2, 0, 29, 29},
      {2, 0, 28, 28},
      {2, 0, 27, 27},
      {2, 1, 31, 29},
      {2, 3, 31, 29},
      {2, -3, 31, 29},
      {2, 4, 31, 28},
      {2, 4, 29, 28},
      {2, 4, 28, 28},
      {2, 4, 1, 1},
      {2, 5, 30, 28},
      {2, 8, 31, 28},
      {2, -4, 31, 28},
      {2, 100, 31, 28},
  };
  CopyFixture copy("3");
  for (const auto& [months, years, day, clamped] : cases) {
    SCOPED_TRACE(std::to_string(months) + " months, " + std::to_string(years) + " years, day " + std::to_string(day));
    EXPECT_EQ(copy.ClampedDay(months, years, day), clamped);
  }
}

TEST(ClampWarrantyDay, IsCalledForMonthsAndQuartersAlone) {
  const struct {
    std::int32_t numberOfPeriods;
    std::int32_t periodUnit;
    std::int32_t day;  // of a base date on a 31st
  } cases[] = {
      {9, kDays, 31},     {9, kWeeks, 31},    {9, kYears, 31},    {9, 0, 31},          {9, kMonths, 30},
      {3, kMonths, 31},   {2, kMonths, 29},   {50, kMonths, 28},  {-1, kMonths, 30},   {-12, kMonths, 31},
      {3, kQuarters, 30}, {1, kQuarters, 31}, {4, kQuarters, 30}, {-4, kQuarters, 31},
  };
  CopyFixture copy("3");
  for (const auto& [numberOfPeriods, periodUnit, day] : cases) {
    SCOPED_TRACE(std::to_string(numberOfPeriods) + " of unit " + std::to_string(periodUnit));
    copy.WarrantyExpiry(Read("2003-05-31"), numberOfPeriods, periodUnit);

    EXPECT_EQ(copy.WarrantyDay(), day);
  }
}

TEST(ClampWarrantyDay, ComesBeforeTheDateOfMonthsAndBehindThatOfQuarters) {
  CopyFixture copy("3");

  EXPECT_EQ(Raised([&] { copy.WarrantyExpiry(Read("9999-12-31"), 9, kMonths); }), kNoSuchYear);
  EXPECT_EQ(copy.WarrantyDay(), 30);
  EXPECT_EQ(Raised([&] { copy.WarrantyExpiry(Read("9999-12-31"), 3, kQuarters); }), kNoSuchYear);
  EXPECT_EQ(copy.WarrantyDay(), 31);
}

TEST(CalculateWarrantyExpiry, RunsNoStatementOnAnEmptyJoin) {
  CopyFixture copy("3");
  copy.database.showQueryOptions = true;
  copy.database.showSettings = true;

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.journal.Take(),
            "put ActiveConnection 1\n"
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY [keyset "
            "optimistic text]\n"
            "close recordset\n");
}

TEST(CalculateWarrantyExpiry, StoresTheExpiryOfEveryJoinedRow) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined(),
                               Joined({{"warranty_type", 10},
                                       {"installation_date", Read("2004-01-31")},
                                       {"period_unit", kMonths},
                                       {"object", "O2"},
                                       {"objectnr", 8}}),
                               Joined({{"number_of_periods", 30},
                                       {"period_unit", kDays},
                                       {"delivery_date", Read("2004-01-31 10:11:12")},
                                       {"site", "S2"},
                                       {"object", "O3"},
                                       {"objectnr", "9"}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'2/28/2004',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O2' And OBJECT.OBJECTNR = 8 -> 1\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'2/29/2004 10:11:12 AM',101) Where OBJECT.SITE = "
            "N'S2' And OBJECT.OBJECT = N'O3' And OBJECT.OBJECTNR = 9 -> 1\n"
            "close recordset\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(CalculateWarrantyExpiry, WritesTheDateByMonthDayAndYearWithItsTime) {
  const struct {
    const char* deliveryDate;
    const char* text;
  } cases[] = {
      {"2004-03-15", "3/15/2004"},
      {"2004-12-01", "12/1/2004"},
      {"2004-12-31", "12/31/2004"},
      {"2004-02-29 00:00:01", "2/29/2004 12:00:01 AM"},
      {"2004-02-29 13:05:09", "2/29/2004 1:05:09 PM"},
      {"1900-01-01", "1/1/1900"},
  };
  for (const auto& [deliveryDate, text] : cases) {
    CopyFixture copy("3");
    copy.database.Answer(kJoin, {Joined({{"period_unit", kDays}, {"delivery_date", Read(deliveryDate)}})});

    copy.CalculateWarrantyExpiry();

    EXPECT_EQ(copy.JournalWithout({"query", "close"}),
              Text("sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'") + text +
                  "',101) Where OBJECT.SITE = N'S1' And OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
  }
}

TEST(CalculateWarrantyExpiry, GivesTheDayBeforeTheBaseDateForZeroDays) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"period_unit", kDays}, {"number_of_periods", 0}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2004',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, WritesTheDayBeforeTheZeroDateForAnUnknownUnit) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"period_unit", 2}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'12/29/1899',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, WritesTheZeroDateAsADateWhereAPeriodEndsOnIt) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"period_unit", kDays},
                                       {"number_of_periods", 0},
                                       {"installation_date", Read("1899-12-31")},
                                       {"delivery_date", Read("1899-12-31")}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'12/30/1899',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, CountsFromTheInstallationUnderType10Alone) {
  const struct {
    Value type;
    const char* expiry;
  } cases[] = {
      {10, "12/24/2004"},   {std::int16_t{10}, "12/24/2004"},
      {10.4, "12/24/2004"},  // read as a whole number
      {"10", "12/24/2004"}, {9, "3/14/2005"},
      {11, "3/14/2005"},    {0, "3/14/2005"},
      {-10, "3/14/2005"},   {5, "3/14/2005"},
  };
  for (const auto& [type, expiry] : cases) {
    SCOPED_TRACE(Shown(type));
    CopyFixture copy("3");
    copy.database.Answer(kJoin, {Joined({{"warranty_type", type}, {"installation_date", Read("2003-12-25")}})});

    copy.CalculateWarrantyExpiry();

    EXPECT_EQ(copy.JournalWithout({"query", "close"}),
              Text("sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'") + expiry +
                  "',101) Where OBJECT.SITE = N'S1' And OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
  }
}

TEST(CalculateWarrantyExpiry, LeavesAnObjectUntouchedThatWasNotInstalledAndGoesOn) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"warranty_type", 10}, {"delivery_date", Null()}}),  // no delivery is asked for
                               Joined({{"object", "O2"}}), Joined({{"warranty_type", 10}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O2' And OBJECT.OBJECTNR = 7 -> 1\n"
            "close recordset\n");
}

TEST(CalculateWarrantyExpiry, LeavesAnObjectUntouchedWhoseBaseDateIsNotAfterTheZeroDate) {
  const TableRow rows[] = {
      Joined({{"warranty_type", 10}, {"installation_date", DateTime()}}),
      Joined({{"warranty_type", 10}, {"installation_date", Read("1899-12-29")}}),
      Joined({{"warranty_type", 10}, {"installation_date", 0}}),
      Joined({{"warranty_type", 10}, {"installation_date", Value()}}),
      Joined({{"delivery_date", DateTime()}}),
      Joined({{"delivery_date", Read("1753-01-01")}}),
      Joined({{"delivery_date", 0.0}}),
  };
  for (const TableRow& row : rows) {
    CopyFixture copy("3");
    copy.database.Answer(kJoin, {row});

    copy.CalculateWarrantyExpiry();

    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
              "close recordset\n");
  }
}

TEST(CalculateWarrantyExpiry, TakesABaseDateOneSecondAfterTheZeroDate) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"delivery_date", DateTime(1)}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'12/29/1900 12:00:01 AM',101) Where OBJECT.SITE = "
            "N'S1' And OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, UpdatesAnObjectOnceForEachWarrantyThatItsCodeMatches) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"number_of_periods", 2}}), Joined({{"number_of_periods", 1}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2006',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, EncodesSiteAndObjectAndPutsTheNumberInAsItComes) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"site", "O'Hare"}, {"object", ""}, {"objectnr", 12.5}}),
                               Joined({{"site", Null()}, {"object", 4711}, {"objectnr", "00 7"}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'O''Hare' And "
            "OBJECT.OBJECT = N'' And OBJECT.OBJECTNR = 12.5 -> 1\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'' And "
            "OBJECT.OBJECT = N'4711' And OBJECT.OBJECTNR = 00 7 -> 1\n");
}

TEST(CalculateWarrantyExpiry, LeavesTheStatementAtItsEqualSignWithoutAnObjectNumber) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"objectnr", Null()}})});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query", "close"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR =  -> 1\n");
}

TEST(CalculateWarrantyExpiry, DoesNotLookAtTheRowsTouched) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined(), Joined(), Joined()});
  copy.database.AffectNext({0, 40'000, 2'147'483'647});

  copy.CalculateWarrantyExpiry();

  EXPECT_EQ(copy.JournalWithout({"query"}),
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 0\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 40000\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 2147483647\n"
            "close recordset\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(CalculateWarrantyExpiry, ReadsTypeThenNumberThenUnitThenDate) {
  TableRow row;
  for (const char* field :
       {"warranty_type", "number_of_periods", "period_unit", "delivery_date", "site", "object", "objectnr"}) {
    SCOPED_TRACE(field);
    CopyFixture copy("3");
    copy.database.Answer(kJoin, {row});

    const Text raised = Raised([&] { copy.CalculateWarrantyExpiry(); });

    EXPECT_EQ(LowerCased(raised),
              Text("3265 zenqaydbsync: item cannot be found in the collection corresponding to the requested name or "
                   "ordinal.: ") +
                  field);
    row[field] = Joined().at(field);
  }
}

TEST(CalculateWarrantyExpiry, EndsAtTheRowThatFailsWithTheRecordsetOpen) {
  const char* const kInvalidUseOfNull = "94 ZenqayDBSync: Invalid use of Null";
  const char* const kTypeMismatch = "13 ZenqayDBSync: Type mismatch";
  const struct {
    TableRow row;
    Text raised;
    Text field;
  } cases[] = {
      {Joined({{"warranty_type", Null()}}), kInvalidUseOfNull, "WARRANTY_TYPE"},
      {Joined({{"number_of_periods", Null()}}), kInvalidUseOfNull, "NUMBER_OF_PERIODS"},
      {Joined({{"period_unit", Null()}}), kInvalidUseOfNull, "PERIOD_UNIT"},
      {Joined({{"delivery_date", Null()}}), kInvalidUseOfNull, "DELIVERY_DATE"},
      {Joined({{"warranty_type", 9}, {"delivery_date", Null()}, {"installation_date", Read("2004-01-31")}}),
       kInvalidUseOfNull, "DELIVERY_DATE"},
      {Joined({{"warranty_type", "one"}}), kTypeMismatch, "WARRANTY_TYPE"},
      {Joined({{"delivery_date", "15 March 2004"}}), kTypeMismatch, "DELIVERY_DATE"},
      {Joined({{"number_of_periods", 3e9}}), kOverflow, "NUMBER_OF_PERIODS"},
      {Joined({{"number_of_periods", kHighest}, {"period_unit", kDays}}), kOverflow, "NUMBER_OF_PERIODS"},
      {Joined({{"number_of_periods", kHighest}, {"period_unit", kWeeks}}), kOverflow, "NUMBER_OF_PERIODS"},
      {Joined({{"number_of_periods", kHighest}, {"period_unit", kQuarters}}), kOverflow, "NUMBER_OF_PERIODS"},
      {Joined({{"number_of_periods", 8000}, {"period_unit", kYears}}), kNoSuchYear, "NUMBER_OF_PERIODS"},
  };
  for (const auto& [row, expected, field] : cases) {
    CopyFixture copy("3");
    copy.database.Answer(kJoin, {Joined({{"object", "O0"}}), row, Joined({{"object", "O2"}})});

    const Text raised = Raised([&] { copy.CalculateWarrantyExpiry(); });

    EXPECT_EQ(raised, expected + ": " + field + " of SITE=S1, OBJECT=O1, OBJECTNR=7");
    EXPECT_EQ(copy.journal.Take(),
              "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
              "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
              "OBJECT.OBJECT = N'O0' And OBJECT.OBJECTNR = 7 -> 1\n");
  }
}

TEST(CalculateWarrantyExpiry, EndsAtTheStatementThatTheServerRefuses) {
  CopyFixture copy("3");
  copy.database.Answer(kJoin, {Joined({{"objectnr", Null()}}), Joined()});
  copy.database.FailOn("OBJECTNR = ", RuntimeError(-2147217900, "SQL Server", "Incorrect syntax near '='."), {}, 1);

  const Text raised = Raised([&] { copy.CalculateWarrantyExpiry(); });

  EXPECT_EQ(raised, "-2147217900 SQL Server: Incorrect syntax near '='.");
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR =  -> 1\n");
}

TEST(CalculateWarrantyExpiry, FailsWithTheJoinThatTheServerRefuses) {
  CopyFixture copy("3");
  copy.database.FailOn("INNER JOIN", RuntimeError(-2147217865, "SQL Server", "Invalid object name 'OBJECT'."));

  const Text raised = Raised([&] { copy.CalculateWarrantyExpiry(); });

  EXPECT_EQ(raised, "-2147217865 SQL Server: Invalid object name 'OBJECT'.");
  EXPECT_EQ(copy.journal.Take(),
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n");
}

TEST(PostCopy, RunsTheExpiryOnSqlServerBehindChangesOfObjectsOrWarrantiesOfGeneration3) {
  const Text expiry =
      "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
      "close recordset\n";
  const struct {
    std::int16_t platform;
    const char* generation;
    const char* tableName;
    std::int32_t icount;
    std::int32_t ucount;
    std::int32_t dcount;
    Text journal;
  } cases[] = {
      {1, "3", "object", 1, 0, 0, "sql UPDATE STATISTICS object\n" + expiry},
      {1, "3", "Object", 0, 1, 0, "sql UPDATE STATISTICS Object\n" + expiry},
      {1, "3", "WARRANTIES", 0, 0, 1, "sql UPDATE STATISTICS WARRANTIES\n" + expiry},
      {1, "3", "Warranties", 7, 8, 9, "sql UPDATE STATISTICS Warranties\n" + expiry},
      // Nothing has changed.
      {1, "3", "Object", 0, 0, 0, ""},
      {1, "3", "Warranties", 0, 0, 0, ""},
      {1, "3", "Warranties", -1, -1, -1, ""},
      // Another platform.
      {2, "3", "Object", 1, 1, 1, ""},
      {2, "3", "Warranties", 1, 1, 1, ""},
      {0, "3", "Warranties", 1, 1, 1, ""},
      // Another generation.
      {1, "1", "Object", 1, 1, 1, "sql UPDATE STATISTICS Object\n"},
      {1, "8", "Object", 1, 1, 1, "sql UPDATE STATISTICS Object\n"},
      {1, "1", "Warranties", 1, 1, 1, "sql UPDATE STATISTICS Warranties\n"},
      {1, "8", "Warranties", 1, 1, 1, "sql UPDATE STATISTICS Warranties\n"},
      {1, " 3", "Warranties", 1, 1, 1, "sql UPDATE STATISTICS Warranties\n"},
      // Another table.
      {1, "3", "Objects", 1, 1, 1, "sql UPDATE STATISTICS Objects\n"},
      {1, "3", "Warranty", 1, 1, 1, "sql UPDATE STATISTICS Warranty\n"},
      {1, "3", "Contracts", 1, 1, 1, "sql UPDATE STATISTICS Contracts\n"},
  };
  for (const auto& [platform, generation, tableName, icount, ucount, dcount, journal] : cases) {
    SCOPED_TRACE(Text(tableName) + ", generation " + generation + ", platform " + std::to_string(platform) + ", " +
                 std::to_string(icount) + " " + std::to_string(ucount) + " " + std::to_string(dcount));
    CopyFixture copy(generation, platform);

    copy.SetCounters(icount, ucount, dcount);

    copy.RunPostCopy(tableName);

    EXPECT_EQ(copy.journal.Take(), journal);
  }
}

TEST(PostCopy, RunsTheExpiryAlsoWhenTheStatisticsFailed) {
  CopyFixture copy("3");
  copy.database.FailOn("STATISTICS", RuntimeError(-2147217900, "SQL Server", "No permission."));

  copy.SetCounters(1, 0, 0);

  copy.RunPostCopy("Object");

  EXPECT_EQ(copy.journal.Take(),
            "sql UPDATE STATISTICS Object\n"
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "close recordset\n");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"SQL Server\",\"No permission.\"\r\n");
}

TEST(PostCopy, EndsTheCopyAsFailedWhenTheExpiryFails) {
  CopyFixture copy("3");
  copy.AddManager("Kv50QTMtsctmWarranties.WarrantiesManager", "warranties", {copy.RowWith({{"Warranty", "W1"}})});
  copy.database.Answer(kJoin, {Joined(), Joined({{"object", "O2"}, {"delivery_date", Null()}})});

  const CopyResult result = copy.CopyTable(7, "Warranties", 1);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "warranties"}),
            "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Warranties' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(7))\n"
            "sql UPDATE Warranties SET upd_flag = 1 \n"
            "sql UPDATE Warranties SET WARRANTY = N'W1', upd_flag = 0 WHERE WARRANTY =N'W1' -> 1\n"
            "sql DELETE FROM Warranties WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'Warranties' -> 1\n"
            "sql UPDATE STATISTICS Warranties\n"
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Warranties' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Warranties -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"ZenqayDBSync\",\"Invalid use of Null: DELIVERY_DATE of SITE=S1, OBJECT=O2, OBJECTNR=7\"\r\n");
}

TEST(PostCopy, LogsWhatTheServerSaysOfAFailingExpiry) {
  CopyFixture copy("3");
  copy.AddManager("Kv50QTMtsctmWarranties.WarrantiesManager", "warranties",
                  {copy.RowWith({{"ActionType", "D"}, {"Warranty", "W1"}})});
  copy.database.Answer(kJoin, {Joined({{"objectnr", Null()}})});
  copy.database.FailOn("WEXPIRY_DATE", RuntimeError(-2147217900, "SQL Server", "Incorrect syntax near '='."),
                       {{170, "SQL Server", "Line 1: Incorrect syntax near '='."}});

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Warranties -  0\"\r\n"
            "\"Rows deleted: Warranties -  1\"\r\n"
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"SQL Server\",170,\"Line 1: Incorrect syntax near '='.\"\r\n"
            "\"SQL Server\",\"Incorrect syntax near '='.\"\r\n");
}

TEST(PostCopy, FollowsTheWholeCopyOfObjects) {
  CopyFixture copy("3");
  copy.AddManager("Kv50QTMtscfgObjects.ObjectsManager", "objects",
                  {copy.RowWith({{"Configuration", "S1"}, {"Object", "O1"}, {"ObjectNumber", 7}})});
  copy.database.Answer(kJoin, {Joined()});

  const CopyResult result = copy.CopyTable(6, "Object", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "objects"}),
            "query SELECT * FROM tstables WHERE tablename = N'Object'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Object' -> 1\n"
            "event DataCopyStarted(time(10:11:12 AM), i16(6))\n"
            "sql UPDATE Object SET upd_flag = 1 \n"
            "sql UPDATE Object SET SITE = N'S1',OBJECT = N'O1', OBJECTNR = N'7', upd_flag = 0 WHERE SITE = N'S1'AND "
            "OBJECT = N'O1'AND OBJECTNR = N'7' -> 1\n"
            "sql DELETE FROM Object WHERE upd_flag = 1\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = N'Object' "
            "-> 1\n"
            "sql UPDATE STATISTICS Object\n"
            "query SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY\n"
            "sql UPDATE OBJECT SET WEXPIRY_DATE = CONVERT(DATETIME,'3/14/2005',101) Where OBJECT.SITE = N'S1' And "
            "OBJECT.OBJECT = N'O1' And OBJECT.OBJECTNR = 7 -> 1\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Object' -> 1\n");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Object -  1\"\r\n");
}

TEST(PostCopy, DoesNotFollowAnOnlyChangedPassThatFoundNothing) {
  CopyFixture copy("3");
  copy.AddManager("Kv50QTMtsctmWarranties.WarrantiesManager", "warranties");
  copy.database.Answer(kJoin, {Joined()});

  const CopyResult result = copy.CopyTable(7, "Warranties", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.JournalWithout({"row", "create", "session", "warranties", "period", "parameter", "input", "output",
                                 "criteria", "event"}),
            "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
            "close recordset\n"
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Warranties' -> 1\n"
            "query SELECT * FROM tstables WHERE tablename = N'Warranties'\n"
            "close recordset\n"
            "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
            "N'Warranties' -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Warranties' -> 1\n");
}

}  // namespace
}  // namespace zenqay
