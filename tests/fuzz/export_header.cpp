// The columns of an export: the header of what was read of them is read again as the same columns. An input holds a
// cell a line.
#include "components/files/export_header.h"

#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

const CsvSource kSource = {.file = "Lines.csv", .classId = "Lines.LinesManager"};

void AddCell(CsvRecord& record, std::string_view text) {
  record.cells.push_back({.begin = static_cast<std::uint32_t>(record.bytes.size()),
                          .length = static_cast<std::uint32_t>(text.size()),
                          .isAbsent = text.empty()});
  record.bytes += text;
}

CsvRecord RecordOf(std::string_view input) {
  CsvRecord record{.line = 1};
  for (auto end = input.find('\n'); end != std::string_view::npos; end = input.find('\n')) {
    AddCell(record, input.substr(0, end));
    input.remove_prefix(end + 1);
  }
  AddCell(record, input);
  return record;
}

CsvRecord HeaderOf(const ExportColumns& columns) {
  CsvRecord record{.line = 1};
  for (const ExportColumn& column : columns) {
    Text cell = column.Title() + ":";
    cell.append(NameOf(column.type)).append(":").append(column.code).append(column.isKey ? ":key" : "");
    AddCell(record, cell);
  }
  return record;
}

bool AreSame(const ExportColumns& one, const ExportColumns& other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    const bool areSame = one[i].name == other[i].name && one[i].type == other[i].type && one[i].code == other[i].code &&
                         one[i].isKey == other[i].isKey && one[i].isOld == other[i].isOld;
    if (!areSame) return false;
  }
  return true;
}

void CheckNames(const ExportColumns& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Hold(columns[i].isOld || !columns[i].name.empty(), "a column has a name");
    for (std::size_t k = 0; k < i; ++k) {
      Hold(columns[i].isOld != columns[k].isOld || !EqualsIgnoringCase(columns[i].name, columns[k].name),
           "no two columns have one name");
    }
  }
}

}  // namespace

FUZZ(input) {
  const CsvRecord record = RecordOf(input);
  ExportColumns columns;
  if (Succeeds([&] { columns = ReadListHeader(record, kSource); })) {
    Hold(columns.size() == record.cells.size(), "each cell is a column");
    CheckNames(columns);
    Hold(AreSame(ReadListHeader(HeaderOf(columns), kSource), columns), "a header is read as it was written");
  }
  ChangesHeader changes;
  if (Succeeds([&] { changes = ReadChangesHeader(record, kSource); })) {
    Hold(changes.columns.size() == record.cells.size(), "each cell of a file of changes is a column");
    CheckNames(changes.columns);
    Hold(EqualsIgnoringCase(changes.columns[changes.changedAt].name, "ChangedAt"), "the column of the time is found");
    const ChangesHeader again = ReadChangesHeader(HeaderOf(changes.columns), kSource);
    Hold(AreSame(again.columns, changes.columns), "a header of changes is read as it was written");
  }
}
