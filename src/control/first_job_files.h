// The files that zenqayctl init makes a first job of; the build puts them into the program.
#pragma once

#include <span>
#include <string_view>

namespace zenqay {

struct FirstJobFile {
  std::string_view path;  // below the directory of the job file, or schema/ for what the database is made of
  std::string_view content;
};
std::span<const FirstJobFile> FirstJobFiles();

}  // namespace zenqay
