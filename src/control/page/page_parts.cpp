#include "control/page/page_parts.h"

#include "control/past_runs.h"
#include "control/run_views.h"

namespace zenqay {
namespace {

constexpr std::pair<const char*, const char*> kSections[] = {{"/", "Tables"}, {"/runs", "Runs"}, {"/plots", "Plots"}};

Html Navigation(const Text& section) {
  Html links;
  for (const auto& [path, name] : kSections) {
    links += "<li><a href=\""_html + Escaped(path) + "\""_html;
    if (section == path) links += " aria-current=\"page\""_html;
    links += ">"_html + Escaped(name) + "</a></li>"_html;
  }
  return "<nav aria-label=\"Pages\"><ul>"_html + links + "</ul></nav>"_html;
}

/// Where the script asks for the token, and says what came of an action.
Html ActionParts() {
  return "<dialog id=\"ask\" aria-labelledby=\"ask-title\"><form id=\"ask-form\"><h2 id=\"ask-title\">Token</h2>"
         "<p><label for=\"ask-token\">The token of this page, kept until the tab is closed</label>"
         "<input id=\"ask-token\" type=\"password\" autocomplete=\"current-password\" required></p>"
         "<p><button type=\"submit\">Go on</button> <button type=\"button\" id=\"ask-cancel\">Cancel</button></p>"
         "</form></dialog><p id=\"said\" role=\"status\"></p>"_html;
}

/// The words as the style sheet knows them: "could-not-begin".
Html OutcomeOf(const Text& kind, const Text& words) {
  return "<span class=\"outcome "_html + Escaped(Replaced(kind, " ", "-")) + "\">"_html + Escaped(words) +
         "</span>"_html;
}

/// How a run is shown, by its outcome: as a table that came to the same.
Text KindOfRun(const Text& outcome) {
  if (outcome == "0") return "complete";
  if (outcome == "3") return "in use";
  if (outcome == "running") return "copying";
  if (outcome == "lost") return outcome;
  const bool isEnd = outcome == "1" || outcome == "2" || outcome == "4";
  return isEnd ? "failed" : "stopped";
}

}  // namespace

Text WholePage(const Text& title, const Text& section, const Html& main, const PageView& view) {
  const Html page =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>"_html + Escaped(title) +
      " – Zenqay</title><meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
      "<meta name=\"color-scheme\" content=\"light dark\"><link rel=\"icon\" href=\"/icon.svg\" type=\"image/svg+xml\">"
      "<link rel=\"stylesheet\" href=\"/page.css\"><script src=\"/page.js\" defer></script></head><body>\n"
      "<a class=\"skip\" href=\"#main\">To the content</a>"
      "<header><p class=\"name\"><img src=\"/icon.svg\" alt=\"\" width=\"20\" height=\"20\">Zenqay DB Sync</p>"_html +
      Navigation(section) + "<p id=\"live\"></p></header>\n<main id=\"main\" tabindex=\"-1\">\n"_html + main +
      "</main>\n"_html + (view.allowActions ? ActionParts() : Html()) + "<footer><p>Read "_html +
      MomentHtml(UtcText(view.now)) + "<span id=\"zone\"></span></p></footer></body></html>\n"_html;
  return page.text();
}

Text FaultPage(const Text& title, const Text& words, const PageView& view) {
  return WholePage(title, "", "<h1>"_html + Escaped(title) + "</h1><p>"_html + Escaped(words) + "</p>"_html, view);
}

Html TableOutcomeHtml(const Text& outcome) {
  return OutcomeOf(outcome, outcome);
}

Html RunOutcomeHtml(const Text& outcome) {
  return OutcomeOf(KindOfRun(outcome), OutcomeWords(outcome));
}

Html RunLink(std::int64_t run) {
  const Html number = Escaped(std::to_string(run));
  return "<a href=\"/runs/"_html + number + "\">run "_html + number + "</a>"_html;
}

Html Cell(std::string_view label, const Html& content) {
  return "<td data-label=\""_html + Escaped(label) + "\">"_html + content + "</td>"_html;
}

Html NumberCell(std::string_view label, const Html& content) {
  return "<td class=\"number\" data-label=\""_html + Escaped(label) + "\">"_html + content + "</td>"_html;
}

Html TableHead(const Text& caption, const std::vector<Heading>& headings) {
  Html row;
  for (const Heading& heading : headings) {
    row += (heading.isOfNumbers ? "<th scope=\"col\" class=\"number\">"_html : "<th scope=\"col\">"_html) +
           Escaped(heading.words) + "</th>"_html;
  }
  return "<table><caption>"_html + Escaped(caption) + "</caption><thead><tr>"_html + row +
         "</tr></thead><tbody>\n"_html;
}

Html TableEnd() {
  return "</tbody></table>\n"_html;
}

Html SpanHtml(const std::optional<std::int64_t>& seconds) {
  return seconds ? Escaped(DurationText(Seconds(*seconds))) : Html();
}

Html RateHtml(const PastTable& table, std::int64_t now) {
  const auto seconds = SecondsOf(table, now);
  return seconds && *seconds > 0 ? Escaped(GroupedDigits(RowsOf(table.counts) / *seconds)) : Html();
}

}  // namespace zenqay
