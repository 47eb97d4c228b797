// The floor of a job on an ODBC database: the same statements in a plain loop.
//
//     odbc_floor CONNECTIONSTRING STATEMENTS
//
// STATEMENTS holds the texts as the database gets them, each ended by a NUL. They are ASCII.
#include <sql.h>
#include <sqlext.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <vector>

namespace {

/// ASCII as the Unicode driver's wide calls take it.
void Widen(const char* text, std::vector<SQLWCHAR>& wide) {
  wide.assign(text, text + strlen(text));
}

int Execute(SQLHSTMT statement, const char* text, std::vector<SQLWCHAR>& wide) {
  Widen(text, wide);
  const SQLRETURN result = SQLExecDirectW(statement, wide.data(), static_cast<SQLINTEGER>(wide.size()));
  if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) {
    fprintf(stderr, "failed: %s\n", text);
    return 1;
  }
  SQLLEN rows = 0;
  SQLRowCount(statement, &rows);
  SQLFreeStmt(statement, SQL_CLOSE);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::vector<SQLWCHAR> wide;
  SQLHANDLE environment = nullptr;
  SQLHANDLE connection = nullptr;
  SQLHANDLE statement = nullptr;
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
  SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
  Widen(argv[1], wide);
  const SQLRETURN connected = SQLDriverConnectW(connection, nullptr, wide.data(), static_cast<SQLSMALLINT>(wide.size()),
                                                nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(connected)) return 1;
  SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);

  FILE* statements = fopen(argv[2], "rb");
  if (statements == nullptr) return 1;
  char* text = nullptr;
  size_t room = 0;
  while (getdelim(&text, &room, '\0', statements) > 0) {
    if (Execute(statement, text, wide) != 0) return 1;
  }
  free(text);
  fclose(statements);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  SQLDisconnect(connection);
  SQLFreeHandle(SQL_HANDLE_DBC, connection);
  SQLFreeHandle(SQL_HANDLE_ENV, environment);
  return 0;
}
