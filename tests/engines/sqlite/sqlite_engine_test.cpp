// What every engine has in common, on a SQLite file.
#include "doubles/temp_directory.h"
#include "engines/every_engine.h"

namespace zenqay {
namespace {

class SqliteDatabase : public TestedDatabase {
 public:
  SqliteDatabase() {
    directory_.Write("service.db", "");
    connectionString = "Provider=SQLite;Data Source=" + (directory_.path() / "service.db").string();
    source = "SQLite";
  }

 private:
  TempDirectory directory_;
};

std::unique_ptr<TestedDatabase> MakeSqliteDatabase() {
  return std::make_unique<SqliteDatabase>();
}

INSTANTIATE_TEST_SUITE_P(Sqlite, EveryConnection, testing::Values(&MakeSqliteDatabase),
                         [](const auto&) { return "File"; });
INSTANTIATE_TEST_SUITE_P(Sqlite, EveryDatabase, testing::Values(&MakeSqliteDatabase),
                         [](const auto&) { return "File"; });

}  // namespace
}  // namespace zenqay
