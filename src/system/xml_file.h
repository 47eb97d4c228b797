// Reading an XML file whole.
#pragma once

#include <pugixml.hpp>

#include "base/text_functions.h"

namespace zenqay {

/// What came of reading an XML file.
struct XmlRead {
  bool ok = false;
  Text fault;  // what is wrong, naming the file and, for malformed text, the line

  explicit operator bool() const { return ok; }
};

/// Reads the file at a path of the operating system into `document`. A file that is missing, cannot be read, is not
/// well-formed or has no or several top-level elements is a fault.
XmlRead ReadXmlFile(const Text& path, pugi::xml_document& document);

/// The line of a node in the text that it was parsed from, counted from 1.
int LineOf(const Text& path, pugi::xml_node node);

}  // namespace zenqay
