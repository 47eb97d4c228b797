// An export, byte by byte: what was read of it, written out in quotes, is read again as the same records.
#include "components/files/csv_reader.h"

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

/// A file in memory.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content) : descriptor_(::memfd_create("export", 0)) {
    Hold(::write(descriptor_, content.data(), content.size()) == static_cast<ssize_t>(content.size()), "a file");
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(descriptor_); }

  Text path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

struct Content {
  std::vector<CsvRecord> records;  // up to the end or the first that does not read
  bool isWhole = false;
};

Content Read(std::string_view bytes) {
  const MemoryFile file(bytes);
  CsvReader reader(file.path(), "Kv40QTMtssmaLocations.LocationsManager");
  Content content;
  try {
    for (CsvRecord record; reader.Read(record);) content.records.push_back(record);
    content.isWhole = true;
  } catch (const RuntimeError& error) {
    Hold(error.number() == 13, "a file that opens fails with 13");
  }
  return content;
}

void CheckCells(const CsvRecord& record) {
  std::size_t end = 0;
  for (const CsvCell& cell : record.cells) {
    Hold(cell.begin == end, "the cells of a record lie behind one another");
    Hold(cell.length == 0 || !cell.isAbsent, "an absent cell has no text");
    end += cell.length;
  }
  Hold(end == record.bytes.size(), "the cells are all that a record holds");
  Hold(!record.cells.empty(), "a record has a cell");
  Hold(record.cells.size() > 1 || !record.cells[0].isAbsent, "a blank line is no record");
}

Text InQuotes(const CsvRecord& record) {
  Text line;
  for (std::size_t i = 0; i < record.cells.size(); ++i) {
    if (i > 0) line += ',';
    if (!record.cells[i].isAbsent) line += "\"" + Replaced(record.TextOf(i), "\"", "\"\"") + "\"";
  }
  return line + "\n";
}

bool SameCells(const CsvRecord& one, const CsvRecord& other) {
  if (one.bytes != other.bytes || one.cells.size() != other.cells.size()) return false;
  for (std::size_t i = 0; i < one.cells.size(); ++i) {
    if (one.cells[i].begin != other.cells[i].begin || one.cells[i].isAbsent != other.cells[i].isAbsent) return false;
  }
  return true;
}

}  // namespace

FUZZ(input) {
  const Content content = Read(input);
  Text written;
  std::int64_t line = 0;
  for (const CsvRecord& record : content.records) {
    Hold(record.line > line, "records begin in lines that follow each other");
    line = record.line;
    CheckCells(record);
    written += InQuotes(record);
  }

  const Content again = Read(written);

  Hold(again.isWhole, "what is written in quotes reads to its end");
  Hold(again.records.size() == content.records.size(), "as many records are read as were written");
  for (std::size_t i = 0; i < again.records.size(); ++i) {
    Hold(SameCells(again.records[i], content.records[i]), "a record is read as it was written");
  }
}
