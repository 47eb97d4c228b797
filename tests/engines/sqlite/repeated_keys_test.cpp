#include "engines/sqlite/repeated_keys.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

/// "TABLE: COLUMN 0=3, …; the shape without them", or nothing.
Text Found(std::string_view shape) {
  const std::optional<RepeatedKeys> found = FindRepeatedKeys(shape);
  if (!found) return "";
  Text shown = found->table + ":";
  for (const RepeatedKeys::Key& key : found->keys) {
    shown += " " + key.column + " " + std::to_string(key.set) + "=" + std::to_string(key.compared);
  }
  return shown + "; " + found->without;
}

TEST(FindRepeatedKeys, FindsTheColumnsThatAnUpdateSetsAndFindsItsRowBy) {
  EXPECT_EQ(Found("UPDATE SITE SET SITE = ?, DESCRIPTION = ?, upd_flag = ? WHERE SITE =?"),
            "SITE: SITE 0=3; UPDATE SITE SET DESCRIPTION = ?, upd_flag = ? WHERE SITE =?");
  EXPECT_EQ(Found("update t set note=?,a=?,b=NULL,C=?where A=? and c=?"),
            "t: a 1=3 C 2=4; UPDATE t SET note=?, b=NULL WHERE A=? AND c=?");
  EXPECT_EQ(Found("UPDATE T SET A = ?, N = 1.5, B = ? WHERE B = ? AND D = ? AND E = NULL"),
            "T: B 1=2; UPDATE T SET A = ?, N = 1.5 WHERE B = ? AND D = ? AND E = NULL");
}

TEST(FindRepeatedKeys, FindsNothingWhereNoColumnIsSetAndCompared) {
  EXPECT_EQ(Found("UPDATE SITE SET upd_flag = ?"), "");
  EXPECT_EQ(Found("UPDATE SITE SET CUSTOMER = ? WHERE SITE = ?"), "");
  EXPECT_EQ(Found("UPDATE SITE SET SITE = NULL, CUSTOMER = ? WHERE SITE = ?"), "");
  EXPECT_EQ(Found("UPDATE SITE SET SITE = ?, CUSTOMER = ? WHERE SITE = NULL"), "");
  EXPECT_EQ(Found("DELETE FROM SITE WHERE SITE = ?"), "");
  EXPECT_EQ(Found("INSERT INTO SITE (SITE) VALUES (?)"), "");
  EXPECT_EQ(Found(""), "");
}

TEST(FindRepeatedKeys, FindsNothingWhereNothingElseIsSet) {
  EXPECT_EQ(Found("UPDATE SITE SET SITE = ? WHERE SITE = ?"), "");
}

TEST(FindRepeatedKeys, FindsNothingInWhatAJobDoesNotCompose) {
  for (const char* shape : {
           "UPDATE OR REPLACE T SET A = ?, B = ? WHERE A = ?",
           "UPDATE main.T SET A = ?, B = ? WHERE A = ?",
           "UPDATE T AS X SET A = ?, B = ? WHERE A = ?",
           "UPDATE \"T\" SET A = ?, B = ? WHERE A = ?",
           "UPDATE T SET \"A\" = ?, B = ? WHERE A = ?",
           "UPDATE T SET A = ?, A = ?, B = ? WHERE A = ?",
           "UPDATE T SET A = ?, B = -? WHERE A = ?",
           "UPDATE T SET A = ?, B = C + ? WHERE A = ?",
           "UPDATE T SET A = ?, B = abs(?) WHERE A = ?",
           "UPDATE T SET (A, B) = (?, ?) WHERE A = ?",
           "UPDATE T SET A = ?, B = ? FROM U WHERE A = ?",
           "UPDATE T SET A = ?, B = ? WHERE A = ? OR C = ?",
           "UPDATE T SET A = ?, B = ? WHERE (A = ?)",
           "UPDATE T SET A = ?, B = ? WHERE NOT A = ?",
           "UPDATE T SET A = ?, B = ? WHERE A >= ?",
           "UPDATE T SET A = ?, B = ? WHERE A = ? COLLATE NOCASE",
           "UPDATE T SET A = ?, B = ? WHERE A = ? AND C IN (?)",
           "UPDATE T SET A = ?, B = ? WHERE A = ? AND",
           "UPDATE T SET A = ?, B = ? WHERE A = ? RETURNING A",
           "UPDATE T SET A = ?, B = ? WHERE A =",
           "UPDATE T SET A = ?, B = ?",
           "UPDATE T SET A = ?, WHERE A = ?",
       }) {
    EXPECT_EQ(Found(shape), "") << shape;
  }
}

}  // namespace
}  // namespace zenqay
