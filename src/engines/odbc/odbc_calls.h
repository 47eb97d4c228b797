// The ODBC calls that carry texts, in the one character width that a driver speaks.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include "engines/odbc/driver_manager.h"
#include "engines/odbc/utf16.h"

namespace zenqay {

/// Every operation returns what the call returned; texts are UTF-8. What is given back means nothing after a failure.
class OdbcCalls {
 public:
  explicit OdbcCalls(CharacterWidth width) : isWide_(width == CharacterWidth::Wide) {}

  SQLRETURN DriverConnect(SQLHDBC connection, const Text& driverString);
  SQLRETURN ExecDirect(SQLHSTMT statement, const Text& text);
  SQLRETURN DescribeColumn(SQLHSTMT statement, SQLUSMALLINT column, Text& name, SQLSMALLINT& type);

  /// The next piece of a field of the current row, appended to `piece`. SQL_SUCCESS_WITH_INFO when more follow.
  SQLRETURN GetText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull);

  SQLRETURN GetDiagnostic(SQLSMALLINT handleType, SQLHANDLE handle, SQLSMALLINT number, Text& sqlState, Text& message);
  SQLRETURN GetInfo(SQLHDBC connection, SQLUSMALLINT what, Text& answer);
  SQLRETURN PutCatalog(SQLHDBC connection, const Text& name);
  SQLRETURN GetCatalog(SQLHDBC connection, Text& name);

 private:
  SQLRETURN GetWideText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull);
  SQLRETURN GetNarrowText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull);

  bool isWide_;
  Utf16 utf16_;
  WideText wide_;  // kept for its memory
};

}  // namespace zenqay
