// The statements of the demo's jobs as SQL Server and as Oracle would read them: HSQLDB runs them in its syntax modes
// of the two. What it cannot read stands in a list, with the reason.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

#include "doubles/file_content.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const fs::path kShare = ZENQAY_SHARE;

/// A statement that HSQLDB cannot read: it refuses it, or finds no row that would need what it cannot read.
struct UnreadShape {
  const char* name;
  const char* pattern;
};

constexpr UnreadShape kUnreadShapes[] = {
    // A setting of SQL Server's session; read as an assignment to a variable that is not there.
    {"date format", "SET DATEFORMAT YMD"},
    // A command of SQL Server's optimizer; read as an update of a table STATISTICS that is not there.
    {"statistics", "UPDATE STATISTICS [A-Z]+"},
    // The style is not heeded: a text is read as a date-time in the order of ISO alone.
    {"style 101", "UPDATE OBJECT SET WEXPIRY_DATE = CONVERT\\(DATETIME,'\\d{1,2}/\\d{1,2}/\\d{4}',101\\) Where .*"},
    // ALTER SESSION is known, its SET is not.
    {"schema", "Alter session set current_schema= SERVICE"},
    // A text is read as a date-time in the order of ISO alone (MSS), or as 15-JAN-2025 (ORA).
    {"month by name", "(INSERT INTO|UPDATE) SERIALIZEDITEM .*'[A-Z][a-z]{2} \\d{1,2}, \\d{4} [\\d:]+ [AP]M'.*"},
};

/// The name of the shape that the statement is of, "" when HSQLDB has to read it.
std::string UnreadShapeOf(const std::string& statement) {
  for (const UnreadShape& shape : kUnreadShapes) {
    if (std::regex_match(statement, std::regex(shape.pattern))) return shape.name;
  }
  return "";
}

/// A statement of a job and the rows that it changed or gave on SQLite, where the job asked for them.
struct Sent {
  std::string text;
  std::optional<std::int64_t> rows;
};

void TakeExports(const ProgramHome& home, const char* state) {
  const std::regex moment("@NOW@");
  const std::string now = UtcMoment(0, 'T') + "Z";
  for (const fs::directory_entry& file : fs::directory_iterator(kShare / "demo" / state)) {
    const std::string content = std::regex_replace(ContentOf(file.path()), moment, now);
    home.WriteExport(file.path().filename().string(), content);
  }
}

/// Appends what a job over all tables sends to its database.
void CopyAll(const ProgramHome& home, CommandLine line, const char* syncMethod, std::vector<Sent>& sent) {
  line.tableId = "128";
  line.syncMethod = syncMethod;
  const ProgramRun run = home.Run(line);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");

  std::istringstream trace(home.directory().Read("trace.jsonl"));
  for (std::string text; std::getline(trace, text);) {
    const json said = json::parse(text);
    const bool isQuery = said["kind"] == "query";
    if (!isQuery && said["kind"] != "sql") continue;
    const char* rows = isQuery ? "rows" : "affected";
    sent.push_back({said["text"], std::nullopt});
    if (said.contains(rows)) sent.back().rows = said[rows].get<std::int64_t>();
  }
}

/// Everything that a full copy and an only-changed pass after it send.
std::vector<Sent> SentByJobs(const ProgramHome& home, const char* platform, const char* generation) {
  CommandLine line = home.Line();
  line.platform = platform;
  line.generation = generation;
  std::vector<Sent> sent;
  home.RequestTrace();
  TakeExports(home, "erp");
  CopyAll(home, line, "1", sent);
  TakeExports(home, "end");
  TakeExports(home, "changes");
  CopyAll(home, line, "2", sent);
  return sent;
}

/// What HSQLDB answers to the statements, in their order, each after those before it.
std::vector<std::string> AnswersTo(const std::vector<Sent>& sent, const ProgramHome& home, const std::string& mode,
                                   const std::string& schema) {
  std::string statements;
  for (const Sent& statement : sent) statements += statement.text + '\0';
  home.directory().Write("statements", statements);
  const std::string reader = "'" ZENQAY_JAVA "' -cp '" ZENQAY_STATEMENT_READER ":" ZENQAY_HSQLDB "' StatementReader ";
  const std::string schemas =
      "'" + (kShare / "schema" / schema).string() + "' '" + (kShare / "schema" / "control-rows.sql").string() + "' ";
  const std::string files = "'" + home.path() + "/statements' > '" + home.path() + "/answers'";

  const int status = std::system((reader + mode + " " + schemas + files).c_str());

  EXPECT_EQ(status, 0);
  std::istringstream lines(home.directory().Read("answers"));
  std::vector<std::string> answers;
  for (std::string answer; std::getline(lines, answer);) answers.push_back(answer);
  return answers;
}

struct Reading {
  const char* mode;
  const char* platform;
  const char* schema;
  const char* generation;
  std::set<std::string> unread;  // the shapes that it refuses
};

void PrintTo(const Reading& reading, std::ostream* out) {
  *out << reading.mode << ", generation " << reading.generation;
}

class StatementsOfJobs : public testing::TestWithParam<Reading> {};

INSTANTIATE_TEST_SUITE_P(
    SqlServer, StatementsOfJobs,
    testing::Values(Reading{"mss", "1", "sqlserver.sql", "1", {"date format", "statistics"}},
                    Reading{"mss", "1", "sqlserver.sql", "3", {"date format", "statistics", "style 101"}},
                    Reading{"mss", "1", "sqlserver.sql", "8", {"date format", "statistics", "month by name"}}));
INSTANTIATE_TEST_SUITE_P(Oracle, StatementsOfJobs,
                         testing::Values(Reading{"ora", "2", "oracle.sql", "1", {"schema"}},
                                         Reading{"ora", "2", "oracle.sql", "3", {"schema"}},
                                         Reading{"ora", "2", "oracle.sql", "8", {"schema", "month by name"}}));

TEST_P(StatementsOfJobs, AreReadWithTheSameCountsExceptWhereListed) {
  const Reading& reading = GetParam();
  ProgramHome home;
  const std::vector<Sent> sent = SentByJobs(home, reading.platform, reading.generation);

  const std::vector<std::string> answers = AnswersTo(sent, home, reading.mode, reading.schema);

  ASSERT_EQ(answers.size(), sent.size());
  ASSERT_GT(sent.size(), 100U);
  std::set<std::string> unread;
  for (std::size_t at = 0; at < sent.size(); ++at) {
    const std::string shape = UnreadShapeOf(sent[at].text);
    const bool isRefused = answers[at].starts_with("refused ");
    if (!shape.empty()) {
      EXPECT_TRUE(isRefused || answers[at] == "ok 0") << sent[at].text << "\n" << answers[at];
      if (isRefused) unread.insert(shape);
    } else if (sent[at].rows) {
      EXPECT_EQ(answers[at], "ok " + std::to_string(*sent[at].rows)) << sent[at].text;
    } else {
      EXPECT_FALSE(isRefused) << sent[at].text << "\n" << answers[at];
    }
  }
  EXPECT_EQ(unread, reading.unread);
}

}  // namespace
}  // namespace zenqay
