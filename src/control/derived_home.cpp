#include "control/derived_home.h"

#include <filesystem>

#include "control/exit_status.h"
#include "system/xml_file.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDefaultFrom = "100";

void MakeAbsolute(pugi::xml_attribute path, const fs::path& home) {
  if (path) path.set_value((home / path.value()).lexically_normal().c_str());
}

/// The parts of a class path stand with ":" between them.
void MakeClassPathAbsolute(pugi::xml_attribute classPath, const fs::path& home) {
  if (!classPath) return;
  const Text parts = classPath.value();
  Text absolute;
  for (std::size_t from = 0; from <= parts.size();) {
    const std::size_t end = std::min(parts.find(':', from), parts.size());
    if (end > from) absolute += (absolute.empty() ? "" : ":") + (home / parts.substr(from, end - from)).string();
    from = end + 1;
  }
  classPath.set_value(absolute.c_str());
}

pugi::xml_node ElementOf(pugi::xml_node root, const char* name) {
  const pugi::xml_node found = root.child(name);
  return found ? found : root.append_child(name);
}

void Put(pugi::xml_node element, const char* name, const Text& value) {
  pugi::xml_attribute attribute = element.attribute(name);
  if (!attribute) attribute = element.append_attribute(name);
  attribute.set_value(value.c_str());
}

void AddRequests(pugi::xml_node root, const Text& sweepLimit) {
  Put(ElementOf(root, "LOCK"), "takeover", "yes");
  if (sweepLimit.empty()) return;
  const pugi::xml_node sweep = ElementOf(root, "SWEEP");
  Put(sweep, "limit", sweepLimit);
  if (!sweep.attribute("from")) Put(sweep, "from", kDefaultFrom);
}

}  // namespace

DerivedHome::DerivedHome(const ErpSettings& erp, const Text& sweepLimit) {
  pugi::xml_document document;
  const fs::path home = erp.home;
  if (const XmlRead read = ReadXmlFile((home / "Components.xml").string(), document); !read) {
    throw WrongUsage(erp.place + ": " + read.fault);
  }
  const pugi::xml_node root = document.document_element();
  for (const pugi::xml_node element : root.children()) {
    MakeAbsolute(element.attribute("directory"), home);
    MakeAbsolute(element.attribute("file"), home);
    MakeClassPathAbsolute(element.attribute("classpath"), home);
  }
  AddRequests(root, sweepLimit);
  const Text copy = path() + "/Components.xml";
  if (!document.save_file(copy.c_str(), "  ")) throw RuntimeError(PlatformFault::PathAccess, copy);
  fs::create_symlink(home / "I18nText.xml", path() + "/I18nText.xml");
}

}  // namespace zenqay
