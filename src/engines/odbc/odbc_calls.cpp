#include "engines/odbc/odbc_calls.h"

#include <algorithm>
#include <array>

namespace zenqay {
namespace {

constexpr std::size_t kPiece = 4096;    // characters of a long field that are taken at once
constexpr std::size_t kName = 512;      // longer than any name of a column, catalog or product
constexpr std::size_t kMessage = 2048;  // drivers cut their messages at 512 or 1024

using NarrowBuffer = std::array<SQLCHAR, kMessage>;
using WideBuffer = std::array<SQLWCHAR, kMessage>;

SQLCHAR* Narrow(const Text& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));  // ODBC's interface; it reads only
}

/// What stands in a buffer up to its terminator.
template <typename Buffer>
std::size_t LengthIn(const Buffer& buffer) {
  return static_cast<std::size_t>(std::find(buffer.begin(), buffer.end(), 0) - buffer.begin());
}

Text TextIn(const NarrowBuffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.data()), LengthIn(buffer)};
}

Text TextIn(const WideBuffer& buffer, Utf16& utf16) {
  Text text;
  utf16.AppendNarrow(buffer.data(), LengthIn(buffer), text);
  return text;
}

/// How many units of a piece hold text: a piece that is not the last one is full but for its terminator.
std::size_t UnitsOf(SQLLEN bytes, std::size_t unit, std::size_t room) {
  const bool isFull = bytes == SQL_NO_TOTAL || static_cast<std::size_t>(bytes) / unit >= room;
  return isFull ? room - 1 : static_cast<std::size_t>(bytes) / unit;
}

}  // namespace

SQLRETURN OdbcCalls::DriverConnect(SQLHDBC connection, const Text& driverString) {
  if (!isWide_) {
    return SQLDriverConnect(connection, nullptr, Narrow(driverString), static_cast<SQLSMALLINT>(driverString.size()),
                            nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  }
  utf16_.Widen(driverString, wide_);
  return SQLDriverConnectW(connection, nullptr, wide_.data(), static_cast<SQLSMALLINT>(wide_.size()), nullptr, 0,
                           nullptr, SQL_DRIVER_NOPROMPT);
}

SQLRETURN OdbcCalls::ExecDirect(SQLHSTMT statement, const Text& text) {
  if (!isWide_) return SQLExecDirect(statement, Narrow(text), static_cast<SQLINTEGER>(text.size()));
  utf16_.Widen(text, wide_);
  return SQLExecDirectW(statement, wide_.data(), static_cast<SQLINTEGER>(wide_.size()));
}

SQLRETURN OdbcCalls::DescribeColumn(SQLHSTMT statement, SQLUSMALLINT column, Text& name, SQLSMALLINT& type) {
  SQLSMALLINT length = 0;
  SQLULEN size = 0;
  SQLSMALLINT digits = 0;
  SQLSMALLINT nullable = 0;
  if (!isWide_) {
    NarrowBuffer buffer{};
    const SQLRETURN result =
        SQLDescribeCol(statement, column, buffer.data(), kName, &length, &type, &size, &digits, &nullable);
    name = TextIn(buffer);
    return result;
  }
  WideBuffer buffer{};
  const SQLRETURN result =
      SQLDescribeColW(statement, column, buffer.data(), kName, &length, &type, &size, &digits, &nullable);
  name = TextIn(buffer, utf16_);
  return result;
}

SQLRETURN OdbcCalls::GetText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull) {
  field.clear();
  isNull = false;
  return isWide_ ? GetWideText(statement, column, field, isNull) : GetNarrowText(statement, column, field, isNull);
}

SQLRETURN OdbcCalls::GetNarrowText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull) {
  for (;;) {
    std::array<char, kPiece> piece;
    SQLLEN bytes = 0;
    const SQLRETURN result = SQLGetData(statement, column, SQL_C_CHAR, piece.data(), piece.size(), &bytes);
    if (!SQL_SUCCEEDED(result)) return result == SQL_NO_DATA ? SQL_SUCCESS : result;
    isNull = bytes == SQL_NULL_DATA;
    if (isNull) return SQL_SUCCESS;
    field.append(piece.data(), UnitsOf(bytes, 1, piece.size()));
    if (result == SQL_SUCCESS) return SQL_SUCCESS;
  }
}

/// The pieces are put together before they are converted: one may end between the halves of a surrogate pair.
SQLRETURN OdbcCalls::GetWideText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull) {
  wide_.clear();
  SQLRETURN result = SQL_SUCCESS_WITH_INFO;
  while (result == SQL_SUCCESS_WITH_INFO) {
    std::array<SQLWCHAR, kPiece> piece;
    SQLLEN bytes = 0;
    result = SQLGetData(statement, column, SQL_C_WCHAR, piece.data(), sizeof piece, &bytes);
    if (result == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(result)) return result;
    isNull = bytes == SQL_NULL_DATA;
    if (isNull) return SQL_SUCCESS;
    wide_.insert(wide_.end(), piece.begin(), piece.begin() + UnitsOf(bytes, sizeof(SQLWCHAR), piece.size()));
  }
  utf16_.AppendNarrow(wide_.data(), wide_.size(), field);
  return SQL_SUCCESS;
}

SQLRETURN OdbcCalls::GetDiagnostic(SQLSMALLINT handleType, SQLHANDLE handle, SQLSMALLINT number, Text& sqlState,
                                   Text& message) {
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  if (!isWide_) {
    NarrowBuffer state{};
    NarrowBuffer buffer{};
    const SQLRETURN result =
        SQLGetDiagRec(handleType, handle, number, state.data(), &native, buffer.data(), kMessage, &length);
    sqlState = TextIn(state);
    message = TextIn(buffer);
    return result;
  }
  WideBuffer state{};
  WideBuffer buffer{};
  const SQLRETURN result =
      SQLGetDiagRecW(handleType, handle, number, state.data(), &native, buffer.data(), kMessage, &length);
  sqlState = TextIn(state, utf16_);
  message = TextIn(buffer, utf16_);
  return result;
}

SQLRETURN OdbcCalls::GetInfo(SQLHDBC connection, SQLUSMALLINT what, Text& answer) {
  SQLSMALLINT bytes = 0;
  if (!isWide_) {
    NarrowBuffer buffer{};
    const SQLRETURN result = SQLGetInfo(connection, what, buffer.data(), kName, &bytes);
    answer = TextIn(buffer);
    return result;
  }
  WideBuffer buffer{};
  const SQLRETURN result = SQLGetInfoW(connection, what, buffer.data(), kName * sizeof(SQLWCHAR), &bytes);
  answer = TextIn(buffer, utf16_);
  return result;
}

SQLRETURN OdbcCalls::PutCatalog(SQLHDBC connection, const Text& name) {
  if (!isWide_) {
    return SQLSetConnectAttr(connection, SQL_ATTR_CURRENT_CATALOG, Narrow(name), static_cast<SQLINTEGER>(name.size()));
  }
  utf16_.Widen(name, wide_);
  wide_.push_back(0);
  const auto bytes = static_cast<SQLINTEGER>((wide_.size() - 1) * sizeof(SQLWCHAR));
  return SQLSetConnectAttrW(connection, SQL_ATTR_CURRENT_CATALOG, wide_.data(), bytes);
}

SQLRETURN OdbcCalls::GetCatalog(SQLHDBC connection, Text& name) {
  SQLINTEGER bytes = 0;
  if (!isWide_) {
    NarrowBuffer buffer{};
    const SQLRETURN result = SQLGetConnectAttr(connection, SQL_ATTR_CURRENT_CATALOG, buffer.data(), kName, &bytes);
    name = TextIn(buffer);
    return result;
  }
  WideBuffer buffer{};
  const SQLRETURN result =
      SQLGetConnectAttrW(connection, SQL_ATTR_CURRENT_CATALOG, buffer.data(), kName * sizeof(SQLWCHAR), &bytes);
  name = TextIn(buffer, utf16_);
  return result;
}

}  // namespace zenqay
