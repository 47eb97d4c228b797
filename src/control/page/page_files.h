// The files of the page, which stand in the program.
#pragma once

#include <string_view>

namespace zenqay {

struct PageFile {
  std::string_view path;
  std::string_view type;
  std::string_view content;
};

/// Null for a path that is none of theirs.
const PageFile* PageFileAt(std::string_view path);

}  // namespace zenqay
