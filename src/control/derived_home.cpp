#include "control/derived_home.h"

#include <filesystem>

#include "control/erp_home.h"
#include "process/labels.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDefaultFrom = "100";

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
  ReadComponents(erp, document);
  AddRequests(document.document_element(), sweepLimit);
  Write(erp, document);
}

DerivedHome::DerivedHome(const ErpSettings& erp) {
  pugi::xml_document document;
  ReadComponents(erp, document);
  for (const char* name : {"LOCK", "SWEEP", "TRACE"}) {
    while (document.document_element().remove_child(name)) {
    }
  }
  Write(erp, document);
}

void DerivedHome::Write(const ErpSettings& erp, const pugi::xml_document& components) const {
  const Text copy = path() + "/Components.xml";
  if (!components.save_file(copy.c_str(), "  ")) throw RuntimeError(PlatformFault::PathAccess, copy);
  const Text texts = LabelFileName(components.document_element().child("TEXTS").attribute("language").value());
  fs::create_symlink(fs::path(erp.home) / texts, path() + "/" + texts);
}

}  // namespace zenqay
