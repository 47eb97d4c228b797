#include <algorithm>

#include "control/page/pages.h"
#include "control/page/plot.h"
#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

constexpr int kRunsInAPlot = 60;

bool IsComplete(const PastTable& table) {
  return table.outcome == StateWord(TableState::Complete);
}

std::int64_t SpanOf(const PastTable& table) {
  return SecondsOfUtc(table.ended) - SecondsOfUtc(table.started);
}

std::optional<double> RateOf(const PastTable& table) {
  const std::int64_t span = SpanOf(table);
  if (span <= 0) return std::nullopt;
  return static_cast<double>(RowsOf(table.counts)) / static_cast<double>(span);
}

Text SpanLabel(double seconds) {
  return DurationText(Seconds(static_cast<std::int64_t>(seconds)));
}

Text NumberLabel(double number) {
  return GroupedDigits(static_cast<std::int64_t>(number));
}

Text RunWords(const PastTable& table) {
  return "run " + std::to_string(table.run) + ", " + Replaced(table.started, "T", " ") + ", " + table.method + ", " +
         table.outcome;
}

/// Of runs that have ended, the earliest first. A run that is not complete has no value; a complete one without a value
/// (it took less than a second, so that it has no rate) is left out.
template <typename ValueOf>
Html PlotOf(const Text& title, const std::vector<PastTable>& runs, Text (*label)(double), ValueOf valueOf) {
  Plot plot{.title = title, .label = label};
  for (const PastTable& run : runs) {
    PlotPoint point{.words = RunWords(run), .isFilled = run.method == "full"};
    if (IsComplete(run)) {
      point.value = valueOf(run);
      if (!point.value) continue;
      point.words += ": " + label(*point.value);
    }
    plot.points.push_back(std::move(point));
  }
  plot.from = runs.front().started.substr(0, 10);
  if (runs.size() > 1) plot.to = runs.back().started.substr(0, 10);
  return PlotHtml(plot);
}

Html FiguresHtml(const Text& name, const std::vector<PastTable>& runs, std::int64_t now) {
  Html rows;
  for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
    rows += "<tr><th scope=\"row\">"_html + RunLink(run->run) + "</th>"_html +
            Cell("Started", MomentHtml(run->started)) + Cell("Method", Escaped(run->method)) +
            Cell("Outcome", TableOutcomeHtml(run->outcome)) +
            NumberCell("Rows", Escaped(GroupedDigits(RowsOf(run->counts)))) +
            NumberCell("Rows/s", RateHtml(*run, now)) + NumberCell("Took", SpanHtml(SpanOf(*run))) + "</tr>\n"_html;
  }
  return "<details><summary>The figures<span class=\"unseen\"> of "_html + Escaped(name) + "</span></summary>\n"_html +
         TableHead("Runs of " + name,
                   {{"Run"}, {"Started"}, {"Method"}, {"Outcome"}, {"Rows", true}, {"Rows/s", true}, {"Took", true}}) +
         rows + TableEnd() + "</details>\n"_html;
}

Html TableHtml(const Text& database, const Text& name, std::vector<PastTable> runs, std::int64_t now) {
  std::erase_if(runs, [](const PastTable& run) { return run.ended.empty(); });
  if (runs.empty()) return {};
  std::reverse(runs.begin(), runs.end());
  return "<section><div class=\"title\"><h2>"_html + Escaped(name) + "</h2><p class=\"facts\">in "_html +
         Escaped(database) + "</p></div><div class=\"plots\">\n"_html +
         PlotOf("Duration", runs, SpanLabel, [](const PastTable& run) { return std::optional<double>(SpanOf(run)); }) +
         PlotOf("Rows", runs, NumberLabel,
                [](const PastTable& run) { return std::optional<double>(RowsOf(run.counts)); }) +
         PlotOf("Rows a second", runs, NumberLabel, RateOf) + "</div>\n"_html + FiguresHtml(name, runs, now) +
         "</section>\n"_html;
}

}  // namespace

Text PlotsPage(History& history, const PageView& view) {
  Html sections;
  for (const auto& [database, table] : history.TableNames()) {
    sections += TableHtml(database, table, history.LatestTables(database, table, kRunsInAPlot), view.now);
  }
  Html main = "<h1>Plots</h1>\n"_html;
  if (sections.empty()) {
    main += "<p>No run has ended yet.</p>\n"_html;
  } else {
    main +=
        "<p class=\"legend\">The last runs of each table, one step each: <span class=\"filled\">full copies</span>, "
        "<span class=\"hollow\">only what changed</span>, <span class=\"missed\">not complete</span>.</p>\n"_html;
  }
  return WholePage("Plots", "/plots", main + sections, view);
}

}  // namespace zenqay
