// The command line: its items and their check.
#include "startup/modStartUp.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "startup/start_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kOverflow = "6 ZenqayDBSync: Overflow";

/// What the check comes to, and what it leaves in the settings.
Text Settings(const modDeclarations& process) {
  return Text(process.NoStatusComponent ? "no status component" : "status component") +
         (process.TableStatusEnabled ? ", tables with handle " : ", no tables, handle ") +
         std::to_string(process.StatusHandle) + ", instance " + std::to_string(process.InstanceNumber) +
         ", generation <" + process.ErpGeneration + ">";
}

Text Checked(StartFixture& fixture) {
  return OutcomeOf([&] {
    ValidateArguments(fixture.process, fixture.items);
    return Settings(fixture.process);
  });
}

Text CheckedWith(std::size_t position, const Text& text) {
  StartFixture fixture;
  fixture.items[position] = text;
  return Checked(fixture);
}

Text CheckedWithItems(std::size_t count) {
  StartFixture fixture;
  fixture.items.resize(count, "more");
  return Checked(fixture);
}

TEST(SplitCommandLine, SplitsAtEverySeparatorAndKeepsEmptyItems) {
  const std::pair<const char*, std::vector<Text>> cases[] = {
      {"", {}},
      {"a", {"a"}},
      {" ", {" "}},
      {"a{}b", {"a", "b"}},
      {"{}", {"", ""}},
      {"a{}", {"a", ""}},
      {"{}a", {"", "a"}},
      {"a{}{}b", {"a", "", "b"}},
      {"{}{}{}", {"", "", "", ""}},
      {"a { } b", {"a { } b"}},
      {"{{}}", {"{", "}"}},
      {"a{b}c", {"a{b}c"}},
      {"\"a{}b\"", {"\"a", "b\""}},
      {"é{}東", {"é", "東"}},
  };
  for (const auto& [line, items] : cases) EXPECT_EQ(SplitCommandLine(line), items) << line;
}

TEST(ValidateArguments, RefusesFewerThanSevenItems) {
  const Text refusal =
      "9999 Zenqa Data Copy - Start: The command line has too few items.\r\n"
      "The data copy cannot start. Please inform your system administrator.";
  for (std::size_t count = 0; count < 7; ++count) EXPECT_EQ(CheckedWithItems(count), refusal) << count;
}

TEST(ValidateArguments, FailsWithTheSubscriptErrorForSevenToTenItems) {
  const Text missing = "9 ZenqayDBSync: Subscript out of range: the command line has no item ";

  EXPECT_EQ(CheckedWithItems(7), missing + "9");
  EXPECT_EQ(CheckedWithItems(8), missing + "9");
  EXPECT_EQ(CheckedWithItems(9), missing + "10");
  EXPECT_EQ(CheckedWithItems(10), missing + "11");
}

TEST(ValidateArguments, SwitchesTheStatusComponentOffForExactlyTwelveItems) {
  const Text with = "status component, tables with handle 5, instance 7, generation <1>";
  const Text without = "no status component, no tables, handle 5, instance 7, generation <1>";

  EXPECT_EQ(CheckedWithItems(11), with);
  EXPECT_EQ(CheckedWithItems(12), without);
  EXPECT_EQ(CheckedWithItems(13), with);
  EXPECT_EQ(CheckedWithItems(30), with);
}

TEST(ValidateArguments, TakesAnEmptyTwelfthItemAtTheVeryEndOfTheLine) {
  StartFixture fixture;
  fixture.items = SplitCommandLine(fixture.CommandLine() + "{}");

  EXPECT_EQ(Checked(fixture), "no status component, no tables, handle 5, instance 7, generation <1>");
}

TEST(ValidateArguments, ClearsTheStatusComponentsSettingForEveryOtherCount) {
  StartFixture fixture;
  fixture.process.NoStatusComponent = true;

  EXPECT_EQ(Checked(fixture), "status component, tables with handle 5, instance 7, generation <1>");
}

TEST(ValidateArguments, TakesEverySyncMethodThatIsANumber) {
  const Text settings = "status component, tables with handle 5, instance 7, generation <1>";
  for (const char* method : {"1", "2", "7", "0", "-1", " 1 ", "1.5", "1e9", "128.4"}) {
    EXPECT_EQ(CheckedWith(3, method), settings) << method;
    EXPECT_EQ(CheckedWith(8, method), settings) << method;
  }
}

TEST(ValidateArguments, EndsInTheTypeMismatchForASyncMethodThatIsNoNumber) {
  for (const char* method : {"full", "", " ", "1,5", "12abc", "&H1"}) {
    EXPECT_EQ(CheckedWith(3, method), "13 ZenqayDBSync: Type mismatch: the sync method is no number") << method;
  }
  EXPECT_EQ(CheckedWith(3, "1e999"), kOverflow);
}

TEST(ValidateArguments, EndsInTheTypeMismatchForAPlatformThatIsNoNumber) {
  for (const char* platform : {"oracle", "", " ", "2x"}) {
    EXPECT_EQ(CheckedWith(8, platform), "13 ZenqayDBSync: Type mismatch: the database platform is no number")
        << platform;
  }
  EXPECT_EQ(CheckedWith(8, "1e999"), kOverflow);
}

TEST(ValidateArguments, StoresAStatusHandleThatIsZeroOrGreater) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "0"},   {"5", "5"},      {" 7 ", "7"}, {"2.5", "2"},
      {"3.5", "4"}, {"1e3", "1000"}, {"-0", "0"},  {"2147483647", "2147483647"}};
  for (const auto& [item, handle] : cases) {
    EXPECT_EQ(CheckedWith(6, item),
              Text("status component, tables with handle ") + handle + ", instance 7, generation <1>")
        << item;
  }
}

TEST(ValidateArguments, LeavesBothTableSettingsAloneForANegativeStatusHandle) {
  for (const char* item : {"-1", "-0.4", "-1e300"}) {
    EXPECT_EQ(CheckedWith(6, item), "status component, no tables, handle 0, instance 7, generation <1>") << item;
  }
}

TEST(ValidateArguments, EnablesTheTablesBeforeAStatusHandleOverflows) {
  StartFixture fixture;
  fixture.items[6] = "2147483648";

  EXPECT_EQ(Checked(fixture), kOverflow);
  EXPECT_EQ(Settings(fixture.process), "status component, tables with handle 0, instance 0, generation <>");
}

TEST(ValidateArguments, RefusesAStatusHandleThatIsNoNumberAndNamesIt) {
  const Text secondLine = "\r\nThe data copy cannot start. Please inform your system administrator.";
  const Text front = "2021004 zenqa Data Copy - Start: The status handle must be a number, not \"";

  EXPECT_EQ(CheckedWith(6, "abc"), front + "abc\"." + secondLine);
  EXPECT_EQ(CheckedWith(6, "12abc"), front + "12abc\"." + secondLine);
  EXPECT_EQ(CheckedWith(6, "%1"), front + "%1\"." + secondLine);
  EXPECT_EQ(CheckedWith(6, " "), front + " \"." + secondLine);
}

TEST(ValidateArguments, InsertsNothingForAnEmptyStatusHandle) {
  EXPECT_EQ(CheckedWith(6, ""),
            "2021004 zenqa Data Copy - Start: The status handle must be a number, not \"\".\r\n"
            "The data copy cannot start. Please inform your system administrator.");
}

TEST(ValidateArguments, NeverNamesAPassword) {
  EXPECT_EQ(CheckedWith(6, "Provider=SQLOLEDB;Password=secret;User ID=sa"),
            "2021004 zenqa Data Copy - Start: The status handle must be a number, not "
            "\"Provider=SQLOLEDB;Password=***;User ID=sa\".\r\n"
            "The data copy cannot start. Please inform your system administrator.");
}

TEST(ValidateArguments, TakesAnInstanceNumberThatIsNumericAndLeavesItAt0Otherwise) {
  const std::pair<const char*, const char*> cases[] = {{"7", "7"},   {" 8 ", "8"}, {"2.5", "2"},
                                                       {"-3", "-3"}, {"0", "0"},   {"abc", "0"},
                                                       {"", "0"},    {"7x", "0"},  {"32767", "32767"}};
  for (const auto& [item, instance] : cases) {
    EXPECT_EQ(CheckedWith(9, item),
              Text("status component, tables with handle 5, instance ") + instance + ", generation <1>")
        << item;
  }
  EXPECT_EQ(CheckedWith(9, "32768"), kOverflow);
}

TEST(ValidateArguments, TrimsTheGeneration) {
  const std::pair<const char*, const char*> cases[] = {{" 8 ", "8"}, {"", ""}, {"   ", ""}, {"\t3", "\t3"}, {"9", "9"}};
  for (const auto& [item, generation] : cases) {
    EXPECT_EQ(CheckedWith(10, item),
              Text("status component, tables with handle 5, instance 7, generation <") + generation + ">");
  }
}

TEST(ValidateArguments, KeepsTheFreeTextOfTables98And99) {
  const struct {
    const char* tableId;
    const char* text98;
    const char* text99;
  } cases[] = {{"98", " free ", ""},    {"99", "", " free "}, {"98abc", " free ", ""}, {" 99 ", "", " free "},
               {"9.8e1", " free ", ""}, {"98.4", "", ""},     {"1", "", ""},           {"", "", ""}};
  for (const auto& [tableId, text98, text99] : cases) {
    StartFixture fixture;
    fixture.items[2] = tableId;
    fixture.items[7] = " free ";

    ValidateArguments(fixture.process, fixture.items);

    EXPECT_EQ(fixture.process.FreeText98, text98) << tableId;
    EXPECT_EQ(fixture.process.FreeText99, text99) << tableId;
  }
}

TEST(ValidateArguments, ChecksItsItemsInTheirOrder) {
  StartFixture fixture;
  fixture.items[3] = fixture.items[6] = fixture.items[8] = "x";

  EXPECT_EQ(Checked(fixture), "13 ZenqayDBSync: Type mismatch: the sync method is no number");
  fixture.items[3] = "1";
  EXPECT_EQ(Checked(fixture),
            "2021004 zenqa Data Copy - Start: The status handle must be a number, not \"x\".\r\n"
            "The data copy cannot start. Please inform your system administrator.");
  fixture.items[6] = "1";
  EXPECT_EQ(Checked(fixture), "13 ZenqayDBSync: Type mismatch: the database platform is no number");
  fixture.items[8] = "1";
  fixture.items[2] = "1e999";
  EXPECT_EQ(Checked(fixture), kOverflow);
  EXPECT_EQ(Settings(fixture.process), "status component, tables with handle 1, instance 7, generation <1>");
}

TEST(ValidateArguments, ShowsTheKeysWhereTheLabelsAreMissing) {
  TempDirectory home;
  StartFixture fixture(home.path().string());
  fixture.items.resize(3);

  EXPECT_EQ(Checked(fixture), "9999 Zenqa Data Copy - Start: SLBL0232\r\nSLBL0026");
}

}  // namespace
}  // namespace zenqay
