#include "control/page/page.h"

#include <gtest/gtest.h>

#include "control/page/pages.h"
#include "control/past_runs.h"
#include "doubles/temp_directory.h"
#include "doubles/time_zone.h"
#include "engines/databases.h"

namespace zenqay {
namespace {

class NotedActions : public PageActions {
 public:
  ActionEnd StartJob(const Text& job) override {
    noted += "start " + job + "\n";
    if (!fault.empty()) throw RuntimeError(70, "system", fault);
    return {isDone, "told"};
  }
  ActionEnd Unlock(const JobFile&, const Text& job, const Text& table) override {
    noted += "unlock " + job + " " + table + "\n";
    return {isDone, "told"};
  }

  bool isDone = true;
  Text fault;  // of starting; empty: none
  Text noted;
};

/// All of an answer, line by line.
Text Whole(const PageAnswer& answer) {
  Text text = std::to_string(answer.status) + " " + answer.type + "\n";
  for (const auto& [name, value] : answer.headers) text += name + ": " + value + "\n";
  return text + "refusal: " + answer.refusal + "\n" + answer.body;
}

/// A page over a history with one run, of a SITE that is complete and a PRIORITY that failed.
class PageOf : public testing::Test {
 protected:
  PageOf()
      : historyPath((directory.path() / "history.db").string()),
        history(historyPath),
        page(
            {.token = kToken, .allowActions = true}, historyPath, [this] { return overview; }, actions) {
    std::filesystem::create_directory(directory.path() / "log");
    overview->readAt = 1769854300;
    overview->file = ReadJobFileText(
        "[database.service]\nconnection = \"Provider=SQLite;Data Source=s.db\"\n"
        "[erp.main]\nhome = \".\"\ngeneration = 3\n"
        "[job.demo]\ndatabase = \"service\"\nerp = \"main\"\nlogs = \"log\"\nmethod = \"full\"\n",
        (directory.path() / "zenqay.toml").string());
    const std::int64_t run = history.BeginRun("run <demo>", OwnIdentity());
    Add(run, "SITE", TableState::Complete, {});
    Add(run, "PRIORITY", TableState::Failed,
        {{.time = "2026-01-31T10:11:12Z",
          .number = 13,
          .source = "X",
          .description = "<b>&",
          .sqlState = "42000",
          .native = "1",
          .statement = "UPDATE \"T\"",
          .rowKey = "PRIORITY='A'"}});
    history.EndRun(run, 1);
    Sql("UPDATE table_run SET started = '2026-01-31T10:11:12Z', ended = '2026-01-31T10:11:22Z', pid = 7, met = '5000'");
    Sql("UPDATE run SET started = '2026-01-31T10:11:12Z', ended = '2026-01-31T10:12:22Z', host = 'h', pid = 6");
  }

  void Add(std::int64_t run, const Text& table, TableState state, const std::vector<JobFailure>& failures) {
    TableRun one{.task = {.job = "demo", .database = "service", .table = table, .method = Method::Full}};
    one.task.logs = (directory.path() / "log").string();
    const std::int64_t id = history.BeginTable(run, one);
    one.state = TableState::Beginning;
    one.pid = OwnIdentity().pid;
    history.UpdateTable(id, one);
    one.state = state;
    one.counts = {5000, 20, 4980, 1};
    one.failures = failures;
    one.words = failures.empty() ? "" : "13: it's <b>";
    history.UpdateTable(id, one);
  }

  void Sql(const Text& statement) const {
    const auto connection = LocalDatabases().CreateConnection();
    connection->PutConnectionString("Provider=SQLite;Data Source=" + historyPath);
    connection->Open();
    connection->Execute(statement);
  }

  PageAnswer Get(const Text& path, std::map<Text, Text> query = {}) const {
    return page.Answer({.method = "GET", .path = path, .query = std::move(query), .headers = {{"host", "localhost"}}});
  }

  PageAnswer AnswerToPost(const Text& path, const Text& token = kToken) const {
    return page.Answer({.method = "POST", .path = path, .headers = {{"host", "localhost"}, {"x-zenqay-token", token}}});
  }

  Text Post(const Text& path) const {
    const PageAnswer answer = AnswerToPost(path);
    return std::to_string(answer.status) + " " + answer.body;
  }

  /// What stands between the frame's parts, the directory told by a word.
  Text MainOf(const Text& path) const { return MainIn(Get(path).body); }
  Text MainIn(const Text& body) const {
    const std::size_t start = body.find("<main id=\"main\" tabindex=\"-1\">\n") + 31;
    return Replaced(body.substr(start, body.find("</main>") - start), directory.path().string(), "DIR");
  }

  static constexpr const char* kToken = "0123456789abcdef";
  const TimeZone zone{"Europe/Berlin"};
  TempDirectory directory;
  Text historyPath;
  History history;
  std::shared_ptr<TableOverview> overview = std::make_shared<TableOverview>();
  NotedActions actions;
  Page page;
};

TEST_F(PageOf, ARunHasItsTablesItsRecordsAndTheEndOfItsLogWithoutMarkupOfTheirs) {
  directory.Write("log/PRIORITY_20260131.log", "Date: <1>\r\n\"Type mismatch \x84\xE4\x93; Password=geheim;\"\r\n");

  EXPECT_EQ(
      MainOf("/runs/1"),
      "<h1>Run 1</h1>\n"
      "<dl class=\"facts\"><div><dt>Outcome</dt><dd><span class=\"outcome failed\">a table failed</span></dd></div>"
      "<div><dt>Started</dt><dd><time datetime=\"2026-01-31T10:11:12Z\" title=\"2026-01-31 10:11:12 UTC\">"
      "2026-01-31 10:11:12 UTC</time></dd></div><div><dt>Took</dt><dd>1:10</dd></div>"
      "<div><dt>Command</dt><dd><code>zenqayctl run &lt;demo&gt;</code></dd></div>"
      "<div><dt>By</dt><dd>process 6 on h</dd></div></dl>\n"
      "<table><caption>Tables of run 1</caption><thead><tr><th scope=\"col\">Table</th><th scope=\"col\">Job</th>"
      "<th scope=\"col\">Method</th><th scope=\"col\">Outcome</th><th scope=\"col\" class=\"number\">Rows</th>"
      "<th scope=\"col\" class=\"number\">Inserted</th><th scope=\"col\" class=\"number\">Updated</th>"
      "<th scope=\"col\" class=\"number\">Deleted</th><th scope=\"col\" class=\"number\">Rows/s</th>"
      "<th scope=\"col\" class=\"number\">Took</th></tr></thead><tbody>\n"
      "<tr><th scope=\"row\">SITE</th><td data-label=\"Job\">demo</td><td data-label=\"Method\">full</td>"
      "<td data-label=\"Outcome\"><span class=\"outcome complete\">complete</span></td>"
      "<td class=\"number\" data-label=\"Rows\">5\u202f000</td><td class=\"number\" data-label=\"Inserted\">20</td>"
      "<td class=\"number\" data-label=\"Updated\">4\u202f980</td><td class=\"number\" data-label=\"Deleted\">1</td>"
      "<td class=\"number\" data-label=\"Rows/s\">500</td><td class=\"number\" data-label=\"Took\">0:10</td></tr>\n"
      "<tr><th scope=\"row\"><a href=\"#table-2\">PRIORITY</a></th><td data-label=\"Job\">demo</td>"
      "<td data-label=\"Method\">full</td>"
      "<td data-label=\"Outcome\"><span class=\"outcome failed\">failed</span></td>"
      "<td class=\"number\" data-label=\"Rows\">5\u202f000</td><td class=\"number\" data-label=\"Inserted\">20</td>"
      "<td class=\"number\" data-label=\"Updated\">4\u202f980</td><td class=\"number\" data-label=\"Deleted\">1</td>"
      "<td class=\"number\" data-label=\"Rows/s\">500</td><td class=\"number\" data-label=\"Took\">0:10</td></tr>\n"
      "</tbody></table>\n"
      "<section id=\"table-2\"><h2>PRIORITY <span class=\"outcome failed\">failed</span></h2>\n"
      "<p>13: it&#39;s &lt;b&gt;</p>\n"
      "<h3>Its failure records</h3><ol class=\"failures\">\n"
      "<li><p><strong>13</strong> &lt;b&gt;&amp;</p><dl>"
      "<div><dt>Row</dt><dd><code>PRIORITY=&#39;A&#39;</code></dd></div>"
      "<div><dt>Statement</dt><dd><code>UPDATE &quot;T&quot;</code></dd></div>"
      "<div><dt>SQLSTATE</dt><dd><code>42000 1</code></dd></div><div><dt>Source</dt><dd><code>X</code></dd></div>"
      "<div><dt>At</dt><dd><time datetime=\"2026-01-31T10:11:12Z\" title=\"2026-01-31 10:11:12 UTC\">"
      "2026-01-31 10:11:12 UTC</time></dd></div></dl></li>\n"
      "</ol>\n"
      "<h3>The end of its log</h3><p class=\"path\">DIR/log/PRIORITY_20260131.log</p>"
      "<pre tabindex=\"0\" aria-label=\"The end of the log of PRIORITY\">Date: &lt;1&gt;\n"
      "&quot;Type mismatch „ä“; Password=***\n</pre>\n"
      "</section>\n");
}

TEST_F(PageOf, ATableHasItsFreshnessAndItsLastRun) {
  overview->tables = {{.job = "demo", .database = "service", .table = {.id = 1, .name = "SITE"}},
                      {.job = "demo", .database = "service", .table = {.id = 4, .name = "OBJECT", .isTaken = true}}};
  overview->tables[1].lock = LockState::Free;
  overview->tables[0].table.updated = DateTime::FromParts({2026, 1, 31, 10, 11, 12});
  const Text age = DurationText(Seconds(UtcNow() - 1769854272));

  const Text main = MainOf("/");

  EXPECT_EQ(
      main.substr(main.find("<tbody>")),
      "<tbody>\n"
      "<tr><th scope=\"row\">SITE</th><td data-label=\"Current up to\"><time datetime=\"2026-01-31T10:11:12Z\" "
      "title=\"2026-01-31 10:11:12 UTC\">2026-01-31 10:11:12 UTC</time></td>"
      "<td class=\"number\" data-label=\"Age\"><span class=\"old\">" +
          age +
          "</span></td><td data-label=\"State\"><span class=\"free\">free</span></td>"
          "<td data-label=\"Last run\"><span class=\"outcome complete\">complete</span> <a href=\"/runs/1\">run "
          "1</a></td>"
          "<td class=\"number\" data-label=\"Rows\">5\u202f000</td><td class=\"number\" data-label=\"Rows/s\">500</td>"
          "<td class=\"number\" data-label=\"Took\">0:10</td></tr>\n"
          "<tr><th scope=\"row\">OBJECT</th><td data-label=\"Current up to\"><span class=\"old\">never "
          "copied</span></td>"
          "<td class=\"number\" data-label=\"Age\"></td><td data-label=\"State\"><span class=\"taken\">taken by nobody "
          "that "
          "the history knows; its lock is free</span> <button type=\"button\" "
          "data-post=\"/api/jobs/demo/tables/OBJECT/unlock\" hidden>Unlock<span class=\"unseen\"> "
          "OBJECT</span></button></td>"
          "<td data-label=\"Last run\"><span class=\"none\">none</span></td><td class=\"number\" "
          "data-label=\"Rows\"></td>"
          "<td class=\"number\" data-label=\"Rows/s\"></td><td class=\"number\" data-label=\"Took\"></td></tr>\n"
          "</tbody></table>\n"
          "</section>\n");
}

TEST_F(PageOf, WhatCannotBeLookedAtIsSaid) {
  overview->readAt = 0;
  overview->fileFault = "zenqay.toml:3:1: <wrong>";
  overview->unreached["demo"] = "no <route>";

  EXPECT_EQ(MainOf("/"),
            "<h1>Tables</h1>\n"
            "<p class=\"fault\">The job file cannot be read; this is what it said before. zenqay.toml:3:1: "
            "&lt;wrong&gt;</p>\n"
            "<p class=\"fault\">No database has answered yet.</p>\n"
            "<section><div class=\"title\"><h2>demo</h2><p class=\"facts\">full copies from main (generation 3) into "
            "service</p><button type=\"button\" data-post=\"/api/jobs/demo/run\" hidden>Run<span class=\"unseen\"> "
            "demo</span></button></div>\n"
            "<p class=\"fault\">Its tables cannot be looked at: no &lt;route&gt;</p>\n"
            "</section>\n");
}

TEST_F(PageOf, ALookThatDoesNotEndIsSaidWithTheMomentOfTheLastOne) {
  overview->file.jobs.clear();
  overview->readAt = 1769854272;

  EXPECT_EQ(MainIn(TablesPage(*overview, history, {.now = overview->readAt + 60})), "<h1>Tables</h1>\n");
  EXPECT_EQ(MainIn(TablesPage(*overview, history, {.now = overview->readAt + 61})),
            "<h1>Tables</h1>\n"
            "<p class=\"fault\">The databases were last looked at <time datetime=\"2026-01-31T10:11:12Z\" "
            "title=\"2026-01-31 10:11:12 UTC\">2026-01-31 10:11:12 UTC</time>; the next look has not ended.</p>\n");
}

TEST_F(PageOf, RunsAreListedFiftyAtATime) {
  for (int i = 0; i < 60; ++i) history.EndRun(history.BeginRun("run x", OwnIdentity()), 0);
  const auto linksTo = [](const Text& html, const Text& target) {
    return html.find("<a href=\"" + target + "\"") != Text::npos;
  };

  const Text first = Get("/runs").body;
  const Text second = Get("/runs", {{"before", "12"}}).body;

  EXPECT_TRUE(linksTo(first, "/runs/61") && linksTo(first, "/runs/12") && !linksTo(first, "/runs/11"));
  EXPECT_TRUE(linksTo(first, "/runs?before=12"));
  EXPECT_TRUE(linksTo(second, "/runs/11") && linksTo(second, "/runs/1") && !linksTo(second, "/runs/12"));
  EXPECT_EQ(Get("/runs", {{"before", "1"}}).body.find("There is no run before that one.") != Text::npos, true);
  for (const char* nonsense : {"", "-1", "x", "1x", "99999999999999999999"}) {
    EXPECT_TRUE(linksTo(Get("/runs", {{"before", nonsense}}).body, "/runs/61")) << nonsense;
  }
}

TEST_F(PageOf, WhatThereIsNotIsNotFound) {
  for (const char* path : {"", "//", "/runs/", "/runs/0", "/runs/2", "/runs/-1", "/runs/1/", "/runs/1x", "/runs/../1",
                           "/runs/99999999999999999999", "/page.cs", "/../page.css", "/log/PRIORITY_20260131.log",
                           "/api/runs/2", "/api", "/api/tables/", "/metrics/", "/files/page.css"}) {
    EXPECT_EQ(Get(path).status, 404) << path;
  }
}

TEST_F(PageOf, AnActionIsDoneOnceForAJobThatThereIs) {
  EXPECT_EQ(Post("/api/jobs/demo/run"), "200 {\"done\":true,\"words\":\"told\"}\n");
  EXPECT_EQ(Post("/api/jobs/demo/tables/SITE/unlock"), "200 {\"done\":true,\"words\":\"told\"}\n");
  actions.isDone = false;
  EXPECT_EQ(Post("/api/jobs/demo/run"), "409 {\"done\":false,\"words\":\"told\"}\n");
  EXPECT_EQ(actions.noted, "start demo\nunlock demo SITE\nstart demo\n");

  EXPECT_EQ(
      Replaced(Post("/api/jobs/demos/run"), directory.path().string(), "DIR"),
      "409 {\"done\":false,\"words\":\"DIR/zenqay.toml has no job \\\"demos\\\" (did you mean \\\"demo\\\"?)\"}\n");
  for (const char* path : {"/", "/api/jobs//run", "/api/jobs/demo/x/run", "/api/jobs/demo", "/api/jobs/demo/unlock"}) {
    EXPECT_EQ(Post(path).substr(0, 3), "404") << path;
  }
  EXPECT_EQ(actions.noted, "start demo\nunlock demo SITE\nstart demo\n");
}

TEST_F(PageOf, WhatFailsForAProgramIsSaidInJson) {
  actions.fault = "<no> process; Password=geheim";
  EXPECT_EQ(Whole(AnswerToPost("/api/jobs/demo/run")),
            "503 application/json\n"
            "refusal: <no> process; Password=***\n"
            "{\"done\":false,\"words\":\"<no> process; Password=***\"}\n");
  EXPECT_EQ(Whole(AnswerToPost("/api/jobs/demo/run", "another")),
            "401 application/json\n"
            "refusal: this is not the page's token\n"
            "{\"done\":false,\"words\":\"this is not the page's token\"}\n");
  EXPECT_EQ(actions.noted, "start demo\n");

  const Text missing = "404 application/json\nrefusal: \n{\"done\":false,\"words\":\"There is no such page.\"}\n";
  EXPECT_EQ(Whole(AnswerToPost("/api/jobs/demo")), missing);
  for (const char* path : {"/api/", "/api/runs/2", "/api/runs/x", "/api/jobs/demo/run"}) {
    EXPECT_EQ(Whole(Get(path)), missing) << path;
  }
  EXPECT_EQ(Get("/runs/2").type, "text/html; charset=utf-8");
}

TEST_F(PageOf, ARefusalAsksAProgramForTheTokenInJson) {
  const Page closed(
      {.token = kToken, .readNeedsToken = true}, historyPath, [this] { return overview; }, actions);
  const Text asks =
      "WWW-Authenticate: Basic realm=\"zenqayctl: the token is the password\", charset=\"UTF-8\"\n"
      "refusal: the page needs its token\n";
  const auto ask = [&](const Text& path) {
    return Whole(closed.Answer({.method = "GET", .path = path, .headers = {{"host", "localhost"}}}));
  };

  EXPECT_EQ(ask("/api/runs"),
            "401 application/json\n" + asks + "{\"done\":false,\"words\":\"the page needs its token\"}\n");
  EXPECT_EQ(ask("/runs"), "401 text/plain; charset=utf-8\n" + asks + "the page needs its token\n");
}

TEST_F(PageOf, AHistoryThatCannotBeReadIsSaid) {
  const Page other(
      {}, (directory.path() / "none" / "history.db").string(), [this] { return overview; }, actions);
  const PageAnswer answer = other.Answer({.method = "GET", .path = "/healthz", .headers = {{"host", "localhost"}}});

  EXPECT_EQ(answer.status, 503);
  EXPECT_EQ(answer.refusal.empty(), false);
  EXPECT_EQ(Get("/healthz").body, "ok\n");
}

TEST_F(PageOf, AProgramReadsWhatTheCommandsSayInJson) {
  EXPECT_EQ(
      Get("/api/runs").body,
      "[{\"run\":1,\"command\":\"run <demo>\",\"started\":\"2026-01-31T10:11:12Z\",\"ended\":"
      "\"2026-01-31T10:12:22Z\",\"outcome\":1,\"process\":{\"host\":\"h\",\"pid\":6},\"tables\":2,\"met\":10000}]\n");
  overview->tables = {{.job = "demo", .database = "service", .table = {.id = 1, .name = "OBJECT"}}};
  EXPECT_EQ(Get("/api/tables").body,
            "[{\"job\":\"demo\",\"table\":\"OBJECT\",\"id\":1,\"updated\":null,\"taken\":false,\"last\":null}]\n");
  EXPECT_EQ(Get("/api/runs/1").type, "application/json");
}

TEST_F(PageOf, MetricsSayFreshnessAndTheLastRunOfATable) {
  overview->tables = {{.job = "demo", .database = "service", .table = {.id = 1, .name = "SITE", .isTaken = true}}};
  const Text labels = "{job=\"demo\",database=\"service\",table=\"SITE\"";

  EXPECT_EQ(
      Get("/metrics").body,
      "# HELP zenqay_tables_read_timestamp_seconds When the databases were last looked at, in seconds since 1970.\n"
      "# TYPE zenqay_tables_read_timestamp_seconds gauge\n"
      "zenqay_tables_read_timestamp_seconds 1769854300\n"
      "# HELP zenqay_job_database_up 1 when the job's tables could be looked at in its database, else 0.\n"
      "# TYPE zenqay_job_database_up gauge\n"
      "zenqay_job_database_up{job=\"demo\",database=\"service\"} 1\n"
      "# HELP zenqay_table_age_seconds Seconds since the table's data was current.\n"
      "# TYPE zenqay_table_age_seconds gauge\n"
      "# HELP zenqay_table_copied 1 when the table has ever been copied, else 0.\n"
      "# TYPE zenqay_table_copied gauge\n"
      "zenqay_table_copied" +
          labels +
          "} 0\n"
          "# HELP zenqay_table_taken 1 when the table's flag says that a copy is running, else 0.\n"
          "# TYPE zenqay_table_taken gauge\n"
          "zenqay_table_taken" +
          labels +
          "} 1\n"
          "# HELP zenqay_table_running 1 while a run of zenqayctl has the table, else 0.\n"
          "# TYPE zenqay_table_running gauge\n"
          "zenqay_table_running" +
          labels +
          "} 0\n"
          "# HELP zenqay_table_last_run_outcome 1 for what became of the table in its last run that ended, 0 for the "
          "rest.\n"
          "# TYPE zenqay_table_last_run_outcome gauge\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"complete\"} 1\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"could not begin\"} 0\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"failed\"} 0\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"in use\"} 0\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"lost\"} 0\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"stopped\"} 0\n"
          "zenqay_table_last_run_outcome" +
          labels +
          ",outcome=\"timed out\"} 0\n"
          "# HELP zenqay_table_last_run_end_timestamp_seconds When the table's last run ended, in seconds since 1970.\n"
          "# TYPE zenqay_table_last_run_end_timestamp_seconds gauge\n"
          "zenqay_table_last_run_end_timestamp_seconds" +
          labels +
          "} 1769854282\n"
          "# HELP zenqay_table_last_run_duration_seconds Seconds that the table's last run took.\n"
          "# TYPE zenqay_table_last_run_duration_seconds gauge\n"
          "zenqay_table_last_run_duration_seconds" +
          labels +
          "} 10\n"
          "# HELP zenqay_table_last_run_rows Rows of the table's last run that ended, by what was done with them.\n"
          "# TYPE zenqay_table_last_run_rows gauge\n"
          "zenqay_table_last_run_rows" +
          labels +
          ",rows=\"met\"} 5000\n"
          "zenqay_table_last_run_rows" +
          labels +
          ",rows=\"inserted\"} 20\n"
          "zenqay_table_last_run_rows" +
          labels +
          ",rows=\"updated\"} 4980\n"
          "zenqay_table_last_run_rows" +
          labels + ",rows=\"deleted\"} 1\n");
}

TEST_F(PageOf, MetricsCallATableRunningFromTheStartOfItsJobToItsEnd) {
  overview->tables = {{.job = "demo", .database = "service", .table = {.id = 4, .name = "OBJECT"}}};
  const auto measured = [&] {
    const Text body = Get("/metrics").body;
    const std::size_t start = body.find("\nzenqay_table_running") + 1;
    return body.substr(start, body.find('\n', start) - start);
  };
  const Text metric = "zenqay_table_running{job=\"demo\",database=\"service\",table=\"OBJECT\"}";
  TableRun run{.task = {.job = "demo", .database = "service", .table = "OBJECT", .method = Method::Full}};

  const std::int64_t id = history.BeginTable(history.BeginRun("submit demo", OwnIdentity()), run);
  EXPECT_EQ(measured(), metric + " 0");
  history.NoteQueued(id);
  EXPECT_EQ(history.LatestTables("service", "OBJECT", 1).front().outcome, kQueued);
  EXPECT_EQ(measured(), metric + " 0");
  for (const auto& [state, value] : {std::pair{TableState::Beginning, " 1"},
                                     {TableState::Copying, " 1"},
                                     {TableState::Waiting, " 0"},  // for its next attempt
                                     {TableState::Copying, " 1"},
                                     {TableState::Complete, " 0"}}) {
    run.state = state;
    history.UpdateTable(id, run);
    EXPECT_EQ(measured(), metric + value) << StateWord(state);
  }
}

TEST_F(PageOf, ALogIsReadInItsDirectoryAlone) {
  PastTable table = history.TablesOf(1).back();
  directory.Write("log/PRIORITY_20260131.log", "inside\n");
  EXPECT_EQ(LogTailOf(table), std::vector<Text>{"inside"});

  directory.Write("secret_20260131.log", "outside\n");
  table.table = "../secret";
  EXPECT_EQ(LogTailOf(table), std::vector<Text>{});

  std::filesystem::create_symlink("../secret_20260131.log", directory.path() / "log/LINK_20260131.log");
  table.table = "LINK";
  EXPECT_EQ(LogTailOf(table), std::vector<Text>{});

  std::filesystem::create_directory(directory.path() / "log/FOLDER_20260131.log");
  table.table = "FOLDER";
  EXPECT_EQ(LogTailOf(table), std::vector<Text>{});
}

TEST_F(PageOf, TheEndOfALongLogIsReadAndNoMore) {
  Text lines;
  for (int i = 0; i < 20000; ++i) lines += "line " + std::to_string(i) + "\n";
  directory.Write("log/PRIORITY_20260131.log", lines);

  const std::vector<Text> tail = LogTailOf(history.TablesOf(1).back());

  EXPECT_EQ(tail.size(), 20u);
  EXPECT_EQ(tail.front(), "line 19980");
  EXPECT_EQ(tail.back(), "line 19999");
  directory.Write("log/PRIORITY_20260131.log", Text(200000, 'x') + "\nlast\n");
  EXPECT_EQ(LogTailOf(history.TablesOf(1).back()), std::vector<Text>{"last"});
}

TEST_F(PageOf, ATableOfASubmissionIsWhereTheBatchSystemHasItUntilItsRunHasEnded) {
  const std::int64_t run = history.BeginRun("submit demo", OwnIdentity());
  TableRun site{.task = {.job = "demo", .database = "service", .table = "SITE", .method = Method::Full}};
  const std::int64_t table = history.BeginTable(run, site);
  overview->tables = {{.job = "demo", .database = "service", .table = {.id = 1, .name = "SITE"}}};
  overview->tables[0].last = history.LatestTables("service", "SITE", 1).front();
  overview->tables[0].task = BatchTask{.state = "RUNNING", .node = "n2", .reason = ""};

  EXPECT_NE(MainOf("/").find("<td data-label=\"State\">running on n2</td>"), Text::npos) << MainOf("/");

  site.state = TableState::Complete;
  history.UpdateTable(table, site);
  EXPECT_NE(MainOf("/").find("<td data-label=\"State\"><span class=\"free\">free</span></td>"), Text::npos)
      << MainOf("/");
}

}  // namespace
}  // namespace zenqay
