#include "engines/dialect/sqlite_dialect.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "engines/provider_errors.h"

namespace zenqay {
namespace {

Text Translated(std::string_view statement) {
  Text translated = "left from the statement before";
  TranslateForSqlite(statement, translated);
  return translated;
}

TEST(TranslateForSqlite, ChangesWhatSqliteDoesNotRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT * FROM tstables WHERE tablename = N'SITES'", "SELECT * FROM tstables WHERE tablename = 'SITES'"},
      {"SET a = n'x', b =N'', c = N'it''s'", "SET a = 'x', b ='', c = 'it''s'"},
      {"UPDATE tstables SET in_use = 1WHERE tablename = N'SITES'",
       "UPDATE tstables SET in_use = 1 WHERE tablename = 'SITES'"},
      {"TERM = 3AND LINE = 10AND x=0x1FOR y=1e5AND z=1.5AND a1b = 1größe",
       "TERM = 3 AND LINE = 10 AND x=0x1F OR y=1e5 AND z=1.5 AND a1b = 1 größe"},
      {"CASE WHEN 1THEN 2ELSE 3END", "CASE WHEN 1 THEN 2 ELSE 3 END"},
      {"WHERE SITE = N'C1'AND OBJECT = N'O1'", "WHERE SITE = 'C1'AND OBJECT = 'O1'"},
      {"VALUES(N'P1',{d '2003-01-31'},NULL)", "VALUES('P1','2003-01-31',NULL)"},
      {"SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE", "SET lutm  = '2004-01-31 10:11:12' WHERE"},
      {"SET lutm = TO_DATE( '98-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS'),in_use=0",
       "SET lutm = '0098-01-31 10:11:12',in_use=0"},
      {"SET WEXPIRY_DATE = CONVERT(DATETIME,'12/29/1899',101) Where OBJECT.OBJECTNR = 7",
       "SET WEXPIRY_DATE = '1899-12-29 00:00:00' Where OBJECT.OBJECTNR = 7"},
      {"DELIVERY_DATE= 'Jan 31, 2004 10:11:12 PM',x", "DELIVERY_DATE= '2004-01-31 22:11:12',x"},
      {"UPDATE STATISTICS SITES", "ANALYZE SITES"},
      {" update\tstatistics [my table]", "ANALYZE [my table]"},
      {"SET DATEFORMAT YMD", ""},
      {" set  dateformat ymd ", ""},
      {"Alter session set current_schema= SERVICE", ""},
      {"ALTER SESSION SET CURRENT_SCHEMA=\"My Schema\"", ""},
  };
  for (const auto& [statement, translated] : cases) {
    EXPECT_EQ(Translated(statement), translated) << statement;
  }
}

TEST(TranslateForSqlite, LeavesWhatSqliteReads) {
  const char* statements[] = {
      "",
      " ",
      "SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c",
      "INSERT INTO SITES (SITE ,upd_flag )VALUES ('A1',0)",
      "lutm = '2004-01-31 00:00:00'",
      "'it''s 1WHERE CONVERT(DATETIME,''x'',120) {d ''x''}'",
      "\"N'x' 1WHERE {d 'x'}\"",
      "[N'x' 1WHERE {d 'x'}]",
      "x -- N'x' 1WHERE {d 'x'}",
      "x /* N'x' 1WHERE {d 'x'} */ y",
      "A1B, T1.X2, x'53', N 'x', AN'x', größeN'x'",
      "'not closed N'",
      "N'not closed 1WHERE",
      "x \"not closed N'x'",
      "CONVERT(DATETIME,'2004-01-31 10:11:12',120",
      "UPDATE STATISTICS ",
      "UPDATE STATISTICS SET upd_flag = 1 ",
      "SET DATEFORMAT DMY",
      "UPDATE SITES SET DATEFORMAT = 1",
  };
  for (const char* statement : statements) {
    EXPECT_EQ(Translated(statement), statement);
  }
}

TEST(TranslateForSqlite, KeepsWhatALiteralHoldsBehindItsN) {
  EXPECT_EQ(Translated("x=N'it''s 1WHERE CONVERT(DATETIME,''x'',120)'AND y=N'{d ''x''} N''a'' Größe 東京'"),
            "x='it''s 1WHERE CONVERT(DATETIME,''x'',120)'AND y='{d ''x''} N''a'' Größe 東京'");
  EXPECT_EQ(Translated("x=N'Jan 31, 2004 10:11:12 AM',y=N'SET DATEFORMAT YMD'"),
            "x='Jan 31, 2004 10:11:12 AM',y='SET DATEFORMAT YMD'");
}

TEST(TranslateForSqlite, KeepsApartLiteralsThatWouldBecomeOne) {
  const std::pair<const char*, const char*> cases[] = {
      {"'a'N'b'", "'a' 'b'"},
      {"N'a'N'b'", "'a' 'b'"},
      {"'a'{d '2004-01-31'}'b'", "'a' '2004-01-31' 'b'"},
      {"CONVERT(DATETIME,'2004-01-31',120)N'b'", "'2004-01-31 00:00:00' 'b'"},
      {"{d '2004-01-31'}{d '2004-01-31'}", "'2004-01-31' '2004-01-31'"},
      {"{d '2004-01-31'}'never closed", "'2004-01-31' 'never closed"},
      {"'a'N'never closed", "'a'N'never closed"},
      {"x{d '2004-01-31'}", "x '2004-01-31'"},
      {"1N'a'", "1 'a'"},
      {"1CONVERT(DATETIME,'2004-01-31',120)", "1 '2004-01-31 00:00:00'"},
      {"1{d '2004-01-31'}", "1 '2004-01-31'"},
      {"1'Jan 31, 2004 10:11:12 AM'", "1 '2004-01-31 10:11:12'"},
  };
  for (const auto& [statement, translated] : cases) {
    EXPECT_EQ(Translated(statement), translated) << statement;
  }
}

TEST(TranslateForSqlite, RefusesADateThatDoesNotExist) {
  const char* statements[] = {"SET lutm = CONVERT(DATETIME,'2003-02-29',120)",
                              "SET lutm = CONVERT(DATETIME,'2003-02-29',101)",
                              "SET lutm = TO_DATE( '2003-02-29','yyyy-mm-dd HH24:MI:SS')", "VALUES({d '2003-02-29'})"};
  for (const char* statement : statements) {
    try {
      Translated(statement);
      ADD_FAILURE() << statement;
    } catch (const RuntimeError& failure) {
      EXPECT_EQ(failure.number(), -2147217913) << statement;
      EXPECT_EQ(failure.source(), "SQLite") << statement;
      EXPECT_EQ(failure.description(), "invalid date: 2003-02-29") << statement;
      EXPECT_EQ(failure.items().size(), 1u) << statement;
    }
  }
  EXPECT_THROW(Translated("x = 'Feb 29, 2003 10:11:12 AM'"), RuntimeError);
}

/// The literals of a statement with their quotes, read by rules of their own.
std::vector<Text> LiteralsOf(std::string_view statement) {
  std::vector<Text> literals;
  for (std::size_t at = 0; at < statement.size(); ++at) {
    const char mark = statement[at];
    if (mark == '"') at = statement.find('"', at + 1);
    if (mark == '[') at = statement.find(']', at + 1);
    if (mark != '\'') continue;
    Text literal = "'";
    for (++at; statement[at] != '\'' || (at + 1 < statement.size() && statement[at + 1] == '\''); ++at) {
      if (statement[at] == '\'') literal += statement[at++];
      literal += statement[at];
    }
    literals.push_back(literal + "'");
  }
  return literals;
}

class RandomStatement {
 public:
  explicit RandomStatement(unsigned seed) : random_(seed) {
    for (unsigned pieces = Number(12); pieces > 0; --pieces) AddPiece();
  }

  Text text;
  std::vector<Text> literals;  // as they must stand in what SQLite gets

 private:
  unsigned Number(unsigned below) { return static_cast<unsigned>(random_()) % below; }

  void AddPiece() {
    static const char* const kOthers[] = {"SELECT", "1WHERE",  " 3AND ", "N",    ",",          " ",
                                          "(",      ")",       "=",      "1e5",  "\"it's N\"", "[it's {d]",
                                          "{",      "CONVERT", "{d ",    "A1B ", "größe",      "TO_DATE( "};
    switch (Number(6)) {
      case 0:
        AddLiteral("", RandomLiteral());
        return;
      case 1:
        AddLiteral("N", RandomLiteral());
        return;
      case 2:
        AddDate("{d '2004-01-31'}", "'2004-01-31'");
        return;
      case 3:
        AddDate("CONVERT(DATETIME,'2004-01-31 10:11:12',120)", "'2004-01-31 10:11:12'");
        return;
      default:
        text += kOthers[Number(std::size(kOthers))];
    }
  }

  /// Two literals side by side would be one.
  void AddLiteral(const char* prefix, const Text& literal) {
    if (text.ends_with('\'')) text += ' ';
    text += prefix + literal;
    literals.push_back(literal);
  }

  /// A word in front would change what the date starts with, a brace or an open call would take it in.
  void AddDate(const Text& date, const char* translated) {
    text += "+" + date;
    literals.emplace_back(translated);
  }

  Text RandomLiteral() {
    static const char* const kContents[] = {
        "''", "N''", "1WHERE", "{d ''2004-01-31''}", "CONVERT(DATETIME,''x'',120)", "a", " ", "\"", "[", "--", "/*",
        "東", "N",   "7",      "SET DATEFORMAT YMD"};
    Text literal = "'";
    for (unsigned pieces = Number(5); pieces > 0; --pieces) literal += kContents[Number(std::size(kContents))];
    return literal + "'";
  }

  std::mt19937 random_;
};

TEST(TranslateForSqlite, NeverChangesALiteral) {
  for (unsigned seed = 0; seed < 20000; ++seed) {
    const RandomStatement statement(seed);

    ASSERT_EQ(LiteralsOf(Translated(statement.text)), statement.literals) << seed << ": " << statement.text;
  }
}

}  // namespace
}  // namespace zenqay
