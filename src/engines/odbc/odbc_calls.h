// The ODBC calls that carry texts, in the one character width that a driver speaks.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <memory>

#include "engines/odbc/driver_manager.h"

namespace zenqay {

/// One diagnostic record.
struct Diagnostic {
  Text sqlState;
  Text message;
  std::int32_t nativeError = 0;
};

/// Every operation returns what the call returned; texts are UTF-8. What is given back means nothing after a failure.
class OdbcCalls {
 public:
  virtual ~OdbcCalls() = default;

  virtual SQLRETURN DriverConnect(SQLHDBC connection, const Text& driverString) = 0;
  virtual SQLRETURN ExecDirect(SQLHSTMT statement, const Text& text) = 0;
  virtual SQLRETURN Prepare(SQLHSTMT statement, const Text& text) = 0;
  virtual SQLRETURN DescribeColumn(SQLHSTMT statement, SQLUSMALLINT column, Text& name, SQLSMALLINT& type) = 0;

  /// Results that describe a table's columns, and its unique indexes. A schema that is empty stands for all.
  virtual SQLRETURN Columns(SQLHSTMT statement, const Text& table) = 0;
  virtual SQLRETURN UniqueIndexes(SQLHSTMT statement, const Text& schema, const Text& table) = 0;

  /// A field of the current row as a whole.
  virtual SQLRETURN GetText(SQLHSTMT statement, SQLUSMALLINT column, Text& field, bool& isNull) = 0;

  virtual SQLRETURN GetDiagnostic(SQLSMALLINT handleType, SQLHANDLE handle, SQLSMALLINT number, Diagnostic& record) = 0;
  virtual SQLRETURN GetInfo(SQLHDBC connection, SQLUSMALLINT what, Text& answer) = 0;
  virtual SQLRETURN PutCatalog(SQLHDBC connection, const Text& name) = 0;
  virtual SQLRETURN GetCatalog(SQLHDBC connection, Text& name) = 0;
};

std::unique_ptr<OdbcCalls> CallsOf(CharacterWidth width);

}  // namespace zenqay
