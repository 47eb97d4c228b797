#include "engines/sqlite/row_ids.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(WithRowIds, TakesTheOptionOutWhereverItStands) {
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A) WITHOUT ROWID"), "CREATE TABLE T (A)");
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A)without rowid"), "CREATE TABLE T (A)");
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A) WITHOUT  \n Rowid"), "CREATE TABLE T (A)");
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A) STRICT, WITHOUT ROWID"), "CREATE TABLE T (A) STRICT");
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A) WITHOUT ROWID, STRICT"), "CREATE TABLE T (A) STRICT");
  EXPECT_EQ(WithRowIds("CREATE TABLE T (A) WITHOUT/* (by key) */ROWID -- so"), "CREATE TABLE T (A)");
}

TEST(WithRowIds, LeavesEverythingElse) {
  for (const char* statement : {"CREATE TABLE T (A)", "CREATE TABLE T (A) STRICT ",
                                "CREATE TABLE T (A DEFAULT ') WITHOUT ROWID')", "CREATE TABLE T (\"A) WITHOUT ROWID\")",
                                "CREATE TABLE T (A) -- WITHOUT ROWID", "CREATE INDEX I ON T (A) WHERE A <> 'x'", ""}) {
    EXPECT_EQ(WithRowIds(statement), statement);
  }
}

}  // namespace
}  // namespace zenqay
