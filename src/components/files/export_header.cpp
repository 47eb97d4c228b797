#include "components/files/export_header.h"

#include <unordered_map>

#include "base/utf8.h"

namespace zenqay {
namespace {

constexpr std::string_view kOldPrefix = "Old.";
constexpr std::string_view kNothing = "\\NOTHING";

/// A header cell in its parts, with what an error about it needs.
struct HeaderCell {
  const CsvRecord& record;
  const CsvSource& source;
  std::size_t number;  // from 0
  std::vector<std::string_view> parts;

  [[noreturn]] void Raise(std::string_view what) const { RaiseHeaderCell(record, source, number, what); }

  std::string_view Part(std::size_t part) const { return part < parts.size() ? parts[part] : std::string_view(); }
};

HeaderCell ReadCell(const CsvRecord& record, const CsvSource& source, std::size_t number) {
  const std::string_view text = record.TextOf(number);
  const std::string_view flaw = FlawOf(text);
  if (!flaw.empty()) RaiseMismatch(source, record.line, std::to_string(number + 1), flaw);
  return {record, source, number, Split(text, ":")};
}

ExportColumn ColumnOf(const HeaderCell& cell) {
  if (cell.Part(0).empty()) cell.Raise("has no name");
  if (cell.parts.size() > 4) cell.Raise("has more than name, type, code and key");
  if (cell.parts.size() == 4 && cell.Part(3) != "key") cell.Raise("has no \"key\" in its fourth place");
  ExportColumn column{.name = Text(cell.Part(0)), .code = Text(cell.Part(2)), .isKey = cell.parts.size() == 4};
  if (!cell.Part(1).empty()) {
    const auto type = ColumnTypeNamed(cell.Part(1));
    if (!type) cell.Raise("has an unknown type");
    column.type = *type;
  }
  return column;
}

/// The columns as they are read. A header may have thousands: a name is found by its hash.
class Columns {
 public:
  void Add(ExportColumn column, const HeaderCell& cell) {
    const bool isNew = numbers_.emplace(LowerCased(column.Title()), columns.size()).second;
    if (!isNew) cell.Raise("has the name of another column");
    columns.push_back(std::move(column));
  }

  const ExportColumn* Find(std::string_view title) const {
    const auto found = numbers_.find(LowerCased(title));
    return found == numbers_.end() ? nullptr : &columns[found->second];
  }

  ExportColumns columns;

 private:
  std::unordered_map<Text, std::size_t> numbers_;
};

std::size_t RequireColumn(const Columns& read, std::string_view name, const CsvRecord& record,
                          const CsvSource& source) {
  const ExportColumn* column = read.Find(name);
  if (column == nullptr) RaiseMismatch(source, record.line, name, "missing in the header");
  const std::size_t number = column - read.columns.data();
  const bool isPlain = column->type == ColumnType::Plain && column->code.empty() && !column->isKey;
  if (!isPlain) ReadCell(record, source, number).Raise("is not a text without code and key");
  return number;
}

/// An "Old." column has the type and the code of its own column; where the cell says them too, they must agree.
void TakeOver(ExportColumn& old, const Columns& read, const HeaderCell& cell) {
  const ExportColumn* own = read.Find(old.name);
  if (own == nullptr || own->isOld) cell.Raise("has no column " + old.name + " beside it");
  const bool typeDiffers = !cell.Part(1).empty() && old.type != own->type;
  const bool codeDiffers = !cell.Part(2).empty() && old.code != own->code;
  if (typeDiffers || codeDiffers) cell.Raise("has another type or code than the column " + own->name);
  old.type = own->type;
  old.code = own->code;
}

}  // namespace

void RaiseHeaderCell(const CsvRecord& record, const CsvSource& source, std::size_t number, std::string_view what) {
  RaiseMismatch(source, record.line, std::to_string(number + 1), Quoted(record.TextOf(number)).append(what));
}

const ExportColumn* FindColumn(const ExportColumns& columns, std::string_view name) {
  for (const ExportColumn& column : columns) {
    if (!column.isOld && EqualsIgnoringCase(column.name, name)) return &column;
  }
  return nullptr;
}

Text ExportColumn::Title() const {
  return isOld ? Text(kOldPrefix) + name : name;
}

bool SaysNothing(const CsvRecord& record) {
  return record.cells.size() == 1 && record.TextOf(0) == kNothing;
}

ExportColumns ReadListHeader(const CsvRecord& record, const CsvSource& source) {
  Columns read;
  for (std::size_t number = 0; number < record.cells.size(); ++number) {
    const HeaderCell cell = ReadCell(record, source, number);
    read.Add(ColumnOf(cell), cell);
  }
  return std::move(read.columns);
}

ChangesHeader ReadChangesHeader(const CsvRecord& record, const CsvSource& source) {
  Columns read;
  for (std::size_t number = 0; number < record.cells.size(); ++number) {
    const HeaderCell cell = ReadCell(record, source, number);
    ExportColumn column = ColumnOf(cell);
    column.isOld = StartsWithIgnoringCase(column.name, kOldPrefix);
    if (column.isOld) {
      column.name.erase(0, kOldPrefix.size());
      column.isKey = false;
    }
    read.Add(std::move(column), cell);
  }
  for (std::size_t number = 0; number < read.columns.size(); ++number) {
    ExportColumn& column = read.columns[number];
    if (column.isOld) TakeOver(column, read, ReadCell(record, source, number));
  }
  const std::size_t changedAt = RequireColumn(read, "ChangedAt", record, source);
  RequireColumn(read, "ActionType", record, source);
  return {.columns = std::move(read.columns), .changedAt = changedAt};
}

}  // namespace zenqay
