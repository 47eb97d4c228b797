// The floor of a job on an ODBC database: the same statements on the same connections, in a plain loop.
//
//     odbc_floor CONNECTIONSTRING STATEMENTS
//
// STATEMENTS holds the texts as the database gets them, each ended by a NUL, and an empty one in front of those of each
// connection. They are ASCII.
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

/// One connection after the other, each with one statement handle.
class Session {
 public:
  Session() {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  }
  ~Session() {
    Close();
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }

  bool Open(const char* connectionString) {
    Close();
    SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_);
    Widen(connectionString, wide_);
    const auto length = static_cast<SQLSMALLINT>(wide_.size());
    const SQLRETURN result =
        SQLDriverConnectW(connection_, nullptr, wide_.data(), length, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(result)) return false;
    SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_);
    return true;
  }

  bool Execute(const char* text) {
    Widen(text, wide_);
    const SQLRETURN result = SQLExecDirectW(statement_, wide_.data(), static_cast<SQLINTEGER>(wide_.size()));
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) return false;
    SQLLEN rows = 0;
    SQLRowCount(statement_, &rows);
    SQLFreeStmt(statement_, SQL_CLOSE);
    return true;
  }

 private:
  void Close() {
    if (connection_ == nullptr) return;
    SQLFreeHandle(SQL_HANDLE_STMT, statement_);
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    connection_ = nullptr;
  }

  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
  SQLHANDLE statement_ = nullptr;
  std::vector<SQLWCHAR> wide_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  FILE* statements = fopen(argv[2], "rb");
  if (statements == nullptr) return 1;
  Session session;
  bool isSound = true;
  char* text = nullptr;
  size_t room = 0;
  while (isSound && getdelim(&text, &room, '\0', statements) > 0) {
    isSound = *text == '\0' ? session.Open(argv[1]) : session.Execute(text);
    if (!isSound) fprintf(stderr, "failed: %s\n", text);
  }
  free(text);
  fclose(statements);
  return isSound ? 0 : 1;
}
