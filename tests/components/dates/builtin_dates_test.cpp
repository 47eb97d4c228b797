// Every expected value of the tables was computed with the JDK's own classes (JDK 17).
#include "components/dates/builtin_dates.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <vector>

#include "base/runtime_error.h"
#include "components/dates/java_time.h"

namespace zenqay {
namespace {

/// Moves the process to a time zone, and back at the end of the scope.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    if (const char* former = std::getenv("TZ")) former_ = former;
    setenv("TZ", name, 1);
    tzset();
  }
  ~TimeZone() {
    if (former_) {
      setenv("TZ", former_->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::optional<Text> former_;
};

/// A call with or without a value; getters stand in sequences since they carry the fields over.
struct Operation {
  const char* name;
  std::optional<double> value = std::nullopt;
};

void Run(const Object& date, const Operation& operation) {
  if (operation.value) {
    date.Call(operation.name, *operation.value);
  } else {
    date.Call(operation.name);
  }
}

/// "year month day hours minutes seconds | minutes of UTC minus local time | milliseconds since 1970 UTC"
Text Described(const Object& date) {
  Text text;
  for (const char* getter : {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds"}) {
    text += date.Call(getter).AsText() + " ";
  }
  text += "| " + date.Call("getTimeZoneOffset").AsText();
  text += " | " + date.Call("getTime").AsText();
  return text;
}

Object NewDate() {
  return BuiltinDateHost().Create("java:java.util.Date");
}

Object NewCalendar() {
  return BuiltinDateHost().Create("java:java.util.GregorianCalendar");
}

/// Number, source and description of what a call raises, or what it gives when it raises nothing.
template <typename Deed>
Text Raised(Deed deed) {
  try {
    deed();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " [" + error.source() + "] " + error.description();
  }
  return "nothing";
}

TEST(CreateBuiltinDate, StandsAtTheCurrentMillisecond) {
  const auto now = [] {
    using namespace std::chrono;
    return static_cast<double>(floor<milliseconds>(system_clock::now()).time_since_epoch().count());
  };

  const double before = now();
  const double time = NewDate().Call("getTime").AsDouble();
  const double after = now();

  EXPECT_LE(before, time);
  EXPECT_LE(time, after);
}

TEST(CreateBuiltinDate, RaisesForAnyOtherClass) {
  for (const char* classId : {"java:java.util.date", "java:java.util.TimeZone", "java.util.Date", ""}) {
    const Text about = *classId == '\0' ? "" : Text(": ") + classId;

    EXPECT_EQ(Raised([&] { BuiltinDateHost().Create(classId); }),
              Text("429 [") + classId + "] Component can't create object" + about);
  }
}

TEST(GetDateFields, AreLocalToTheZone) {
  const struct {
    const char* zone;
    double time;
    const char* expected;
  } cases[] = {
      {"UTC", 0, "70 0 1 0 0 0 | 0 | 0"},
      {"UTC", -1, "69 11 31 23 59 59 | 0 | -1"},
      {"UTC", 1'075'543'872'000, "104 0 31 10 11 12 | 0 | 1075543872000"},
      {"UTC", 2'147'483'647'000, "138 0 19 3 14 7 | 0 | 2147483647000"},
      {"UTC", -2'208'988'800'000, "0 0 1 0 0 0 | 0 | -2208988800000"},
      {"UTC", -12'219'292'800'000, "-318 9 15 0 0 0 | 0 | -12219292800000"},
      {"UTC", -12'219'292'800'001, "-318 9 4 23 59 59 | 0 | -12219292800001"},
      {"UTC", -62'135'769'600'001, "-1899 11 31 23 59 59 | 0 | -62135769600001"},
      {"America/New_York", 1'081'061'999'999, "104 3 4 1 59 59 | 300 | 1081061999999"},
      {"America/New_York", 1'081'062'000'000, "104 3 4 3 0 0 | 240 | 1081062000000"},
      {"America/New_York", 1'099'202'399'999, "104 9 31 1 59 59 | 240 | 1099202399999"},
      {"America/New_York", 1'099'202'400'000, "104 9 31 1 0 0 | 300 | 1099202400000"},
      {"America/New_York", -869'446'800'000, "42 5 13 19 0 0 | 240 | -869446800000"},
      {"America/New_York", -2'208'988'800'001, "-1 11 31 18 59 59 | 300 | -2208988800001"},
      {"America/New_York", -2'717'650'801'000, "-17 10 18 11 59 59 | 300 | -2717650801000"},
      {"America/New_York", 2'131'030'800'000, "137 6 12 13 0 0 | 240 | 2131030800000"},
      {"America/New_York", 2'147'483'647'000, "138 0 18 22 14 7 | 300 | 2147483647000"},
      {"America/New_York", 2'162'606'400'000, "138 6 13 0 0 0 | 240 | 2162606400000"},
      {"Europe/Berlin", 1'080'435'599'999, "104 2 28 1 59 59 | -60 | 1080435599999"},
      {"Europe/Berlin", 1'080'435'600'000, "104 2 28 3 0 0 | -120 | 1080435600000"},
      {"Europe/Berlin", 1'099'184'399'999, "104 9 31 2 59 59 | -120 | 1099184399999"},
      {"Europe/Berlin", 1'099'184'400'000, "104 9 31 2 0 0 | -60 | 1099184400000"},
      {"Europe/Berlin", -776'548'800'000, "45 4 24 7 0 0 | -180 | -776548800000"},
      {"Europe/Berlin", -2'500'000'000'000, "-10 9 11 20 33 20 | -60 | -2500000000000"},
      {"Europe/Berlin", 2'147'483'647'000, "138 0 19 4 14 7 | -60 | 2147483647000"},
      {"Asia/Kolkata", 0, "70 0 1 5 30 0 | -330 | 0"},
      {"Asia/Kolkata", -2'208'988'800'000, "0 0 1 5 21 10 | -321 | -2208988800000"},
      {"Asia/Kolkata", -2'208'988'800'001, "0 0 1 5 29 59 | -330 | -2208988800001"},
      {"Asia/Kolkata", -820'000'000'000, "44 0 7 12 43 20 | -390 | -820000000000"},
      {"Asia/Kolkata", 2'147'483'647'000, "138 0 19 8 44 7 | -330 | 2147483647000"},
      {"Australia/Lord_Howe", 1'099'150'199'999, "104 9 31 1 59 59 | -630 | 1099150199999"},
      {"Australia/Lord_Howe", 1'099'150'200'000, "104 9 31 2 30 0 | -660 | 1099150200000"},
      {"Australia/Lord_Howe", 1'080'399'599'999, "104 2 28 1 59 59 | -660 | 1080399599999"},
      {"Australia/Lord_Howe", 1'080'399'600'000, "104 2 28 1 30 0 | -630 | 1080399600000"},
      {"Australia/Lord_Howe", -2'208'988'800'001, "0 0 1 10 29 59 | -630 | -2208988800001"},
      {"Australia/Lord_Howe", 2'147'483'647'000, "138 0 19 14 14 7 | -660 | 2147483647000"},
  };
  for (const auto& c : cases) {
    const TimeZone zone(c.zone);
    const Object date = NewDate();

    date.Call("setTime", c.time);

    EXPECT_EQ(Described(date), c.expected) << c.zone;
  }
}

TEST(MakeDateObject, FindsTheInstantOfALocalTime) {
  const struct {
    const char* zone;
    DateTimeParts localTime;
    const char* expected;
  } cases[] = {
      {"America/New_York", {2004, 4, 4, 1, 59, 59}, "104 3 4 1 59 59 | 300 | 1081061999000"},
      {"America/New_York", {2004, 4, 4, 2, 0, 0}, "104 3 4 3 0 0 | 240 | 1081062000000"},
      {"America/New_York", {2004, 4, 4, 2, 59, 59}, "104 3 4 3 59 59 | 240 | 1081065599000"},
      {"America/New_York", {2004, 4, 4, 3, 0, 0}, "104 3 4 3 0 0 | 240 | 1081062000000"},
      {"America/New_York", {2004, 10, 31, 0, 59, 59}, "104 9 31 0 59 59 | 240 | 1099198799000"},
      {"America/New_York", {2004, 10, 31, 1, 0, 0}, "104 9 31 1 0 0 | 300 | 1099202400000"},
      {"America/New_York", {2004, 10, 31, 1, 59, 59}, "104 9 31 1 59 59 | 300 | 1099205999000"},
      {"America/New_York", {2004, 10, 31, 2, 0, 0}, "104 9 31 2 0 0 | 300 | 1099206000000"},
      {"America/New_York", {1899, 12, 31, 12, 0, 0}, "-1 11 31 12 0 0 | 300 | -2209014000000"},
      {"America/New_York", {2038, 7, 1, 12, 0, 0}, "138 6 1 12 0 0 | 240 | 2161612800000"},
      {"Europe/Berlin", {2004, 3, 28, 1, 59, 59}, "104 2 28 1 59 59 | -60 | 1080435599000"},
      {"Europe/Berlin", {2004, 3, 28, 2, 30, 0}, "104 2 28 3 30 0 | -120 | 1080437400000"},
      {"Europe/Berlin", {2004, 3, 28, 3, 0, 0}, "104 2 28 3 0 0 | -120 | 1080435600000"},
      {"Europe/Berlin", {2004, 10, 31, 1, 59, 59}, "104 9 31 1 59 59 | -120 | 1099180799000"},
      {"Europe/Berlin", {2004, 10, 31, 2, 30, 0}, "104 9 31 2 30 0 | -60 | 1099186200000"},
      {"Europe/Berlin", {2004, 10, 31, 3, 0, 0}, "104 9 31 3 0 0 | -60 | 1099188000000"},
      {"Europe/Berlin", {1890, 6, 1, 0, 0, 0}, "-10 5 1 0 0 0 | -60 | -2511478800000"},
      {"Asia/Kolkata", {1899, 12, 31, 23, 59, 59}, "-1 11 31 23 59 59 | -330 | -2209008601000"},
      {"Asia/Kolkata", {1900, 1, 1, 5, 25, 0}, "0 0 1 5 25 0 | -321 | -2208988570000"},
      {"Asia/Kolkata", {1900, 1, 1, 6, 0, 0}, "0 0 1 6 0 0 | -321 | -2208986470000"},
      {"Asia/Kolkata", {2038, 1, 19, 8, 44, 7}, "138 0 19 8 44 7 | -330 | 2147483647000"},
      {"Australia/Lord_Howe", {2004, 10, 31, 1, 59, 59}, "104 9 31 1 59 59 | -630 | 1099150199000"},
      {"Australia/Lord_Howe", {2004, 10, 31, 2, 10, 0}, "104 9 31 2 40 0 | -660 | 1099150800000"},
      {"Australia/Lord_Howe", {2004, 10, 31, 2, 30, 0}, "104 9 31 2 30 0 | -660 | 1099150200000"},
      {"Australia/Lord_Howe", {2004, 3, 28, 1, 29, 59}, "104 2 28 1 29 59 | -660 | 1080397799000"},
      {"Australia/Lord_Howe", {2004, 3, 28, 1, 45, 0}, "104 2 28 1 45 0 | -630 | 1080400500000"},
      {"Australia/Lord_Howe", {2004, 3, 28, 2, 0, 0}, "104 2 28 2 0 0 | -630 | 1080401400000"},
      {"UTC", {2004, 2, 30, 0, 0, 0}, "104 2 1 0 0 0 | 0 | 1078099200000"},
      {"UTC", {2004, 12, 31, 24, 60, 60}, "105 0 1 1 1 0 | 0 | 1104541260000"},
      {"UTC", {1582, 10, 10, 12, 0, 0}, "-318 9 20 12 0 0 | 0 | -12218817600000"},
      {"UTC", {1500, 2, 29, 12, 0, 0}, "-400 1 29 12 0 0 | 0 | -14825851200000"},
  };
  for (const auto& c : cases) {
    const TimeZone zone(c.zone);

    const Object date = MakeDateObject(c.localTime);

    EXPECT_EQ(Described(date), c.expected) << c.zone;
  }
}

struct SequenceFromLocalTime {
  const char* zone;
  DateTimeParts start;
  std::vector<Operation> operations;
  const char* expected;
};

void ExpectResult(const SequenceFromLocalTime& c) {
  const TimeZone zone(c.zone);
  const Object date = MakeDateObject(c.start);

  for (const Operation& operation : c.operations) Run(date, operation);

  EXPECT_EQ(Described(date), c.expected) << c.zone << ", " << c.operations.front().name;
}

TEST(SetDateField, CarriesWhatIsOutOfRange) {
  const SequenceFromLocalTime cases[] = {
      {"UTC", {2004, 3, 1, 0, 5, 0}, {{"setMinutes", -10}}, "104 1 29 23 50 0 | 0 | 1078098600000"},
      {"UTC", {2004, 1, 31, 23, 50, 0}, {{"setMinutes", 75}}, "104 1 1 0 15 0 | 0 | 1075594500000"},
      {"UTC", {2004, 1, 1, 0, 0, 0}, {{"setMinutes", -1}}, "103 11 31 23 59 0 | 0 | 1072915140000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMinutes", 10000}}, "104 1 7 8 40 12 | 0 | 1076143212000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setSeconds", -13}}, "104 0 31 10 10 47 | 0 | 1075543847000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setHours", 25}}, "104 1 1 1 11 12 | 0 | 1075597872000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setDate", 0}}, "103 11 31 10 11 12 | 0 | 1072865472000"},
      {"UTC", {2003, 1, 31, 10, 11, 12}, {{"setMonth", 1}}, "103 2 3 10 11 12 | 0 | 1046686272000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", 12}}, "105 0 31 10 11 12 | 0 | 1107166272000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", -1}}, "103 11 31 10 11 12 | 0 | 1072865472000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", -12}}, "103 0 31 10 11 12 | 0 | 1044007872000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", -13}}, "102 11 31 10 11 12 | 0 | 1041329472000"},
      {"UTC", {2004, 2, 29, 10, 11, 12}, {{"setYear", 105}}, "105 2 1 10 11 12 | 0 | 1109671872000"},
      {"UTC", {1582, 10, 20, 0, 0, 0}, {{"setDate", 10}}, "-318 9 20 0 0 0 | 0 | -12218860800000"},
      {"UTC", {1582, 10, 4, 0, 0, 0}, {{"setDate", 5}}, "-318 9 15 0 0 0 | 0 | -12219292800000"},
      {"UTC", {1583, 1, 1, 0, 0, 0}, {{"setDate", -100}}, "-318 8 22 0 0 0 | 0 | -12220416000000"},
      {"UTC", {1, 1, 1, 0, 0, 0}, {{"setYear", -1901}}, "-1898 0 1 0 0 0 | 0 | -62198928000000"},
      {"America/New_York", {2004, 4, 4, 1, 30, 0}, {{"setMinutes", 90}}, "104 3 4 3 30 0 | 240 | 1081063800000"},
      {"America/New_York", {2004, 4, 3, 2, 30, 0}, {{"setDate", 4}}, "104 3 4 3 30 0 | 240 | 1081063800000"},
      {"Europe/Berlin", {2004, 10, 31, 0, 30, 0}, {{"setMinutes", 150}}, "104 9 31 2 30 0 | -60 | 1099186200000"},
      {"Europe/Berlin", {2004, 7, 1, 0, 30, 0}, {{"setMinutes", -90}}, "104 5 30 22 30 0 | -120 | 1088627400000"},
      {"Asia/Kolkata", {2004, 1, 1, 3, 0, 0}, {{"setMinutes", -330}}, "103 11 31 21 30 0 | -330 | 1072886400000"},
      {"Australia/Lord_Howe", {2004, 10, 31, 1, 45, 0}, {{"setMinutes", 75}}, "104 9 31 2 45 0 | -660 | 1099151100000"},
  };
  for (const auto& c : cases) ExpectResult(c);
}

TEST(SetDateField, CarriesOnlyWhenSomethingIsAsked) {
  const SequenceFromLocalTime cases[] = {
      {"UTC", {2003, 2, 1, 10, 11, 12}, {{"setDate", 31}, {"setMonth", 0}}, "103 0 31 10 11 12 | 0 | 1044007872000"},
      {"UTC",
       {2003, 2, 1, 10, 11, 12},
       {{"setDate", 31}, {"getTime"}, {"setMonth", 0}},
       "103 0 3 10 11 12 | 0 | 1041588672000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", 1}, {"setDate", 1}}, "104 1 1 10 11 12 | 0 | 1075630272000"},
      {"UTC",
       {2004, 1, 31, 10, 11, 12},
       {{"setMonth", 1}, {"getDate"}, {"setDate", 1}},
       "104 2 1 10 11 12 | 0 | 1078135872000"},
      {"UTC", {2004, 2, 29, 10, 11, 12}, {{"setYear", 105}, {"setYear", 108}}, "108 1 29 10 11 12 | 0 | 1204279872000"},
      {"UTC",
       {2004, 2, 29, 10, 11, 12},
       {{"setYear", 105}, {"getYear"}, {"setYear", 108}},
       "108 2 1 10 11 12 | 0 | 1204366272000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMinutes", 70}, {"setHours", 3}}, "104 0 31 4 10 12 | 0 | 1075522212000"},
      {"UTC",
       {2004, 1, 31, 10, 11, 12},
       {{"setMinutes", 70}, {"getMinutes"}, {"setHours", 3}},
       "104 0 31 3 10 12 | 0 | 1075518612000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setMonth", 14}, {"setYear", 100}}, "100 2 31 10 11 12 | 0 | 954497472000"},
      {"UTC", {2004, 1, 31, 10, 11, 12}, {{"setDate", 40}, {"setTime", 0}}, "70 0 1 0 0 0 | 0 | 0"},
      {"America/New_York", {2004, 4, 4, 2, 30, 0}, {{"setDate", 3}}, "104 3 3 3 30 0 | 300 | 1080981000000"},
      {"America/New_York",
       {2004, 4, 3, 2, 30, 0},
       {{"setDate", 4}, {"setDate", 3}},
       "104 3 3 2 30 0 | 300 | 1080977400000"},
  };
  for (const auto& c : cases) ExpectResult(c);
}

struct SequenceFromInstant {
  const char* zone;
  std::vector<Operation> operations;
  const char* expected;
};

void ExpectResult(const SequenceFromInstant& c) {
  const TimeZone zone(c.zone);
  const Object date = NewDate();

  for (const Operation& operation : c.operations) Run(date, operation);

  EXPECT_EQ(Described(date), c.expected) << c.zone << ", " << c.operations.back().name;
}

TEST(SetDateField, LeavesTheInstantAloneWhenTheFieldHasTheValue) {
  const SequenceFromInstant cases[] = {
      {"America/New_York",
       {{"setTime", 1'099'200'600'000}, {"setMinutes", 30}},
       "104 9 31 1 30 0 | 240 | 1099200600000"},
      {"America/New_York",
       {{"setTime", 1'099'200'600'000}, {"setMinutes", 31}},
       "104 9 31 1 31 0 | 300 | 1099204260000"},
      {"America/New_York",
       {{"setTime", 1'099'200'600'000}, {"setMinutes", 31}, {"setMinutes", 30}},
       "104 9 31 1 30 0 | 300 | 1099204200000"},
      {"America/New_York",
       {{"setTime", 1'099'204'200'000}, {"setMinutes", 30}},
       "104 9 31 1 30 0 | 300 | 1099204200000"},
      {"America/New_York",
       {{"setTime", 1'099'204'200'000}, {"setMinutes", 31}},
       "104 9 31 1 31 0 | 300 | 1099204260000"},
      {"Europe/Berlin", {{"setTime", 1'099'182'600'000}, {"setHours", 2}}, "104 9 31 2 30 0 | -120 | 1099182600000"},
      {"Europe/Berlin", {{"setTime", 1'099'182'600'000}, {"setSeconds", 1}}, "104 9 31 2 30 1 | -60 | 1099186201000"},
      {"Australia/Lord_Howe",
       {{"setTime", 1'080'398'700'000}, {"setMonth", 2}},
       "104 2 28 1 45 0 | -660 | 1080398700000"},
      {"Australia/Lord_Howe",
       {{"setTime", 1'080'398'700'000}, {"setSeconds", 1}},
       "104 2 28 1 45 1 | -630 | 1080400501000"},
      {"UTC", {{"setTime", 1'075'543'872'345}, {"setSeconds", 59}}, "104 0 31 10 11 59 | 0 | 1075543919345"},
  };
  for (const auto& c : cases) ExpectResult(c);
}

TEST(SetDateField, GivesTheLimitsOfTheErpInEveryZone) {
  const SequenceFromInstant cases[] = {
      {"America/New_York",
       {{"setTime", 0}, {"setDate", 1}, {"setMonth", 0}, {"setYear", 70}, {"setMinutes", -300}},
       "70 0 1 14 0 0 | 300 | 68400000"},
      {"Europe/Berlin",
       {{"setTime", 0}, {"setDate", 1}, {"setMonth", 0}, {"setYear", 70}, {"setMinutes", 60}},
       "70 0 1 2 0 0 | -60 | 3600000"},
      {"Asia/Kolkata",
       {{"setTime", 0}, {"setDate", 1}, {"setMonth", 0}, {"setYear", 70}, {"setMinutes", 330}},
       "70 0 1 10 30 0 | -330 | 18000000"},
      {"America/New_York",
       {{"setTime", 1'088'640'000'123},
        {"setDate", 19},
        {"setMonth", 0},
        {"setYear", 138},
        {"setHours", 3},
        {"setMinutes", -286},
        {"setSeconds", 7}},
       "138 0 18 22 14 7 | 300 | 2147483647123"},
      {"Asia/Kolkata",
       {{"setTime", 1'088'640'000'123},
        {"setDate", 19},
        {"setMonth", 0},
        {"setYear", 138},
        {"setHours", 3},
        {"setMinutes", 344},
        {"setSeconds", 7}},
       "138 0 19 8 44 7 | -330 | 2147483647123"},
  };
  for (const auto& c : cases) ExpectResult(c);
}

TEST(SetDateField, TakesNumbersOfEveryType) {
  const TimeZone zone("UTC");
  const Object date = MakeDateObject({2004, 1, 31, 10, 11, 12});

  date.Call("setHours", std::int16_t{1});
  date.Call("setMinutes", 2.5);
  date.Call("setSeconds", " 3 ");
  const Value answer = date.Call("setDate", std::int32_t{4});

  EXPECT_EQ(answer, Value());
  EXPECT_EQ(Described(date), "104 0 4 1 2 3 | 0 | 1073178123000");
}

TEST(GetDateFields, AreIntegersOf32Bits) {
  const Object date = NewDate();

  for (const char* getter :
       {"getYear", "getMonth", "getDate", "getHours", "getMinutes", "getSeconds", "getTimeZoneOffset"}) {
    EXPECT_TRUE(date.Call(getter).Is<std::int32_t>()) << getter;
  }
  EXPECT_TRUE(date.Call("getTime").Is<double>());
}

TEST(DateToLocaleString, IsEnglishInTheMediumForm) {
  const struct {
    DateTimeParts localTime;
    const char* expected;
  } cases[] = {
      {{2004, 1, 31, 10, 11, 12}, "Jan 31, 2004 10:11:12 AM"}, {{2004, 2, 1, 0, 0, 0}, "Feb 1, 2004 12:00:00 AM"},
      {{2004, 3, 9, 12, 0, 0}, "Mar 9, 2004 12:00:00 PM"},     {{2004, 4, 9, 13, 5, 9}, "Apr 9, 2004 1:05:09 PM"},
      {{2004, 5, 9, 23, 59, 59}, "May 9, 2004 11:59:59 PM"},   {{2004, 6, 10, 1, 0, 0}, "Jun 10, 2004 1:00:00 AM"},
      {{2004, 7, 10, 1, 0, 0}, "Jul 10, 2004 1:00:00 AM"},     {{2004, 8, 10, 1, 0, 0}, "Aug 10, 2004 1:00:00 AM"},
      {{2004, 9, 10, 1, 0, 0}, "Sep 10, 2004 1:00:00 AM"},     {{2004, 10, 10, 1, 0, 0}, "Oct 10, 2004 1:00:00 AM"},
      {{2004, 11, 10, 1, 0, 0}, "Nov 10, 2004 1:00:00 AM"},    {{12004, 12, 10, 1, 0, 0}, "Dec 10, 12004 1:00:00 AM"},
      {{999, 12, 10, 1, 0, 0}, "Dec 10, 0999 1:00:00 AM"},     {{0, 12, 10, 1, 0, 0}, "Dec 10, 0001 1:00:00 AM"},
  };
  const TimeZone zone("UTC");
  for (const auto& c : cases) {
    const Object date = MakeDateObject(c.localTime);

    const Value text = date.Call("toLocaleString");

    EXPECT_EQ(text, Value(c.expected));
  }
}

TEST(CallDate, MatchesNamesWithoutRegardToCase) {
  const TimeZone zone("UTC");
  const Object date = MakeDateObject({2004, 1, 31, 10, 11, 12});

  date.Call("SETYEAR", 70);
  date.Call("SetMonth", 1);
  date.Call("setdate", 3);
  const Value year = date.Call("GetYear");
  const Value offset = date.Call("getTimezoneOffset");
  const Value text = date.Call("TOLOCALESTRING");

  EXPECT_EQ(year, Value(std::int32_t{70}));
  EXPECT_EQ(offset, Value(std::int32_t{0}));
  EXPECT_EQ(text, Value("Feb 3, 1970 10:11:12 AM"));
}

TEST(CallDate, RaisesWhatIsWrongWithTheCall) {
  const Object date = NewDate();

  EXPECT_EQ(Raised([&] { date.Call("getFullYear"); }),
            "438 [java:java.util.Date] Object doesn't support this property or method: getFullYear");
  EXPECT_EQ(Raised([&] { date.Call("getYear", 1); }), "450 [java:java.util.Date] Wrong number of arguments: getYear");
  EXPECT_EQ(Raised([&] { date.Call("setYear"); }), "450 [java:java.util.Date] Wrong number of arguments: setYear");
  EXPECT_EQ(Raised([&] { date.Call("setTime", 1, 2); }),
            "450 [java:java.util.Date] Wrong number of arguments: setTime");
  EXPECT_EQ(Raised([&] { date.Call("setMinutes", "ten"); }), "13 [ZenqayDBSync] Type mismatch");
  EXPECT_EQ(Raised([&] { date.Call("setTime", ""); }), "13 [ZenqayDBSync] Type mismatch");
  EXPECT_EQ(Raised([&] { date.Call("setDate", Null()); }), "94 [ZenqayDBSync] Invalid use of Null");
  EXPECT_EQ(Raised([&] { date.Call("setSeconds", 3e9); }), "6 [ZenqayDBSync] Overflow");
  EXPECT_EQ(Raised([&] { date.Call("setTime", 1e19); }), "6 [ZenqayDBSync] Overflow");
}

TEST(CallDate, LeavesTheDateAsItWasWhenItRaises) {
  const TimeZone zone("UTC");
  const Object date = MakeDateObject({2004, 1, 31, 10, 11, 12});

  Raised([&] { date.Call("setMonth", "May"); });

  EXPECT_EQ(Described(date), "104 0 31 10 11 12 | 0 | 1075543872000");
}

TEST(GetCalendarField, GivesTheStandardOffsetOfTheZone) {
  const struct {
    const char* zone;
    std::int32_t expected;
  } cases[] = {
      {"UTC", 0},           {"America/New_York", -18'000'000}, {"Europe/Berlin", 3'600'000},
      {"Europe/Dublin", 0}, {"Asia/Kolkata", 19'800'000},      {"Australia/Lord_Howe", 37'800'000},
  };
  for (const auto& c : cases) {
    const TimeZone zone(c.zone);
    const Object calendar = NewCalendar();

    const Value field = calendar.Get("zone_offset");
    const Value offset = calendar.Call("Get", field);

    EXPECT_EQ(field, Value(std::int32_t{15})) << c.zone;
    EXPECT_EQ(offset, Value(c.expected)) << c.zone;
  }
}

TEST(GetCalendarField, RaisesWhatIsWrongWithTheCall) {
  const Object calendar = NewCalendar();

  EXPECT_EQ(Raised([&] { calendar.Call("get", 1); }),
            "5 [java:java.util.GregorianCalendar] Invalid procedure call or argument: get(1), only ZONE_OFFSET is "
            "served");
  EXPECT_EQ(Raised([&] { calendar.Call("get"); }),
            "450 [java:java.util.GregorianCalendar] Wrong number of arguments: get");
  EXPECT_EQ(Raised([&] { calendar.Call("get", "ZONE_OFFSET"); }), "13 [ZenqayDBSync] Type mismatch");
  EXPECT_EQ(Raised([&] { calendar.Call("set", 15); }),
            "438 [java:java.util.GregorianCalendar] Object doesn't support this property or method: set");
  EXPECT_EQ(Raised([&] { calendar.Get("DST_OFFSET"); }),
            "438 [java:java.util.GregorianCalendar] Object doesn't support this property or method: DST_OFFSET");
}

TEST(StandardOffsetAt, HasNoDaylightSavingShare) {
  const struct {
    const char* zone;
    std::int64_t instant;
    std::int32_t expected;
  } cases[] = {
      {"America/New_York", 1'075'543'872'000, -18'000'000},
      {"America/New_York", 1'088'640'000'000, -18'000'000},
      {"Europe/Berlin", 1'088'640'000'000, 3'600'000},
      {"Europe/Dublin", 1'705'276'800'000, 0},
      {"Europe/Dublin", 1'720'958'400'000, 0},
      {"Africa/Casablanca", 1'705'276'800'000, 0},
      {"Africa/Casablanca", 1'711'281'600'000, 0},
      {"Asia/Kolkata", 1'720'958'400'000, 19'800'000},
      {"Australia/Lord_Howe", 1'705'276'800'000, 37'800'000},
      {"America/Sao_Paulo", 1'547'510'400'000, -10'800'000},
      {"America/Sao_Paulo", 1'720'958'400'000, -10'800'000},
      {"Europe/Istanbul", 1'468'454'400'000, 7'200'000},
      {"Europe/Istanbul", 1'720'958'400'000, 10'800'000},
      {"Asia/Almaty", 1'704'067'200'000, 21'600'000},
      {"Asia/Almaty", 1'720'958'400'000, 18'000'000},
  };
  for (const auto& c : cases) {
    const TimeZone zone(c.zone);

    EXPECT_EQ(StandardOffsetAt(c.instant), c.expected) << c.zone << " " << c.instant;
  }
}

}  // namespace
}  // namespace zenqay
