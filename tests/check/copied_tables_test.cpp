#include "check/copied_tables.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

using Names = std::vector<Text>;

TEST(TablesNamedBy, AreTheControlTablesAndTheTableItself) {
  EXPECT_EQ(TablesNamedBy("Site", "3", 1), (Names{"tstables", "tstreenodes", "tsi18ntext", "Site"}));
  EXPECT_EQ(TablesNamedBy("WARRANTIES", "8", 1), (Names{"tstables", "tstreenodes", "tsi18ntext", "WARRANTIES"}));
}

TEST(TablesNamedBy, AreThoseThatTheWarrantyExpiryJoinsWhereItFollows) {
  EXPECT_EQ(TablesNamedBy("object", "3", 1), (Names{"tstables", "tstreenodes", "tsi18ntext", "object", "WARRANTIES"}));
  EXPECT_EQ(TablesNamedBy("WARRANTIES", "3", 1),
            (Names{"tstables", "tstreenodes", "tsi18ntext", "WARRANTIES", "OBJECT"}));
  EXPECT_EQ(TablesNamedBy("WARRANTIES", "3", 2), (Names{"tstables", "tstreenodes", "tsi18ntext", "WARRANTIES"}));
}

TEST(KeyColumnsOf, AreThoseByWhichTheStatementsFindARow) {
  EXPECT_EQ(KeyColumnsOf("SITECONTRACT", "3"), (Names{"SITE", "CONTRACT", "TERM", "LINE"}));
  EXPECT_EQ(KeyColumnsOf("SITECONTRACT", "8"), (Names{"SITE", "CONTRACT", "OBJECT", "OBJECTNR", "TERM"}));
  EXPECT_EQ(KeyColumnsOf("SITECONTRACT", "1"), Names{});
}

TEST(CopiedColumnsOf, AreAllThatTheStatementsWrite) {
  EXPECT_EQ(CopiedColumnsOf("SITE", "1"), (Names{"SITE", "DESCRIPTION", "CUSTOMER", "upd_flag"}));
  EXPECT_EQ(CopiedColumnsOf("NONE", "1"), Names{});
}

}  // namespace
}  // namespace zenqay
