// Numbers that stand in a statement without quotes: the value is joined as it comes, so a null leaves nothing there and
// the database refuses the statement.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

struct PlainCase {
  Text generation;
  CopyFixture::RowOperation apply;
  RowFields fields;
  Text update;
  Text insert;
};

TEST(PlainColumns, TakeANullAsNothing) {
  const PlainCase cases[] = {
      {"3",
       CopyFixture::ApplyWarrantyRow(),
       {{"Warranty", "W1"}, {"NumberOfPeriods", Null()}, {"PeriodUnit", Null()}, {"WarrantyType", Null()}},
       "UPDATE TABLE SET WARRANTY = N'W1', NUMBER_OF_PERIODS = , PERIOD_UNIT = , WARRANTY_TYPE = , upd_flag = 0 WHERE "
       "WARRANTY =N'W1'",
       "INSERT INTO TABLE (WARRANTY ,NUMBER_OF_PERIODS , PERIOD_UNIT , WARRANTY_TYPE ,upd_flag )VALUES (N'W1',,,,0)"},
      {"3",
       CopyFixture::ApplySiteContractRow(),
       {{"Configuration", "S1"}, {"ServiceContract", "C1"}, {"ContractTerms", Null()}, {"Line", Null()}},
       "UPDATE TABLE SET SITE = N'S1', CONTRACT = N'C1', TERM = , LINE = , upd_flag = 0 WHERE SITE =N'S1' AND CONTRACT "
       "=N'C1'AND TERM = AND LINE = ",
       "INSERT INTO TABLE (SITE ,CONTRACT , TERM , LINE ,upd_flag )VALUES (N'S1',N'C1',,,0)"},
      {"8",
       CopyFixture::ApplySiteContractRow(),
       {{"ContractTerms", Null()}},
       "UPDATE TABLE SET SITE = NULL, OBJECT = NULL, TERM = , upd_flag = 0 WHERE SITE =NULL AND CONTRACT =N'' AND "
       "OBJECT =NULL AND OBJECTNR =N''AND TERM = ",
       "INSERT INTO TABLE (SITE ,OBJECT ,TERM ,upd_flag )VALUES (NULL,NULL,,0)"},
  };
  for (const PlainCase& plain : cases) {
    SCOPED_TRACE(plain.update);
    CopyFixture copy(plain.generation);
    copy.database.AffectNext({0});

    copy.Apply(plain.apply, plain.fields, "TABLE");

    EXPECT_EQ(copy.JournalWithout({"row"}), "sql " + plain.update + " -> 0\nsql " + plain.insert + " -> 1\n");
  }
}

TEST(PlainColumns, TakeANullTermOfADeletedLineAsNothing) {
  CopyFixture copy("8");
  copy.AddManager("Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager", "lines",
                  {copy.RowWith({{"ActionType", "D"}, {"ContractTerms", Null()}})});

  copy.CopySiteContract("TABLE", 2);

  EXPECT_NE(copy.journal.Take().find("sql DELETE FROM TABLE WHERE SITE=NULL AND OBJECT =NULL AND TERM = -> 1\n"),
            Text::npos);
}

/// A priority's own null ends the row at its match, where the value is a text in quotes.
TEST(PlainColumns, TakeANullPriorityAsNothingAndLeaveItToTheMatchToFail) {
  CopyFixture copy("3");

  EXPECT_EQ(Raised([&] {
              copy.Apply(CopyFixture::ApplyPriorityRow(), {{"Priority", Null()}}, "TABLE");
            }),
            "94 ZenqayDBSync: Invalid use of Null: getPriority");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getPriority()\n"
            "row1.hasDescription()\n"
            "row1.getPriority()\n");
}

}  // namespace
}  // namespace zenqay
