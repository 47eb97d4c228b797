#include "control/page/pages.h"
#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kLongAgo = 60;  // six times as long as a look stays fresh

Html FreshnessCells(const LocalTable& table, std::int64_t now) {
  const std::optional<std::int64_t> age = AgeOf(table, now);
  if (!age) return Cell("Current up to", "<span class=\"old\">never copied</span>"_html) + NumberCell("Age", {});
  const Html span = SpanHtml(age);
  return Cell("Current up to", MomentHtml(UtcText(now - *age))) +
         NumberCell("Age", *age > kDay ? "<span class=\"old\">"_html + span + "</span>"_html : span);
}

bool IsUnderWay(const std::optional<PastTable>& last) {
  return last && last->ended.empty();
}

/// A job that is heard of says more than the flag, which is looked at seldom, and the batch system more than the
/// history of a task that it has.
Html StateHtml(const TableStatus& status) {
  if (status.task) return Escaped(status.task->Words());
  if (IsUnderWay(status.last)) return TableOutcomeHtml(status.last->outcome);
  if (!status.table.isTaken) return "<span class=\"free\">free</span>"_html;
  return "<span class=\"taken\">"_html + Escaped(StateText(status)) + "</span>"_html;
}

Html LastRunHtml(const std::optional<PastTable>& last) {
  if (!last) return "<span class=\"none\">none</span>"_html;
  return (IsUnderWay(last) ? Html() : TableOutcomeHtml(last->outcome) + " "_html) + RunLink(last->run);
}

Html UnlockButton(const TableStatus& status) {
  return "<button type=\"button\" data-post=\"/api/jobs/"_html + Escaped(status.job) + "/tables/"_html +
         Escaped(status.table.name) + "/unlock\" hidden>Unlock<span class=\"unseen\"> "_html +
         Escaped(status.table.name) + "</span></button>"_html;
}

Html RowHtml(const TableStatus& status, const PageView& view) {
  const std::optional<PastTable>& last = status.last;
  Html state = StateHtml(status);
  if (view.allowActions && status.table.isTaken && !IsUnderWay(last)) state += " "_html + UnlockButton(status);
  return "<tr><th scope=\"row\">"_html + Escaped(status.table.name) + "</th>"_html +
         FreshnessCells(status.table, view.now) + Cell("State", state) + Cell("Last run", LastRunHtml(last)) +
         NumberCell("Rows", last ? Escaped(GroupedDigits(RowsOf(last->counts))) : Html()) +
         NumberCell("Rows/s", last ? RateHtml(*last, view.now) : Html()) +
         NumberCell("Took", last ? SpanHtml(SecondsOf(*last, view.now)) : Html()) + "</tr>\n"_html;
}

Html JobFacts(const JobFile& file, const JobSettings& job) {
  return "<p class=\"facts\">"_html + Escaped(job.method == Method::Full ? "full copies" : "only what changed") +
         " from "_html + Escaped(job.erp) + " (generation "_html + Escaped(file.ErpOf(job).generation) +
         ") into "_html + Escaped(job.database) + "</p>"_html;
}

Html JobHtml(const TableOverview& overview, const JobSettings& job, const Html& rows, const PageView& view) {
  Html section =
      "<section><div class=\"title\"><h2>"_html + Escaped(job.name) + "</h2>"_html + JobFacts(overview.file, job);
  if (view.allowActions) {
    section += "<button type=\"button\" data-post=\"/api/jobs/"_html + Escaped(job.name) +
               "/run\" hidden>Run<span class=\"unseen\"> "_html + Escaped(job.name) + "</span></button>"_html;
  }
  section += "</div>\n"_html;
  const auto fault = overview.unreached.find(job.name);
  if (fault != overview.unreached.end()) {
    section += "<p class=\"fault\">Its tables cannot be looked at: "_html + Escaped(fault->second) + "</p>\n"_html;
  }
  if (!rows.empty()) {
    section += TableHead("Tables of " + job.name, {{"Table"},
                                                   {"Current up to"},
                                                   {"Age", true},
                                                   {"State"},
                                                   {"Last run"},
                                                   {"Rows", true},
                                                   {"Rows/s", true},
                                                   {"Took", true}}) +
               rows + TableEnd();
  }
  return section + "</section>\n"_html;
}

/// Why the tables may not be as they are shown.
Html FaultsHtml(const TableOverview& overview, std::int64_t now) {
  Html faults;
  if (!overview.fileFault.empty()) {
    faults += "<p class=\"fault\">The job file cannot be read; this is what it said before. "_html +
              Escaped(overview.fileFault) + "</p>\n"_html;
  }
  if (overview.readAt == 0) {
    faults += "<p class=\"fault\">No database has answered yet.</p>\n"_html;
  } else if (now - overview.readAt > kLongAgo) {
    faults += "<p class=\"fault\">The databases were last looked at "_html + MomentHtml(UtcText(overview.readAt)) +
              "; the next look has not ended.</p>\n"_html;
  }
  return faults;
}

}  // namespace

Text TablesPage(const TableOverview& overview, History& history, const PageView& view) {
  std::map<Text, Html> rows;
  for (const TableStatus& status : overview.tables) rows[status.job] += RowHtml(WithLatest(status, history), view);
  Html main = "<h1>Tables</h1>\n"_html + FaultsHtml(overview, view.now);
  for (const auto& [name, job] : overview.file.jobs) main += JobHtml(overview, job, rows[name], view);
  return WholePage("Tables", "/", main, view);
}

}  // namespace zenqay
