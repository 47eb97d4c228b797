// What several pages are made of.
#pragma once

#include "control/history.h"
#include "control/page/html.h"

namespace zenqay {

/// What a page is shown with.
struct PageView {
  std::int64_t now = 0;  // seconds since 1970
  bool allowActions = false;
};

/// The whole page around `main`. `section` is the one of the navigation's links that leads here.
Text WholePage(const Text& title, const Text& section, const Html& main, const PageView& view);

/// A page that says why there is no other.
Text FaultPage(const Text& title, const Text& words, const PageView& view);

/// The outcome of a table, and of a run.
Html TableOutcomeHtml(const Text& outcome);
Html RunOutcomeHtml(const Text& outcome);

Html RunLink(std::int64_t run);

/// A cell under the heading `label`, which stands beside it where the screen is narrow.
Html Cell(std::string_view label, const Html& content);
Html NumberCell(std::string_view label, const Html& content);

/// The headings of a table with `caption`, up to where its rows begin, and what ends it.
struct Heading {
  Text words;
  bool isOfNumbers = false;
};
Html TableHead(const Text& caption, const std::vector<Heading>& headings);
Html TableEnd();

/// "0:07", and the rows a second; empty where that cannot be told.
Html SpanHtml(const std::optional<std::int64_t>& seconds);
Html RateHtml(const PastTable& table, std::int64_t now);

}  // namespace zenqay
