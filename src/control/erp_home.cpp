#include "control/erp_home.h"

#include <filesystem>

#include "control/exit_status.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

void MakeAbsolute(pugi::xml_attribute path, const fs::path& home) {
  if (path) path.set_value((home / path.value()).lexically_normal().c_str());
}

void MakeClassPathAbsolute(pugi::xml_attribute classPath, const fs::path& home) {
  if (!classPath) return;
  Text absolute;
  for (const Text& part : ClassPathParts(classPath.value())) {
    if (!absolute.empty()) absolute += ':';
    absolute += (home / part).string();
  }
  classPath.set_value(absolute.c_str());
}

}  // namespace

void ReadComponents(const ErpSettings& erp, pugi::xml_document& components) {
  const fs::path home = erp.home;
  if (const XmlRead read = ReadXmlFile((home / "Components.xml").string(), components); !read) {
    throw WrongUsage(erp.place + ": " + read.fault);
  }
  for (const pugi::xml_node element : components.document_element().children()) {
    MakeAbsolute(element.attribute("directory"), home);
    MakeAbsolute(element.attribute("file"), home);
    MakeClassPathAbsolute(element.attribute("classpath"), home);
  }
}

std::vector<Text> ClassPathParts(const Text& classPath) {
  std::vector<Text> parts;
  for (const std::string_view part : Split(classPath, ":")) {
    if (!part.empty()) parts.emplace_back(part);
  }
  return parts;
}

}  // namespace zenqay
