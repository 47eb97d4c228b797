#include "engines/sqlite/table_filler.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

TEST(TableFiller, NamesItsFileWhereNoRoomIsLeft) {
  const TempDirectory directory;
  TableFiller filler((directory.path() / "before.db").string());
  const TableSchema schema = {.columns = {"A"}, .statements = {"CREATE TABLE T (A TEXT)"}};
  filler.Run("PRAGMA max_page_count = 8");

  const Text said = Raised([&] {
    RowSink& rows = filler.Begin("T", schema);
    for (int i = 0; i < 100; ++i) {
      rows.AddText(Text(4000, 'x'));
      rows.EndRow();
    }
  });

  EXPECT_EQ(Replaced(said, directory.path().string(), "HOME"),
            "-2147467259 SQLite: database or disk is full: HOME/before.db");
}

}  // namespace
}  // namespace zenqay
