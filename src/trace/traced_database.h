// Connections that write the trace, also of the queries that recordsets ask of them. They exist only while a trace is
// written.
#pragma once

#include "contracts/connection.h"
#include "trace/trace.h"

namespace zenqay {

class TracedDatabase : public Database {
 public:
  TracedDatabase(Database& inner, Trace& trace) : inner_(inner), trace_(trace) {}

  std::shared_ptr<Connection> CreateConnection() override;
  std::shared_ptr<Recordset> CreateRecordset() override;

 private:
  Database& inner_;
  Trace& trace_;
  int connections_ = 0;
};

}  // namespace zenqay
