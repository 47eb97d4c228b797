// CSV files (RFC 4180, UTF-8), one record at a time.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "base/text_functions.h"

struct csv_parser;

namespace zenqay {

/// Where a record comes from, as the errors about it say it.
struct CsvSource {
  Text file;     // its name, without a directory
  Text classId;  // of the component that reads it
};

/// 13 for what stands in one column of one line. `column` is a name or a number.
[[noreturn]] void RaiseMismatch(const CsvSource& source, std::int64_t line, std::string_view column,
                                std::string_view what);

/// A cell for the start of such a text: in quotes with a blank behind, or how long it is when it is long.
Text Quoted(std::string_view cell);

/// A cell's place in the bytes of its record. An unquoted cell without a character is absent, a quoted one is not.
struct CsvCell {
  std::uint32_t begin = 0;
  std::uint32_t length = 0;
  bool isAbsent = false;
};

struct CsvRecord {
  std::int64_t line = 0;  // the one that the record begins in, counted from 1
  Text bytes;             // of all cells, one behind the other, without quotes and separators
  std::vector<CsvCell> cells;

  std::string_view TextOf(std::size_t cell) const {
    return std::string_view(bytes).substr(cells[cell].begin, cells[cell].length);
  }
};

/// Reads a file from its start to its end, holding one record and one chunk of the file. Lines end in LF, CR LF or CR;
/// blank lines are passed over, and so is a byte-order mark. The bytes of the cells are not looked at.
class CsvReader {
 public:
  /// Raises 53 when there is no such file, 70 without the permission, 75 for anything else that cannot be opened.
  CsvReader(const std::filesystem::path& path, Text classId);

  /// Reads the next record into `record`; false at the end of the file. Raises 13 for a broken quote and for a record
  /// of more than 16 MiB (which is how a quote that nobody closed shows in a large file), 75 when reading fails.
  bool Read(CsvRecord& record);

  /// Where the record that was read last begins, in bytes from the start of the file.
  std::uint64_t recordStart() const { return recordStart_; }

  /// Goes on at such a place, also behind a failure. From there on lines are counted from 1.
  void GoTo(std::uint64_t recordStart);

  const CsvSource& source() const { return source_; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  struct FreeParser {
    void operator()(csv_parser* parser) const;
  };
  struct Target;

  void MakeParser();
  bool Fill();
  std::string_view TakeToLineEnd();
  void CountLine(std::string_view segment);
  void Feed(std::string_view segment, Target& target);
  bool Finish(Target& target);
  void Skip(std::size_t bytes);
  [[noreturn]] void RaiseUnopened() const;
  [[noreturn]] void RaiseUnread() const;
  [[noreturn]] void RaiseBroken(const CsvRecord& record, std::string_view what) const;

  CsvSource source_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::unique_ptr<csv_parser, FreeParser> parser_;
  std::vector<char> chunk_;
  std::size_t readAtOnce_;
  std::string_view rest_;        // of the chunk, not yet parsed
  std::uint64_t restStart_ = 0;  // in bytes from the start of the file
  std::uint64_t recordStart_ = 0;
  bool atStart_ = true;
  bool behindCarriageReturn_ = false;
  std::int64_t line_ = 1;
  std::size_t recordBytes_ = 0;  // parsed of the record at hand; 0 between two records
};

}  // namespace zenqay
