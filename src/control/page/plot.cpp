#include "control/page/plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zenqay {
namespace {

constexpr double kLeft = 6;
constexpr double kRight = 294;
constexpr double kTop = 16;
constexpr double kFoot = 92;

/// A place in the picture, to a tenth.
Text Place(double at) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", at);
  return text.data();
}

double HighestOf(const Plot& plot) {
  double highest = 0;
  for (const PlotPoint& point : plot.points) highest = std::max(highest, point.value.value_or(0));
  return RoundedUp(highest);
}

class Picture {
 public:
  explicit Picture(const Plot& plot) : plot_(plot), highest_(HighestOf(plot)) {}

  Html Draw() const {
    return Grid() + Line(true) + Line(false) + Marks() + Label(kLeft, kTop - 5, "start", plot_.label(highest_)) +
           Label(kLeft, kFoot + 13, "start", plot_.from) + Label(kRight, kFoot + 13, "end", plot_.to);
  }

 private:
  double X(std::size_t at) const {
    const std::size_t steps = std::max<std::size_t>(plot_.points.size(), 2) - 1;
    return kLeft + 4 + (kRight - kLeft - 8) * static_cast<double>(at) / static_cast<double>(steps);
  }
  double Y(double value) const { return kFoot - (kFoot - kTop) * value / highest_; }

  static Html Rule(double y, const Html& kind) {
    const Html height = Escaped(Place(y));
    return "<line class=\""_html + kind + "\" x1=\""_html + Escaped(Place(kLeft)) + "\" x2=\""_html +
           Escaped(Place(kRight)) + "\" y1=\""_html + height + "\" y2=\""_html + height + "\"/>"_html;
  }

  static Html Grid() {
    return Rule(kTop, "grid"_html) + Rule((kTop + kFoot) / 2, "grid"_html) + Rule(kFoot, "axis"_html);
  }

  Html Line(bool isFilled) const {
    Text places;
    for (std::size_t at = 0; at < plot_.points.size(); ++at) {
      const PlotPoint& point = plot_.points[at];
      if (!point.value || point.isFilled != isFilled) continue;
      places += (places.empty() ? "" : " ") + Place(X(at)) + "," + Place(Y(*point.value));
    }
    if (places.find(' ') == Text::npos) return {};
    return "<polyline class=\""_html + Kind(isFilled) + "\" points=\""_html + Escaped(places) + "\"/>"_html;
  }

  Html Marks() const {
    Html marks;
    for (std::size_t at = 0; at < plot_.points.size(); ++at) {
      const PlotPoint& point = plot_.points[at];
      const Html x = Escaped(Place(X(at)));
      const Html title = "<title>"_html + Escaped(point.words) + "</title>"_html;
      if (point.value) {
        marks += "<circle class=\""_html + Kind(point.isFilled) + "\" cx=\""_html + x + "\" cy=\""_html +
                 Escaped(Place(Y(*point.value))) + "\" r=\"3\">"_html + title + "</circle>"_html;
      } else {
        marks += "<path class=\"missed\" transform=\"translate("_html + x + " "_html + Escaped(Place(kFoot)) +
                 ")\" d=\"M-3-3 3 3M-3 3 3-3\">"_html + title + "</path>"_html;
      }
    }
    return marks;
  }

  static Html Kind(bool isFilled) { return isFilled ? "filled"_html : "hollow"_html; }

  static Html Label(double x, double y, std::string_view anchor, const Text& words) {
    return "<text x=\""_html + Escaped(Place(x)) + "\" y=\""_html + Escaped(Place(y)) + "\" text-anchor=\""_html +
           Escaped(anchor) + "\">"_html + Escaped(words) + "</text>"_html;
  }

  const Plot& plot_;
  double highest_;
};

/// "Duration: 12 runs, from 0:05 to 0:12, the last 0:07"
Text InWords(const Plot& plot) {
  std::vector<double> values;
  for (const PlotPoint& point : plot.points) {
    if (point.value) values.push_back(*point.value);
  }
  if (values.empty()) return plot.title + ": no value";
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return plot.title + ": " + std::to_string(values.size()) + (values.size() == 1 ? " value, " : " values, ") + "from " +
         plot.label(*least) + " to " + plot.label(*most) + ", the last " + plot.label(values.back());
}

}  // namespace

double RoundedUp(double value) {
  if (value <= 10) return std::max(std::ceil(value), 1.0);
  double unit = 10;
  while (value > unit * 10) unit *= 10;
  for (const double step : {1.0, 1.2, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 6.0, 8.0}) {
    if (value <= unit * step) return unit * step;
  }
  return unit * 10;
}

Html PlotHtml(const Plot& plot) {
  return "<figure><figcaption>"_html + Escaped(plot.title) +
         "</figcaption><svg viewBox=\"0 0 300 108\" role=\"img\" aria-label=\""_html + Escaped(InWords(plot)) +
         "\">"_html + Picture(plot).Draw() + "</svg></figure>\n"_html;
}

}  // namespace zenqay
