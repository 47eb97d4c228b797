// Who serves which class id: Components.xml, beside the program.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "base/runtime_error.h"
#include "components/catalogue_element.h"
#include "process/safeguards.h"

namespace zenqay {

/// The hosts of one run, in the order of their entries; the first whose prefix a class id starts with serves it.
/// Without a Components.xml only the builtin date objects exist.
///
///     <COMPONENTS>
///       <HOST prefix="java:java.util." kind="builtin"/>
///       <HOST prefix="Kv" kind="files" directory="erp"/>
///       <HOST prefix="java:com.korvel." kind="jvm" classpath="adapter/*.jar" options="-Xmx256m"/>
///       <HOST prefix="ZenqayInstHandler." kind="console"/>
///       <HOST kind="replay" file="of-a-failure.jsonl"/>
///       <TRACE file="trace.jsonl"/>
///       <SWEEP limit="10%" from="100"><TABLE name="SITE" limit="50"/></SWEEP>
///       <LOCK takeover="yes"/>
///       <TEXTS language="de"/>
///     </COMPONENTS>
class ComponentCatalogue : public ComponentHost {
 public:
  /// Reads the catalogue. What is wrong with it is kept for RequireUsable, so that it is reported behind the check of
  /// the command line, by the path that every failure at start takes.
  explicit ComponentCatalogue(const Text& homeDirectory);

  void RequireUsable() override;
  Object Create(const Text& classId) override;

  /// What a person should know although it is usable: that there is no such file. Empty otherwise.
  const Text& remark() const { return remark_; }

  /// The file of the trace that TRACE asks for, as a path of the operating system; empty without one.
  const Text& traceFile() const { return traceFile_; }

  /// What SWEEP and LOCK ask for. ZENQAY_SWEEP_LIMIT in the environment stands for every limit of SWEEP.
  const Safeguards& safeguards() const { return safeguards_; }

  /// That of the texts, as TEXTS names it; empty without one.
  const Text& language() const { return language_; }

 private:
  struct Entry {
    Text prefix;
    Text kind;
    std::shared_ptr<ComponentHost> host;
  };

  void Read();
  void ReadHost(pugi::xml_node node);
  void RequireTraceBesideReplay(pugi::xml_node root);
  std::shared_ptr<ComponentHost> FormerHost(const Text& kind) const;
  CatalogueElement ElementOf(pugi::xml_node node) const { return {directory_, path_, node}; }

  Text directory_;
  Text path_;
  std::vector<Entry> entries_;
  Text traceFile_;
  Safeguards safeguards_;
  Text language_;
  std::optional<RuntimeError> fault_;
  Text remark_;
};

}  // namespace zenqay
