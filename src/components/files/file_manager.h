// A manager of the ERP files: one entity, whose rows stand in a full export and a file of changes.
#pragma once

#include <filesystem>

#include "components/files/export_enumeration.h"
#include "components/files/file_component.h"

namespace zenqay {

/// What a manager's class id says: "Kv50QTMtscfgObjects.ObjectsManager" reads the files named by the text in front of
/// the dot, and its plural is "Objects".
struct ManagerClass {
  Text fileStem;
  Text plural;

  /// Nothing for a class id of another form.
  static std::optional<ManagerClass> Read(const Text& classId);
};

/// Answers Initialize, List, NetList<Plural> and Close. Each listing reads its file on its own, so a second one leaves
/// the first as it is.
class FileManager : public FileComponent {
 public:
  FileManager(Text classId, const std::filesystem::path& directory, const ManagerClass& names);

  Value Call(std::string_view operation, Arguments arguments) override;

  static std::filesystem::path ExportPath(const std::filesystem::path& directory, const ManagerClass& names);

 private:
  Value List(Arguments bounds);
  Value NetList(Arguments arguments);
  std::vector<KeyRange> RangesOf(const ExportColumns& columns, Arguments bounds) const;
  Value Enumeration(std::optional<ExportRows> rows) const;

  std::optional<std::uint64_t> CountBeside(std::filesystem::path exportPath) const;

  ManagerClass names_;
  std::filesystem::path exportPath_;
  std::filesystem::path changesPath_;
};

}  // namespace zenqay
