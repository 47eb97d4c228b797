// The date objects that the program brings along beside Java's own, which they stand for.
#include <gtest/gtest.h>

#include <ctime>
#include <random>

#include "components/dates/builtin_dates.h"
#include "components/jvm/jvm_fixture.h"
#include "doubles/child_process.h"
#include "doubles/time_zone.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

/// In each of eight zones: 100,000 in all.
constexpr int kSequences = 12'500;
constexpr const char* kGetters[] = {"getYear",    "getMonth",          "getDate", "getHours",      "getMinutes",
                                    "getSeconds", "getTimeZoneOffset", "getTime", "toLocaleString"};

/// Two dates that are told the same, and what they were told.
class Twins {
 public:
  Twins(ComponentHost& builtin, ComponentHost& java)
      : builtin_(builtin.Create(kDateClass)), java_(java.Create(kDateClass)) {}

  void Set(const Text& operation, const Value& value) {
    told_ += operation + "(" + value.AsText() + ") ";
    builtin_.Call(operation, value);
    java_.Call(operation, value);
  }

  /// "" when both give the same.
  Text Compare(const Text& getter) {
    told_ += getter + " ";
    const Text ours = builtin_.Call(getter).AsText();
    const Text theirs = java_.Call(getter).AsText();
    return ours == theirs ? "" : told_ + "-> builtin " + ours + ", Java " + theirs;
  }

 private:
  Object builtin_;
  Object java_;
  Text told_;
};

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  std::int32_t Between(std::int32_t low, std::int32_t high) {
    const auto span = static_cast<std::uint32_t>(high - low) + 1;
    return low + static_cast<std::int32_t>(engine_() % span);
  }

  /// Milliseconds: mostly of the years that the job meets, from 1900 to 2100, sometimes of all from 1500 to 3000.
  double Instant() {
    const bool isWide = Between(0, 9) == 0;
    const std::int32_t day = isWide ? Between(-171'660, 376'200) : Between(-25'567, 47'481);
    return day * 86'400'000.0 + Between(0, 86'399'999);
  }

 private:
  std::mt19937 engine_;
};

void SetSomething(Twins& twins, Dice& dice) {
  switch (dice.Between(0, 7)) {
    case 0:
      return twins.Set("setTime", dice.Instant());
    case 1:
      return twins.Set("SetYear", dice.Between(0, 200));
    case 2:
      return twins.Set("setmonth", dice.Between(-14, 26));
    case 3:
      return twins.Set("setDate", dice.Between(-40, 70));
    case 4:
      return twins.Set("setHours", dice.Between(-30, 60));
    case 5:
      return twins.Set("setSeconds", dice.Between(-100, 200));
    default:
      return twins.Set("setMinutes", dice.Between(-1500, 1500));
  }
}

Text RunSequence(ComponentHost& builtin, ComponentHost& java, Dice& dice) {
  Twins twins(builtin, java);
  twins.Set("setTime", dice.Instant());
  for (int step = dice.Between(1, 7); step > 0; --step) {
    SetSomething(twins, dice);
    if (dice.Between(0, 2) != 0) continue;
    const Text difference = twins.Compare(kGetters[dice.Between(0, 8)]);
    if (!difference.empty()) return difference;
  }
  for (const char* getter : kGetters) {
    const Text difference = twins.Compare(getter);
    if (!difference.empty()) return difference;
  }
  return "";
}

Text StandardOffset(ComponentHost& host) {
  const Object calendar = host.Create(kCalendarClass);
  const Value field = calendar.Get("ZONE_OFFSET");
  return calendar.Call("get", field).AsText();
}

class DatesInZone : public testing::TestWithParam<Text> {};

TEST_P(DatesInZone, AreJavasDates) {
  const ChildRun run = RunInChild([] {
    const TimeZone zone(GetParam());
    BuiltinDateHost builtin;
    JvmHost java;
    java.Add("", "", "-Xmx128m");
    if (StandardOffset(builtin) != StandardOffset(java)) {
      return "ZONE_OFFSET: builtin " + StandardOffset(builtin) + ", Java " + StandardOffset(java);
    }
    Dice dice(20040131);
    int sequences = 0;
    for (; sequences < kSequences; ++sequences) {
      const Text difference = RunSequence(builtin, java, dice);
      if (!difference.empty()) return "sequence " + std::to_string(sequences) + ": " + difference;
    }
    return std::to_string(sequences) + " sequences, no difference";
  });

  EXPECT_EQ(run.result, "12500 sequences, no difference") << run.err;
}

INSTANTIATE_TEST_SUITE_P(Jvm, DatesInZone,
                         testing::Values("UTC", "America/New_York", "Europe/Berlin", "Europe/Dublin", "Asia/Kolkata",
                                         "Australia/Lord_Howe", "America/St_Johns", "Pacific/Apia"));

}  // namespace
}  // namespace zenqay
