#include "components/files/export_header.h"

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

const ExportColumn* Find(const ExportColumns& columns, std::string_view name, bool isOld) {
  for (const ExportColumn& column : columns) {
    if (column.isOld == isOld && EqualsIgnoringCase(column.name, name)) return &column;
  }
  return nullptr;
}

void AddColumn(ExportColumns& columns, const ExportColumn& column, const HeaderCell& cell) {
  if (Find(columns, column.name, column.isOld) != nullptr) cell.Raise("has the name of another column");
  columns.push_back(column);
}

std::size_t RequireColumn(const ExportColumns& columns, std::string_view name, const CsvRecord& record,
                          const CsvSource& source) {
  const ExportColumn* column = FindColumn(columns, name);
  if (column == nullptr) RaiseMismatch(source, record.line, name, "missing in the header");
  const std::size_t number = column - columns.data();
  const bool isPlain = column->type == ColumnType::Plain && column->code.empty() && !column->isKey;
  if (!isPlain) ReadCell(record, source, number).Raise("is not a text without code and key");
  return number;
}

/// An "Old." column has the type and the code of its own column; where the cell says them too, they must agree.
void TakeOver(ExportColumn& old, const ExportColumns& columns, const HeaderCell& cell) {
  const ExportColumn* own = FindColumn(columns, old.name);
  if (own == nullptr) cell.Raise("has no column " + old.name + " beside it");
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
  return Find(columns, name, false);
}

Text ExportColumn::Title() const {
  return isOld ? Text(kOldPrefix) + name : name;
}

bool SaysNothing(const CsvRecord& record) {
  return record.cells.size() == 1 && record.TextOf(0) == kNothing;
}

ExportColumns ReadListHeader(const CsvRecord& record, const CsvSource& source) {
  ExportColumns columns;
  for (std::size_t number = 0; number < record.cells.size(); ++number) {
    const HeaderCell cell = ReadCell(record, source, number);
    AddColumn(columns, ColumnOf(cell), cell);
  }
  return columns;
}

ChangesHeader ReadChangesHeader(const CsvRecord& record, const CsvSource& source) {
  ChangesHeader header;
  ExportColumns& columns = header.columns;
  for (std::size_t number = 0; number < record.cells.size(); ++number) {
    const HeaderCell cell = ReadCell(record, source, number);
    ExportColumn column = ColumnOf(cell);
    column.isOld = StartsWithIgnoringCase(column.name, kOldPrefix);
    if (column.isOld) {
      column.name.erase(0, kOldPrefix.size());
      column.isKey = false;
    }
    AddColumn(columns, column, cell);
  }
  for (std::size_t number = 0; number < columns.size(); ++number) {
    if (columns[number].isOld) TakeOver(columns[number], columns, ReadCell(record, source, number));
  }
  header.changedAt = RequireColumn(columns, "ChangedAt", record, source);
  RequireColumn(columns, "ActionType", record, source);
  return header;
}

}  // namespace zenqay
