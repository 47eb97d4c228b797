#include "system/xml_file.h"

#include <algorithm>
#include <filesystem>

#include "system/file_content.h"

namespace zenqay {
namespace {

int LineAt(const Text& path, std::ptrdiff_t offset) {
  const Text content = ContentOfFile(path).value_or("");
  const auto end = content.begin() + std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(content));
  return static_cast<int>(std::count(content.begin(), end, '\n')) + 1;
}

}  // namespace

XmlRead ReadXmlFile(const Text& path, pugi::xml_document& document) {
  const XmlRead unread = {false, path + ": the file is missing or cannot be read"};
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) return unread;  // it would be asked for its size
  const pugi::xml_parse_result result =
      document.load_file(path.c_str(), pugi::parse_default | pugi::parse_ws_pcdata_single);
  if (result.status == pugi::status_file_not_found || result.status == pugi::status_io_error) return unread;
  if (!result) {
    return {false, path + ", line " + std::to_string(LineAt(path, result.offset)) + ": " + result.description()};
  }
  const auto elements = std::count_if(document.begin(), document.end(),
                                      [](pugi::xml_node node) { return node.type() == pugi::node_element; });
  if (elements != 1) return {false, path + ": there must be exactly one top-level element"};
  return {true, {}};
}

int LineOf(const Text& path, pugi::xml_node node) {
  return LineAt(path, node.offset_debug());
}

}  // namespace zenqay
