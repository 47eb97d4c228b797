// The layers of the program, as its includes show them: a folder includes only from itself and from below.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "base/text_functions.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

/// The names that each file includes, as they are written there. A file's own name is its path below the root.
using SourceTree = std::map<Text, std::vector<Text>>;

/// From the bottom to the top. `check` looks at a job's surroundings and `control` starts jobs as processes; what
/// stands beside the folders are the programs' entries, above all of them.
const std::map<Text, int> kRanks = {{"base", 0},  {"contracts", 1},  {"system", 2},   {"process", 3},
                                    {"trace", 4}, {"channel", 4},    {"localdb", 5},  {"engines", 6},
                                    {"erp", 7},   {"components", 8}, {"entities", 9}, {"postcopy", 9},
                                    {"job", 10},  {"startup", 11},   {"check", 12},   {"control", 13}};
constexpr int kEntryRank = 14;

/// The headers of a foreign library, which one folder may see.
struct Driver {
  Text name;
  std::set<Text> headers;
};
const Driver kDrivers[] = {
    {"SQLite", {"sqlite3.h", "sqlite3ext.h"}},
    {"ODBC", {"sql.h", "sqlext.h", "sqltypes.h", "sqlucode.h", "odbcinst.h", "odbcinstext.h"}},
    {"JNI", {"jni.h", "jni_md.h"}},
    {"cpp-httplib", {"httplib.h"}},
};

/// The folder that talks to the operating system, and the headers that it alone may see. (The code pages of base come
/// from the C library, through iconv.)
constexpr const char* kSystemLayer = "system";
const std::set<Text> kSystemHeaders = {"dirent.h",   "dlfcn.h",  "fcntl.h", "grp.h",    "netdb.h", "poll.h",
                                       "pthread.h",  "pwd.h",    "sched.h", "signal.h", "spawn.h", "termios.h",
                                       "ucontext.h", "unistd.h", "utime.h", "windows.h"};
constexpr const char* kSystemFolders[] = {"arpa/", "linux/", "net/", "netinet/", "sys/"};

bool IsSystemHeader(const Text& name) {
  return kSystemHeaders.contains(name) || std::any_of(std::begin(kSystemFolders), std::end(kSystemFolders),
                                                      [&](const char* folder) { return name.starts_with(folder); });
}

std::optional<Text> IncludedName(const Text& line) {
  Text rest = TrimLeft(Replaced(line, "\t", " "));
  if (!rest.starts_with('#')) return {};
  rest = TrimLeft(rest.substr(1));
  if (!rest.starts_with("include")) return {};
  rest = TrimLeft(rest.substr(7));
  if (!rest.starts_with('"') && !rest.starts_with('<')) return {};
  const auto end = rest.find_first_of("\">", 1);
  if (end == Text::npos) return {};
  return rest.substr(1, end - 1);
}

SourceTree ReadTree(const std::filesystem::path& root) {
  SourceTree tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const Text extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    std::vector<Text>& names = tree[entry.path().lexically_relative(root).generic_string()];
    std::ifstream file(entry.path());
    for (Text line; std::getline(file, line);) {
      if (const auto name = IncludedName(line)) names.push_back(*name);
    }
  }
  return tree;
}

/// The folder that is a layer: "localdb" of "localdb/odbc/odbc_calls.h", "" of a file beside the folders.
Text LayerOf(const Text& file) {
  const auto slash = file.find('/');
  return slash == Text::npos ? Text() : file.substr(0, slash);
}

Text FolderOf(const Text& file) {
  const auto slash = file.rfind('/');
  return slash == Text::npos ? Text() : file.substr(0, slash);
}

int RankOf(const Text& layer) {
  const auto rank = kRanks.find(layer);
  return rank == kRanks.end() ? kEntryRank : rank->second;
}

bool MayInclude(const Text& file, const Text& included) {
  const Text from = LayerOf(file);
  const Text to = LayerOf(included);
  if (from == to || RankOf(to) < RankOf(from)) return true;
  // The units of the entities implement members of the job's class.
  return (from == "entities" || from == "postcopy") && included == "job/clsDataCopy.h";
}

/// The files of the tree that a file includes, each by its path below the root.
std::vector<Text> OwnIncludes(const SourceTree& tree, const Text& file) {
  std::vector<Text> own;
  for (const Text& name : tree.at(file)) {
    const Text besideIt = FolderOf(file) + "/" + name;
    if (tree.contains(name)) {
      own.push_back(name);
    } else if (tree.contains(besideIt)) {
      own.push_back(besideIt);
    }
  }
  return own;
}

Text LayerFaults(const SourceTree& tree) {
  Text faults;
  for (const auto& [file, names] : tree) {
    const Text layer = LayerOf(file);
    if (!layer.empty() && !kRanks.contains(layer)) faults += file + " stands in no layer\n";
    for (const Text& included : OwnIncludes(tree, file)) {
      if (!MayInclude(file, included)) faults += file + " must not include " + included + "\n";
    }
  }
  return faults;
}

/// Follows the includes from the last file of `path`; a file that was left again (`done`) lies on no further cycle.
void FindCycles(const SourceTree& tree, std::vector<Text>& path, std::set<Text>& done, Text& faults) {
  const Text file = path.back();
  for (const Text& included : OwnIncludes(tree, file)) {
    const auto start = std::find(path.begin(), path.end(), included);
    if (start != path.end()) {
      for (auto step = start; step != path.end(); ++step) faults += *step + " -> ";
      faults += included + "\n";
    } else if (!done.contains(included)) {
      path.push_back(included);
      FindCycles(tree, path, done, faults);
      path.pop_back();
    }
  }
  done.insert(file);
}

Text CycleFaults(const SourceTree& tree) {
  Text faults;
  std::set<Text> done;
  for (const auto& [file, names] : tree) {
    std::vector<Text> path = {file};
    if (!done.contains(file)) FindCycles(tree, path, done, faults);
  }
  return faults;
}

/// True when the file includes one of the headers, itself or through others.
template <typename IsHeader>
bool Sees(const SourceTree& tree, const Text& file, IsHeader isHeader, std::set<Text>& visited) {
  if (!visited.insert(file).second) return false;
  for (const Text& name : tree.at(file)) {
    if (isHeader(name)) return true;
  }
  for (const Text& included : OwnIncludes(tree, file)) {
    if (Sees(tree, included, isHeader, visited)) return true;
  }
  return false;
}

Text DriverFaults(const SourceTree& tree) {
  Text faults;
  for (const Driver& driver : kDrivers) {
    std::set<Text> folders;
    for (const auto& [file, names] : tree) {
      std::set<Text> visited;
      const auto isHeader = [&](const Text& name) { return driver.headers.contains(name); };
      if (Sees(tree, file, isHeader, visited)) folders.insert(FolderOf(file));
    }
    if (folders.size() < 2) continue;
    faults += driver.name + " is seen by";
    for (const Text& folder : folders) faults += " " + (folder.empty() ? "the entry" : folder);
    faults += "\n";
  }
  return faults;
}

Text SystemFaults(const SourceTree& tree) {
  Text faults;
  for (const auto& [file, names] : tree) {
    std::set<Text> visited;
    if (LayerOf(file) == kSystemLayer || !Sees(tree, file, IsSystemHeader, visited)) continue;
    faults += file + " sees a header of the operating system\n";
  }
  return faults;
}

Text Faults(const SourceTree& tree) {
  return LayerFaults(tree) + CycleFaults(tree) + DriverFaults(tree) + SystemFaults(tree);
}

TEST(Layering, HoldsInTheProgram) {
  const SourceTree program = ReadTree(std::filesystem::path(ZENQAY_SHARE).parent_path() / "src");

  EXPECT_TRUE(program.contains("main.cpp"));
  EXPECT_TRUE(program.contains("job/clsDataCopy.h"));
  EXPECT_EQ(Faults(program), "");
}

TEST(Layering, AllowsTheFolderItselfEverythingBelowAndTheOneException) {
  const SourceTree tree = {
      {"main.cpp", {"startup/a.h", "base/a.h", "vector"}},
      {"startup/a.h", {"job/clsDataCopy.h"}},
      {"startup/a.cpp", {"startup/a.h", "localdb/a.h"}},
      {"job/clsDataCopy.h", {"entities/sql_text.h", "erp/a.h"}},
      {"entities/sql_text.h", {"base/a.h"}},
      {"entities/site.cpp", {"job/clsDataCopy.h"}},
      {"postcopy/expiry.cpp", {"job/clsDataCopy.h"}},
      {"localdb/a.h", {"process/a.h"}},
      {"erp/a.h", {"base/a.h"}},
      {"erp/a.cpp", {"localdb/a.h"}},
      {"process/a.h", {"contracts/a.h"}},
      {"contracts/a.h", {"base/a.h"}},
      {"base/a.h", {"not/ours.h"}},
  };

  EXPECT_EQ(Faults(tree), "");
}

TEST(Layering, RefusesIncludesFromAboveAndFromBeside) {
  struct Case {
    Text file;
    Text included;
    bool allowed;
  };
  const Case cases[] = {
      {"base/a.cpp", "contracts/b.h", false},        {"contracts/a.cpp", "system/b.h", false},
      {"process/a.cpp", "trace/b.h", false},         {"trace/a.cpp", "process/b.h", true},
      {"process/a.cpp", "localdb/b.h", false},       {"localdb/a.cpp", "erp/b.h", false},
      {"localdb/a.cpp", "engines/b.h", false},       {"engines/sqlite/a.cpp", "components/b.h", false},
      {"components/files/a.cpp", "job/b.h", false},  {"entities/a.cpp", "postcopy/b.h", false},
      {"postcopy/a.cpp", "entities/b.h", false},     {"entities/a.cpp", "job/b.h", false},
      {"localdb/a.cpp", "job/clsDataCopy.h", false}, {"job/a.cpp", "startup/b.h", false},
      {"startup/a.cpp", "entry.h", false},           {"startup/a.cpp", "check/b.h", false},
      {"check/a.cpp", "startup/b.h", true},          {"erp/a.cpp", "localdb/b.h", true},
      {"check/a.cpp", "control/b.h", false},         {"control/a.cpp", "check/b.h", true},
      {"components/files/a.cpp", "erp/b.h", true},   {"job/a.cpp", "postcopy/b.h", true},
  };
  for (const Case& c : cases) {
    const SourceTree tree = {{c.file, {c.included}}, {c.included, {}}};

    EXPECT_EQ(Faults(tree), c.allowed ? "" : c.file + " must not include " + c.included + "\n");
  }
}

TEST(Layering, FindsAnIncludeThatIsWrittenFromItsOwnFolder) {
  const SourceTree tree = {{"erp/a.h", {"b.h"}}, {"erp/b.h", {"a.h"}}};

  EXPECT_EQ(Faults(tree), "erp/a.h -> erp/b.h -> erp/a.h\n");
}

TEST(Layering, RefusesAFolderThatIsNoLayer) {
  EXPECT_EQ(Faults({{"util/a.h", {}}}), "util/a.h stands in no layer\n");
}

TEST(Layering, RefusesCyclesOfFiles) {
  EXPECT_EQ(Faults({{"base/a.h", {"base/a.h"}}}), "base/a.h -> base/a.h\n");
  EXPECT_EQ(Faults({{"erp/a.h", {"erp/b.h"}}, {"erp/b.h", {"erp/c.h"}}, {"erp/c.h", {"erp/a.h"}}}),
            "erp/a.h -> erp/b.h -> erp/c.h -> erp/a.h\n");
  EXPECT_EQ(Faults({{"entities/a.h", {"job/clsDataCopy.h"}}, {"job/clsDataCopy.h", {"entities/a.h"}}}),
            "entities/a.h -> job/clsDataCopy.h -> entities/a.h\n");
  EXPECT_EQ(
      Faults(
          {{"erp/a.h", {"erp/b.h", "erp/c.h"}}, {"erp/b.h", {"erp/d.h"}}, {"erp/c.h", {"erp/d.h"}}, {"erp/d.h", {}}}),
      "");  // two ways to one file are no cycle
}

TEST(Layering, ShowsEachDriverToOneFolder) {
  EXPECT_EQ(Faults({{"engines/sqlite/a.cpp", {"sqlite3.h"}}, {"engines/sqlite/b.cpp", {"sqlite3.h"}}}), "");
  EXPECT_EQ(Faults({{"engines/sqlite/a.cpp", {"sqlite3.h"}}, {"engines/b.cpp", {"sqlite3.h"}}}),
            "SQLite is seen by engines engines/sqlite\n");
  EXPECT_EQ(Faults({{"engines/odbc/a.cpp", {"sqlext.h"}}, {"engines/odbc/b/c.cpp", {"sql.h"}}}),
            "ODBC is seen by engines/odbc engines/odbc/b\n");
  EXPECT_EQ(Faults({{"components/jvm/a.h", {"jni.h"}},
                    {"components/jvm/b.h", {"components/jvm/a.h"}},
                    {"components/c.cpp", {"components/jvm/b.h"}}}),
            "JNI is seen by components components/jvm\n");  // through a header
  EXPECT_EQ(Faults({{"engines/sqlite/a.cpp", {"sqlite3.h"}}, {"main.cpp", {"sqlite3.h"}}}),
            "SQLite is seen by the entry engines/sqlite\n");
}

TEST(Layering, ShowsHeadersOfTheOperatingSystemToTheSystemFolderAlone) {
  EXPECT_EQ(Faults({{"system/posix/a.cpp", {"unistd.h", "sys/prctl.h"}}, {"base/a.cpp", {"iconv.h", "system.h"}}}), "");
  EXPECT_EQ(Faults({{"trace/a.cpp", {"unistd.h"}}, {"main.cpp", {"sys/stat.h"}}}),
            "main.cpp sees a header of the operating system\ntrace/a.cpp sees a header of the operating system\n");
  EXPECT_EQ(Faults({{"system/a.h", {"fcntl.h"}}, {"system/b.h", {"system/a.h"}}, {"check/a.cpp", {"system/b.h"}}}),
            "check/a.cpp sees a header of the operating system\n");  // through a header
}

TEST(Layering, ReadsTheIncludesOfHeadersAndSourcesInEveryFolder) {
  const TempDirectory directory;
  std::filesystem::create_directories(directory.path() / "erp" / "hosts");
  directory.Write("main.cpp", "#include \"startup/a.h\"  // the entry\n#include <vector>\n");
  directory.Write("erp/hosts/a.h",
                  "#pragma once\n"
                  "#if defined(X)\n"
                  "  #  include\t<sql.h>\n"
                  "#endif\n"
                  "// #include \"comment.h\"\n"
                  "#define include \"no\"\n"
                  "#include\n");
  directory.Write("erp/notes.txt", "#include \"notes.h\"\n");

  const SourceTree expected = {{"main.cpp", {"startup/a.h", "vector"}}, {"erp/hosts/a.h", {"sql.h"}}};
  EXPECT_EQ(ReadTree(directory.path()), expected);
}

}  // namespace
}  // namespace zenqay
