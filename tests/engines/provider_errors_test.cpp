#include "engines/provider_errors.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(ProviderNumber, FollowsTheSqlState) {
  const std::pair<std::string_view, std::int32_t> cases[] = {
      {"42S02", -2147217865}, {"42P01", -2147217865}, {"42000", -2147217900}, {"42S22", -2147217900},
      {"42703", -2147217900}, {"37000", -2147217900}, {"23000", -2147217873}, {"23505", -2147217873},
      {"28000", -2147217843}, {"28001", -2147467259}, {"22001", -2147217833}, {"22003", -2147217833},
      {"22007", -2147217913}, {"22018", -2147217913}, {"HYT00", -2147217871}, {"HYT01", -2147467259},
      {"08001", -2147467259}, {"HY000", -2147467259}, {"40001", -2147467259}, {"", -2147467259},
  };
  for (const auto& [sqlState, number] : cases) {
    EXPECT_EQ(ProviderNumber(sqlState), number) << sqlState;
  }
}

TEST(ReportedItem, TakesItsNumberFromTheSqlState) {
  const ProviderError item = ReportedItem("SQLite", "no such table: SITES", "42S02", 1);

  EXPECT_EQ(item.Number, -2147217865);
  EXPECT_EQ(item.Source, "SQLite");
  EXPECT_EQ(item.Description, "no such table: SITES");
  EXPECT_EQ(item.SqlState, "42S02");
  EXPECT_EQ(item.NativeError, 1);
}

TEST(ReportedItem, BringsTheTextOnOneLine) {
  EXPECT_EQ(ReportedItem("Driver", "ERROR: no such column;\nError while executing the query\r\n", "42703").Description,
            "ERROR: no such column; Error while executing the query");
}

}  // namespace
}  // namespace zenqay
