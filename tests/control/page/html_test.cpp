#include "control/page/html.h"

#include <gtest/gtest.h>

#include "control/page/plot.h"

namespace zenqay {
namespace {

TEST(Escaped, LeavesNoMarkupAndNoByteThatAPageMayNotHold) {
  const struct {
    Text text;
    Text escaped;
  } cases[] = {
      {"SITE", "SITE"},
      {"<script>alert('1')</script>", "&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;"},
      {"a & \"b\"", "a &amp; &quot;b&quot;"},
      {"Gr\xC3\xBC\xC3\x9F"
       "e\n\tx",
       "Gr\xC3\xBC\xC3\x9F"
       "e\n\tx"},
      {Text("\0\x1B[2J", 5), "\xEF\xBF\xBD\xEF\xBF\xBD[2J"},
      {"\xFFz", "\xEF\xBF\xBDz"},
      {"", ""},
  };
  for (const auto& [text, escaped] : cases) EXPECT_EQ(Escaped(text).text(), escaped);
}

TEST(GroupedDigits, StandInThrees) {
  const struct {
    std::int64_t number;
    const char* text;
  } cases[] = {{0, "0"},       {999, "999"},          {1000, "1\u202f000"}, {1234567, "1\u202f234\u202f567"},
               {-999, "-999"}, {-1000, "-1\u202f000"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(GroupedDigits(number), text);
}

TEST(MomentHtml, SaysTheMomentInUtc) {
  EXPECT_EQ(MomentHtml("2026-01-31T10:11:12Z").text(),
            "<time datetime=\"2026-01-31T10:11:12Z\" title=\"2026-01-31 10:11:12 UTC\">2026-01-31 10:11:12 UTC</time>");
  EXPECT_EQ(MomentHtml("").text(), "");
}

TEST(RoundedUp, GivesWhatReadsWell) {
  const struct {
    double value;
    double rounded;
  } cases[] = {{0, 1},     {0.2, 1},   {1, 1},           {6.5, 7},         {10, 10},    {10.1, 12},
               {100, 100}, {101, 120}, {241000, 250000}, {250001, 300000}, {810, 1000}, {1000, 1000}};
  for (const auto& [value, rounded] : cases) EXPECT_EQ(RoundedUp(value), rounded) << value;
}

Text Whole(double value) {
  return std::to_string(static_cast<int>(value));
}

TEST(PlotHtml, DrawsALineForEachKindOfPointAndMarksWhatCameToNoValue) {
  const Plot plot{.title = "Rows",
                  .points = {{"run 1", 50, true}, {"run 2: <x>", {}, true}, {"run 3", 100, true}, {"run 4", 25, false}},
                  .label = Whole,
                  .from = "2026-01-01",
                  .to = "2026-01-04"};

  EXPECT_EQ(PlotHtml(plot).text(),
            "<figure><figcaption>Rows</figcaption><svg viewBox=\"0 0 300 108\" role=\"img\" "
            "aria-label=\"Rows: 3 values, from 25 to 100, the last 25\">"
            "<line class=\"grid\" x1=\"6.0\" x2=\"294.0\" y1=\"16.0\" y2=\"16.0\"/>"
            "<line class=\"grid\" x1=\"6.0\" x2=\"294.0\" y1=\"54.0\" y2=\"54.0\"/>"
            "<line class=\"axis\" x1=\"6.0\" x2=\"294.0\" y1=\"92.0\" y2=\"92.0\"/>"
            "<polyline class=\"filled\" points=\"10.0,54.0 196.7,16.0\"/>"
            "<circle class=\"filled\" cx=\"10.0\" cy=\"54.0\" r=\"3\"><title>run 1</title></circle>"
            "<path class=\"missed\" transform=\"translate(103.3 92.0)\" d=\"M-3-3 3 3M-3 3 3-3\">"
            "<title>run 2: &lt;x&gt;</title></path>"
            "<circle class=\"filled\" cx=\"196.7\" cy=\"16.0\" r=\"3\"><title>run 3</title></circle>"
            "<circle class=\"hollow\" cx=\"290.0\" cy=\"73.0\" r=\"3\"><title>run 4</title></circle>"
            "<text x=\"6.0\" y=\"11.0\" text-anchor=\"start\">100</text>"
            "<text x=\"6.0\" y=\"105.0\" text-anchor=\"start\">2026-01-01</text>"
            "<text x=\"294.0\" y=\"105.0\" text-anchor=\"end\">2026-01-04</text></svg></figure>\n");
}

TEST(PlotHtml, SaysThatThereIsNoValue) {
  const Text html = PlotHtml({.title = "Rows a second", .label = Whole}).text();

  EXPECT_NE(html.find("aria-label=\"Rows a second: no value\""), Text::npos) << html;
  EXPECT_EQ(html.find("<circle"), Text::npos);
}

}  // namespace
}  // namespace zenqay
