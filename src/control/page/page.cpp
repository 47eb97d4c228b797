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

bool IsForPrograms(const Text& path) {
  return path.starts_with("/api/");
}

PageAnswer ActionAnswer(const ActionEnd& end, int status) {
  return JsonAnswer({{"done", end.isDone}, {"words", end.words}}, status);
}

PageAnswer ActionAnswer(const ActionEnd& end) {
  return ActionAnswer(end, end.isDone ? 200 : 409);
}

/// A refusal is said in plain words, but to programs.
PageAnswer Refused(const Text& path, PageAnswer refusal) {
  if (!IsForPrograms(path)) return refusal;
  PageAnswer said = ActionAnswer({false, refusal.refusal}, refusal.status);
  refusal.type = std::move(said.type);
  refusal.body = std::move(said.body);
  return refusal;
}

/// As programs read it, or people.
PageAnswer Fault(const Text& path, const Text& title, const Text& words, int status, const PageRules& rules) {
  if (IsForPrograms(path)) return ActionAnswer({false, words}, status);
  return HtmlAnswer(FaultPage(title, words, ViewOf(rules)), status);
}

PageAnswer Missing(const Text& path, const PageRules& rules) {
  return Fault(path, "Not found", "There is no such page.", 404, rules);
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

}  // namespace

PageAnswer Page::Answer(const PageRequest& request) const {
  try {
    if (auto refusal = RefusalOf(request, rules_)) return Refused(request.path, *std::move(refusal));
    return request.method == "POST" ? Act(request) : Read(request);
  } catch (const WrongUsage& fault) {
    return ActionAnswer({false, fault.description()});
  } catch (const std::exception& fault) {
    const Text words = WithoutSecrets(fault.what());
    PageAnswer answer = Fault(request.path, "Something failed", words, 503, rules_);
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
  const auto run = Between(path, IsForPrograms(path) ? "/api/runs/" : "/runs/", "");
  if (run) return ReadRun(history, path, *run);
  return Missing(path, rules_);
}

PageAnswer Page::ReadRun(History& history, const Text& path, const Text& number) const {
  const auto id = NumberIn(number);
  const auto run = id ? history.Run(*id) : std::nullopt;
  if (!run) return Missing(path, rules_);
  if (IsForPrograms(path)) return JsonAnswer(WholeRunJson(history, *run));
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
  return Missing(request.path, rules_);
}

}  // namespace zenqay
