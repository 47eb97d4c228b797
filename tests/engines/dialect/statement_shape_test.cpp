#include "engines/dialect/statement_shape.h"

#include <gtest/gtest.h>

#include "engines/dialect/postgresql_dialect.h"
#include "engines/dialect/translation.h"

namespace zenqay {
namespace {

Text Shown(const StatementValue& value) {
  Text text;
  switch (value.kind) {
    case StatementValue::Kind::Null:
      return "null";
    case StatementValue::Kind::Integer:
      return Text(value.text);
    case StatementValue::Kind::Literal:
      return "'" + Text(value.text) + "'";
    case StatementValue::Kind::DateTime:
      AppendDate(text, value.date, true);
      return text;
    case StatementValue::Kind::Date:
      AppendDate(text, value.date, false);
  }
  return text;
}

/// The shape, and behind it each value after a "|".
Text Taken(std::string_view statement) {
  StatementShape shape{.text = "left from the statement before", .values = {{}}};
  if (!TakeShape(statement, shape)) return "whole";
  Text taken = shape.text;
  for (const StatementValue& value : shape.values) {
    EXPECT_EQ(shape.text.at(value.at), '?');
    taken += "|" + Shown(value);
  }
  return taken;
}

TEST(TakeShape, TakesTheValuesOutOfAStatement) {
  const std::pair<const char*, const char*> cases[] = {
      {"UPDATE SITE SET SITE = N'A1', CUSTOMER = N'', upd_flag = 0WHERE SITE =N'A1'",
       "UPDATE SITE SET SITE = ?, CUSTOMER = ?, upd_flag = ? WHERE SITE =?|'A1'|''|0|'A1'"},
      {"INSERT INTO SITE (SITE ,upd_flag )VALUES (N'A1',0)", "INSERT INTO SITE (SITE ,upd_flag )VALUES (?,?)|'A1'|0"},
      {"DELETE FROM OBJECT WHERE SITE = 'a'AND OBJECT = n'it''s' AND OBJECTNR = 007",
       "DELETE FROM OBJECT WHERE SITE = ? AND OBJECT = ? AND OBJECTNR = ?|'a'|'it''s'|007"},
      {"update T set A = NULL, B=null WHERE C =NULL AND D IS NULL AND E = 1",
       "update T set A = ?, B=? WHERE C =NULL AND D IS NULL AND E = ?|null|null|1"},
      {"UPDATE T SET A = CONVERT(DATETIME,'2004-01-31 10:11:12',120), B = {d '2004-01-31'}Where C < 'Jan 31, 2004 "
       "10:11:12 PM'",
       "UPDATE T SET A = ?, B = ? Where C < ?|2004-01-31 10:11:12|2004-01-31|2004-01-31 22:11:12"},
      {"UPDATE T SET A=-5, B = - 5 WHERE C IN (1,'2')", "UPDATE T SET A=-?, B = - ? WHERE C IN (?,?)|5|5|1|'2'"},
      {"UPDATE T SET A = 999999999999999999", "UPDATE T SET A = ?|999999999999999999"},
      {"UPDATE \"it's\" SET A = B.C, D = '?'", "UPDATE \"it's\" SET A = B.C, D = ?|'?'"},
      {"UPDATE T SET A = '-- /* ; [' WHERE B <> N'{d ''x''}'",
       "UPDATE T SET A = ? WHERE B <> ?|'-- /* ; ['|'{d ''x''}'"},
  };
  for (const auto& [statement, taken] : cases) {
    EXPECT_EQ(Taken(statement), taken) << statement;
  }
}

TEST(TakeShape, LeavesWholeWhatMayNotSayTheSameInTwoParts) {
  const std::string_view statements[] = {
      "",
      "SELECT * FROM T WHERE A = 'x'",
      "SET DATEFORMAT YMD",
      "UPDATE T SET A = B",
      "UPDATE T SET A = 1.5",
      "UPDATE T SET A = 1e5",
      "UPDATE T SET A = 0x1F",
      "UPDATE T SET A = 1000000000000000000",
      "UPDATE T SET A = 'x' || 'y'",
      "UPDATE T SET A = 1+1",
      "UPDATE T SET A = 5 - 1",
      "UPDATE T SET A = -'5'",
      "UPDATE T SET A = x'6162'",
      "UPDATE T SET A = date '2004-01-31'",
      "UPDATE T SET A = 'a' COLLATE NOCASE",
      "UPDATE T SET A = 'a'::text",
      "UPDATE T SET A = 'a' 'b'",
      "UPDATE T SET A = CAST('5' AS INTEGER)",
      "UPDATE T SET A = CONVERT(DATETIME,'2004-02-30 10:11:12',120)",
      "UPDATE T SET A = {d '2004-13-01'}",
      "UPDATE T SET A = (SELECT 'x')",
      "UPDATE T SET A = 'x' WHERE B LIKE 'y%'",
      "UPDATE T SET A = 'x' RETURNING B",
      "UPDATE T SET A = 'x'; DELETE FROM T",
      "UPDATE T SET A = 'x' -- y",
      "/**/UPDATE T SET A = 'x'",
      "UPDATE [T] SET A = 'x'",
      "UPDATE `T` SET A = 'x'",
      "UPDATE T SET A = 'x', B = ?",
      "UPDATE T SET A = 'x', B = :b",
      "UPDATE T SET A = 'x', B = @b",
      "UPDATE T SET A = 'x', B = $1",
      "UPDATE T SET A = 'x",
      "UPDATE T SET A = N'x",
      "UPDATE T SET A = 'x', \"B = 'y'",
      "DELETE FROM T WHERE A = 'x' ORDER BY B, 1",
      "DELETE FROM T WHERE A = 'x' LIMIT 1",
      std::string_view("UPDATE T SET A = 'x\0y'", 23),
  };
  for (const std::string_view statement : statements) {
    EXPECT_EQ(Taken(statement), "whole") << statement;
  }
}

TEST(ParametrizedForPostgreSql, GivesEachValueTheTypeThatThePlainStatementHasForIt) {
  StatementShape shape;
  ASSERT_TRUE(
      TakeShape("UPDATE T SET A = N'it''s', B = NULL, C = 2147483647, D=-2147483648, E = {d '2004-01-31'}"
                "WHERE F = CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                shape));
  Text letters;

  AppendPostgreSqlTypes(shape, letters);

  EXPECT_EQ(letters, "uuibdt");
  EXPECT_EQ(ParametrizedForPostgreSql(shape, ParameterMark::Number),
            "UPDATE T SET A = $1, B = $2, C = CAST($3 AS integer), D=-CAST($4 AS bigint), E = CAST($5 AS date) "
            "WHERE F = CAST($6 AS timestamp)");
  EXPECT_EQ(ParametrizedForPostgreSql(shape, ParameterMark::Question),
            "UPDATE T SET A = ?, B = ?, C = CAST(? AS integer), D=-CAST(? AS bigint), E = CAST(? AS date) "
            "WHERE F = CAST(? AS timestamp)");
}

TEST(ParameterForPostgreSql, IsWhatThePlainStatementMeansByTheValue) {
  StatementShape shape;
  ASSERT_TRUE(
      TakeShape("UPDATE T SET A = N'it''s', B = NULL, C = 2147483647, D=-2147483648, E = {d '2004-01-31'}, G = '''', "
                "H = '', I = '''''a\\''' WHERE F = CONVERT(DATETIME,'2004-01-31 10:11:12',120)",
                shape));
  Text parameters;

  for (const StatementValue& value : shape.values) {
    Text parameter = "left from the statement before";
    const bool isValue = ParameterForPostgreSql(value, parameter);
    parameters += (isValue ? parameter : "null " + parameter) + "|";
  }

  EXPECT_EQ(parameters, "it's|null |2147483647|2147483648|2004-01-31|'||''a\\'|2004-01-31 10:11:12|");
}

}  // namespace
}  // namespace zenqay
