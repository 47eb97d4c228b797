// A manager of the ERP files: one entity, whose rows stand in a full export and a file of changes.
#pragma once

#include <filesystem>

#include "components/files/export_enumeration.h"
#include "components/files/export_index.h"
#include "components/files/file_component.h"

namespace zenqay {

struct NetChangeCriteria;

/// What a manager's class id says: "Kv50QTMtscfgObjects.ObjectsManager" reads the files named by the text in front of
/// the dot, and its plural is "Objects".
struct ManagerClass {
  Text fileStem;
  Text plural;

  /// Nothing for a class id of another form.
  static std::optional<ManagerClass> Read(const Text& classId);
};

/// Tells a file from the one that stood there before.
struct FileStamp {
  std::uintmax_t size = 0;
  std::filesystem::file_time_type lastWrite;

  static FileStamp Of(const std::filesystem::path& path);

  bool operator==(const FileStamp&) const = default;
};

/// Answers Initialize, List, NetList<Plural> and Close. A second listing leaves the first as it is: each reads its file
/// on its own, or finds its records by an index of the file as it stands when the listing is asked for.
class FileManager : public FileComponent {
 public:
  FileManager(Text classId, const std::filesystem::path& directory, const ManagerClass& names);

  Value Call(std::string_view operation, Arguments arguments) override;

  /// Reads the file of a listing to its end, as a job would.
  void RequireCallable(std::string_view operation, std::size_t argumentCount) override;

  static std::filesystem::path ExportPath(const std::filesystem::path& directory, const ManagerClass& names);

 private:
  struct OpenExport;
  struct OpenChanges;

  Value List(Arguments bounds);
  Value NetList(Arguments arguments);
  void RequireBounds(const ExportColumns& columns, std::size_t count) const;
  ExportRows ChangedRows(OpenChanges file, const NetChangeCriteria& criteria) const;
  Value IndexedRows(std::vector<KeyRange> ranges) const;
  std::vector<KeyRange> RangesOf(const ExportColumns& columns, Arguments bounds) const;
  Value Enumeration(std::optional<ExportRows> rows) const;

  /// The file behind its header; nothing when it says that there is no listing.
  std::optional<OpenExport> Export() const;
  std::optional<OpenChanges> Changes() const;

  std::optional<std::uint64_t> CountBeside(std::filesystem::path exportPath) const;

  ManagerClass names_;
  std::filesystem::path exportPath_;
  std::filesystem::path changesPath_;
  std::shared_ptr<ExportIndex> index_;  // of the listings that ask for one key
  FileStamp indexStamp_;                // of the export that it was made from
};

}  // namespace zenqay
