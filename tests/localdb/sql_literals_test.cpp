#include "localdb/sql_literals.h"

#include <gtest/gtest.h>

#include "components/dates/builtin_dates.h"
#include "doubles/outcome.h"
#include "doubles/process_fixture.h"

namespace zenqay {
namespace {

constexpr std::int16_t kSqlServer = 1;
constexpr std::int16_t kOracle = 2;

TEST(EncodeSqlString, QuotesAsANationalLiteralOnBothPlatforms) {
  struct Case {
    const char* text;
    const char* literal;
  };
  const Case cases[] = {
      {"A1", "N'A1'"},
      {"it's", "N'it''s'"},
      {"''", "N''''''"},  // two quotes grow to four
      {"'", "N''''"},
      {"'a'b'", "N'''a''b'''"},
      {" ", "N' '"},
      {"   ", "N'   '"},
      {"  A1 ", "N'  A1 '"},
      {"100% [x] _ \\ \" ; --", "N'100% [x] _ \\ \" ; --'"},
      {"a\r\nb\t", "N'a\r\nb\t'"},
      {"Zürich €", "N'Zürich €'"},
  };
  for (const std::int16_t platform : {kSqlServer, kOracle, std::int16_t{0}, std::int16_t{3}}) {
    const ProcessFixture fixture(platform);
    for (const Case& c : cases) EXPECT_EQ(EncodeSqlString(fixture.process, c.text), c.literal) << platform;
  }
}

TEST(EncodeSqlString, GivesOracleABlankForAnEmptyTextAndEveryOtherPlatformTheEmptyLiteral) {
  EXPECT_EQ(EncodeSqlString(ProcessFixture(kOracle).process, ""), "N' '");
  for (const std::int16_t platform : {kSqlServer, std::int16_t{0}, std::int16_t{3}, std::int16_t{-2}}) {
    EXPECT_EQ(EncodeSqlString(ProcessFixture(platform).process, ""), "N''") << platform;
  }
}

TEST(WrapSqlDateTime, WrapsTheTextInPlaceAndReturnsIt) {
  struct Case {
    std::int16_t platform;
    const char* wrapped;
  };
  const Case cases[] = {
      {kSqlServer, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {kOracle, "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')"},
      {0, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
      {3, "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"},
  };
  for (const Case& c : cases) {
    const ProcessFixture fixture(c.platform);
    Text dateTime = "2004-01-31 10:11:12";

    EXPECT_EQ(WrapSqlDateTime(fixture.process, dateTime), c.wrapped);
    EXPECT_EQ(dateTime, c.wrapped);
  }
}

TEST(WrapSqlDateTime, WrapsTheSameVariableTwiceWhenItIsCalledTwice) {
  Text onSqlServer = "2004-01-31 10:11:12";
  Text onOracle = onSqlServer;

  for (int call = 0; call < 2; ++call) {
    WrapSqlDateTime(ProcessFixture(kSqlServer).process, onSqlServer);
    WrapSqlDateTime(ProcessFixture(kOracle).process, onOracle);
  }

  EXPECT_EQ(onSqlServer, "CONVERT(DATETIME,'CONVERT(DATETIME,'2004-01-31 10:11:12',120)',120)");
  EXPECT_EQ(onOracle, "TO_DATE( 'TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')','yyyy-mm-dd HH24:MI:SS')");
}

TEST(SQLEncodeForDate, PlacesTheValueAsItComes) {
  struct Case {
    Value value;
    const char* literal;
  };
  const Case cases[] = {
      {"2003-01-31", "{d '2003-01-31'}"},
      {" ", "{d ' '}"},
      {"no date, it's a text", "{d 'no date, it's a text'}"},
      {"2003-01-31 10:11:12", "{d '2003-01-31 10:11:12'}"},
      {DateTime::FromParts({2003, 1, 31}), "{d '1/31/2003'}"},
      {DateTime::FromParts({2003, 1, 31, 22, 5, 6}), "{d '1/31/2003 10:05:06 PM'}"},
      {std::int16_t{5}, "{d '5'}"},
      {0, "{d '0'}"},
      {2.5, "{d '2.5'}"},
      {true, "{d 'True'}"},
  };
  for (const Case& c : cases) EXPECT_EQ(SQLEncodeForDate(c.value), c.literal);
}

TEST(SQLEncodeForDate, GivesTheWordNullForAnEmptyVariantAndAnEmptyText) {
  EXPECT_EQ(SQLEncodeForDate(Value()), "NULL");
  EXPECT_EQ(SQLEncodeForDate(""), "NULL");
}

TEST(SQLEncodeForDate, PutsNothingBetweenTheQuotesForANull) {
  EXPECT_EQ(SQLEncodeForDate(Null()), "{d ''}");
}

TEST(SQLEncodeForDateTime, QuotesTheDateInItsLocalesForm) {
  const ProcessFixture fixture;  // sets the time zone

  EXPECT_EQ(SQLEncodeForDateTime(MakeDateObject({2004, 1, 31, 10, 11, 12})), "'Jan 31, 2004 10:11:12 AM'");
  EXPECT_EQ(SQLEncodeForDateTime(MakeDateObject({1999, 12, 1, 0, 0, 0})), "'Dec 1, 1999 12:00:00 AM'");
}

TEST(SQLEncodeForDateTime, DoublesNoQuotesAndAsksOnce) {
  ProcessFixture fixture;
  const auto date = fixture.components.Make("date");
  date->Answers("toLocaleString", "31 d'agost");

  EXPECT_EQ(SQLEncodeForDateTime(Object(date)), "'31 d'agost'");
  EXPECT_EQ(fixture.journal.Take(), "date.toLocaleString()\n");
}

TEST(SQLEncodeForDateTime, PutsNothingBetweenTheQuotesForANull) {
  ProcessFixture fixture;
  const auto date = fixture.components.Make("date");
  date->Answers("toLocaleString", Null());

  EXPECT_EQ(SQLEncodeForDateTime(Object(date)), "''");
}

TEST(SQLEncodeForDateTime, FailsForAMissingObjectAndForOneThatHasNoLocaleForm) {
  ProcessFixture fixture;

  EXPECT_EQ(Raised([&] { SQLEncodeForDateTime(Object()); }), "91 ZenqayDBSync: Object variable not set");
  EXPECT_EQ(Raised([&] { SQLEncodeForDateTime(Object(fixture.components.Make("site"))); }),
            "438 site: Object doesn't support this property or method: toLocaleString");
}

TEST(HighValueString, HasTheGivenNumberOfCharactersOfCode127) {
  EXPECT_EQ(HighValueString(1), "\x7f");
  EXPECT_EQ(HighValueString(8), "\x7f\x7f\x7f\x7f\x7f\x7f\x7f\x7f");
  EXPECT_EQ(HighValueString(32767), Text(32767, '\x7f'));
}

TEST(HighValueString, IsEmptyForALengthOf0) {
  EXPECT_EQ(HighValueString(0), "");
}

TEST(HighValueString, RefusesANegativeLength) {
  for (const std::int16_t length : std::initializer_list<std::int16_t>{-1, -32768}) {
    EXPECT_EQ(Raised([&] { HighValueString(length); }), "5 ZenqayDBSync: Invalid procedure call or argument");
  }
}

TEST(UpdateTableStatistics, NamesTheTrimmedTableAndAsksForNoCount) {
  ProcessFixture fixture;
  fixture.Connect();

  UpdateTableStatistics(fixture.process, "  Site ");

  EXPECT_EQ(fixture.journal.Take(), "sql UPDATE STATISTICS Site\n");
  EXPECT_EQ(fixture.RunLog(), "");
}

TEST(UpdateTableStatistics, LogsAFailureAndReturns) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.database.FailOn("UPDATE STATISTICS", {-2147217900, "Driver", "refused"},
                          {{-2147217900, "Driver", "refused"}, {0, "Driver", "a warning"}});

  UpdateTableStatistics(fixture.process, "Site");

  EXPECT_EQ(fixture.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"Driver\",-2147217900,\"refused\"\r\n"
            "\"Driver\",\"refused\"\r\n");
}

TEST(UpdateTableStatistics, FailsWithTheLogWhenAFailureCannotBeLogged) {
  ProcessFixture fixture;
  fixture.Connect();
  fixture.LoseRunLog();
  fixture.database.FailOn("UPDATE STATISTICS", {-2147217900, "Driver", "refused"});

  const Text raised = Raised([&] { UpdateTableStatistics(fixture.process, "Site"); });

  EXPECT_EQ(raised, "76 ZenqayDBSync: Path not found: C:\\no-such-directory\\run.log");
  EXPECT_EQ(fixture.Causes(), "error -2147217900 from \"Driver\": refused\n");
}

}  // namespace
}  // namespace zenqay
