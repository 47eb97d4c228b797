#include <filesystem>

#include "control/anonymise/anonymised_tables.h"
#include "control/anonymise/anonymised_trace.h"
#include "control/commands.h"
#include "control/exit_status.h"
#include "control/run_json.h"
#include "system/own_process.h"
#include "system/private_directory.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// The directory of what is made, which goes again unless all of it was.
class OutputDirectory {
 public:
  explicit OutputDirectory(const Text& path) : path_(fs::absolute(path).lexically_normal()) {
    if (fs::exists(path_)) throw WrongUsage(path_.string() + " exists; nothing was changed");
    MakePrivateDirectory(path_.string());
  }
  OutputDirectory(const OutputDirectory&) = delete;
  OutputDirectory& operator=(const OutputDirectory&) = delete;
  ~OutputDirectory() {
    std::error_code ignored;
    if (!isKept_) fs::remove_all(path_, ignored);
  }

  Text Path(const char* name) const { return (path_ / name).string(); }
  void Keep() { isKept_ = true; }

 private:
  fs::path path_;
  bool isKept_ = false;
};

struct Anonymised {
  Text tracePath;
  AnonymisedTrace trace;
  Text scratchPath;  // empty without a scratch file
  std::vector<RewrittenTable> tables;
};

void WriteJson(const Anonymised& done, std::ostream& out) {
  nlohmann::ordered_json json = {{"trace", done.tracePath},
                                 {"lines", done.trace.lines},
                                 {"changed", done.trace.changed},
                                 {"end_is_cut", done.trace.endIsCut}};
  if (!done.scratchPath.empty()) {
    json["scratch"] = done.scratchPath;
    for (const RewrittenTable& table : done.tables) {
      json["tables"].push_back({{"table", table.name}, {"rows", table.rows}, {"changed", table.changed}});
    }
  }
  out << JsonText(json) << std::endl;
}

void WriteText(const Anonymised& done, std::ostream& out) {
  out << "Made " << done.tracePath << ": " << done.trace.lines << " lines, " << done.trace.changed
      << " values changed\n";
  if (done.trace.endIsCut) out << "    its last line was cut off and is left out\n";
  if (!done.scratchPath.empty()) out << "Made " << done.scratchPath << ":\n";
  for (const RewrittenTable& table : done.tables) {
    out << "    " << table.name << ": " << table.rows << " rows, " << table.changed << " values changed\n";
  }
  out << "\nKept: operations, names of tables and columns, labels, statements without their literals, numbers, dates,\n"
         "lengths, upper and lower case, digits as digits, signs, what is equal to what. Changed: every other word.\n"
         "Look it through before you send it. What it was made by is kept nowhere: it cannot be turned back.\n"
      << std::flush;
}

}  // namespace

int Anonymise(const AnonymiseOptions& options, Surroundings& surroundings) {
  const Anonymiser anonymiser(KeyedHash::RandomKey());
  OutputDirectory directory(options.directory);
  Anonymised done = {.tracePath = directory.Path("trace.jsonl")};
  done.trace = AnonymiseTrace(options.trace, done.tracePath, anonymiser);
  if (!options.scratch.empty()) {
    done.scratchPath = directory.Path("scratch.db");
    if (!fs::is_regular_file(options.scratch)) throw WrongUsage(options.scratch + " is no file");
    MakePrivateFile(done.scratchPath);
    done.tables = AnonymiseTables(options.scratch, done.scratchPath, anonymiser);
  }
  directory.Keep();
  options.json ? WriteJson(done, surroundings.out) : WriteText(done, surroundings.out);
  return kAllComplete;
}

}  // namespace zenqay
