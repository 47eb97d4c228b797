// Who makes the connections and recordsets of the program.
#pragma once

#include "contracts/connection.h"
#include "contracts/interruption.h"

namespace zenqay {

class LocalDatabases : public Database {
 public:
  /// The statements of all connections can be broken off by the interruption.
  explicit LocalDatabases(std::shared_ptr<Interruption> interruption = std::make_shared<Interruption>())
      : interruption_(std::move(interruption)) {}

  std::shared_ptr<Connection> CreateConnection() override;
  std::shared_ptr<Recordset> CreateRecordset() override;

 private:
  std::shared_ptr<Interruption> interruption_;
};

/// The connection string of a file of the embedded engine.
Text EmbeddedConnection(const Text& path);

}  // namespace zenqay
