#include "engines/dialect/date_literals.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

/// "date-time 2004-01-31 10:11:12", "date 2004-01-31", "invalid <text>", or "none"; then what follows the date.
Text Taken(std::string_view statement) {
  SqlTokens tokens(statement);
  const SqlToken first = tokens.Next();
  const std::optional<DateLiteral> date = TakeDate(first, tokens);
  const Text rest(tokens.position());
  if (!date) return "none" + rest;
  if (!date->value) return "invalid " + Text(date->text) + rest;
  const Text value = IsoText(*date->value);
  return (date->hasTime ? "date-time " + value : "date " + value) + rest;
}

TEST(TakeDate, ReadsTheFormsThatTheJobWrites) {
  const std::pair<const char*, const char*> cases[] = {
      {"CONVERT(DATETIME,'2004-01-31 10:11:12',120) x", "date-time 2004-01-31 10:11:12 x"},
      {"convert ( datetime , '2004-01-31' , 120 )", "date-time 2004-01-31 00:00:00"},
      {"CONVERT(DATETIME,'98-01-31 00:00:00',120)", "date-time 98-01-31 00:00:00"},
      {"CONVERT(DATETIME,'12/29/1899',101)", "date-time 1899-12-29 00:00:00"},
      {"CONVERT(DATETIME,'1/31/2004 10:11:12 AM',101)", "date-time 2004-01-31 10:11:12"},
      {"CONVERT(DATETIME,'1/31/2004 12:00:00 AM',101)", "date-time 2004-01-31 00:00:00"},
      {"CONVERT(DATETIME,'1/31/2004 12:00:01 PM',101)", "date-time 2004-01-31 12:00:01"},
      {"CONVERT(DATETIME,'2/29/2004 11:59:59 PM',101)", "date-time 2004-02-29 23:59:59"},
      {"TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') x", "date-time 2004-01-31 10:11:12 x"},
      {"to_date('2004-01-31 10:11:12' , 'YYYY-MM-DD hh24:mi:ss' )", "date-time 2004-01-31 10:11:12"},
      {"{d '2004-01-31'} x", "date 2004-01-31 00:00:00 x"},
      {"{ D '2004-01-31' }", "date 2004-01-31 00:00:00"},
      {"'Jan 31, 2004 10:11:12 AM' x", "date-time 2004-01-31 10:11:12 x"},
      {"'Dec 1, 2004 1:01:02 PM'", "date-time 2004-12-01 13:01:02"},
  };
  for (const auto& [statement, taken] : cases) {
    EXPECT_EQ(Taken(statement), taken) << statement;
  }
}

TEST(TakeDate, KnowsTheDatesThatDoNotExist) {
  const std::pair<const char*, const char*> cases[] = {
      {"CONVERT(DATETIME,'2003-02-29 00:00:00',120)", "invalid 2003-02-29 00:00:00"},
      {"CONVERT(DATETIME,'2004-01-31 24:00:00',120)", "invalid 2004-01-31 24:00:00"},
      {"CONVERT(DATETIME,'x',120)", "invalid x"},
      {"CONVERT(DATETIME,'it''s',120)", "invalid it''s"},
      {"CONVERT(DATETIME,'',101)", "invalid "},
      {"CONVERT(DATETIME,'2/30/2004',101)", "invalid 2/30/2004"},
      {"CONVERT(DATETIME,'13/1/2004',101)", "invalid 13/1/2004"},
      {"CONVERT(DATETIME,'0/1/2004',101)", "invalid 0/1/2004"},
      {"CONVERT(DATETIME,'1/31/0',101)", "invalid 1/31/0"},
      {"CONVERT(DATETIME,'31.01.2004',101)", "invalid 31.01.2004"},
      {"CONVERT(DATETIME,'1/31/2004 0:00:00 AM',101)", "invalid 1/31/2004 0:00:00 AM"},
      {"CONVERT(DATETIME,'1/31/2004 13:00:00 PM',101)", "invalid 1/31/2004 13:00:00 PM"},
      {"CONVERT(DATETIME,'1/31/2004 10:60:00 AM',101)", "invalid 1/31/2004 10:60:00 AM"},
      {"CONVERT(DATETIME,'1/31/2004 10:00:00',101)", "invalid 1/31/2004 10:00:00"},
      {"CONVERT(DATETIME,'1/31/2004 10:00:00 AM ',101)", "invalid 1/31/2004 10:00:00 AM "},
      {"TO_DATE( 'NULL','yyyy-mm-dd HH24:MI:SS')", "invalid NULL"},
      {"{d ''}", "invalid "},
      {"{d '1/31/2004'}", "invalid 1/31/2004"},
      {"{d '2004-01-31 10:11:12'}", "invalid 2004-01-31 10:11:12"},
      {"'Feb 30, 2004 10:11:12 AM'", "invalid Feb 30, 2004 10:11:12 AM"},
      {"'Jan 31, 2004 13:11:12 AM'", "invalid Jan 31, 2004 13:11:12 AM"},
  };
  for (const auto& [statement, taken] : cases) {
    EXPECT_EQ(Taken(statement), taken) << statement;
  }
}

TEST(TakeDate, LeavesEverythingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"CONVERT(DATETIME,'2004-01-31',121)", "none(DATETIME,'2004-01-31',121)"},
      {"CONVERT(VARCHAR,'2004-01-31',120)", "none(VARCHAR,'2004-01-31',120)"},
      {"CONVERT(DATETIME,LUTM,120)", "none(DATETIME,LUTM,120)"},
      {"CONVERT(DATETIME,'2004-01-31',120", "none(DATETIME,'2004-01-31',120"},
      {"CONVERT", "none"},
      {"TO_DATE('2004','yyyy')", "none('2004','yyyy')"},
      {"{ts '2004-01-31 10:11:12'}", "nonets '2004-01-31 10:11:12'}"},
      {"{d 'x'", "noned 'x'"},
      {"'2004-01-31 00:00:00'", "none"},
      {"'jan 31, 2004 10:11:12 AM'", "none"},
      {"'Jan 31, 2004'", "none"},
      {"'Jan 31, 2004 10:11:12 AM '", "none"},
      {"' Jan 31, 2004 10:11:12 AM'", "none"},
      {"'Jan 31 2004 10:11:12 AM'", "none"},
      {"'Jan 31, 2004 10:11:12'", "none"},
      {"'Market Street 12, 2004 Lugano'", "none"},
  };
  for (const auto& [statement, taken] : cases) {
    EXPECT_EQ(Taken(statement), taken) << statement;
  }
}

}  // namespace
}  // namespace zenqay
