// The process-wide values in front of seams behind which there is nothing.
#pragma once

#include "doubles/refusing_log_file.h"
#include "process/modDeclarations.h"

namespace zenqay {

class Surroundings : private Platform, private ComponentHost, private Database {
 public:
  explicit Surroundings(Text programDirectory) : programDirectory_(std::move(programDirectory)) {}

  modDeclarations process{.platform = *this, .components = *this, .database = *this};

 private:
  DateTime Now() override { return {}; }
  Text ProgramDirectory() override { return programDirectory_; }
  void SetTitle(const Text&) override {}
  void ShowMessageBox(const Text&) override {}
  LogFile& Log() override { return log_; }
  void StartLogging(const Text&) override {}
  void NameCause(const Text&) override {}

  Object Create(const Text&) override { return {}; }
  std::shared_ptr<Connection> CreateConnection() override { return nullptr; }
  std::shared_ptr<Recordset> CreateRecordset() override { return nullptr; }

  Text programDirectory_;
  RefusingLogFile log_;
};

}  // namespace zenqay
