// An ODBC driver for the tests: it has the narrow calls only, allows one active statement on a connection, and answers
// what the statement's text asks for. Its connection string:
//
//     Driver=/path/to/libzenqay_test_driver.so;Record=FILE;Catalogs=Y;DBMS=NAME;Refuse=1;PWD=secret
//
// Record: every call that matters is appended to the file, a line each; with Limits, the time limits too. Catalogs:
// whether it has catalogs. DBMS: its database's name. Refuse: the connection fails, with the password in the
// diagnostics.
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Diagnostic {
  const char* state;
  std::string text;
  SQLINTEGER native = 0;
};

struct Handle {
  std::vector<Diagnostic> diagnostics;
};

struct ConnectionHandle : Handle {
  std::string string;
  std::string catalog = "first";
  void* active = nullptr;  // the statement with an open result
  std::string loginTimeout = "none";
};

struct Column {
  const char* name;
  SQLSMALLINT type;
};

struct StatementHandle : Handle {
  ConnectionHandle* connection = nullptr;
  std::vector<Column> columns;
  int rowsLeft = 0;
  SQLLEN rowCount = -1;
  int resultsLeft = 0;
  bool laterFails = false;
  std::size_t given = 0;  // how much of the long text
};

const std::string kLongText = [] {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += "größe ";
  return text;
}();

const std::string kLongName(3000, 'N');

std::string ValueOf(const std::string& string, const std::string& key) {
  const std::size_t at = string.find(key + "=");
  if (at == std::string::npos) return "";
  const std::size_t from = at + key.size() + 1;
  return string.substr(from, string.find(';', from) - from);
}

void Record(const ConnectionHandle& connection, const std::string& line) {
  const std::string path = ValueOf(connection.string, "Record");
  if (path.empty()) return;
  std::FILE* file = std::fopen(path.c_str(), "a");
  if (file == nullptr) return;
  std::fputs((line + "\n").c_str(), file);
  std::fclose(file);
}

/// An attribute that is a number.
std::string NumberText(SQLPOINTER value) {
  return std::to_string(reinterpret_cast<SQLULEN>(value));
}

void RecordLimit(const ConnectionHandle& connection, const std::string& line) {
  if (!ValueOf(connection.string, "Limits").empty()) Record(connection, line);
}

SQLRETURN Fail(Handle& handle, std::vector<Diagnostic> diagnostics) {
  handle.diagnostics = std::move(diagnostics);
  return SQL_ERROR;
}

std::string TextOf(const SQLCHAR* text, SQLINTEGER length) {
  const char* from = reinterpret_cast<const char*>(text);
  return length == SQL_NTS ? std::string(from) : std::string(from, static_cast<std::size_t>(length));
}

template <typename Length>
void Give(const std::string& text, SQLPOINTER buffer, Length room, Length* length) {
  if (length != nullptr) *length = static_cast<Length>(text.size());
  if (buffer == nullptr || room <= 0) return;
  const std::size_t size = std::min(text.size(), static_cast<std::size_t>(room) - 1);
  std::memcpy(buffer, text.data(), size);
  static_cast<char*>(buffer)[size] = '\0';
}

Handle& HandleOf(SQLHANDLE handle) {
  return *static_cast<Handle*>(handle);
}

void Close(StatementHandle& statement) {
  statement.columns.clear();
  if (statement.connection->active == &statement) statement.connection->active = nullptr;
}

StatementHandle& StatementOf(SQLHANDLE handle) {
  return static_cast<StatementHandle&>(HandleOf(handle));
}

ConnectionHandle& ConnectionOf(SQLHANDLE handle) {
  return static_cast<ConnectionHandle&>(HandleOf(handle));
}

SQLRETURN OpenQuery(StatementHandle& statement, int rows) {
  statement.columns = {{"NUMBER", SQL_INTEGER},
                       {"AMOUNT", SQL_DECIMAL},
                       {"LONG", SQL_LONGVARCHAR},
                       {"MOMENT", SQL_TYPE_TIMESTAMP},
                       {"NOTHING", SQL_VARCHAR}};
  statement.rowsLeft = rows;
  statement.rowCount = rows;
  statement.connection->active = &statement;
  return SQL_SUCCESS;
}

SQLRETURN GiveLongText(StatementHandle& statement, SQLPOINTER buffer, SQLLEN room, SQLLEN* length) {
  const std::size_t left = kLongText.size() - statement.given;
  const std::size_t size = std::min(left, static_cast<std::size_t>(room) - 1);
  std::memcpy(buffer, kLongText.data() + statement.given, size);
  static_cast<char*>(buffer)[size] = '\0';
  statement.given += size;
  if (size == left) {
    *length = static_cast<SQLLEN>(left);
    return SQL_SUCCESS;
  }
  *length = SQL_NO_TOTAL;
  return SQL_SUCCESS_WITH_INFO;
}

}  // namespace

extern "C" {

SQLRETURN SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  if (type == SQL_HANDLE_STMT) {
    auto* const statement = new StatementHandle;
    statement->connection = &ConnectionOf(parent);
    *handle = static_cast<Handle*>(statement);
  } else if (type == SQL_HANDLE_DBC) {
    *handle = static_cast<Handle*>(new ConnectionHandle);
  } else {
    *handle = new Handle;
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
  if (type == SQL_HANDLE_STMT) {
    delete &StatementOf(handle);
  } else if (type == SQL_HANDLE_DBC) {
    delete &ConnectionOf(handle);
  } else {
    delete &HandleOf(handle);
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}

SQLRETURN SQLSetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  if (attribute == SQL_ATTR_LOGIN_TIMEOUT) ConnectionOf(handle).loginTimeout = NumberText(value);
  if (attribute != SQL_ATTR_CURRENT_CATALOG) return SQL_SUCCESS;
  ConnectionHandle& connection = ConnectionOf(handle);
  connection.catalog = TextOf(static_cast<SQLCHAR*>(value), length);
  Record(connection, "catalog " + connection.catalog);
  return SQL_SUCCESS;
}

SQLRETURN SQLGetConnectAttr(SQLHDBC handle, SQLINTEGER, SQLPOINTER value, SQLINTEGER room, SQLINTEGER* length) {
  Give(ConnectionOf(handle).catalog, value, room, length);
  return SQL_SUCCESS;
}

SQLRETURN SQLDriverConnect(SQLHDBC handle, SQLHWND, SQLCHAR* text, SQLSMALLINT length, SQLCHAR*, SQLSMALLINT,
                           SQLSMALLINT*, SQLUSMALLINT) {
  ConnectionHandle& connection = ConnectionOf(handle);
  connection.string = TextOf(text, length);
  RecordLimit(connection, "login timeout " + connection.loginTimeout);
  Record(connection, "connect");
  if (ValueOf(connection.string, "Refuse").empty()) return SQL_SUCCESS;
  const std::string password = ValueOf(connection.string, "PWD");
  return Fail(connection, {{"28000", "login with " + password + " refused"}, {"08001", "tried " + connection.string}});
}

SQLRETURN SQLDisconnect(SQLHDBC handle) {
  Record(ConnectionOf(handle), "disconnect");
  return SQL_SUCCESS;
}

SQLRETURN SQLGetInfo(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT room, SQLSMALLINT* length) {
  const ConnectionHandle& connection = ConnectionOf(handle);
  switch (what) {
    case SQL_DBMS_NAME:
      Give(ValueOf(connection.string, "DBMS"), value, room, length);
      return SQL_SUCCESS;
    case SQL_CATALOG_NAME:
      Give(ValueOf(connection.string, "Catalogs"), value, room, length);
      return SQL_SUCCESS;
    case SQL_DRIVER_ODBC_VER:
      Give(std::string("03.52"), value, room, length);
      return SQL_SUCCESS;
    default:
      return SQL_ERROR;
  }
}

SQLRETURN SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
  if (attribute == SQL_ATTR_QUERY_TIMEOUT) {
    RecordLimit(*StatementOf(handle).connection, "query timeout " + NumberText(value));
  }
  return SQL_SUCCESS;
}

SQLRETURN SQLGetStmtAttr(SQLHSTMT, SQLINTEGER, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
  *static_cast<SQLPOINTER*>(value) = nullptr;
  return SQL_SUCCESS;
}

SQLRETURN SQLExecDirect(SQLHSTMT handle, SQLCHAR* text, SQLINTEGER length) {
  StatementHandle& statement = StatementOf(handle);
  const std::string sql = TextOf(text, length);
  Record(*statement.connection, "execute " + sql);
  statement.diagnostics.clear();
  if (statement.connection->active != nullptr) return Fail(statement, {{"HY000", "another statement is active"}});
  statement.columns.clear();
  statement.rowCount = -1;
  statement.resultsLeft = 0;
  if (sql.starts_with("UPDATE NONE")) return SQL_NO_DATA;
  if (sql.starts_with("UPDATE TWICE")) {
    const std::string password = ValueOf(statement.connection->string, "PWD");
    return Fail(statement,
                {{"23000", "twice", 2627}, {"01000", "said " + password, 3621}, {"HY000", "and a\r\nthird\n"}});
  }
  if (sql == "SELECT LONG NAME") {
    OpenQuery(statement, 0);
    statement.columns[0].name = kLongName.c_str();
    return SQL_SUCCESS;
  }
  if (sql == "UPDATE LONG") return Fail(statement, {{"HY000", kLongName}});
  if (sql.starts_with("SELECT")) return OpenQuery(statement, sql == "SELECT EMPTY" ? 0 : 2);
  statement.rowCount = 3;
  if (sql.starts_with("UPDATE BATCH")) statement.resultsLeft = 2;
  statement.laterFails = sql == "UPDATE BATCH FAILS";
  if (!sql.starts_with("UPDATE INFO")) return SQL_SUCCESS;
  statement.diagnostics = {{"01000", "by the way"}};
  return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN SQLRowCount(SQLHSTMT handle, SQLLEN* count) {
  StatementHandle& statement = StatementOf(handle);
  Record(*statement.connection, "count");
  statement.diagnostics.clear();
  *count = statement.rowCount;
  return SQL_SUCCESS;
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count) {
  *count = static_cast<SQLSMALLINT>(StatementOf(handle).columns.size());
  return SQL_SUCCESS;
}

SQLRETURN SQLMoreResults(SQLHSTMT handle) {
  StatementHandle& statement = StatementOf(handle);
  if (statement.resultsLeft == 0) {
    Close(statement);
    return SQL_NO_DATA;
  }
  --statement.resultsLeft;
  Record(*statement.connection, "next result");
  if (statement.laterFails && statement.resultsLeft == 0) return Fail(statement, {{"22003", "later"}});
  return SQL_SUCCESS;
}

SQLRETURN SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT column, SQLCHAR* name, SQLSMALLINT room, SQLSMALLINT* length,
                         SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits, SQLSMALLINT* nullable) {
  const Column& described = StatementOf(handle).columns[column - 1u];
  Give(std::string(described.name), name, room, length);
  *type = described.type;
  *size = 0;
  *digits = 0;
  *nullable = SQL_NULLABLE;
  return SQL_SUCCESS;
}

SQLRETURN SQLFetch(SQLHSTMT handle) {
  StatementHandle& statement = StatementOf(handle);
  if (statement.rowsLeft == 0) return SQL_NO_DATA;
  --statement.rowsLeft;
  statement.given = 0;
  return SQL_SUCCESS;
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT, SQLPOINTER buffer, SQLLEN room,
                     SQLLEN* length) {
  StatementHandle& statement = StatementOf(handle);
  switch (column) {
    case 1:
      *static_cast<SQLINTEGER*>(buffer) = statement.rowsLeft;
      *length = sizeof(SQLINTEGER);
      return SQL_SUCCESS;
    case 2:
      *static_cast<double*>(buffer) = 12.5;
      *length = sizeof(double);
      return SQL_SUCCESS;
    case 3:
      return GiveLongText(statement, buffer, room, length);
    case 4:
      *static_cast<SQL_TIMESTAMP_STRUCT*>(buffer) = {2004, 1, 31, 10, 11, 12, 500000000};
      *length = sizeof(SQL_TIMESTAMP_STRUCT);
      return SQL_SUCCESS;
    default:
      *length = SQL_NULL_DATA;
      return SQL_SUCCESS;
  }
}

SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT) {
  Close(StatementOf(handle));
  return SQL_SUCCESS;
}

SQLRETURN SQLCloseCursor(SQLHSTMT handle) {
  return SQLFreeStmt(handle, SQL_CLOSE);
}

SQLRETURN SQLEndTran(SQLSMALLINT, SQLHANDLE, SQLSMALLINT) {
  return SQL_SUCCESS;
}

SQLRETURN SQLGetDiagRec(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLCHAR* state, SQLINTEGER* native,
                        SQLCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
  const std::vector<Diagnostic>& diagnostics = HandleOf(handle).diagnostics;
  if (number < 1 || static_cast<std::size_t>(number) > diagnostics.size()) return SQL_NO_DATA;
  const Diagnostic& diagnostic = diagnostics[number - 1u];
  if (state != nullptr) std::strcpy(reinterpret_cast<char*>(state), diagnostic.state);
  if (native != nullptr) *native = diagnostic.native;
  Give(diagnostic.text, text, room, length);
  return SQL_SUCCESS;
}

SQLRETURN SQLGetDiagField(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT, SQLSMALLINT*) {
  return SQL_NO_DATA;
}

}  // extern "C"
