#include "engines/odbc/odbc_calls.h"

#include <sqlucode.h>

#include <algorithm>
#include <array>

#include "base/numbers.h"
#include "engines/odbc/utf16.h"

namespace zenqay {
namespace {

constexpr std::size_t kPiece = 4096;  // units of a long field that are taken at once
constexpr std::size_t kRoom = 1024;   // units; few names and messages need more

/// Texts as a driver takes and gives them that has the narrow calls only.
class NarrowTexts {
 public:
  using Unit = SQLCHAR;

  static constexpr SQLSMALLINT kFieldType = SQL_C_CHAR;
  static constexpr auto kDriverConnect = &SQLDriverConnect;
  static constexpr auto kExecDirect = &SQLExecDirect;
  static constexpr auto kPrepare = &SQLPrepare;
  static constexpr auto kDescribeColumn = &SQLDescribeCol;
  static constexpr auto kColumns = &SQLColumns;
  static constexpr auto kStatistics = &SQLStatistics;
  static constexpr auto kGetDiagnostic = &SQLGetDiagRec;
  static constexpr auto kGetInfo = &SQLGetInfo;
  static constexpr auto kSetConnectAttribute = &SQLSetConnectAttr;
  static constexpr auto kGetConnectAttribute = &SQLGetConnectAttr;

  /// The text with its terminator, and its length without.
  std::pair<Unit*, std::size_t> Passed(const Text& text) {
    return {reinterpret_cast<Unit*>(const_cast<char*>(text.c_str())), text.size()};  // ODBC's interface; it reads only
  }

  void Append(const Unit* units, std::size_t length, Text& text) {
    text.append(reinterpret_cast<const char*>(units), length);
  }
};

/// The same for the wide calls.
class WideTexts {
 public:
  using Unit = SQLWCHAR;

  static constexpr SQLSMALLINT kFieldType = SQL_C_WCHAR;
  static constexpr auto kDriverConnect = &SQLDriverConnectW;
  static constexpr auto kExecDirect = &SQLExecDirectW;
  static constexpr auto kPrepare = &SQLPrepareW;
  static constexpr auto kDescribeColumn = &SQLDescribeColW;
  static constexpr auto kColumns = &SQLColumnsW;
  static constexpr auto kStatistics = &SQLStatisticsW;
  static constexpr auto kGetDiagnostic = &SQLGetDiagRecW;
  static constexpr auto kGetInfo = &SQLGetInfoW;
  static constexpr auto kSetConnectAttribute = &SQLSetConnectAttrW;
  static constexpr auto kGetConnectAttribute = &SQLGetConnectAttrW;

  std::pair<Unit*, std::size_t> Passed(const Text& text) {
    Utf16::Widen(text, passed_);
    passed_.push_back(0);
    return {passed_.data(), passed_.size() - 1};
  }

  void Append(const Unit* units, std::size_t length, Text& text) { Utf16::AppendNarrow(units, length, text); }

 private:
  WideText passed_;  // kept for its memory
};

template <typename Texts>
class CallsIn : public OdbcCalls {
 public:
  /// By its terminator: the length of this argument has 16 bits.
  SQLRETURN DriverConnect(SQLHDBC connection, const Text& driverString) override {
    const auto [text, length] = texts_.Passed(driverString);
    return Texts::kDriverConnect(connection, nullptr, text, SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  }

  SQLRETURN ExecDirect(SQLHSTMT statement, const Text& sql) override {
    const auto [text, length] = texts_.Passed(sql);
    return Texts::kExecDirect(statement, text, Fitting(length));
  }

  SQLRETURN Prepare(SQLHSTMT statement, const Text& sql) override {
    const auto [text, length] = texts_.Passed(sql);
    return Texts::kPrepare(statement, text, Fitting(length));
  }

  SQLRETURN DescribeColumn(SQLHSTMT statement, SQLUSMALLINT column, Text& name, SQLSMALLINT& type) override {
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    return Read(name, [&](Unit* buffer, SQLSMALLINT room, std::size_t& length) {
      SQLSMALLINT units = 0;
      const SQLRETURN result =
          Texts::kDescribeColumn(statement, column, buffer, room, &units, &type, &size, &digits, &nullable);
      length = Counted(units);
      return result;
    });
  }

  SQLRETURN Columns(SQLHSTMT statement, const Text& table) override {
    const auto [name, length] = texts_.Passed(table);
    return Texts::kColumns(statement, nullptr, 0, nullptr, 0, name, SQL_NTS, nullptr, 0);
  }

  SQLRETURN UniqueIndexes(SQLHSTMT statement, const Text& schema, const Text& table) override {
    Texts schemas;
    const auto [of, ofLength] = schemas.Passed(schema);
    const auto [name, length] = texts_.Passed(table);
    Unit* const ofOrAny = schema.empty() ? nullptr : of;
    return Texts::kStatistics(statement, nullptr, 0, ofOrAny, SQL_NTS, name, SQL_NTS, SQL_INDEX_UNIQUE, SQL_QUICK);
  }

  SQLRETURN GetText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull) override {
    field.clear();
    units_.clear();
    SQLRETURN result = SQL_SUCCESS_WITH_INFO;
    while (result == SQL_SUCCESS_WITH_INFO) {
      std::array<Unit, kPiece> piece;
      SQLLEN bytes = 0;
      result = SQLGetData(statement, column, Texts::kFieldType, piece.data(), sizeof piece, &bytes);
      if (result == SQL_NO_DATA) break;
      if (!SQL_SUCCEEDED(result)) return result;
      isNull = bytes == SQL_NULL_DATA;
      if (isNull) return SQL_SUCCESS;
      units_.insert(units_.end(), piece.begin(), piece.begin() + UnitsOf(bytes));
    }
    // As a whole: a piece may end between two units of one character.
    texts_.Append(units_.data(), units_.size(), field);
    return SQL_SUCCESS;
  }

  SQLRETURN GetDiagnostic(SQLSMALLINT handleType, SQLHANDLE handle, SQLSMALLINT number, Diagnostic& record) override {
    std::array<Unit, 6> state{};
    SQLINTEGER native = 0;
    const SQLRETURN result = Read(record.message, [&](Unit* buffer, SQLSMALLINT room, std::size_t& length) {
      SQLSMALLINT units = 0;
      const SQLRETURN read =
          Texts::kGetDiagnostic(handleType, handle, number, state.data(), &native, buffer, room, &units);
      length = Counted(units);
      return read;
    });
    record.sqlState.clear();
    texts_.Append(state.data(), state.size() - 1, record.sqlState);
    record.nativeError = native;
    return result;
  }

  SQLRETURN GetInfo(SQLHDBC connection, SQLUSMALLINT what, Text& answer) override {
    return Read(answer, [&](Unit* buffer, SQLSMALLINT room, std::size_t& length) {
      SQLSMALLINT bytes = 0;
      const SQLRETURN result =
          Texts::kGetInfo(connection, what, buffer, static_cast<SQLSMALLINT>(room * sizeof(Unit)), &bytes);
      length = Counted(bytes) / sizeof(Unit);
      return result;
    });
  }

  SQLRETURN PutCatalog(SQLHDBC connection, const Text& name) override {
    const auto [text, length] = texts_.Passed(name);
    return Texts::kSetConnectAttribute(connection, SQL_ATTR_CURRENT_CATALOG, text, Fitting(length * sizeof(Unit)));
  }

  SQLRETURN GetCatalog(SQLHDBC connection, Text& name) override {
    return Read(name, [&](Unit* buffer, SQLSMALLINT room, std::size_t& length) {
      SQLINTEGER bytes = 0;
      const auto bytesOfRoom = static_cast<SQLINTEGER>(room * sizeof(Unit));
      const SQLRETURN result =
          Texts::kGetConnectAttribute(connection, SQL_ATTR_CURRENT_CATALOG, buffer, bytesOfRoom, &bytes);
      length = Counted(bytes) / sizeof(Unit);
      return result;
    });
  }

 private:
  using Unit = typename Texts::Unit;

  /// Lengths have 32 bits where they are not read off the terminator. Raises 6 for a longer text.
  static SQLINTEGER Fitting(std::size_t length) { return FitInt32(static_cast<std::int64_t>(length)); }

  template <typename Length>
  static std::size_t Counted(Length length) {
    return length > 0 ? static_cast<std::size_t>(length) : 0;
  }

  /// Reads a name or a message: `call` puts it into a buffer of `room` units and tells its whole length in units. One
  /// that was cut is read again.
  template <typename Call>
  SQLRETURN Read(Text& text, Call call) {
    constexpr std::size_t kMostRoom = 32767 / sizeof(Unit);
    units_.assign(kRoom, 0);
    std::size_t length = 0;
    SQLRETURN result = call(units_.data(), static_cast<SQLSMALLINT>(units_.size()), length);
    if (SQL_SUCCEEDED(result) && length >= units_.size()) {
      units_.assign(std::min(length + 1, kMostRoom), 0);
      result = call(units_.data(), static_cast<SQLSMALLINT>(units_.size()), length);
    }
    const auto end = std::find(units_.begin(), units_.end(), 0);
    text.clear();
    texts_.Append(units_.data(), static_cast<std::size_t>(end - units_.begin()), text);
    return result;
  }

  /// How many units of a piece hold text: a piece that is not the last one is full but for its terminator.
  static std::ptrdiff_t UnitsOf(SQLLEN bytes) {
    const auto units = static_cast<std::size_t>(bytes) / sizeof(Unit);
    const bool isFull = bytes == SQL_NO_TOTAL || units >= kPiece;
    return static_cast<std::ptrdiff_t>(isFull ? kPiece - 1 : units);
  }

  Texts texts_;
  std::vector<Unit> units_;  // kept for its memory
};

}  // namespace

std::unique_ptr<OdbcCalls> CallsOf(CharacterWidth width) {
  if (width == CharacterWidth::Wide) return std::make_unique<CallsIn<WideTexts>>();
  return std::make_unique<CallsIn<NarrowTexts>>();
}

}  // namespace zenqay
