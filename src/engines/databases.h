// Who makes the connections and recordsets of the program.
#pragma once

#include "contracts/connection.h"

namespace zenqay {

class LocalDatabases : public Database {
 public:
  std::shared_ptr<Connection> CreateConnection() override;
  std::shared_ptr<Recordset> CreateRecordset() override;
};

}  // namespace zenqay
