// zenqayctl in a directory of its own: the first job that it makes, and a job program that does as scripts in log/ say.
//
//     ControlSetup setup;
//     setup.Script(1, kStarted + kComplete);
//     EXPECT_EQ(setup.Ctl({"run", "demo", "--table", "SITE"}), "…");
#pragma once

#include <algorithm>
#include <regex>
#include <sstream>

#include "control/command_line.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"

namespace zenqay {

inline const Text kBegin = "{\"kind\":\"begin\",\"channel\":1,\"pid\":1,\"version\":\"0.1.0\"}\n";
inline const Text kStarted = "{\"kind\":\"started\",\"id\":1,\"table\":\"T\"}\n";
inline const Text kComplete =
    "{\"kind\":\"rows\",\"met\":5,\"inserted\":3,\"updated\":2,\"deleted\":0}\n"
    "{\"kind\":\"complete\",\"id\":1,\"table\":\"T\",\"inserted\":3,\"updated\":2,\"deleted\":1}\n";
inline const Text kInUse = "{\"kind\":\"in_use\",\"id\":1,\"table\":\"T\"}\n";
inline const Text kFailed =
    "{\"kind\":\"failure\",\"number\":13,\"source\":\"X\",\"description\":\"Type mismatch\",\"statement\":\"UPDATE "
    "SITE\","
    "\"key\":\"SITE='A1'\",\"during\":\"copy\"}\n"
    "{\"kind\":\"error\",\"id\":1,\"table\":\"T\",\"number\":-1,\"description\":\"See the log file.\"}\n";

class ControlSetup {
 public:
  ControlSetup() {
    std::filesystem::create_directory(directory.path() / "zenqay");
    Ctl({"init", home()});
  }

  Text home() const { return directory.path().string(); }
  Text Path(const Text& name) const { return home() + "/" + name; }

  /// What the job of a table does.
  void Script(int tableId, const Text& script) const {
    directory.Write("log/" + std::to_string(tableId) + ".script", script);
  }

  /// Puts `after` in the place of `before` in the job file.
  void Edit(const Text& before, const Text& after) const {
    directory.Write("zenqay.toml", Replaced(directory.Read("zenqay.toml"), before, after));
  }

  void Sql(const Text& statement) const {
    const auto connection = LocalDatabases().CreateConnection();
    connection->PutConnectionString("Provider=SQLite;Data Source=" + Path("service.db"));
    connection->Open();
    connection->Execute(statement);
  }

  /// What zenqayctl says: its standard output, then its standard error behind "! ", then its status. Times, spans,
  /// processes and the directory are told by words.
  Text Ctl(std::vector<Text> arguments) {
    std::ostringstream out;
    std::ostringstream err;
    Environment environment{variables};
    environment.variables.emplace("ZENQAY_FILE", Path("zenqay.toml"));
    Surroundings surroundings = {.environment = environment,
                                 .jobProgram = ZENQAY_FAKE_JOB,
                                 .ctlProgram = ZENQAYCTL,
                                 .historyPath = Path("zenqay/history.db"),
                                 .out = out,
                                 .err = err,
                                 .terminal = [this] { return terminal; },
                                 .check = check};
    const int status = RunZenqayctl(arguments, surroundings);
    return Plain(out.str() + (err.str().empty() ? "" : "! " + err.str()) + "= " + std::to_string(status) + "\n");
  }

  std::map<Text, Text> variables;  // of the environment
  TerminalSize terminal;
  std::function<bool(const Text&, const Text&, std::ostream&)> check;
  TempDirectory directory;

 private:
  Text Plain(Text text) const {
    text = Replaced(text, home(), "HOME");
    for (const auto& [pattern, word] :
         std::vector<std::pair<Text, Text>>{{"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ", "TIME"},
                                            {"(^|\n)\\d\\d:\\d\\d:\\d\\d ", "$1TIME "},
                                            {"\\b\\d:\\d\\d\\b", "SPAN"},
                                            {"\"seconds\":[0-9.e-]+", "\"seconds\":S"},
                                            {"\"process\":\\{[^}]*\\}", "\"process\":P"},
                                            {"process \\d+", "process N"},
                                            {" on [^ ]+, ", " on HOST, "}}) {
      text = std::regex_replace(text, std::regex(pattern), word);
    }
    return text;
  }
};

}  // namespace zenqay
