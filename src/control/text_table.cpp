#include "control/text_table.h"

#include <algorithm>

namespace zenqay {
namespace {

/// Characters of UTF-8.
std::size_t WidthOf(const Text& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

void WriteTextTable(std::ostream& out, const std::vector<std::vector<Text>>& rows) {
  std::vector<std::size_t> widths;
  for (const std::vector<Text>& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], WidthOf(row[column]));
    }
  }
  for (const std::vector<Text>& row : rows) {
    Text line;
    for (std::size_t column = 0; column < row.size(); ++column) {
      line += row[column] + Text(widths[column] - WidthOf(row[column]) + 2, ' ');
    }
    out << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
}

}  // namespace zenqay
