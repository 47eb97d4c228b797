#include "engines/sqlite/read_only_file.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {
namespace {

/// The head of a database file as far as its mode: the two bytes behind the eighteenth.
std::string Head(char mode) {
  return std::string(18, 'x') + std::string(2, mode) + std::string(80, 'x');
}

Text Shown(const ReadOnlyFile& file) {
  return file.uri + (file.isAlone ? " alone" : "");
}

TEST(ReadOnlyFileAt, FitsWhatStandsBesideTheFile) {
  struct Case {
    char mode;
    bool hasLog;
    bool hasIndex;
    Text parameters;
  };
  const Case cases[] = {
      {1, false, false, "?mode=ro"},
      {1, true, true, "?mode=ro"},
      {2, false, false, "?mode=ro&immutable=1"},
      {2, false, true, "?mode=ro&immutable=1"},
      {2, true, true, "?mode=ro&readonly_shm=1"},
      {2, true, false, "?mode=ro&vfs=unix-none alone"},
  };
  for (const auto& [mode, hasLog, hasIndex, parameters] : cases) {
    const TempDirectory directory;
    const Text path = (directory.path() / "service.db").string();
    directory.Write("service.db", Head(mode));
    if (hasLog) directory.Write("service.db-wal", "");
    if (hasIndex) directory.Write("service.db-shm", "");

    EXPECT_EQ(Shown(ReadOnlyFile::At(path)), "file:" + path + parameters);
  }
}

TEST(ReadOnlyFileAt, LeavesItToTheDatabaseToRefuseAFileWithoutAHead) {
  const TempDirectory directory;
  directory.Write("short.db", "x");
  const Text path = directory.path().string();

  EXPECT_EQ(Shown(ReadOnlyFile::At(path + "/short.db")), "file:" + path + "/short.db?mode=ro");
  EXPECT_EQ(Shown(ReadOnlyFile::At(path + "/missing.db")), "file:" + path + "/missing.db?mode=ro");
}

TEST(ReadOnlyFileAt, WritesCharactersOfAnAddressAsCodes) {
  EXPECT_EQ(Shown(ReadOnlyFile::At("./100%?#.db")), "file:./100%25%3f%23.db?mode=ro");
}

std::shared_ptr<Connection> Opened(const Text& connectionString) {
  LocalDatabases databases;
  const std::shared_ptr<Connection> connection = databases.CreateConnection();
  connection->PutConnectionString(connectionString);
  connection->Open();
  return connection;
}

TEST(ConnectionInModeRead, RefusesToWrite) {
  const TempDirectory directory;
  directory.Write("service.db", "");
  const Text connectionString = "Provider=SQLite;Data Source=" + (directory.path() / "service.db").string();
  Opened(connectionString)->Execute("CREATE TABLE SITE (SITE TEXT)");
  const auto connection = Opened(connectionString + ";mode=READ");

  EXPECT_EQ(Raised([&] { connection->Execute("DELETE FROM SITE"); }),
            "-2147467259 SQLite: attempt to write a readonly database");
}

TEST(ConnectionInModeRead, TakesTheSettingsOfASession) {
  const TempDirectory directory;
  directory.Write("service.db", "");
  const auto connection =
      Opened("Provider=SQLite;Data Source=" + (directory.path() / "service.db").string() + ";Mode=Read");

  connection->Execute("SET DATEFORMAT YMD");
  connection->PutDefaultDatabase("SERVICE");

  EXPECT_EQ(connection->DefaultDatabase(), "SERVICE");
}

}  // namespace
}  // namespace zenqay
