#include "components/files/csv_reader.h"

#include <csv.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{64} << 10;
constexpr std::size_t kChunkBytesAtOnePlace = std::size_t{4} << 10;  // for one record here and there
constexpr std::size_t kLongestRecord = std::size_t{16} << 20;
constexpr std::size_t kParserGrowth = std::size_t{64} << 10;
constexpr std::size_t kLongestQuoted = 60;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

struct CsvReader::Target {
  CsvRecord& record;
  bool isComplete = false;

  static void AddCell(void* text, std::size_t length, void* target) {
    CsvRecord& record = static_cast<Target*>(target)->record;
    record.cells.push_back({.begin = static_cast<std::uint32_t>(record.bytes.size()),
                            .length = static_cast<std::uint32_t>(length),
                            .isAbsent = text == nullptr});
    record.bytes.append(static_cast<const char*>(text), length);
  }

  static void Complete(int, void* target) { static_cast<Target*>(target)->isComplete = true; }
};

void RaiseMismatch(const CsvSource& source, std::int64_t line, std::string_view column, std::string_view what) {
  Text about = source.file + ", line " + std::to_string(line);
  about.append(", column ").append(column).append(": ").append(what);
  throw RuntimeError(PlatformFault::TypeMismatch, about, source.classId);
}

Text Quoted(std::string_view cell) {
  if (cell.size() > kLongestQuoted) return "a cell of " + std::to_string(cell.size()) + " bytes ";
  return "\"" + Text(cell) + "\" ";
}

void CsvReader::FreeParser::operator()(csv_parser* parser) const {
  csv_free(parser);
  delete parser;
}

CsvReader::CsvReader(const std::filesystem::path& path, Text classId)
    : source_{.file = path.filename().string(), .classId = std::move(classId)},
      file_(std::fopen(path.c_str(), "rb")),
      chunk_(kChunkBytes),
      readAtOnce_(kChunkBytes) {
  if (file_ == nullptr) RaiseUnopened();
  MakeParser();
}

void CsvReader::MakeParser() {
  auto parser = std::make_unique<csv_parser>();
  if (csv_init(parser.get(), CSV_STRICT | CSV_STRICT_FINI | CSV_EMPTY_IS_NULL) != 0) throw std::bad_alloc();
  csv_set_space_func(parser.get(), [](unsigned char) { return 0; });  // blanks belong to the value
  csv_set_blk_size(parser.get(), kParserGrowth);
  parser_.reset(parser.release());
}

void CsvReader::GoTo(std::uint64_t recordStart) {
  if (std::fseek(file_.get(), static_cast<long>(recordStart), SEEK_SET) != 0) RaiseUnread();
  if (recordBytes_ != 0) MakeParser();  // a failure has left it within a record
  readAtOnce_ = kChunkBytesAtOnePlace;
  rest_ = {};
  restStart_ = recordStart;
  atStart_ = false;
  behindCarriageReturn_ = false;
  line_ = 1;
  recordBytes_ = 0;
}

bool CsvReader::Read(CsvRecord& record) {
  record.bytes.clear();
  record.cells.clear();
  Target target{record};
  while (!target.isComplete) {
    if (!Fill()) return Finish(target);
    const std::string_view segment = TakeToLineEnd();
    const bool isBlankLine = recordBytes_ == 0 && (segment == "\n" || segment == "\r");
    if (!isBlankLine) Feed(segment, target);
    CountLine(segment);
  }
  recordBytes_ = 0;
  return true;
}

/// Has something to parse at hand; false at the end of the file.
bool CsvReader::Fill() {
  while (rest_.empty()) {
    const std::size_t length = std::fread(chunk_.data(), 1, readAtOnce_, file_.get());
    if (length == 0) {
      if (std::ferror(file_.get()) == 0) return false;
      RaiseUnread();
    }
    rest_ = std::string_view(chunk_.data(), length);
    if (atStart_ && rest_.starts_with(kByteOrderMark)) Skip(kByteOrderMark.size());
    atStart_ = false;
  }
  return true;
}

/// At most one line end, and that as the last character: so no more than one record ends in what the parser gets, and
/// a record is handed on before anything behind it can fail.
std::string_view CsvReader::TakeToLineEnd() {
  const auto endBehind = [](std::string_view text, char mark) {
    const auto at = text.find(mark);
    return at == std::string_view::npos ? text : text.substr(0, at + 1);
  };
  const std::string_view segment = endBehind(endBehind(rest_, '\n'), '\r');
  Skip(segment.size());
  return segment;
}

void CsvReader::CountLine(std::string_view segment) {
  const bool endsLine = segment.back() == '\n' || segment.back() == '\r';
  const bool isSecondHalf = behindCarriageReturn_ && segment == "\n";
  if (endsLine && !isSecondHalf) ++line_;
  behindCarriageReturn_ = segment.back() == '\r';
}

void CsvReader::Feed(std::string_view segment, Target& target) {
  if (recordBytes_ == 0) {
    target.record.line = line_;
    recordStart_ = restStart_ - segment.size();
  }
  recordBytes_ += segment.size();
  const std::size_t parsed =
      csv_parse(parser_.get(), segment.data(), segment.size(), Target::AddCell, Target::Complete, &target);
  if (parsed != segment.size()) {
    const int fault = csv_error(parser_.get());
    RaiseBroken(target.record, fault == CSV_EPARSE ? "broken quote" : csv_strerror(fault));
  }
  if (!target.isComplete && recordBytes_ > kLongestRecord) {
    RaiseBroken(target.record, "the record does not end within 16 MiB");
  }
}

bool CsvReader::Finish(Target& target) {
  if (recordBytes_ == 0) return false;
  if (csv_fini(parser_.get(), Target::AddCell, Target::Complete, &target) != 0) {
    RaiseBroken(target.record, "broken quote, nothing closes it");
  }
  recordBytes_ = 0;
  return true;
}

void CsvReader::RaiseUnopened() const {
  const int fault = errno;
  if (fault == ENOENT) throw RuntimeError(PlatformFault::FileNotFound, source_.file, source_.classId);
  if (fault == EACCES) throw RuntimeError(PlatformFault::PermissionDenied, source_.file, source_.classId);
  throw RuntimeError(PlatformFault::PathAccess, source_.file + " (" + std::strerror(fault) + ")", source_.classId);
}

void CsvReader::RaiseUnread() const {
  throw RuntimeError(PlatformFault::PathAccess, source_.file + " (" + std::strerror(errno) + ")", source_.classId);
}

void CsvReader::Skip(std::size_t bytes) {
  rest_.remove_prefix(bytes);
  restStart_ += bytes;
}

void CsvReader::RaiseBroken(const CsvRecord& record, std::string_view what) const {
  RaiseMismatch(source_, record.line, std::to_string(record.cells.size() + 1), what);
}

}  // namespace zenqay
