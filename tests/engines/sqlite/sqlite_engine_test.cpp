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

const auto kFile = testing::Values(EngineOf<SqliteDatabase>("File"));

INSTANTIATE_TEST_SUITE_P(Sqlite, EveryConnection, kFile, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Sqlite, EveryDatabase, kFile, testing::PrintToStringParamName());

}  // namespace
}  // namespace zenqay
