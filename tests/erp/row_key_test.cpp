#include <gtest/gtest.h>

#include "components/dates/builtin_dates.h"
#include "doubles/journal.h"
#include "doubles/outcome.h"
#include "doubles/scripted_components.h"
#include "erp/component_contract.h"

namespace zenqay {
namespace {

constexpr KeyField kKeys[] = {{"getConfiguration", "SITE"}, {"GetObject", "OBJECT"}};

TEST(RowKey, TellsWhatTheRowHasAnsweredInTheOrderOfTheKey) {
  RowKey key(kKeys);
  EXPECT_EQ(key.Told(), "");

  key.Remember("GetObject", "O1");
  key.Remember("getDescription", "Pump");
  EXPECT_EQ(key.Told(), "Object=O1");

  key.Remember("getConfiguration", "C\r\n 1");
  EXPECT_EQ(key.Told(), "Configuration=C 1, Object=O1");

  key.Remember("GetObject", std::int32_t{7});
  EXPECT_EQ(key.Told(), "Configuration=C 1, Object=7");

  key.Forget();
  EXPECT_EQ(key.Told(), "");
}

TEST(RowKey, TellsNothingOfWhatIsNoPlainValue) {
  Journal journal;
  ScriptedComponents components(journal);
  for (const Value& answer : {Value(), Value(Null()), Value(Object()), Value(Object(components.Make("part")))}) {
    RowKey key(kKeys);

    key.Remember("getConfiguration", answer);

    EXPECT_EQ(key.Told(), "");
  }
  EXPECT_EQ(journal.Take(), "");  // the object is not asked what it stands for
}

/// The row of a listing, with its key.
struct ListedSite {
  Journal journal;
  ScriptedComponents components{journal};
  RowKey key{kKeys};
  Enumeration rows{Object(components.MakeEnumeration(
      "rows", {components.MakeRow({{"Configuration", "C1"}, {"Description", Null()}, {"Object", "O1"}}),
               components.MakeRow({})}))};
  Row row = rows.NextElement(&key);
};

TEST(NamingRow, PutsTheCallAndWhatIsKnownOfTheKeyBehindAFailedCallWithoutAskingForMore) {
  ListedSite site;
  site.journal.Take();

  const Text raised = Raised([&] {
    NamingRow(site.key, [&] {
      site.row.Get("getConfiguration");
      site.row.GetText("getDescription");
    });
  });

  EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null: getDescription of Configuration=C1");
  EXPECT_EQ(site.journal.Take(),
            "row1.getConfiguration()\n"
            "row1.getDescription()\n");
}

TEST(NamingRow, LeavesTheWordsOfADatabaseAndTellsTheRowToWhoListens) {
  ListedSite site;
  site.row.Get("getConfiguration");
  const RuntimeError refused = RuntimeError({{-2147217873, "driver", "no duplicates", "23000", 1}}).With("INSERT …");

  try {
    NamingRow(site.key, [&] { throw refused; });
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "no duplicates");
    EXPECT_EQ(error.row(), "Configuration=C1");
    EXPECT_EQ(error.call(), "");
    EXPECT_EQ(error.statement(), "INSERT …");
    EXPECT_EQ(error.sqlState(), "23000");
  }
}

TEST(Enumeration, ForgetsTheKeyWithTheNextRow) {
  ListedSite site;
  site.row.Get("getConfiguration");

  site.row = site.rows.NextElement(&site.key);

  EXPECT_EQ(site.key.Told(), "");
}

}  // namespace
}  // namespace zenqay
