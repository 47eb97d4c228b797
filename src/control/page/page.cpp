#include "control/page/page.h"

#include <charconv>

#include "base/secrets.h"
#include "control/exit_status.h"
#include "control/page/metrics.h"
#include "control/page/page_files.h"
#include "control/page/pages.h"
#include "control/run_json.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

PageAnswer HtmlAnswer(Text page, int status = 200) {
  return {.status = status, .type = "text/html; charset=utf-8", .body = std::move(page)};
}

PageAnswer JsonAnswer(const Json& value, int status = 200) {
  return {.status = status, .type = "application/json", .body = JsonText(value) + "\n"};
}

/// The number of a run. Nothing for anything but up to 18 digits.
std::optional<std::int64_t> NumberIn(std::string_view text) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const bool isNumber = !text.empty() && text.size() <= 18 && std::from_chars(text.data(), end, number).ptr == end;
  return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

/// What a path holds between a start and an end.
std::optional<Text> Between(const Text& path, std::string_view start, std::string_view end) {
  const bool fits = path.size() > start.size() + end.size() && path.starts_with(start) && path.ends_with(end);
  if (!fits) return std::nullopt;
  return path.substr(start.size(), path.size() - start.size() - end.size());
}

PageView ViewOf(const PageRules& rules) {
  return {.now = UtcNow(), .allowActions = rules.allowActions};
}

PageAnswer Missing(const PageRules& rules) {
  return HtmlAnswer(FaultPage("Not found", "There is no such page.", ViewOf(rules)), 404);
}

std::int64_t Before(const PageRequest& request) {
  const auto before = request.query.find("before");
  return before == request.query.end() ? 0 : NumberIn(before->second).value_or(0);
}

Json TablesJson(const TableOverview& overview, History& history, std::int64_t now) {
  Json list = Json::array();
  for (const TableStatus& status : overview.tables) list.push_back(StatusJson(WithLatest(status, history), now));
  return list;
}

Json RunsJson(History& history, std::int64_t before) {
  Json list = Json::array();
  for (const PastRun& run : history.Runs(kRunsOnAPage, before)) list.push_back(RunJson(run, history.TablesOf(run.id)));
  return list;
}

PageAnswer ActionAnswer(const ActionEnd& end) {
  return JsonAnswer({{"done", end.isDone}, {"words", end.words}}, end.isDone ? 200 : 409);
}

}  // namespace

PageAnswer Page::Answer(const PageRequest& request) const {
  try {
    if (auto refusal = RefusalOf(request, rules_)) return *refusal;
    return request.method == "POST" ? Act(request) : Read(request);
  } catch (const WrongUsage& fault) {
    return JsonAnswer({{"done", false}, {"words", fault.description()}}, 409);
  } catch (const std::exception& fault) {
    const Text words = WithoutSecrets(fault.what());
    PageAnswer answer = HtmlAnswer(FaultPage("Something failed", words, ViewOf(rules_)), 503);
    answer.refusal = words;
    return answer;
  }
}

PageAnswer Page::Read(const PageRequest& request) const {
  if (const PageFile* file = PageFileAt(request.path)) {
    return {.type = Text(file->type), .body = Text(file->content)};
  }
  if (request.path == "/events") return {.type = "text/event-stream", .isEventStream = true};
  return ReadHistory(request);
}

PageAnswer Page::ReadHistory(const PageRequest& request) const {
  const Text& path = request.path;
  const bool asJson = path.starts_with("/api/");
  History history(historyPath_);
  const PageView view = ViewOf(rules_);
  if (path == "/healthz") return {.body = "ok\n"};
  if (path == "/") return HtmlAnswer(TablesPage(*tables_(), history, view));
  if (path == "/runs") return HtmlAnswer(RunsPage(history, Before(request), view));
  if (path == "/plots") return HtmlAnswer(PlotsPage(history, view));
  if (path == "/metrics") {
    return {.type = "text/plain; version=0.0.4; charset=utf-8", .body = MetricsText(*tables_(), history, view.now)};
  }
  if (path == "/api/tables") return JsonAnswer(TablesJson(*tables_(), history, view.now));
  if (path == "/api/runs") return JsonAnswer(RunsJson(history, Before(request)));
  if (const auto run = Between(path, asJson ? "/api/runs/" : "/runs/", "")) return ReadRun(history, *run, asJson);
  return Missing(rules_);
}

PageAnswer Page::ReadRun(History& history, const Text& number, bool asJson) const {
  const auto id = NumberIn(number);
  const auto run = id ? history.Run(*id) : std::nullopt;
  if (!run) return Missing(rules_);
  if (asJson) return JsonAnswer(WholeRunJson(history, *run));
  return HtmlAnswer(RunPage(history, *run, ViewOf(rules_)));
}

PageAnswer Page::Act(const PageRequest& request) const {
  const std::shared_ptr<const TableOverview> overview = tables_();
  if (const auto job = Between(request.path, "/api/jobs/", "/run")) {
    if (job->find('/') == Text::npos) return ActionAnswer(actions_.StartJob(overview->file.Job(*job).name));
  }
  if (const auto both = Between(request.path, "/api/jobs/", "/unlock")) {
    constexpr std::string_view kTables = "/tables/";
    const std::size_t at = both->find(kTables);
    if (at != Text::npos) {
      return ActionAnswer(actions_.Unlock(overview->file, both->substr(0, at), both->substr(at + kTables.size())));
    }
  }
  return Missing(rules_);
}

}  // namespace zenqay
