// A Components.xml: it is usable or says in one error what is wrong, and says so again when it is read again.
#include "components/component_catalogue.h"
#include "doubles/temp_directory.h"
#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

/// The fault that a catalogue keeps until it is asked; "" for none.
Text FaultOf(const Text& home) {
  ComponentCatalogue catalogue(home);
  try {
    catalogue.RequireUsable();
  } catch (const RuntimeError& fault) {
    Hold(!fault.description().empty(), "a fault says what is wrong");
    return std::to_string(fault.number()) + " " + fault.description();
  }
  return "";
}

/// True for a well-formed document whose elements are those of a catalogue.
bool HasItsForm(std::string_view content) {
  pugi::xml_document document;
  if (!document.load_buffer(content.data(), content.size())) return false;
  const pugi::xml_node root = document.document_element();
  if (Text(root.name()) != "COMPONENTS") return false;
  for (const pugi::xml_node child : root.children()) {
    const Text name = child.name();
    if (child.type() == pugi::node_element && name != "HOST" && name != "TRACE") return false;
  }
  return true;
}

}  // namespace

FUZZ(input) {
  static const TempDirectory home;
  home.Write("Components.xml", input);

  const Text fault = FaultOf(home.path().string());

  Hold(!fault.empty() || HasItsForm(input), "a catalogue of another form has a fault");
  Hold(FaultOf(home.path().string()) == fault, "a catalogue is read again as it was read");
}
