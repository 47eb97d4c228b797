#include "components/component_catalogue.h"

#include <algorithm>
#include <filesystem>

#include "components/dates/builtin_dates.h"
#include "components/files/file_host.h"
#include "components/replay/replay_host.h"
#include "components/safeguard_elements.h"
#include "components/status/status_components.h"
#include "system/xml_file.h"

#ifdef ZENQAY_HAS_JVM
#include "components/jvm/jvm_host.h"
#endif

namespace zenqay {
namespace {

#ifdef ZENQAY_HAS_JVM
constexpr HostFactory MakeJvm = JvmHost::Make;
#else
std::shared_ptr<ComponentHost> MakeJvm(const CatalogueElement& element, const std::shared_ptr<ComponentHost>&) {
  throw RuntimeError(PlatformFault::InvalidCall,
                     element.Place() + ": this program was built without a JDK, so it has no kind \"jvm\"");
}
#endif

/// It becomes a part of a file's name.
Text LanguageOf(const CatalogueElement& element) {
  element.RequireOnly({"language"});
  const Text language = element.Required("language");
  const bool isWord = language.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == Text::npos;
  if (isWord && !language.empty()) return language;
  throw RuntimeError(PlatformFault::InvalidCall,
                     element.Place() + ": \"" + language + "\" is no language, which is a word such as \"de\"");
}

constexpr const char* kReplay = "replay";

struct HostKind {
  std::string_view name;
  HostFactory make;
  bool mayServeAll = false;  // the class ids that no element in front of it serves
};

constexpr HostKind kHostKinds[] = {
    {"files", FileHost::Make},
    {"builtin", BuiltinDateHost::Make},
    {"console", ConsoleStatusHost::Make},
    {"file", FileStatusHost::Make},
    {"jvm", MakeJvm},
    {kReplay, ReplayHost::Make, true},
};

}  // namespace

ComponentCatalogue::ComponentCatalogue(const Text& homeDirectory)
    : directory_(homeDirectory), path_(homeDirectory + "/Components.xml") {
  try {
    Read();
    TakeSweepLimitOfThisRun(safeguards_.sweep);
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
    remark_ = path_ + ": the file is missing, so nothing but dates is served";
    entries_.push_back({"java:java.util.", "builtin", std::make_shared<BuiltinDateHost>()});
    return;
  }
  pugi::xml_document document;
  const XmlRead read = ReadXmlFile(path_, document);
  if (!read) throw RuntimeError(PlatformFault::InvalidCall, read.fault);
  const pugi::xml_node root = document.document_element();
  if (Text(root.name()) != "COMPONENTS") {
    throw RuntimeError(PlatformFault::InvalidCall,
                       ElementOf(root).Place() + ": the top-level element is not COMPONENTS");
  }
  for (const pugi::xml_node element : root.children()) {
    const Text name = element.name();
    if (element.type() != pugi::node_element) continue;
    if (name == "HOST") {
      ReadHost(element);
    } else if (name == "TRACE") {
      traceFile_ = ElementOf(element).RequiredPath("file");
    } else if (name == "SWEEP") {
      safeguards_.sweep = ReadSweep(ElementOf(element));
    } else if (name == "LOCK") {
      safeguards_.lock = ReadLock(ElementOf(element));
    } else if (name == "TEXTS") {
      language_ = LanguageOf(ElementOf(element));
    } else {
      throw RuntimeError(PlatformFault::InvalidCall, ElementOf(element).Place() + ": unknown element \"" + name + "\"");
    }
  }
  RequireTraceBesideReplay(root);
}

/// The file of a trace is emptied when the job begins.
void ComponentCatalogue::RequireTraceBesideReplay(pugi::xml_node root) {
  const pugi::xml_node replay = root.find_child_by_attribute("HOST", "kind", kReplay);
  std::error_code missing;
  if (!replay || !std::filesystem::equivalent(ElementOf(replay).RequiredPath("file"), traceFile_, missing)) return;
  traceFile_.clear();
  throw RuntimeError(PlatformFault::InvalidCall,
                     ElementOf(replay).Place() + ": TRACE would write over the trace that is replayed");
}

void ComponentCatalogue::ReadHost(pugi::xml_node node) {
  const CatalogueElement element = ElementOf(node);
  const Text kind = element.Required("kind");
  const auto* known = std::ranges::find(kHostKinds, kind, &HostKind::name);
  if (known == std::end(kHostKinds)) {
    throw RuntimeError(PlatformFault::InvalidCall, element.Place() + ": unknown kind \"" + kind + "\"");
  }
  const Text prefix = known->mayServeAll ? element.Optional("prefix") : element.Required("prefix");
  entries_.push_back({prefix, kind, known->make(element, FormerHost(kind))});
}

std::shared_ptr<ComponentHost> ComponentCatalogue::FormerHost(const Text& kind) const {
  const auto former = std::ranges::find(entries_, kind, &Entry::kind);
  return former == entries_.end() ? nullptr : former->host;
}

}  // namespace zenqay
