// What a stranger asks of the page: it always answers, gives nothing to those it must not, and says back no markup.
#include <unistd.h>

#include <filesystem>

#include "control/page/page.h"
#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

constexpr const char* kToken = "0123456789abcdef";
constexpr const char* kMarkup = "<sCrIpT";

class Actions : public PageActions {
 public:
  ActionEnd StartJob(const Text&) override {
    ++done;
    return {true, ""};
  }
  ActionEnd Unlock(const JobFile&, const Text&, const Text&) override {
    ++done;
    return {true, ""};
  }

  int done = 0;
};

/// A page of one job with one run, in a directory of its own.
struct Site {
  Site() {
    const std::int64_t run = history.BeginRun("run demo", OwnIdentity());
    TableRun table{.task = {.job = "demo", .database = "service", .table = "SITE"}};
    table.task.logs = directory.string();
    table.state = TableState::Failed;
    table.failures = {{.number = 13, .description = "Type mismatch"}};
    history.UpdateTable(history.BeginTable(run, table), table);
    history.EndRun(run, 1);
    overview->readAt = 1;
    overview->file.jobs["demo"].name = "demo";
    overview->file.jobs["demo"].erp = "main";
    overview->file.erps["main"].generation = "3";
    overview->tables = {{.job = "demo", .database = "service", .table = {.id = 1, .name = "SITE"}}};
  }
  Site(const Site&) = delete;
  Site& operator=(const Site&) = delete;
  ~Site() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
  }

  std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("zenqay-fuzz-" + std::to_string(::getpid()));
  bool isMade = std::filesystem::create_directories(directory);
  Text historyPath = (directory / "history.db").string();
  History history{historyPath};
  std::shared_ptr<TableOverview> overview = std::make_shared<TableOverview>();
  Actions actions;
  PageRules rules{.token = kToken, .readNeedsToken = false, .allowActions = true, .hosts = {"dbhost"}};
};

/// The input's lines: method, path, what stands behind "?" of a query, then headers.
PageRequest RequestOf(std::string_view input) {
  const std::vector<std::string_view> lines = Split(input, "\n");
  const auto line = [&](std::size_t at) { return at < lines.size() ? Text(lines[at]) : Text(); };
  PageRequest request{.method = line(0), .path = line(1), .query = {{"before", line(2)}}};
  for (std::size_t at = 3; at < lines.size(); ++at) {
    const std::size_t colon = lines[at].find(": ");
    if (colon != std::string_view::npos) {
      request.headers.emplace(LowerCased(lines[at].substr(0, colon)), lines[at].substr(colon + 2));
    }
  }
  return request;
}

bool MayAct(const PageRequest& request) {
  return request.method == "POST" && request.Header("x-zenqay-token") == kToken;
}

void CheckAnswer(const PageRequest& request, const PageAnswer& answer) {
  const bool isKnown = answer.status == 200 || (answer.status >= 400 && answer.status < 500);
  Hold(isKnown, "an answer is an answer or says what is wrong with the request");
  Hold(answer.type.find("html") == Text::npos || answer.body.find(kMarkup) == Text::npos, "no markup is said back");
  if (request.Header("host").empty()) Hold(answer.status == 400 || answer.status == 405, "a host is named");
  const bool isOpen = request.method == "GET" || request.method == "HEAD" || MayAct(request);
  Hold(isOpen || answer.status != 200, "nothing is given to those who may not");
}

}  // namespace

FUZZ(input) {
  static Site site;
  const Page page(
      site.rules, site.historyPath, [] { return site.overview; }, site.actions);
  PageRules closed = site.rules;
  closed.readNeedsToken = true;
  const PageRequest request = RequestOf(input);
  const int done = site.actions.done;

  CheckAnswer(request, page.Answer(request));

  Hold(site.actions.done == done || MayAct(request), "nothing is done for those who may not");
  const Page closedPage(
      closed, site.historyPath, [] { return site.overview; }, site.actions);
  const bool hasToken = request.Header("authorization").size() > Text(kToken).size();
  const PageAnswer answer = closedPage.Answer(request);
  Hold(hasToken || answer.status != 200, "nothing is read without the token");
}
