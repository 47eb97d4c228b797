#include "localdb/local_connection.h"

#include "process/logs.h"

namespace zenqay {

void SelectDatabase(Connection& connection, std::int16_t platform, const Text& LocalDatabase) {
  const Text name = Trim(LocalDatabase);
  if (platform == 1) {
    connection.Execute("SET DATEFORMAT YMD");
    if (!name.empty()) connection.PutDefaultDatabase(LocalDatabase);
  }
  if (platform == 2 && !name.empty()) connection.Execute("Alter session set current_schema= " + name);
}

void OpenLocalConnection(modDeclarations& process, const Text& ConnectionString, const Text& LocalDatabase) {
  process.LocalConnection = process.database.CreateConnection();
  Connection& connection = *process.LocalConnection;
  connection.PutConnectionTimeout(0);
  connection.PutCommandTimeout(0);
  connection.PutConnectionString(ConnectionString);
  connection.Open();
  SelectDatabase(connection, process.DatabasePlatform, LocalDatabase);
  if (process.DatabasePlatform == 1) process.CurrentDatabaseName = connection.DefaultDatabase();
  if (process.DatabasePlatform == 2) process.CurrentDatabaseName = LocalDatabase;
}

void CloseLocalConnection(modDeclarations& process) {
  try {
    process.LocalConnection->Close();
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteErrorLog(process, error);
  }
}

}  // namespace zenqay
