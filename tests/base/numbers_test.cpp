#include "base/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kOverflow = "6 ZenqayDBSync: Overflow";
constexpr const char* kMismatch = "13 ZenqayDBSync: Type mismatch";

/// What a text reads as: by the whole-text test, the strict conversion and the prefix rule.
struct NumericText {
  Text text;
  bool numeric;
  double value;  // by the prefix rule; of a numeric text by the strict one too
};

const NumericText kTexts[] = {
    {"1e3", true, 1000},    {" 7", true, 7},
    {"7 ", true, 7},        {"   7   ", true, 7},
    {"+5", true, 5},        {".5", true, 0.5},
    {"5.", true, 5},        {"-.5", true, -0.5},
    {"-0", true, 0},        {"0", true, 0},
    {"007", true, 7},       {"1E3", true, 1000},
    {"1e+3", true, 1000},   {"25e-1", true, 2.5},
    {"1.5e2", true, 150},   {"128.4", true, 128.4},
    {"-1", true, -1},       {"2147483648", true, 2147483648.0},
    {"1e-999", true, 0},    {"0e999999999999", true, 0},
    {"", false, 0},         {" ", false, 0},
    {"    ", false, 0},     {"-", false, 0},
    {"+", false, 0},        {".", false, 0},
    {"-.", false, 0},       {"e5", false, 0},
    {"1,5", false, 1},      {"12abc", false, 12},
    {"1.5e", false, 1.5},   {"1.5e+", false, 1.5},
    {"1.5exy", false, 1.5}, {"&H10", false, 0},
    {"0x10", false, 0},     {"1 2", false, 1},
    {"- 1", false, 0},      {"--1", false, 0},
    {"+-1", false, 0},      {"1.2.3", false, 1.2},
    {"1..2", false, 1},     {"1e3.5", false, 1000},
    {"7\t", false, 7},      {"\t7", false, 0},
    {"7\n", false, 7},      {"abc", false, 0},
    {"abc12", false, 0},    {"inf", false, 0},
    {"nan", false, 0},      {"-infinity", false, 0},
    {"1d3", false, 1},      {"$5", false, 0},
    {"(5)", false, 0},      {"٣", false, 0},
};

TEST(IsNumeric, TakesBlanksASignDigitsWithOnePointAndAnExponentAndNothingElse) {
  for (const NumericText& text : kTexts) EXPECT_EQ(IsNumeric(text.text), text.numeric) << "\"" << text.text << "\"";
}

TEST(ToDouble, ReadsAWhollyNumericTextAndRefusesAnyOther) {
  for (const NumericText& text : kTexts) {
    const Text outcome = OutcomeOf([&] { return NumberText(ToDouble(text.text)); });

    EXPECT_EQ(outcome, text.numeric ? NumberText(text.value) : kMismatch) << "\"" << text.text << "\"";
  }
}

TEST(Val, ReadsTheLongestLeadingNumber) {
  for (const NumericText& text : kTexts) EXPECT_EQ(Val(text.text), text.value) << "\"" << text.text << "\"";
}

TEST(Val, OfATextWithoutANumberIsZero) {
  EXPECT_EQ(Val("Site"), 0);
}

TEST(ReadingANumber, RefusesWhatIsBeyondADouble) {
  for (const Text& text :
       {Text("1e999"), Text("-1e999"), Text("1e309"), "1" + Text(400, '0'), "1" + Text(400, '0') + "e-1"}) {
    EXPECT_EQ(OutcomeOf([&] { return NumberText(ToDouble(text)); }), kOverflow) << text;
    EXPECT_EQ(OutcomeOf([&] { return NumberText(Val(text)); }), kOverflow) << text;
  }
}

TEST(ReadingANumber, TakesWhatIsTooSmallForADoubleAsZero) {
  EXPECT_EQ(ToDouble("0." + Text(400, '0') + "1"), 0);
  EXPECT_EQ(ToDouble("0." + Text(400, '0') + "1e5"), 0);
  EXPECT_EQ(ToDouble("-1e-400"), 0);
}

TEST(ReadingANumber, TakesManyDigitsWithALargeExponentBelowOne) {
  EXPECT_EQ(ToDouble("1" + Text(400, '0') + "e-400"), 1);
}

/// One row for both widths.
struct Rounding {
  double value;
  const char* to16;
  const char* to32;
};

TEST(Rounding, GoesToTheNearestIntegerAndAHalfToTheEvenNeighbour) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Rounding cases[] = {
      {0, "0", "0"},
      {-0.0, "0", "0"},
      {0.5, "0", "0"},
      {-0.5, "0", "0"},
      {1.5, "2", "2"},
      {2.5, "2", "2"},
      {3.5, "4", "4"},
      {-1.5, "-2", "-2"},
      {-2.5, "-2", "-2"},
      {-3.5, "-4", "-4"},
      {2.4999999999, "2", "2"},
      {2.5000000001, "3", "3"},
      {128.4, "128", "128"},
      {32767, "32767", "32767"},
      {32767.4999, "32767", "32767"},
      {32767.5, kOverflow, "32768"},
      {32768, kOverflow, "32768"},
      {-32768, "-32768", "-32768"},
      {-32768.5, "-32768", "-32768"},
      {-32768.5001, kOverflow, "-32769"},
      {65536, kOverflow, "65536"},
      {2147483647, kOverflow, "2147483647"},
      {2147483647.4999, kOverflow, "2147483647"},
      {2147483647.5, kOverflow, kOverflow},
      {-2147483648.0, kOverflow, "-2147483648"},
      {-2147483648.5, kOverflow, "-2147483648"},
      {-2147483648.5001, kOverflow, kOverflow},
      {1e300, kOverflow, kOverflow},
      {-1e300, kOverflow, kOverflow},
      {infinity, kOverflow, kOverflow},
      {-infinity, kOverflow, kOverflow},
      {std::nan(""), kOverflow, kOverflow},
  };
  for (const Rounding& rounding : cases) {
    EXPECT_EQ(OutcomeOf([&] { return std::to_string(RoundToInt16(rounding.value)); }), rounding.to16) << rounding.value;
    EXPECT_EQ(OutcomeOf([&] { return std::to_string(RoundToInt32(rounding.value)); }), rounding.to32) << rounding.value;
  }
}

TEST(FitInt16, RefusesACountOfRowsThatDoesNotFit) {
  const std::pair<std::int64_t, Text> cases[] = {{0, "0"},
                                                 {1, "1"},
                                                 {-1, "-1"},
                                                 {32767, "32767"},
                                                 {32768, kOverflow},
                                                 {-32768, "-32768"},
                                                 {-32769, kOverflow},
                                                 {65536, kOverflow},
                                                 {std::numeric_limits<std::int64_t>::max(), kOverflow}};
  for (const auto& [value, outcome] : cases) {
    EXPECT_EQ(OutcomeOf([&, count = value] { return std::to_string(FitInt16(count)); }), outcome);
  }
}

TEST(FitInt32, RefusesACountOfRowsThatDoesNotFit) {
  const std::pair<std::int64_t, Text> cases[] = {
      {32768, "32768"},         {2147483647, "2147483647"},
      {2147483648, kOverflow},  {-2147483648, "-2147483648"},
      {-2147483649, kOverflow}, {std::numeric_limits<std::int64_t>::min(), kOverflow}};
  for (const auto& [value, outcome] : cases) {
    EXPECT_EQ(OutcomeOf([&, count = value] { return std::to_string(FitInt32(count)); }), outcome);
  }
}

TEST(CheckedAdd, RefusesASumBeyond32Bits) {
  const struct {
    std::int32_t left;
    std::int32_t right;
    const char* outcome;
  } cases[] = {
      {94, 100, "194"},
      {-2147217900, 100, "-2147217800"},
      {0, 0, "0"},
      {2147483547, 100, "2147483647"},
      {2147483548, 100, kOverflow},
      {2147483647, 1, kOverflow},
      {-2147483648, -1, kOverflow},
      {-2147483648, 2147483647, "-1"},
  };
  for (const auto& sum : cases) {
    EXPECT_EQ(OutcomeOf([&] { return std::to_string(CheckedAdd(sum.left, sum.right)); }), sum.outcome)
        << sum.left << " + " << sum.right;
  }
}

TEST(NumberText, HasUpTo15SignificantDigitsAndNoGrouping) {
  const std::pair<double, const char*> cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {7, "7"},
      {-7, "-7"},
      {2.5, "2.5"},
      {-0.5, "-0.5"},
      {0.1, "0.1"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {2.0 / 3, "0.666666666666667"},
      {1234567.891, "1234567.891"},
      {123456789012345, "123456789012345"},
      {1e14, "100000000000000"},
      {1e15, "1E+15"},
      {1e300, "1E+300"},
      {-2.5e-7, "-2.5E-07"},
      {1e-300, "1E-300"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(NumberText(value), text);
}

TEST(SignColumnText, KeepsAColumnForTheSign) {
  const std::pair<std::int32_t, const char*> cases[] = {{0, " 0"},
                                                        {7, " 7"},
                                                        {-7, "-7"},
                                                        {1234567, " 1234567"},
                                                        {2147483647, " 2147483647"},
                                                        {-2147483647 - 1, "-2147483648"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(SignColumnText(value), text);
}

}  // namespace
}  // namespace zenqay
