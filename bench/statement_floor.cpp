// The floor of a job on the embedded engine: the same statements, by sqlite3_exec, on the same settings.
//
//     statement_floor DATABASE STATEMENTS
//
// STATEMENTS holds the texts as the engine gets them, each ended by a NUL; an empty one does nothing.
#include <sqlite3.h>
#include <stdio.h>
#include <stdlib.h>

namespace {

int WaitWithoutLimit(void*, int) {
  return sqlite3_sleep(1) >= 0;
}

int Execute(sqlite3* database, const char* statement) {
  char* fault = nullptr;
  if (sqlite3_exec(database, statement, nullptr, nullptr, &fault) == SQLITE_OK) return 0;
  fprintf(stderr, "%s: %s\n", statement, fault);
  sqlite3_free(fault);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  sqlite3* database = nullptr;
  if (sqlite3_open_v2(argv[1], &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) return 1;
  sqlite3_busy_handler(database, WaitWithoutLimit, nullptr);
  if (Execute(database, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL") != 0) return 1;

  FILE* statements = fopen(argv[2], "rb");
  if (statements == nullptr) return 1;
  char* statement = nullptr;
  size_t room = 0;
  while (getdelim(&statement, &room, '\0', statements) > 0) {
    if (Execute(database, statement) != 0) return 1;
  }
  free(statement);
  fclose(statements);
  return sqlite3_close(database) == SQLITE_OK ? 0 : 1;
}
