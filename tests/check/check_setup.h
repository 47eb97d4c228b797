// A machine on which a job can run, until a test spoils it: the program's files, an ERP of exports, a database with the
// reference schema and rows, and a directory for the logs.
//
//     CheckSetup setup("3");
//     setup.Sql("DROP TABLE SITE");
//     EXPECT_EQ(setup.Check(), "…");
#pragma once

#include <sqlite3.h>

#include <map>
#include <sstream>

#include "check/check.h"
#include "components/component_catalogue.h"
#include "doubles/fake_platform.h"
#include "doubles/file_content.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {

class CheckSetup {
 public:
  /// A full copy of all tables of the generation.
  explicit CheckSetup(const Text& generation = "3") {
    const std::filesystem::path share = ZENQAY_SHARE;
    for (const char* name : {"I18nText.xml", "Components.xml"}) {
      std::filesystem::copy_file(share / name, home.path() / name);
    }
    std::filesystem::copy(share / "demo/erp", home.path() / "erp");
    std::filesystem::create_directory(home.path() / "log");
    Sql(ContentOf(share / "schema/sqlite.sql") + ContentOf(share / "schema/control-rows.sql"));
    items = {"Provider=SQLite;Data Source=" + Path("service.db") + ";Password=geheim",
             "SERVICE",
             "128",
             "1",
             Path("log"),
             "100",
             "-1",
             "",
             "1",
             "0",
             generation};
  }

  TempDirectory home;
  std::vector<Text> items;

  Text Path(const Text& name) const { return (home.path() / name).string(); }
  void Remove(const Text& name) const { std::filesystem::remove_all(home.path() / name); }

  /// Puts `after` in the place of `before` in a file.
  void Edit(const Text& name, const Text& before, const Text& after) const {
    home.Write(name, Replaced(home.Read(name), before, after));
  }

  /// Runs statements on the database file as another program would.
  void Sql(const Text& statements) const {
    sqlite3* database = nullptr;
    sqlite3_open(Path("service.db").c_str(), &database);
    const int code =
        sqlite3_exec(database, ("PRAGMA synchronous = OFF;" + statements).c_str(), nullptr, nullptr, nullptr);
    const Text message = sqlite3_errmsg(database);
    sqlite3_close(database);
    if (code != SQLITE_OK) throw std::runtime_error(message);
  }

  Text CommandLine() const {
    Text line;
    for (const Text& item : items) line += (&item == &items.front() ? "" : "{}") + item;
    return line;
  }

  /// What the check says, HOME for the directory of the setup, and behind it what it comes to.
  Text Check() {
    LocalDatabases databases;
    return Check(databases);
  }
  Text Check(Database& database) {
    Journal journal;
    FakePlatform platform(journal, home.path().string());
    ComponentCatalogue components(home.path().string());
    std::ostringstream out;
    const bool canRun = RunCheck(platform, components, database, CommandLine(), out);
    return Replaced(out.str(), home.path().string(), "HOME") + (canRun ? "=> true\n" : "=> false\n") + journal.Take();
  }

  /// Every file and directory of the setup with what it holds.
  std::map<Text, Text> Everything() const {
    std::map<Text, Text> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path())) {
      all[entry.path().string()] = entry.is_directory() ? "directory" : ContentOf(entry.path());
    }
    return all;
  }
};

}  // namespace zenqay
