#include "control/page/pages.h"
#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

Html TablesText(const std::vector<PastTable>& tables) {
  std::size_t complete = 0;
  for (const PastTable& table : tables) {
    if (table.outcome == StateWord(TableState::Complete)) ++complete;
  }
  return Escaped(std::to_string(complete) + " of " + std::to_string(tables.size()));
}

Html RowHtml(const PastRun& run, const std::vector<PastTable>& tables, std::int64_t now) {
  std::int64_t rows = 0;
  for (const PastTable& table : tables) rows += RowsOf(table.counts);
  return "<tr><th scope=\"row\">"_html + RunLink(run.id) + "</th>"_html + Cell("Started", MomentHtml(run.started)) +
         Cell("Outcome", RunOutcomeHtml(run.outcome)) + Cell("Complete", TablesText(tables)) +
         NumberCell("Rows", Escaped(GroupedDigits(rows))) + NumberCell("Took", SpanHtml(SecondsOf(run, now))) +
         Cell("Command", "<code>"_html + Escaped(run.command) + "</code>"_html) + "</tr>\n"_html;
}

}  // namespace

Text RunsPage(History& history, std::int64_t before, const PageView& view) {
  const std::vector<PastRun> runs = history.Runs(kRunsOnAPage, before);
  Html rows;
  for (const PastRun& run : runs) rows += RowHtml(run, history.TablesOf(run.id), view.now);
  Html main = "<h1>Runs</h1>\n"_html;
  if (runs.empty()) {
    main += "<p>There is no run"_html + (before > 0 ? " before that one"_html : Html()) + ".</p>\n"_html;
  } else {
    main += TableHead("Runs, the latest first",
                      {{"Run"}, {"Started"}, {"Outcome"}, {"Complete"}, {"Rows", true}, {"Took", true}, {"Command"}}) +
            rows + TableEnd();
  }
  Html links;
  if (before > 0) links += "<li><a href=\"/runs\">The latest</a></li>"_html;
  if (runs.size() == kRunsOnAPage) {
    links +=
        "<li><a href=\"/runs?before="_html + Escaped(std::to_string(runs.back().id)) + "\">Earlier ones</a></li>"_html;
  }
  if (!links.empty()) main += "<nav aria-label=\"More runs\"><ul>"_html + links + "</ul></nav>\n"_html;
  return WholePage("Runs", "/runs", main, view);
}

}  // namespace zenqay
