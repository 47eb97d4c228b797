#include "components/catalogue_element.h"

#include <algorithm>
#include <filesystem>

#include "base/runtime_error.h"
#include "system/xml_file.h"

namespace zenqay {

Text CatalogueElement::Required(const char* attribute) const {
  const pugi::xml_attribute found = node_.attribute(attribute);
  if (found) return found.value();
  throw RuntimeError(PlatformFault::InvalidCall,
                     Place() + ": " + node_.name() + " has no attribute \"" + attribute + "\"");
}

Text CatalogueElement::RequiredPath(const char* attribute) const {
  return (std::filesystem::path(directory_) / Required(attribute)).string();
}

void CatalogueElement::RequireOnly(std::initializer_list<std::string_view> attributes) const {
  for (const pugi::xml_attribute attribute : node_.attributes()) {
    const Text name = attribute.name();
    if (std::find(attributes.begin(), attributes.end(), name) != attributes.end()) continue;
    throw RuntimeError(PlatformFault::InvalidCall,
                       Place() + ": " + node_.name() + " knows no attribute \"" + name + "\"");
  }
}

std::vector<CatalogueElement> CatalogueElement::Children(const char* name) const {
  std::vector<CatalogueElement> children;
  for (const pugi::xml_node node : node_.children()) {
    if (node.type() != pugi::node_element) continue;
    children.emplace_back(directory_, file_, node);
    if (Text(node.name()) == name) continue;
    throw RuntimeError(PlatformFault::InvalidCall,
                       children.back().Place() + ": unknown element \"" + node.name() + "\"");
  }
  return children;
}

Text CatalogueElement::Place() const {
  return file_ + ", line " + std::to_string(LineOf(file_, node_));
}

}  // namespace zenqay
