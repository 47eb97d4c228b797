#include "control/page/pages.h"
#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

Html Fact(const char* name, const Html& value) {
  return "<div><dt>"_html + Escaped(name) + "</dt><dd>"_html + value + "</dd></div>"_html;
}

Html FactsHtml(const PastRun& run, const PageView& view) {
  return "<dl class=\"facts\">"_html + Fact("Outcome", RunOutcomeHtml(run.outcome)) +
         Fact("Started", MomentHtml(run.started)) + Fact("Took", SpanHtml(SecondsOf(run, view.now))) +
         Fact("Command", "<code>zenqayctl "_html + Escaped(run.command) + "</code>"_html) +
         Fact("By", Escaped("process " + std::to_string(run.process.pid) + " on " + run.process.host)) + "</dl>\n"_html;
}

Html Anchor(const PastTable& table) {
  return Escaped("table-" + std::to_string(table.id));
}

Html RowHtml(const PastTable& table, bool hasDetails, const PageView& view) {
  const RowCounts& counts = table.counts;
  Html name = Escaped(table.table);
  if (hasDetails) name = "<a href=\"#"_html + Anchor(table) + "\">"_html + name + "</a>"_html;
  return "<tr><th scope=\"row\">"_html + name + "</th>"_html + Cell("Job", Escaped(table.job)) +
         Cell("Method", Escaped(table.method)) + Cell("Outcome", TableOutcomeHtml(table.outcome)) +
         NumberCell("Rows", Escaped(GroupedDigits(RowsOf(counts)))) +
         NumberCell("Inserted", Escaped(GroupedDigits(counts.inserted))) +
         NumberCell("Updated", Escaped(GroupedDigits(counts.updated))) +
         NumberCell("Deleted", Escaped(GroupedDigits(counts.deleted))) +
         NumberCell("Rows/s", RateHtml(table, view.now)) + NumberCell("Took", SpanHtml(SecondsOf(table, view.now))) +
         "</tr>\n"_html;
}

Html OptionalFact(const char* name, const Text& value) {
  return value.empty() ? Html() : Fact(name, "<code>"_html + Escaped(value) + "</code>"_html);
}

Html FailureHtml(const JobFailure& failure) {
  const Text sqlState = failure.native.empty() ? failure.sqlState : failure.sqlState + " " + failure.native;
  return "<li><p><strong>"_html + Escaped(std::to_string(failure.number)) + "</strong> "_html +
         Escaped(failure.description) + "</p><dl>"_html + OptionalFact("Row", failure.rowKey) +
         OptionalFact("Statement", failure.statement) + OptionalFact("Call", failure.call) +
         OptionalFact("SQLSTATE", sqlState) + OptionalFact("Source", failure.source) +
         (failure.time.empty() ? Html() : Fact("At", MomentHtml(failure.time))) + "</dl></li>\n"_html;
}

Html LogHtml(const PastTable& table) {
  const std::vector<Text> tail = LogTailOf(table);
  if (tail.empty()) return {};
  Html lines;
  for (const Text& line : tail) lines += Escaped(line) + "\n"_html;
  return "<h3>The end of its log</h3><p class=\"path\">"_html + Escaped(RunLogOf(table)) +
         "</p><pre tabindex=\"0\" aria-label=\"The end of the log of "_html + Escaped(table.table) + "\">"_html +
         lines + "</pre>\n"_html;
}

Html DetailsHtml(const PastTable& table, const std::vector<JobFailure>& failures) {
  Html section = "<section id=\""_html + Anchor(table) + "\"><h2>"_html + Escaped(table.table) + " "_html +
                 TableOutcomeHtml(table.outcome) + "</h2>\n"_html;
  if (!table.words.empty()) section += "<p>"_html + Escaped(table.words) + "</p>\n"_html;
  if (!failures.empty()) {
    section += "<h3>Its failure records</h3><ol class=\"failures\">\n"_html;
    for (const JobFailure& failure : failures) section += FailureHtml(failure);
    section += "</ol>\n"_html;
  }
  return section + LogHtml(table) + "</section>\n"_html;
}

}  // namespace

Text RunPage(History& history, const PastRun& run, const PageView& view) {
  const Text title = "Run " + std::to_string(run.id);
  Html rows;
  Html details;
  for (const PastTable& table : history.TablesOf(run.id)) {
    const std::vector<JobFailure> failures = history.FailuresOf(table.id);
    const bool hasDetails = !failures.empty() || !table.words.empty();
    rows += RowHtml(table, hasDetails, view);
    if (hasDetails) details += DetailsHtml(table, failures);
  }
  const Html main = "<h1>"_html + Escaped(title) + "</h1>\n"_html + FactsHtml(run, view) +
                    TableHead("Tables of " + LowerCased(title), {{"Table"},
                                                                 {"Job"},
                                                                 {"Method"},
                                                                 {"Outcome"},
                                                                 {"Rows", true},
                                                                 {"Inserted", true},
                                                                 {"Updated", true},
                                                                 {"Deleted", true},
                                                                 {"Rows/s", true},
                                                                 {"Took", true}}) +
                    rows + TableEnd() + details;
  return WholePage(title, "/runs", main, view);
}

}  // namespace zenqay
