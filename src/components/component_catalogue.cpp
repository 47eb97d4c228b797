#include "components/component_catalogue.h"

#include <filesystem>

#include "components/dates/builtin_dates.h"
#include "components/files/file_host.h"
#include "components/status/status_components.h"
#include "system/output_file.h"
#include "system/xml_file.h"

#ifdef ZENQAY_HAS_JVM
#include "components/jvm/jvm_host.h"
#endif

namespace zenqay {
namespace {

bool CouldWrite(const std::filesystem::path& path) {
  std::error_code ignored;
  if (std::filesystem::exists(path, ignored)) {
    return !std::filesystem::is_directory(path, ignored) && MayWriteFile(path.string());
  }
  return MayWriteIn(path.parent_path().string());
}

}  // namespace

ComponentCatalogue::ComponentCatalogue(const Text& homeDirectory, TraceUse traceUse)
    : directory_(homeDirectory), path_(homeDirectory + "/Components.xml"), traceUse_(traceUse) {
  try {
    Read();
  } catch (const RuntimeError& fault) {
    fault_ = fault;
  }
}

void ComponentCatalogue::RequireUsable() {
  if (fault_) throw *fault_;
}

Object ComponentCatalogue::Create(const Text& classId) {
  for (const Entry& entry : entries_) {
    if (classId.starts_with(entry.prefix)) return entry.host->Create(classId);
  }
  throw RuntimeError(PlatformFault::CannotCreateObject, classId, classId);
}

void ComponentCatalogue::Read() {
  std::error_code fault;
  if (!std::filesystem::exists(path_, fault) && !fault) {
    entries_.push_back({"java:java.util.", std::make_unique<BuiltinDateHost>()});
    return;
  }
  pugi::xml_document document;
  const XmlRead read = ReadXmlFile(path_, document);
  if (!read) throw RuntimeError(PlatformFault::InvalidCall, read.fault);
  const pugi::xml_node root = document.document_element();
  if (Text(root.name()) != "COMPONENTS") {
    throw RuntimeError(PlatformFault::InvalidCall, PlaceOf(root) + ": the top-level element is not COMPONENTS");
  }
  for (const pugi::xml_node element : root.children()) {
    const Text name = element.name();
    if (element.type() != pugi::node_element) continue;
    if (name == "HOST") {
      ReadHost(element);
    } else if (name == "TRACE") {
      ReadTrace(element);
    } else {
      throw RuntimeError(PlatformFault::InvalidCall, PlaceOf(element) + ": unknown element \"" + name + "\"");
    }
  }
}

void ComponentCatalogue::ReadHost(pugi::xml_node element) {
  const Text prefix = Required(element, "prefix");
  const Text kind = Required(element, "kind");
  if (kind == "files") {
    const Text directory = PathOf(Required(element, "directory"));
    std::error_code fault;
    if (!std::filesystem::is_directory(directory, fault)) {
      throw RuntimeError(PlatformFault::PathNotFound, PlaceOf(element) + ": there is no directory " + directory);
    }
    entries_.push_back({prefix, std::make_unique<FileHost>(directory)});
  } else if (kind == "builtin") {
    entries_.push_back({prefix, std::make_unique<BuiltinDateHost>()});
  } else if (kind == "console") {
    entries_.push_back({prefix, std::make_unique<ConsoleStatusHost>()});
  } else if (kind == "file") {
    entries_.push_back({prefix, std::make_unique<FileStatusHost>(PathOf(Required(element, "file")))});
  } else if (kind == "jvm") {
    entries_.push_back({prefix, JvmHostWith(element)});
  } else {
    throw RuntimeError(PlatformFault::InvalidCall, PlaceOf(element) + ": unknown kind \"" + kind + "\"");
  }
}

void ComponentCatalogue::ReadTrace(pugi::xml_node element) {
  const Text path = PathOf(Required(element, "file"));
  if (traceUse_ == TraceUse::Write) {
    trace_ = std::make_unique<Trace>(path);
  } else if (!CouldWrite(path)) {
    throw RuntimeError(PlatformFault::PathAccess, path);
  }
}

#ifdef ZENQAY_HAS_JVM
std::shared_ptr<ComponentHost> ComponentCatalogue::JvmHostWith(pugi::xml_node element) {
  if (jvmHost_ == nullptr) jvmHost_ = std::make_shared<JvmHost>();
  try {
    jvmHost_->Add(directory_, element.attribute("classpath").value(), element.attribute("options").value());
  } catch (const RuntimeError& fault) {
    throw RuntimeError(fault.number(), fault.source(), fault.description() + " (" + PlaceOf(element) + ")");
  }
  return jvmHost_;
}
#else
std::shared_ptr<ComponentHost> ComponentCatalogue::JvmHostWith(pugi::xml_node element) {
  throw RuntimeError(PlatformFault::InvalidCall,
                     PlaceOf(element) + ": this program was built without a JDK, so it has no kind \"jvm\"");
}
#endif

Text ComponentCatalogue::Required(pugi::xml_node element, const char* attribute) const {
  const pugi::xml_attribute found = element.attribute(attribute);
  if (!found) {
    throw RuntimeError(PlatformFault::InvalidCall,
                       PlaceOf(element) + ": " + element.name() + " has no attribute \"" + attribute + "\"");
  }
  return found.value();
}

Text ComponentCatalogue::PathOf(const Text& path) const {
  return (std::filesystem::path(directory_) / path).string();
}

Text ComponentCatalogue::PlaceOf(pugi::xml_node element) const {
  return path_ + ", line " + std::to_string(LineOf(path_, element));
}

}  // namespace zenqay
