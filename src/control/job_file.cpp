#include "control/job_file.h"

#include <toml++/toml.h>

#include <algorithm>
#include <filesystem>

#include "control/exit_status.h"
#include "control/nearest_word.h"
#include "engines/connection_string.h"
#include "process/QTMDeclarations.h"
#include "system/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPlaceholder = "{password}";
constexpr int kMostSideBySide = 1000;

/// What is wrong with a file, each thing with its place, in the order of the places.
class Faults {
 public:
  explicit Faults(const Text& path) : file_(fs::path(path).filename().string()) {}

  Text PlaceOf(const toml::source_region& source) const {
    return file_ + ":" + std::to_string(source.begin.line) + ":" + std::to_string(source.begin.column);
  }

  void Add(const toml::source_region& source, const Text& what) {
    faults_.push_back({source.begin.line, source.begin.column, PlaceOf(source) + ": " + what});
  }

  void Raise() {
    if (faults_.empty()) return;
    std::stable_sort(faults_.begin(), faults_.end(), [](const Fault& a, const Fault& b) {
      return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    Text all;
    for (const Fault& fault : faults_) all += (all.empty() ? "" : "\n") + fault.text;
    throw WrongUsage(all);
  }

 private:
  struct Fault {
    toml::source_index line;
    toml::source_index column;
    Text text;
  };

  Text file_;
  std::vector<Fault> faults_;
};

Text KindOf(const toml::node& node) {
  switch (node.type()) {
    case toml::node_type::table:
      return "a table";
    case toml::node_type::array:
      return "a list";
    case toml::node_type::string:
      return "a text";
    case toml::node_type::integer:
      return "a number";
    case toml::node_type::floating_point:
      return "a fraction";
    case toml::node_type::boolean:
      return "true or false";
    default:
      return "a date or time";
  }
}

/// One table of the file. The keys that are asked for are the keys that there may be.
class Section {
 public:
  Section(const toml::table& table, Text name, Faults& faults)
      : table_(table), name_(std::move(name)), faults_(faults) {}

  const toml::source_region& source() const { return table_.source(); }

  /// The value of a key; null when it is missing.
  const toml::node* Find(const char* key) {
    if (std::find(asked_.begin(), asked_.end(), key) == asked_.end()) asked_.emplace_back(key);
    return table_.get(key);
  }

  /// Where a key's value stands; the section where there is none.
  const toml::source_region& SourceOf(const char* key) const {
    const toml::node* node = table_.get(key);
    return node == nullptr ? table_.source() : node->source();
  }

  void Refuse(const toml::node& node, const char* key, const Text& what) {
    faults_.Add(node.source(), Text("\"") + key + "\" " + what);
  }

  std::optional<Text> TextAt(const char* key) {
    const toml::node* node = Find(key);
    if (node == nullptr) return std::nullopt;
    if (const auto* text = node->as_string()) return text->get();
    Refuse(*node, key, "must be a text in quotes, not " + KindOf(*node));
    return std::nullopt;
  }

  Text RequiredText(const char* key) {
    if (table_.get(key) == nullptr) RefuseMissing(key);
    std::optional<Text> text = TextAt(key);
    if (text && text->empty()) Refuse(*table_.get(key), key, "is empty");
    return text.value_or("");
  }

  std::int64_t NumberAt(const char* key, std::int64_t standard, std::int64_t lowest, std::int64_t highest) {
    const toml::node* node = Find(key);
    if (node == nullptr) return standard;
    const auto* number = node->as_integer();
    if (number == nullptr) {
      Refuse(*node, key, "must be a number, not " + KindOf(*node));
    } else if (number->get() < lowest || number->get() > highest) {
      Refuse(*node, key, "must be " + std::to_string(lowest) + " to " + std::to_string(highest));
    } else {
      return number->get();
    }
    return standard;
  }

  bool FlagAt(const char* key, bool standard) {
    const toml::node* node = Find(key);
    if (node == nullptr) return standard;
    if (const auto* flag = node->as_boolean()) return flag->get();
    Refuse(*node, key, "must be true or false, not " + KindOf(*node));
    return standard;
  }

  Seconds DurationAt(const char* key, Seconds standard) {
    const std::optional<Text> text = TextAt(key);
    if (!text) return standard;
    if (const std::optional<Seconds> span = ReadDuration(*text)) return *span;
    Refuse(*table_.get(key), key, "must be a span of time such as \"30s\", \"10m\", \"2h\" or \"90d\"");
    return standard;
  }

  /// The position of the text among the words; 0 for a missing key.
  std::size_t ChoiceAt(const char* key, const std::vector<Text>& words) {
    const std::optional<Text> text = TextAt(key);
    if (!text) return 0;
    const auto found = std::find(words.begin(), words.end(), *text);
    if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
    Refuse(*table_.get(key), key, "cannot be \"" + *text + "\"" + NearestWordHint(*text, words));
    return 0;
  }

  /// A table in this one; null when it is missing.
  const toml::table* TableAt(const char* key) {
    const toml::node* node = Find(key);
    if (node == nullptr) return nullptr;
    if (const toml::table* table = node->as_table()) return table;
    Refuse(*node, key, "must be a table, not " + KindOf(*node));
    return nullptr;
  }

  void RefuseMissing(const char* key) { faults_.Add(table_.source(), name_ + " lacks \"" + key + "\""); }

  /// What was not asked for is unknown.
  void RefuseOthers() {
    for (const auto& [key, value] : table_) {
      const Text name(key.str());
      if (std::find(asked_.begin(), asked_.end(), name) != asked_.end()) continue;
      faults_.Add(key.source(), "unknown key \"" + name + "\" in " + name_ + NearestWordHint(name, asked_));
    }
  }

 private:
  const toml::table& table_;
  Text name_;
  Faults& faults_;
  std::vector<Text> asked_;
};

class Reader {
 public:
  Reader(const toml::table& root, const Text& path) : root_(root), faults_(path) {
    file_.path = path;
    file_.directory = fs::path(path).parent_path().string();
  }

  JobFile Read() {
    Section root(root_, "the file", faults_);
    ReadNamed(root, "database", [this](const Text& name, Section section) { ReadDatabase(name, section); });
    ReadNamed(root, "erp", [this](const Text& name, Section section) { ReadErp(name, section); });
    ReadNamed(root, "job", [this](const Text& name, Section section) { ReadJob(name, section); });
    if (const toml::table* history = root.TableAt("history")) {
      Section section(*history, "[history]", faults_);
      file_.keepHistory = section.DurationAt("keep", file_.keepHistory);
      section.RefuseOthers();
    }
    file_.batch.place = fs::path(file_.path).filename().string();
    if (const toml::table* batch = root.TableAt("batch")) ReadBatch(Section(*batch, "[batch]", faults_));
    root.RefuseOthers();
    faults_.Raise();
    return file_;
  }

 private:
  /// The tables [kind.NAME].
  template <typename ReadOne>
  void ReadNamed(Section& root, const char* kind, ReadOne readOne) {
    const toml::table* named = root.TableAt(kind);
    if (named == nullptr) return;
    for (const auto& [key, value] : *named) {
      const Text name(key.str());
      const Text title = Text("[") + kind + "." + name + "]";
      if (const toml::table* table = value.as_table()) {
        readOne(name, Section(*table, title, faults_));
      } else {
        faults_.Add(key.source(), title + " must be a table: a name is missing in [" + kind + ".NAME]");
      }
    }
  }

  Text Absolute(const Text& path) const {
    return path.empty() ? path : (fs::path(file_.directory) / path).lexically_normal().string();
  }

  void ReadDatabase(const Text& name, Section section) {
    DatabaseSettings database{.name = name};
    database.connection = section.RequiredText("connection");
    database.place = faults_.PlaceOf(section.SourceOf("connection"));
    database.catalogue = section.TextAt("name").value_or("");
    database.platform = section.ChoiceAt("platform", {"sqlserver", "oracle"}) == 0 ? 1 : 2;
    database.parallel = static_cast<int>(section.NumberAt("parallel", 1, 1, kMostSideBySide));
    ReadPassword(section, database);
    CheckConnection(section, database);
    section.RefuseOthers();
    file_.databases.emplace(name, std::move(database));
  }

  void ReadPassword(Section& section, DatabaseSettings& database) {
    const toml::node* node = section.Find("password");
    if (node == nullptr) return;
    const toml::table* table = node->as_table();
    if (table == nullptr) {
      return section.Refuse(*node, "password",
                            "never stands here in plain: write where it is, { credential = \"…\" }, { file = \"…\" } "
                            "or { env = \"…\" }");
    }
    Section password(*table, "\"password\"", faults_);
    PasswordSource source{.place = faults_.PlaceOf(table->source())};
    const std::pair<const char*, PasswordSource::Kind> kinds[] = {
        {"credential", PasswordSource::Kind::Credential},
        {"file", PasswordSource::Kind::File},
        {"env", PasswordSource::Kind::Environment},
    };
    int given = 0;
    for (const auto& [key, kind] : kinds) {
      if (table->get(key) == nullptr) {
        password.Find(key);
        continue;
      }
      ++given;
      source.kind = kind;
      source.name = password.RequiredText(key);
    }
    password.RefuseOthers();
    if (given != 1) section.Refuse(*node, "password", "must have one of credential, file and env");
    if (source.kind == PasswordSource::Kind::File) source.name = Absolute(source.name);
    if (source.kind == PasswordSource::Kind::Credential && source.name.find('/') != Text::npos) {
      section.Refuse(*node, "password", "names a credential by a path: write file instead");
    }
    database.password = std::move(source);
  }

  void CheckConnection(Section& section, DatabaseSettings& database) {
    if (database.connection.empty()) return;
    const toml::node& node = *section.Find("connection");
    try {
      const std::vector<ConnectionEntry> entries = EntriesOf(database.connection);
      database.isEmbedded = EqualsIgnoringCase(ConnectionString(database.connection).Value("Provider"), "SQLite");
      const bool hasPlaceholder = database.connection.find(kPlaceholder) != Text::npos;
      for (const auto& [key, value, written] : entries) {
        const bool isPassword = EqualsIgnoringCase(key, "Password") || EqualsIgnoringCase(key, "PWD");
        if (!isPassword || written == kPlaceholder) continue;
        return section.Refuse(node, "connection", "holds a password: write {password} in its place, and password = …");
      }
      if (hasPlaceholder && !database.password) {
        section.Refuse(node, "connection", "has {password}, but the database has no password");
      }
      if (!database.isEmbedded) return;
      if (database.password) section.Refuse(node, "connection", "is to an embedded database, which has no password");
      database.connection = WithAbsoluteFile(entries);
    } catch (const RuntimeError&) {
      section.Refuse(node, "connection", "is malformed: it must be Key=Value;Key=\"value; with a separator\";…");
    }
  }

  Text WithAbsoluteFile(const std::vector<ConnectionEntry>& entries) const {
    Text text;
    for (const auto& [key, value, written] : entries) {
      const bool isFile = EqualsIgnoringCase(key, "Data Source");
      const Text quoted = "\"" + Replaced(Absolute(value), "\"", "\"\"") + "\"";
      const bool needsQuotes = Absolute(value).find_first_of(";\"'{} ") != Text::npos;
      const Text path = needsQuotes ? quoted : Absolute(value);
      text += (text.empty() ? "" : ";") + key + "=" + (isFile ? path : written);
    }
    return text;
  }

  void ReadErp(const Text& name, Section section) {
    ErpSettings erp{.name = name};
    erp.home = Absolute(section.RequiredText("home"));
    erp.place = faults_.PlaceOf(section.SourceOf("home"));
    erp.busComponent = section.TextAt("bus-component").value_or("");
    const toml::node* generation = section.Find("generation");
    if (generation == nullptr) {
      section.RefuseMissing("generation");
    } else if (const auto* number = generation->as_integer()) {
      erp.generation = std::to_string(number->get());
    }
    const bool isKnown =
        erp.generation == kGeneration1 || erp.generation == kGeneration3 || erp.generation == kGeneration8;
    if (generation != nullptr && !isKnown) section.Refuse(*generation, "generation", "must be 1, 3 or 8");
    section.RefuseOthers();
    file_.erps.emplace(name, std::move(erp));
  }

  void ReadJob(const Text& name, Section section) {
    JobSettings job{.name = name};
    job.database = NameAt(section, "database", file_.databases);
    job.erp = NameAt(section, "erp", file_.erps);
    ReadTables(section, job);
    job.method = section.ChoiceAt("method", {"changed", "full"}) == 0 ? Method::OnlyChanged : Method::Full;
    job.logs = Absolute(section.RequiredText("logs"));
    while (job.logs.size() > 1 && job.logs.ends_with('/')) job.logs.pop_back();
    ReadStatus(section, job);
    ReadRetry(section, job);
    job.timeout = section.DurationAt("timeout", job.timeout);
    ReadSweepLimit(section, job);
    job.onClockChange =
        section.ChoiceAt("on-clock-change", {"full", "warn"}) == 0 ? ClockChange::Full : ClockChange::Warn;
    section.RefuseOthers();
    file_.jobs.emplace(name, std::move(job));
  }

  template <typename Settings>
  Text NameAt(Section& section, const char* key, const std::map<Text, Settings>& known) {
    Text name = section.RequiredText(key);
    if (name.empty() || known.contains(name)) return name;
    std::vector<Text> names(known.size());
    std::ranges::transform(known, names.begin(), &std::pair<const Text, Settings>::first);
    section.Refuse(*section.Find(key), key,
                   "names \"" + name + "\", but there is no [" + key + "." + name + "]" + NearestWordHint(name, names));
    return name;
  }

  void ReadTables(Section& section, JobSettings& job) {
    job.place = faults_.PlaceOf(section.SourceOf("tables"));
    const toml::node* node = section.Find("tables");
    if (node == nullptr) return;
    if (const auto* word = node->as_string()) {
      if (word->get() != "all") section.Refuse(*node, "tables", "must be \"all\" or a list of names");
      return;
    }
    const toml::array* list = node->as_array();
    if (list == nullptr || list->empty()) {
      return section.Refuse(*node, "tables", "must be \"all\" or a list of names");
    }
    for (const toml::node& item : *list) {
      const auto* name = item.as_string();
      const auto* id = item.as_integer();
      if (name == nullptr && id == nullptr) {
        section.Refuse(item, "tables", "must hold names, not " + KindOf(item));
      } else {
        job.tables.push_back(name != nullptr ? name->get() : std::to_string(id->get()));
      }
    }
  }

  void ReadStatus(Section& section, JobSettings& job) {
    const toml::table* table = section.TableAt("status");
    if (table == nullptr) return;
    Section status(*table, "\"status\"", faults_);
    job.hasStatusComponent = status.FlagAt("component", true);
    job.statusHandle = static_cast<std::int32_t>(status.NumberAt("handle", -1, -1, INT32_MAX));
    job.statusInstance = static_cast<std::int32_t>(status.NumberAt("instance", 0, 0, INT16_MAX));
    status.RefuseOthers();
  }

  void ReadRetry(Section& section, JobSettings& job) {
    const toml::table* table = section.TableAt("retry");
    if (table == nullptr) return;
    Section retry(*table, "\"retry\"", faults_);
    job.retryTimes = static_cast<int>(retry.NumberAt("times", 0, 0, 100));
    job.retryWait = retry.DurationAt("wait", job.retryWait);
    retry.RefuseOthers();
  }

  void ReadBatch(Section section) {
    BatchSettings& batch = file_.batch;
    batch.shared = Absolute(section.TextAt("shared").value_or(""));
    batch.place = faults_.PlaceOf(section.SourceOf("shared"));
    batch.node = section.TextAt("node").value_or("");
    batch.requeueWait = section.DurationAt("requeue-wait", batch.requeueWait);
    ReadOptions(section, batch);
    section.RefuseOthers();
  }

  static void ReadOptions(Section& section, BatchSettings& batch) {
    const toml::node* node = section.Find("options");
    if (node == nullptr) return;
    const toml::array* list = node->as_array();
    if (list == nullptr) return section.Refuse(*node, "options", "must be a list such as [\"--mem=2G\"]");
    for (const toml::node& item : *list) {
      const auto* option = item.as_string();
      if (option == nullptr || !IsBatchOption(option->get())) {
        section.Refuse(item, "options", "must hold options of sbatch, each one text that begins with -: \"--mem=2G\"");
      } else if (IsAgainstSubmission(option->get())) {
        section.Refuse(item, "options", "must leave arrays, scripts and waiting to zenqayctl submit");
      } else {
        batch.options.push_back(option->get());
      }
    }
  }

  void ReadSweepLimit(Section& section, JobSettings& job) {
    job.sweepLimit = section.TextAt("sweep-limit").value_or("");
    if (job.sweepLimit.empty()) return;
    const bool isShare = job.sweepLimit.ends_with('%');
    const Text digits = job.sweepLimit.substr(0, job.sweepLimit.size() - (isShare ? 1 : 0));
    const bool isNumber = !digits.empty() && digits.size() < 10 && digits.find_first_not_of("0123456789") == Text::npos;
    if (isNumber && (!isShare || std::stol(digits) <= 100)) return;
    section.Refuse(*section.Find("sweep-limit"), "sweep-limit",
                   "must be a share of the table's rows such as \"10%\", or a number of rows such as \"500\"");
  }

  const toml::table& root_;
  Faults faults_;
  JobFile file_;
};

}  // namespace

bool IsBatchOption(const Text& text) {
  return text.size() > 1 && text.starts_with('-') && text != "--";
}

bool IsAgainstSubmission(const Text& option) {
  constexpr std::string_view kLong[] = {"--array", "--test-only", "--wait", "--wrap"};
  const bool isShort = option.starts_with("-a") || option.starts_with("-W");
  return isShort || std::ranges::find(kLong, option.substr(0, option.find('='))) != std::end(kLong);
}

const JobSettings& JobFile::Job(const Text& name) const {
  const auto found = jobs.find(name);
  if (found != jobs.end()) return found->second;
  std::vector<Text> names;
  for (const auto& [one, job] : jobs) names.push_back(one);
  throw WrongUsage(path + " has no job \"" + name + "\"" + NearestWordHint(name, names));
}

Text FindJobFile(const Text& named, const Text& variable) {
  std::error_code ignored;
  const Text given = named.empty() ? variable : named;
  if (!given.empty()) {
    if (fs::exists(given, ignored)) return fs::absolute(given).lexically_normal().string();
    throw WrongUsage("there is no job file " + given + (named.empty() ? " (named by ZENQAY_FILE)" : ""));
  }
  for (const char* path : {"zenqay.toml", "/etc/zenqay/zenqay.toml"}) {
    if (fs::exists(path, ignored)) return fs::absolute(path).string();
  }
  throw WrongUsage(
      "there is no job file: neither ./zenqay.toml nor /etc/zenqay/zenqay.toml exists, and neither "
      "--file nor ZENQAY_FILE names one (zenqayctl init makes a first one)");
}

JobFile ReadJobFile(const Text& path) {
  const std::optional<Text> text = ContentOfFile(path);
  if (!text) throw WrongUsage("the job file " + path + " cannot be read");
  return ReadJobFileText(*text, path);
}

JobFile ReadJobFileText(const Text& text, const Text& path) {
  try {
    const toml::table root = toml::parse(text, path);
    return Reader(root, path).Read();
  } catch (const toml::parse_error& fault) {
    throw WrongUsage(Faults(path).PlaceOf(fault.source()) + ": " + Text(fault.description()));
  }
}

}  // namespace zenqay
