#include "engines/dialect/postgresql_dialect.h"

#include <gtest/gtest.h>

#include "engines/provider_errors.h"

namespace zenqay {
namespace {

Text Translated(std::string_view statement) {
  Text translated = "left from the statement before";
  TranslateForPostgreSql(statement, translated);
  return translated;
}

TEST(TranslateForPostgreSql, ChangesWhatPostgreSqlDoesNotRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT * FROM tstables WHERE tablename = N'SITES'", "SELECT * FROM tstables WHERE tablename = 'SITES'"},
      {"UPDATE tstables SET in_use = 1WHERE tablename = N'SITES'",
       "UPDATE tstables SET in_use = 1 WHERE tablename = 'SITES'"},
      {"WHERE SITE = N'C1'AND OBJECT = N'O1'AND TERM = 3AND LINE = 10",
       "WHERE SITE = 'C1'AND OBJECT = 'O1'AND TERM = 3 AND LINE = 10"},
      {"VALUES(N'P1',{d '2003-01-31'},NULL)", "VALUES('P1',date '2003-01-31',NULL)"},
      {"SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE",
       "SET lutm  = timestamp '2004-01-31 10:11:12' WHERE"},
      {"SET lutm = TO_DATE( '98-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS'),in_use=0",
       "SET lutm = timestamp '0098-01-31 10:11:12',in_use=0"},
      {"SET WEXPIRY_DATE = CONVERT(DATETIME,'12/29/1899',101) Where OBJECT.OBJECTNR = 7",
       "SET WEXPIRY_DATE = timestamp '1899-12-29 00:00:00' Where OBJECT.OBJECTNR = 7"},
      {"DELIVERY_DATE= 'Jan 31, 2004 10:11:12 PM',x", "DELIVERY_DATE= timestamp '2004-01-31 22:11:12',x"},
      {"x{d '2004-01-31'}", "x date '2004-01-31'"},
      {"UPDATE STATISTICS SITES", "ANALYZE SITES"},
      {"SET DATEFORMAT YMD", ""},
      {"Alter session set current_schema= SERVICE", "SET search_path TO SERVICE"},
      {"ALTER SESSION SET CURRENT_SCHEMA=\"My Schema\"", "SET search_path TO \"My Schema\""},
      {"ALTER SESSION SET CURRENT_SCHEMA=SERVICE", "SET search_path TO SERVICE"},
  };
  for (const auto& [statement, translated] : cases) EXPECT_EQ(Translated(statement), translated) << statement;
}

TEST(TranslateForPostgreSql, LetsAPatternStandForItselfButForItsWildcards) {
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY",
       "SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY ESCAPE ''"},
      {"WHERE a LIKE N'A\\%' AND b=1", "WHERE a LIKE 'A\\%' ESCAPE '' AND b=1"},
      {"WHERE a like b AND c LIKE d.e.f)", "WHERE a like b ESCAPE '' AND c LIKE d.e.f ESCAPE '')"},
      {"WHERE a LIKE N'A!%' ESCAPE '!'", "WHERE a LIKE 'A!%' ESCAPE '!'"},
  };
  for (const auto& [statement, translated] : cases) EXPECT_EQ(Translated(statement), translated) << statement;
}

TEST(TranslateForPostgreSql, LeavesWhatPostgreSqlReads) {
  const char* statements[] = {
      "",
      "SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c",
      "INSERT INTO SITES (SITE ,upd_flag )VALUES ('A\\1 ? N''x'' 1WHERE LIKE {d ''2004-01-31''} 😀',0)",
      "SELECT \"LIKE N'x'\" -- 1WHERE N'x'\n",
      "UPDATE STATISTICS SET upd_flag = 1 ",
  };
  for (const char* statement : statements) EXPECT_EQ(Translated(statement), statement);
}

TEST(TranslateForPostgreSql, RefusesADateThatDoesNotExist) {
  try {
    Translated("VALUES({d '2003-02-29'})");
    ADD_FAILURE();
  } catch (const RuntimeError& failure) {
    EXPECT_EQ(failure.number(), -2147217913);
    EXPECT_EQ(failure.source(), "PostgreSQL");
    EXPECT_EQ(failure.description(), "invalid date: 2003-02-29");
  }
}

}  // namespace
}  // namespace zenqay
