// A plot as a picture that reads without a script.
#pragma once

#include <optional>
#include <vector>

#include "control/page/html.h"

namespace zenqay {

struct PlotPoint {
  Text words;                   // what there is to say of it, to hover over
  std::optional<double> value;  // nothing: it is marked at the foot as what came to no value
  bool isFilled = true;         // of two kinds of points, each of which has a line of its own
};

struct Plot {
  Text title;
  std::vector<PlotPoint> points;  // from left to right, one step each
  Text (*label)(double value);    // of the heights
  Text from;                      // what stands under the first point and the last
  Text to;
};

/// What the plot shows, in words, and the picture.
Html PlotHtml(const Plot& plot);

/// A number that is not below and not far above, and that reads well: 7, 25, 1200.
double RoundedUp(double value);

}  // namespace zenqay
