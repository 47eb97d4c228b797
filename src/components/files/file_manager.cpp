#include "components/files/file_manager.h"

#include <charconv>
#include <limits>

#include "components/files/reference_headers.h"
#include "components/files/selection_criteria.h"

namespace zenqay {
namespace {

constexpr std::string_view kManagerSuffix = "Manager";

CsvRecord ReadHeaderRecord(CsvReader& reader) {
  CsvRecord record;
  if (!reader.Read(record)) RaiseMismatch(reader.source(), 1, "1", "the file has no header");
  return record;
}

/// Missing for certain: a file that nobody lets us look at is not, and opening it says so.
bool IsMissing(const std::filesystem::path& path) {
  std::error_code fault;
  return !std::filesystem::exists(path, fault) && !fault;
}

/// The rows of a file of changes that the criteria ask for. Key columns and columns without a code always answer.
RowSelection SelectionOf(const ChangesHeader& header, const NetChangeCriteria& criteria, const Text& classId) {
  RowSelection selection;
  selection.period = {.from = criteria.from, .to = criteria.to, .column = header.changedAt};
  for (std::size_t number = 0; number < header.columns.size(); ++number) {
    const ExportColumn& column = header.columns[number];
    if (column.code.empty()) continue;
    const bool isAskedFor = column.isOld ? criteria.AsksForOld(column.code) : criteria.AsksFor(column.code);
    if (!isAskedFor && !column.isKey) selection.silentColumns.push_back(number);
    if (isAskedFor && column.isOld) selection.oldColumns.push_back(number);
    if (!column.isKey) continue;
    for (const FieldRange& range : criteria.ranges) {
      if (range.field != column.code) continue;
      selection.ranges.emplace_back(header.columns, number, range.low, range.high, classId);
    }
  }
  return selection;
}

constexpr DateTime kEarliest(std::numeric_limits<std::int64_t>::min());
constexpr DateTime kLatest(std::numeric_limits<std::int64_t>::max());

void ReadThrough(ExportRows rows) {
  while (rows.Next() != nullptr) {
  }
}

}  // namespace

struct FileManager::OpenExport {
  CsvReader reader;
  ExportColumns columns;
};

struct FileManager::OpenChanges {
  CsvReader reader;
  ChangesHeader header;
};

FileStamp FileStamp::Of(const std::filesystem::path& path) {
  FileStamp stamp;
  std::error_code ignored;  // what cannot be looked at is opened next, and says why
  stamp.size = std::filesystem::file_size(path, ignored);
  stamp.lastWrite = std::filesystem::last_write_time(path, ignored);
  return stamp;
}

std::optional<ManagerClass> ManagerClass::Read(const Text& classId) {
  const auto dot = classId.find('.');
  if (dot == Text::npos || dot == 0 || !classId.ends_with(kManagerSuffix)) return {};
  if (classId.find_first_of("./\\", dot + 1) != Text::npos || classId.find_first_of("/\\") < dot) return {};
  const Text manager = classId.substr(dot + 1);
  if (manager.size() <= kManagerSuffix.size()) return {};
  return ManagerClass{.fileStem = classId.substr(0, dot),
                      .plural = manager.substr(0, manager.size() - kManagerSuffix.size())};
}

FileManager::FileManager(Text classId, const std::filesystem::path& directory, const ManagerClass& names)
    : FileComponent(std::move(classId)),
      names_(names),
      exportPath_(ExportPath(directory, names)),
      changesPath_(directory / (names.fileStem + ".changes.csv")) {}

std::filesystem::path FileManager::ExportPath(const std::filesystem::path& directory, const ManagerClass& names) {
  return directory / (names.fileStem + ".csv");
}

Value FileManager::Call(std::string_view operation, Arguments arguments) {
  if (EqualsIgnoringCase(operation, "List")) return List(arguments);
  if (EqualsIgnoringCase(operation, "NetList" + names_.plural)) {
    RequireArguments(operation, arguments, 2, classId());
    return NetList(arguments);
  }
  if (EqualsIgnoringCase(operation, "Initialize")) {
    RequireArguments(operation, arguments, 1, classId());
    return {};
  }
  if (EqualsIgnoringCase(operation, "Close")) {
    RequireArguments(operation, arguments, 0, classId());
    return {};
  }
  RaiseNoSuchOperation(operation, classId());
}

Value FileManager::List(Arguments bounds) {
  const FileStamp stamp = FileStamp::Of(exportPath_);
  if (index_ != nullptr && stamp == indexStamp_) {
    std::vector<KeyRange> ranges = RangesOf(index_->shape()->columns, bounds);
    if (index_->Serves(ranges)) return IndexedRows(std::move(ranges));
  }
  std::optional<OpenExport> file = Export();
  if (!file) return Object();
  std::vector<KeyRange> ranges = RangesOf(file->columns, bounds);
  const auto shape = MakeRowShape(file->reader.source(), std::move(file->columns), names_.plural);
  ExportRecords records(std::move(file->reader), shape, CountBeside(exportPath_));
  if (std::vector<KeyRange> keys = SingleKeysOf(ranges); !keys.empty()) {
    index_ = std::make_shared<ExportIndex>(std::move(records), std::move(keys));
    indexStamp_ = stamp;
    return IndexedRows(std::move(ranges));
  }
  return Enumeration(ExportRows(std::make_unique<ExportRecords>(std::move(records)), shape, {.ranges = ranges}));
}

Value FileManager::NetList(Arguments arguments) {
  if (!arguments[0].value().Is<Text>()) {
    throw RuntimeError(PlatformFault::TypeMismatch, "the ERP table code is no text", classId());
  }
  const NetChangeCriteria criteria = ReadCriteria(arguments[1].value(), classId());
  if (IsMissing(changesPath_)) return Enumeration({});
  std::optional<OpenChanges> file = Changes();
  if (!file) return Object();
  return Enumeration(ChangedRows(std::move(*file), criteria));
}

ExportRows FileManager::ChangedRows(OpenChanges file, const NetChangeCriteria& criteria) const {
  RowSelection selection = SelectionOf(file.header, criteria, classId());
  const auto shape = MakeRowShape(file.reader.source(), std::move(file.header.columns), names_.plural);
  auto records = std::make_unique<ExportRecords>(std::move(file.reader), shape, CountBeside(changesPath_));
  return {std::move(records), shape, std::move(selection)};
}

std::optional<FileManager::OpenExport> FileManager::Export() const {
  CsvReader reader(exportPath_, classId());
  const CsvRecord record = ReadHeaderRecord(reader);
  if (SaysNothing(record)) return {};
  ExportColumns columns = ReadListHeader(record, reader.source());
  RequireReferenceColumns(names_.fileStem, columns, "List", record, reader.source());
  return OpenExport{std::move(reader), std::move(columns)};
}

std::optional<FileManager::OpenChanges> FileManager::Changes() const {
  CsvReader reader(changesPath_, classId());
  const CsvRecord record = ReadHeaderRecord(reader);
  if (SaysNothing(record)) return {};
  ChangesHeader header = ReadChangesHeader(record, reader.source());
  RequireReferenceColumns(names_.fileStem, header.columns, "NetList" + names_.plural, record, reader.source());
  return OpenChanges{std::move(reader), std::move(header)};
}

void FileManager::RequireCallable(std::string_view operation, std::size_t argumentCount) {
  if (EqualsIgnoringCase(operation, "List")) {
    std::optional<OpenExport> file = Export();
    if (!file) return;
    RequireBounds(file->columns, argumentCount);
    const auto shape = MakeRowShape(file->reader.source(), std::move(file->columns), names_.plural);
    auto records = std::make_unique<ExportRecords>(std::move(file->reader), shape, CountBeside(exportPath_));
    ReadThrough(ExportRows(std::move(records), shape, {}));
  } else if (EqualsIgnoringCase(operation, "NetList" + names_.plural) && !IsMissing(changesPath_)) {
    std::optional<OpenChanges> file = Changes();
    if (file) ReadThrough(ChangedRows(std::move(*file), {.from = kEarliest, .to = kLatest}));
  }
}

Value FileManager::IndexedRows(std::vector<KeyRange> ranges) const {
  auto found = ExportIndex::Find(index_, ranges);
  return Enumeration(ExportRows(std::move(found), index_->shape(), {.ranges = std::move(ranges)}));
}

std::vector<KeyRange> FileManager::RangesOf(const ExportColumns& columns, Arguments bounds) const {
  RequireBounds(columns, bounds.size());
  const std::vector<std::size_t> keys = KeyColumnsOf(columns);
  std::vector<KeyRange> ranges;
  for (std::size_t key = 0; key < keys.size(); ++key) {
    const Value& low = bounds[key * 2].value();
    const Value& high = bounds[key * 2 + 1].value();
    ranges.emplace_back(columns, keys[key], low, high, classId());
  }
  return ranges;
}

void FileManager::RequireBounds(const ExportColumns& columns, std::size_t count) const {
  const std::size_t keys = KeyColumnsOf(columns).size();
  if (count == keys * 2) return;
  const Text about = "List takes " + std::to_string(keys * 2) + " arguments, a lowest and a highest value for " +
                     "each key column of " + exportPath_.filename().string();
  throw RuntimeError(PlatformFault::InvalidCall, about, classId());
}

/// The number in the file NAME.rows beside NAME.csv, where there is one.
std::optional<std::uint64_t> FileManager::CountBeside(std::filesystem::path exportPath) const {
  const std::filesystem::path path = exportPath.replace_extension(".rows");
  if (IsMissing(path)) return {};
  CsvReader reader(path, classId());
  CsvRecord record;
  reader.Read(record);
  const std::string_view text = record.bytes;
  std::uint64_t count = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (fault == std::errc() && end == text.data() + text.size() && record.cells.size() == 1) return count;
  RaiseMismatch(reader.source(), 1, "1", Quoted(text).append("is no number of records"));
}

Value FileManager::Enumeration(std::optional<ExportRows> rows) const {
  return Object(std::make_shared<ExportEnumeration>(classId(), std::move(rows)));
}

}  // namespace zenqay
