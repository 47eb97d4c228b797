#include "engines/databases.h"

#include "engines/engine_connection.h"

namespace zenqay {

std::shared_ptr<Connection> LocalDatabases::CreateConnection() {
  return std::make_shared<EngineConnection>(interruption_);
}

std::shared_ptr<Recordset> LocalDatabases::CreateRecordset() {
  return std::make_shared<Recordset>();
}

Text EmbeddedConnection(const Text& path) {
  return "Provider=SQLite;Data Source=\"" + Replaced(path, "\"", "\"\"") + "\"";
}

}  // namespace zenqay
