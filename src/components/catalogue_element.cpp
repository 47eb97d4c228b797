#include "components/catalogue_element.h"

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

Text CatalogueElement::Place() const {
  return file_ + ", line " + std::to_string(LineOf(file_, node_));
}

}  // namespace zenqay
