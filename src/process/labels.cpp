#include "process/labels.h"

#include <pugixml.hpp>

#include "system/paths.h"
#include "system/xml_file.h"

namespace zenqay {
namespace {

Text ContentOf(pugi::xml_node node) {
  Text content;
  for (const pugi::xml_node child : node) {
    if (child.type() == pugi::node_element) {
      content += ContentOf(child);
    } else if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
      content += child.value();
    }
  }
  return content;
}

Text LookupLabelText(modDeclarations& process, const Text& key) {
  if (process.LabelDocument == nullptr) process.LabelDocument = std::make_shared<pugi::xml_document>();
  if (!process.LabelDocumentLoaded) {
    const Text path = NativePath(process.platform.ProgramDirectory() + "\\" + LabelFileName(process.LabelLanguage));
    const XmlRead read = ReadXmlFile(path, *process.LabelDocument);
    if (!read && read.fault != process.LabelFaultNamed) process.platform.NameCause(read.fault);
    process.LabelFaultNamed = read.fault;
    process.LabelDocumentLoaded = read.ok;
  }
  if (!process.LabelDocumentLoaded) return key;
  try {
    const pugi::xpath_node found = process.LabelDocument->select_node(("I18NTEXT/" + key).c_str());
    return found ? ContentOf(found.node()) : key;
  } catch (const pugi::xpath_exception& fault) {
    process.platform.NameCause("label \"" + key + "\": " + fault.what());
    process.LabelDocumentLoaded = false;
    return {};
  }
}

}  // namespace

Text LabelFileName(const Text& language) {
  return language.empty() || language == "en" ? "I18nText.xml" : "I18nText." + language + ".xml";
}

Text GetLabel(modDeclarations& process, const Text& key) {
  return LookupLabelText(process, key);
}

}  // namespace zenqay
