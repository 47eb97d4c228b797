#include "erp/date_bridge.h"

#include <gtest/gtest.h>

#include "components/dates/builtin_dates.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"
#include "doubles/time_zone.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

constexpr const char* kDate = "java:java.util.Date";
constexpr const char* kCalendar = "java:java.util.GregorianCalendar";

constexpr double kWinter = 1075543872000.0;  // 2004-01-31T10:11:12Z
constexpr double kSummer = 1091268672000.0;  // 2004-07-31T10:11:12Z

const RuntimeError kBridgeFailed(-2147467259, "bridge", "no connection");

/// What a date object's getters answer, and every setter taken.
void MakeDate(ScriptedObject& date, const DateTimeParts& parts, std::int32_t zoneOffset) {
  date.Answers("getYear", parts.year - 1900).Answers("getMonth", parts.month - 1).Answers("getDate", parts.day);
  date.Answers("getHours", parts.hour).Answers("getMinutes", parts.minute).Answers("getSeconds", parts.second);
  date.Answers("getTimeZoneOffset", zoneOffset);
  for (const char* setter : {"setTime", "setDate", "setmonth", "SetYear", "setHours", "setMinutes", "setSeconds"}) {
    date.Answers(setter, Value());
  }
}

/// The next two date objects are named minimum and maximum.
void RegisterLimits(ProcessFixture& fixture) {
  const auto minimum = fixture.components.Make("minimum");
  const auto maximum = fixture.components.Make("maximum");
  MakeDate(*minimum, {}, 0);
  MakeDate(*maximum, {}, 0);
  fixture.components.RegisterInTurn(kDate, {minimum, maximum});
}

/// "year month day hours minutes seconds" as a date object counts them.
Text Fields(const Object& date) {
  Text text;
  for (const char* getter : {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"}) {
    text += (text.empty() ? "" : " ") + date.Call(getter).AsText();
  }
  return text;
}

TEST(InitErpDateLimits, SetsTheFieldsOfBothDatesInTheirOrderFromTheZoneOfACalendar) {
  ProcessFixture fixture;
  RegisterLimits(fixture);
  const auto calendar = fixture.components.Register(kCalendar, "calendar");
  calendar->Answers("ZONE_OFFSET", 15).Answers("get", -18'000'000);

  InitErpDateLimits(fixture.process);

  EXPECT_EQ(fixture.journal.Take(),
            "create java:java.util.Date\n"
            "create java:java.util.Date\n"
            "create java:java.util.GregorianCalendar\n"
            "get calendar.ZONE_OFFSET\n"
            "calendar.get(i32(15))\n"
            "minimum.setTime(i32(0))\n"
            "minimum.setDate(i32(1))\n"
            "minimum.setmonth(i32(0))\n"
            "minimum.SetYear(i32(70))\n"
            "minimum.setMinutes(i32(-300))\n"
            "maximum.setDate(i32(19))\n"
            "maximum.setmonth(i32(0))\n"
            "maximum.SetYear(i32(138))\n"
            "maximum.setHours(i32(3))\n"
            "maximum.setMinutes(i32(-286))\n"
            "maximum.setSeconds(i32(7))\n");
  EXPECT_EQ(Shown(Value(fixture.process.MinimumDate)), "<minimum>");
  EXPECT_EQ(Shown(Value(fixture.process.MaximumDate)), "<maximum>");
}

TEST(InitErpDateLimits, CountsTheZoneInMinutesWestOfGreenwichRoundedToTheEvenOne) {
  struct Case {
    Value milliseconds;  // east of Greenwich
    const char* minimum;
    const char* maximum;
  };
  const Case cases[] = {{0, "minimum.setMinutes(i32(0))", "maximum.setMinutes(i32(14))"},
                        {19'800'000, "minimum.setMinutes(i32(330))", "maximum.setMinutes(i32(344))"},
                        {"3600000", "minimum.setMinutes(i32(60))", "maximum.setMinutes(i32(74))"},
                        {30'000, "minimum.setMinutes(i32(0))", "maximum.setMinutes(i32(14))"},
                        {90'000, "minimum.setMinutes(i32(2))", "maximum.setMinutes(i32(16))"},
                        {-90'000, "minimum.setMinutes(i32(-2))", "maximum.setMinutes(i32(12))"},
                        {150'000, "minimum.setMinutes(i32(2))", "maximum.setMinutes(i32(16))"}};
  for (const Case& c : cases) {
    ProcessFixture fixture;
    RegisterLimits(fixture);
    fixture.components.Register(kCalendar, "calendar")->Answers("ZONE_OFFSET", 15).Answers("get", c.milliseconds);

    InitErpDateLimits(fixture.process);

    const Text journal = fixture.journal.Take();
    EXPECT_NE(journal.find(Text(c.minimum) + "\n"), Text::npos) << journal;
    EXPECT_NE(journal.find(Text(c.maximum) + "\n"), Text::npos) << journal;
  }
}

TEST(InitErpDateLimits, MeetsTheEndOf32BitSecondsInEveryZoneAndItsBeginningByTheZonesOwnWay) {
  struct Case {
    const char* zone;
    double now;
    double minimum;  // milliseconds since 1970 UTC
  };
  // The minimum starts at the zone's own hour of the first instant, on which the minutes then work.
  const Case cases[] = {{"UTC", kWinter, 0},
                        {"America/New_York", kWinter, 68'400'000},
                        {"America/New_York", kSummer, 68'400'000},
                        {"Asia/Kolkata", kWinter, 18'000'000},
                        {"Europe/Berlin", kWinter, 3'600'000},
                        {"Europe/Berlin", kSummer, 3'600'000}};
  for (const Case& c : cases) {
    ProcessFixture fixture;
    const TimeZone zone(c.zone);
    fixture.components.nowMilliseconds = c.now;

    InitErpDateLimits(fixture.process);

    EXPECT_EQ(fixture.process.MinimumDate.Call("getTime").AsDouble(), c.minimum) << c.zone;
    EXPECT_EQ(fixture.process.MaximumDate.Call("getTime").AsDouble(), 2'147'483'647'000.0) << c.zone;
  }
}

TEST(InitErpDateLimits, LeavesTheMillisecondsOfItsCreationInTheMaximum) {
  ProcessFixture fixture;
  fixture.components.nowMilliseconds = kWinter + 123;

  InitErpDateLimits(fixture.process);

  EXPECT_EQ(fixture.process.MinimumDate.Call("getTime").AsDouble(), 0);
  EXPECT_EQ(fixture.process.MaximumDate.Call("getTime").AsDouble(), 2'147'483'647'123.0);
}

TEST(InitErpDateLimits, PassesEveryFailureToItsCaller) {
  ProcessFixture noDates;
  noDates.components.FailCreation(kDate, kBridgeFailed);
  EXPECT_EQ(Raised([&] { InitErpDateLimits(noDates.process); }), "-2147467259 bridge: no connection");

  ProcessFixture noCalendar;
  noCalendar.components.FailCreation(kCalendar, kBridgeFailed);
  EXPECT_EQ(Raised([&] { InitErpDateLimits(noCalendar.process); }), "-2147467259 bridge: no connection");

  ProcessFixture noZone;
  noZone.components.Register(kCalendar, "calendar")->Answers("ZONE_OFFSET", 15).Answers("get", Null());
  EXPECT_EQ(Raised([&] { InitErpDateLimits(noZone.process); }), "94 ZenqayDBSync: Invalid use of Null: get");

  ProcessFixture farZone;
  farZone.components.Register(kCalendar, "calendar")->Answers("ZONE_OFFSET", 15).Answers("get", 1e15);
  EXPECT_EQ(Raised([&] { InitErpDateLimits(farZone.process); }), "6 ZenqayDBSync: Overflow");

  ProcessFixture noSetter;
  noSetter.components.Register(kDate, "date")->Answers("setTime", Value());
  EXPECT_EQ(Raised([&] { InitErpDateLimits(noSetter.process); }),
            "438 date: Object doesn't support this property or method: setDate");
}

TEST(ConvertErpDateToSql, ShiftsTheDateByTheZoneOfANewOneBeforeItReadsItsFields) {
  ProcessFixture fixture;
  MakeDate(*fixture.components.Register(kDate, "now"), {}, -330);
  const auto date = fixture.components.Make("date");
  MakeDate(*date, {2004, 1, 31, 10, 11, 12}, 999);  // its own zone is not asked for

  EXPECT_TRUE(ConvertErpDateToSql(fixture.process, Object(date), false));

  EXPECT_EQ(fixture.journal.Take(),
            "date.getYear()\n"
            "date.getMonth()\n"
            "date.getYear()\n"
            "create java:java.util.Date\n"
            "now.getTimeZoneOffset()\n"
            "date.getMinutes()\n"
            "date.setMinutes(i32(-319))\n"
            "date.getYear()\n"
            "date.getMonth()\n"
            "date.getDate()\n"
            "date.getHours()\n"
            "date.getMinutes()\n"
            "date.getSeconds()\n");
  EXPECT_EQ(fixture.process.DateLiteral, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");
  EXPECT_EQ(fixture.Causes(), "");
}

TEST(ConvertErpDateToSql, ShiftsTheDatesOfTwoProductsOnly) {
  const Text kShift =
      "create java:java.util.Date\n"
      "now.getTimeZoneOffset()\n"
      "date.getMinutes()\n"
      "date.setMinutes(i32(311))\n";
  struct Case {
    const char* product;
    bool shifts;
  };
  for (const Case& c : {Case{"4010", true}, Case{"4009", true}, Case{"1028", false}, Case{"4011", false}}) {
    ProcessFixture fixture;
    fixture.process.ProductId = c.product;
    MakeDate(*fixture.components.Register(kDate, "now"), {}, 300);
    const auto date = fixture.components.Make("date");
    MakeDate(*date, {2004, 1, 31, 10, 11, 12}, 0);

    EXPECT_TRUE(ConvertErpDateToSql(fixture.process, Object(date), false));

    EXPECT_EQ(fixture.journal.Take(),
              "date.getYear()\n"
              "date.getMonth()\n"
              "date.getYear()\n" +
                  (c.shifts ? kShift : "") +
                  "date.getYear()\n"
                  "date.getMonth()\n"
                  "date.getDate()\n"
                  "date.getHours()\n"
                  "date.getMinutes()\n"
                  "date.getSeconds()\n")
        << c.product;
  }
}

TEST(ConvertErpDateToSql, WritesTheFormOfThePlatform) {
  struct Case {
    std::int16_t platform;
    const char* literal;
  };
  for (const Case& c : {Case{kSqlServer, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
                        Case{kOracle, "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')"},
                        Case{0, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
                        Case{3, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"}}) {
    ProcessFixture fixture(c.platform);

    EXPECT_TRUE(ConvertErpDateToSql(fixture.process, MakeDateObject({2004, 1, 31, 10, 11, 12}), false));

    EXPECT_EQ(fixture.process.DateLiteral, c.literal);
  }
}

TEST(ConvertErpDateToSql, MovesTheTimeByTheZonesOffsetAndTheDayWithItAcrossMidnight) {
  struct Case {
    const char* zone;
    double now;
    DateTimeParts local;
    const char* literal;
  };
  const Case cases[] = {
      {"UTC", kWinter, {2004, 1, 31, 10, 11, 12}, "2004-01-31 10:11:12"},
      {"America/New_York", kWinter, {2004, 1, 31, 10, 11, 12}, "2004-01-31 15:11:12"},  // 300 minutes later
      {"America/New_York", kWinter, {2003, 12, 31, 19, 0, 0}, "2004-01-01 00:00:00"},
      {"America/New_York", kWinter, {2004, 2, 28, 23, 59, 59}, "2004-02-29 04:59:59"},
      {"Asia/Kolkata", kWinter, {2004, 1, 31, 10, 11, 12}, "2004-01-31 04:41:12"},  // 330 minutes earlier
      {"Asia/Kolkata", kWinter, {2004, 3, 1, 5, 29, 59}, "2004-02-29 23:59:59"},
      {"Asia/Kolkata", kWinter, {2004, 1, 1, 0, 0, 0}, "2003-12-31 18:30:00"},
      {"Europe/Berlin", kWinter, {2004, 1, 31, 0, 30, 0}, "2004-01-30 23:30:00"},    // 60 minutes in winter
      {"Europe/Berlin", kSummer, {2004, 7, 31, 12, 11, 12}, "2004-07-31 10:11:12"},  // 120 in summer
      {"Europe/Berlin", kSummer, {2004, 1, 31, 12, 11, 12}, "2004-01-31 10:11:12"},  // the offset is the one of now
      {"Europe/Berlin", kWinter, {2004, 7, 31, 12, 11, 12}, "2004-07-31 11:11:12"},
  };
  for (const Case& c : cases) {
    ProcessFixture onSqlServer(kSqlServer);
    ProcessFixture onOracle(kOracle);
    const TimeZone zone(c.zone);
    onSqlServer.components.nowMilliseconds = c.now;
    onOracle.components.nowMilliseconds = c.now;

    EXPECT_TRUE(ConvertErpDateToSql(onSqlServer.process, MakeDateObject(c.local), false));
    EXPECT_TRUE(ConvertErpDateToSql(onOracle.process, MakeDateObject(c.local), false));

    EXPECT_EQ(onSqlServer.process.DateLiteral, Text("CONVERT(DATETIME,'") + c.literal + "',120)") << c.zone;
    EXPECT_EQ(onOracle.process.DateLiteral, Text("TO_DATE( '") + c.literal + "','yyyy-mm-dd HH24:MI:SS')") << c.zone;
  }
}

TEST(ConvertErpDateToSql, ShiftsTheSameObjectAgainWhenItIsConvertedTwice) {
  ProcessFixture fixture;
  const TimeZone zone("America/New_York");
  const Object date = MakeDateObject({2004, 1, 31, 17, 0, 0});

  EXPECT_TRUE(ConvertErpDateToSql(fixture.process, date, false));
  EXPECT_EQ(fixture.process.DateLiteral, "CONVERT(DATETIME,'2004-01-31 22:00:00',120)");
  EXPECT_EQ(Fields(date), "104 0 31 22 0 0");

  EXPECT_TRUE(ConvertErpDateToSql(fixture.process, date, false));
  EXPECT_EQ(fixture.process.DateLiteral, "CONVERT(DATETIME,'2004-02-01 03:00:00',120)");
  EXPECT_EQ(Fields(date), "104 1 1 3 0 0");
}

TEST(ConvertErpDateToSql, RefusesDatesOfJanuary1900AndEarlierAndLeavesThemAlone) {
  const DateTimeParts refused[] = {{1899, 12, 31, 23, 59, 59}, {1900, 1, 1}, {1900, 1, 31, 23, 59, 59}, {1582, 10, 4}};
  for (const DateTimeParts& parts : refused) {
    ProcessFixture fixture;
    const Object date = MakeDateObject(parts);
    fixture.process.DateLiteral = "of the conversion before";

    EXPECT_FALSE(ConvertErpDateToSql(fixture.process, date, false));

    EXPECT_EQ(fixture.process.DateLiteral, "");
    EXPECT_EQ(Fields(date), Fields(MakeDateObject(parts)));
    EXPECT_EQ(fixture.Causes(), "");
  }
}

TEST(ConvertErpDateToSql, Passes1February1900) {
  ProcessFixture fixture;

  EXPECT_TRUE(ConvertErpDateToSql(fixture.process, MakeDateObject({1900, 2, 1}), false));

  EXPECT_EQ(fixture.process.DateLiteral, "CONVERT(DATETIME,'1900-02-01 00:00:00',120)");
}

TEST(ConvertErpDateToSql, JudgesADateByItsYearAndMonthBeforeTheShift) {
  struct Case {
    int year;   // since 1900
    int month;  // from 0
    bool passes;
  };
  for (const Case& c : {Case{-1, 11, false}, Case{-1, 0, false}, Case{0, 0, false}, Case{-300, 5, false},
                        Case{0, 1, true}, Case{0, 11, true}, Case{1, 0, true}}) {
    ProcessFixture fixture;
    MakeDate(*fixture.components.Register(kDate, "now"), {}, 0);
    const auto date = fixture.components.Make("date");
    MakeDate(*date, {c.year + 1900, c.month + 1, 1}, 0);

    EXPECT_EQ(ConvertErpDateToSql(fixture.process, Object(date), false), c.passes) << c.year << " " << c.month;

    if (!c.passes) {
      EXPECT_EQ(fixture.journal.Take(), "date.getYear()\ndate.getMonth()\ndate.getYear()\n");
    }
  }
}

/// A date that fails, and what is then named as the cause.
struct FailingDate {
  void (*breakIt)(ProcessFixture& fixture, ScriptedObject& date);
  const char* cause;
};

const FailingDate kFailingDates[] = {
    {[](ProcessFixture&, ScriptedObject& date) { date.Fails("getYear", kBridgeFailed); },
     "error -2147467259 from \"bridge\": no connection: getYear\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Answers("getMonth", Null()); },
     "error 94 from \"ZenqayDBSync\": Invalid use of Null: getMonth\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Fails("getMinutes", kBridgeFailed); },
     "error -2147467259 from \"bridge\": no connection: getMinutes\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Fails("setMinutes", kBridgeFailed); },
     "error -2147467259 from \"bridge\": no connection: setMinutes\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Answers("getMinutes", 2'147'483'647); },
     "error 6 from \"ZenqayDBSync\": Overflow\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Answers("getDate", "the last"); },
     "error 13 from \"ZenqayDBSync\": Type mismatch: getDate\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Answers("getYear", 40'000); },
     "error 6 from \"ZenqayDBSync\": Overflow\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Answers("getYear", 8'100); },
     "error 5 from \"ZenqayDBSync\": Invalid procedure call or argument: year outside 1 to 9999\n"},
    {[](ProcessFixture&, ScriptedObject& date) { date.Fails("getSeconds", kBridgeFailed); },
     "error -2147467259 from \"bridge\": no connection: getSeconds\n"},
};

TEST(ConvertErpDateToSql, GivesFalseAndAnEmptyLiteralAfterAnyFailureAndNamesItsCause) {
  for (const FailingDate& failing : kFailingDates) {
    ProcessFixture fixture;
    MakeDate(*fixture.components.Register(kDate, "now"), {}, 1);
    const auto date = fixture.components.Make("date");
    MakeDate(*date, {2004, 1, 31, 10, 11, 12}, 0);
    failing.breakIt(fixture, *date);
    fixture.process.DateLiteral = "of the conversion before";

    EXPECT_FALSE(ConvertErpDateToSql(fixture.process, Object(date), false));

    EXPECT_EQ(fixture.process.DateLiteral, "");
    EXPECT_EQ(fixture.Causes(), failing.cause);
    EXPECT_EQ(fixture.RunLog(), "");
  }
}

TEST(ConvertErpDateToSql, GivesFalseForAMissingDateAndWhenNoDateCanBeCreated) {
  ProcessFixture missing;
  EXPECT_FALSE(ConvertErpDateToSql(missing.process, Object(), false));
  EXPECT_EQ(missing.Causes(), "error 91 from \"ZenqayDBSync\": Object variable not set\n");

  ProcessFixture noDates;
  noDates.components.FailCreation(kDate, kBridgeFailed);
  EXPECT_FALSE(ConvertErpDateToSql(noDates.process, MakeDateObject({2004, 1, 31}), false));
  EXPECT_EQ(noDates.process.DateLiteral, "");
  EXPECT_EQ(noDates.Causes(), "error -2147467259 from \"bridge\": no connection\n");
}

TEST(GetCurrentErpDate, ReadsTheDayOnceAndTheClockAnewForEachPartOfTheTime) {
  ProcessFixture fixture;
  MakeDate(*fixture.components.Register(kDate, "date"), {}, -330);
  fixture.platform.nextTimes = {DateTime::FromParts({2004, 12, 31, 23, 59, 59}),
                                DateTime::FromParts({2005, 1, 1, 0, 0, 0}), DateTime::FromParts({2005, 1, 1, 1, 2, 3}),
                                DateTime::FromParts({2005, 1, 2, 4, 5, 6})};

  const Object date = GetCurrentErpDate(fixture.process);

  EXPECT_EQ(Shown(Value(date)), "<date>");
  EXPECT_EQ(fixture.journal.Take(),
            "create java:java.util.Date\n"
            "date.setDate(i32(31))\n"
            "date.setmonth(i32(11))\n"
            "date.SetYear(i32(104))\n"
            "date.setHours(i32(0))\n"
            "date.setMinutes(i32(2))\n"
            "date.setSeconds(i32(6))\n");
  EXPECT_TRUE(fixture.platform.nextTimes.empty());
}

TEST(GetCurrentErpDate, CorrectsNoZone) {
  for (const char* name : {"UTC", "America/New_York", "Asia/Kolkata", "Europe/Berlin"}) {
    ProcessFixture fixture;
    const TimeZone zone(name);
    fixture.components.nowMilliseconds = kSummer;
    fixture.platform.now = DateTime::FromParts({2003, 2, 28, 1, 2, 3});

    EXPECT_EQ(Fields(GetCurrentErpDate(fixture.process)), "103 1 28 1 2 3") << name;
  }
}

TEST(GetCurrentErpDate, PassesEveryFailureToItsCaller) {
  ProcessFixture noDates;
  noDates.components.FailCreation(kDate, kBridgeFailed);
  EXPECT_EQ(Raised([&] { GetCurrentErpDate(noDates.process); }), "-2147467259 bridge: no connection");

  ProcessFixture noHours;
  const auto date = noHours.components.Register(kDate, "date");
  MakeDate(*date, {}, 0);
  date->Fails("setHours", kBridgeFailed);
  EXPECT_EQ(Raised([&] { GetCurrentErpDate(noHours.process); }), "-2147467259 bridge: no connection: setHours");
}

TEST(GetCurrentSqlDateTime, ShiftsANewDateByItsOwnZone) {
  ProcessFixture fixture;
  MakeDate(*fixture.components.Register(kDate, "date"), {2004, 1, 31, 10, 11, 12}, -60);

  const Text literal = GetCurrentSqlDateTime(fixture.process);

  EXPECT_EQ(literal, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");
  EXPECT_EQ(fixture.journal.Take(),
            "create java:java.util.Date\n"
            "date.getMinutes()\n"
            "date.getTimeZoneOffset()\n"
            "date.setMinutes(i32(-49))\n"
            "date.getYear()\n"
            "date.getMonth()\n"
            "date.getDate()\n"
            "date.getHours()\n"
            "date.getMinutes()\n"
            "date.getSeconds()\n");
}

TEST(GetCurrentSqlDateTime, HasTheSameTextInTheFormOfEachPlatform) {
  ProcessFixture onSqlServer(kSqlServer);
  ProcessFixture onOracle(kOracle);

  EXPECT_EQ(GetCurrentSqlDateTime(onSqlServer.process), "CONVERT(DATETIME,'2004-01-31 10:11:12',120)");
  EXPECT_EQ(GetCurrentSqlDateTime(onOracle.process), "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')");
}

TEST(GetCurrentSqlDateTime, ComesToTheTimeOfGreenwichInEveryZone) {
  struct Case {
    const char* zone;
    double now;
    const char* literal;
  };
  const Case cases[] = {
      {"UTC", kWinter, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {"America/New_York", kWinter, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {"America/New_York", kSummer, "CONVERT(DATETIME,'2004-07-31 10:11:12',120)"},
      {"Asia/Kolkata", kWinter, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {"Asia/Kolkata", kWinter + 12 * 3'600'000, "CONVERT(DATETIME,'2004-01-31 22:11:12',120)"},     // 1 February there
      {"America/New_York", kWinter - 8 * 3'600'000, "CONVERT(DATETIME,'2004-01-31 02:11:12',120)"},  // 30 January
      {"Europe/Berlin", kWinter, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {"Europe/Berlin", kSummer, "CONVERT(DATETIME,'2004-07-31 10:11:12',120)"},
  };
  for (const Case& c : cases) {
    ProcessFixture fixture;
    const TimeZone zone(c.zone);
    fixture.components.nowMilliseconds = c.now;

    EXPECT_EQ(GetCurrentSqlDateTime(fixture.process), c.literal) << c.zone;
  }
}

TEST(GetCurrentSqlDateTime, ShiftsTheTimesOfTwoProductsOnly) {
  struct Case {
    const char* product;
    const char* literal;
  };
  for (const Case& c : {Case{"4010", "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
                        Case{"4009", "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
                        Case{"1028", "CONVERT(DATETIME,'2004-01-31 15:41:12',120)"},
                        Case{"4011", "CONVERT(DATETIME,'2004-01-31 15:41:12',120)"}}) {
    ProcessFixture fixture;
    const TimeZone zone("Asia/Kolkata");
    fixture.process.ProductId = c.product;

    EXPECT_EQ(GetCurrentSqlDateTime(fixture.process), c.literal) << c.product;
  }
}

TEST(GetCurrentSqlDateTime, IsTheWordNullAfterAnyFailureAndNamesItsCause) {
  ProcessFixture noDates;
  noDates.components.FailCreation(kDate, kBridgeFailed);
  EXPECT_EQ(GetCurrentSqlDateTime(noDates.process), "NULL");
  EXPECT_EQ(noDates.Causes(), "error -2147467259 from \"bridge\": no connection\n");

  for (const char* operation : {"getMinutes", "getTimeZoneOffset", "setMinutes", "getYear", "getSeconds"}) {
    ProcessFixture fixture;
    const auto date = fixture.components.Register(kDate, "date");
    MakeDate(*date, {2004, 1, 31, 10, 11, 12}, 0);
    date->Fails(operation, kBridgeFailed);

    EXPECT_EQ(GetCurrentSqlDateTime(fixture.process), "NULL") << operation;
    EXPECT_EQ(fixture.Causes(), Text("error -2147467259 from \"bridge\": no connection: ") + operation + "\n");
  }

  ProcessFixture overflow;
  MakeDate(*overflow.components.Register(kDate, "date"), {2004, 1, 31, 10, 1, 12}, 2'147'483'647);
  EXPECT_EQ(GetCurrentSqlDateTime(overflow.process), "NULL");
  EXPECT_EQ(overflow.Causes(), "error 6 from \"ZenqayDBSync\": Overflow\n");
}

TEST(FormatDateTimeText, PadsEverythingButTheYear) {
  struct Case {
    Value value;
    const char* text;
  };
  const Case cases[] = {
      {DateTime::FromParts({2004, 1, 31, 10, 11, 12}), "2004-01-31 10:11:12"},
      {DateTime::FromParts({2004, 12, 1, 23, 59, 59}), "2004-12-01 23:59:59"},
      {DateTime::FromParts({2004, 1, 2, 3, 4, 5}), "2004-01-02 03:04:05"},
      {DateTime::FromParts({2004, 1, 2, 0, 0, 0}), "2004-01-02 00:00:00"},
      {DateTime::FromParts({999, 1, 2, 3, 4, 5}), "999-01-02 03:04:05"},  // a year below 1000 stands unpadded
      {DateTime::FromParts({7, 12, 31, 0, 0, 0}), "7-12-31 00:00:00"},
      {DateTime::FromParts({9999, 12, 31, 23, 59, 59}), "9999-12-31 23:59:59"},
      {DateTime(), "1899-12-30 00:00:00"},
      {1.5, "1899-12-31 12:00:00"},
      {"2004-01-31", "2004-01-31 00:00:00"},
  };
  for (const Case& c : cases) EXPECT_EQ(FormatDateTimeText(c.value), c.text);
}

TEST(FormatDateTimeText, PassesAFailureToItsCaller) {
  EXPECT_EQ(Raised([] { FormatDateTimeText(Null()); }), "94 ZenqayDBSync: Invalid use of Null");
  EXPECT_EQ(Raised([] { FormatDateTimeText("today"); }), "13 ZenqayDBSync: Type mismatch");
}

TEST(ZeroPad, PutsZerosInFrontUpToTheWidth) {
  struct Case {
    Value value;
    Value width;
    const char* text;
  };
  const Case cases[] = {{7, 2, "07"},
                        {12, 2, "12"},
                        {0, 2, "00"},
                        {7, 1, "7"},
                        {"", 2, "00"},
                        {"", 0, ""},
                        {Value(), 2, "00"},
                        {7, 4, "0007"},
                        {-7, 2, "-7"},
                        {-7, 3, "0-7"},
                        {"7", "2", "07"},
                        {7.0, 2.0, "07"},
                        {std::int16_t{7}, std::int16_t{2}, "07"}};
  for (const Case& c : cases) EXPECT_EQ(ZeroPad(c.value, c.width), c.text);
}

TEST(ZeroPad, RefusesAValueThatIsLongerThanTheWidth) {
  const Text invalid = "5 ZenqayDBSync: Invalid procedure call or argument";

  EXPECT_EQ(Raised([] { ZeroPad(123, 2); }), invalid);
  EXPECT_EQ(Raised([] { ZeroPad(7, 0); }), invalid);
  EXPECT_EQ(Raised([] { ZeroPad("", -1); }), invalid);
}

TEST(ZeroPad, PassesANullToItsCaller) {
  EXPECT_EQ(Raised([] { ZeroPad(Null(), 2); }), "94 ZenqayDBSync: Invalid use of Null");
  EXPECT_EQ(Raised([] { ZeroPad(7, Null()); }), "94 ZenqayDBSync: Invalid use of Null");
}

}  // namespace
}  // namespace zenqay
