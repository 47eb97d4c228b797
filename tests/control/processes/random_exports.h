// Exports of the demo's classes with rows that a seed chooses: some are left out, some are there twice, some have
// another key, and fields come from other rows or are absent.
//
//     RandomExports exports(/*seed=*/1);
//     exports.Write("erp", site.Path("home/erp"));
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "doubles/file_content.h"
#include "doubles/temp_directory.h"

namespace zenqay {

class RandomExports {
 public:
  explicit RandomExports(unsigned seed) : random_(seed) {}

  bool Chance(unsigned percent) { return random_() % 100 < percent; }

  /// Makes each file of a directory of share/demo anew in `target`. Changes are those of a past year.
  void Write(const Text& directory, const Text& target) {
    const std::filesystem::path from = Text(ZENQAY_SHARE "/demo/") + directory;
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::directory_iterator(from)) files.push_back(file.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      std::ofstream out(std::filesystem::path(target) / file.filename(), std::ios::binary);
      out << Varied(Replaced(ContentOf(file), "@NOW@", "2020-01-31T10:11:12Z"));
    }
  }

 private:
  using Cells = std::vector<Text>;  // as they are written, in their quotes

  static Cells CellsOf(const Text& line) {
    Cells cells(1);
    bool isQuoted = false;
    for (const char c : line) {
      if (c == '"') isQuoted = !isQuoted;
      if (c == ',' && !isQuoted) {
        cells.emplace_back();
      } else {
        cells.back() += c;
      }
    }
    return cells;
  }

  static Text LineOf(const Cells& cells) {
    Text line;
    for (std::size_t i = 0; i < cells.size(); ++i) line += (i == 0 ? "" : ",") + cells[i];
    return line + "\n";
  }

  Text Varied(const Text& content) {
    std::istringstream lines(content);
    Text header;
    std::getline(lines, header);
    std::vector<Cells> rows;
    for (Text line; std::getline(lines, line);) {
      rows.push_back(CellsOf(line));
      if (rows.back().size() != CellsOf(header).size()) rows.pop_back();  // a part of a record on several lines
    }
    Text varied = header + "\n";
    for (const Cells& row : rows) {
      if (Chance(75)) varied += LineOf(VariedRow(CellsOf(header), row, rows));
      if (Chance(10)) varied += LineOf(VariedRow(CellsOf(header), row, rows));
    }
    return varied;
  }

  Cells VariedRow(const Cells& header, Cells row, const std::vector<Cells>& rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isKey = header[i].ends_with(":key");
      const bool isText = header[i].find(":text") != Text::npos;
      const bool isDescription = header[i].find("Description:text:desc") == 0;
      if (isKey && isText && Chance(15) && !row[i].empty() && !row[i].ends_with('"'))
        row[i].back() = static_cast<char>('A' + random_() % 26);
      if (isKey || header[i] == "ChangedAt" || header[i] == "ActionType") continue;
      if (isDescription && Chance(30) && !row[i].ends_with('"')) row[i] += " " + std::to_string(random_() % 3);
      if (isText && !isDescription && Chance(10)) row[i] = rows[random_() % rows.size()][i];
      if (isDescription && Chance(10)) row[i] = "";
    }
    return row;
  }

  std::minstd_rand random_;
};

}  // namespace zenqay
