// An element of Components.xml, as those read it who are made by it.
#pragma once

#include <memory>
#include <pugixml.hpp>
#include <vector>

#include "contracts/value.h"

namespace zenqay {

/// What is wrong with an element raises an error that names the file and the line.
class CatalogueElement {
 public:
  /// `directory` and `file` are the catalogue's, paths of the operating system.
  CatalogueElement(const Text& directory, const Text& file, pugi::xml_node node)
      : directory_(directory), file_(file), node_(node) {}

  /// Raises 5 when the element does not have the attribute.
  Text Required(const char* attribute) const;

  /// As Required; the path is relative to the catalogue's directory.
  Text RequiredPath(const char* attribute) const;

  /// Empty when the element does not have the attribute.
  Text Optional(const char* attribute) const { return node_.attribute(attribute).value(); }

  /// Raises 5 for an attribute that is none of these.
  void RequireOnly(std::initializer_list<std::string_view> attributes) const;

  /// The elements inside. Raises 5 for one of another name.
  std::vector<CatalogueElement> Children(const char* name) const;

  /// For errors: ".../Components.xml, line 3".
  Text Place() const;

  const Text& directory() const { return directory_; }

 private:
  const Text& directory_;
  const Text& file_;
  pugi::xml_node node_;
};

/// Makes the host of a HOST element, of one kind. `former` is what an element of this kind before it made, empty for
/// the first: a kind may serve all its elements by one host. Raises what is wrong with the element.
using HostFactory = std::shared_ptr<ComponentHost> (*)(const CatalogueElement& element,
                                                       const std::shared_ptr<ComponentHost>& former);

}  // namespace zenqay
