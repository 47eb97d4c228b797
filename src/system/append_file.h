// The log file of a real process.
#pragma once

#include "contracts/log_file.h"
#include "system/output_file.h"

namespace zenqay {

/// A log file in Windows-1252.
class AppendFile : public LogFile {
 public:
  void Open(const Text& path) override;
  void WriteLine(const Text& line) override;
  void Close() override;

  bool isOpen() const { return file_.isOpen(); }

 private:
  OutputFile file_;
  Text path_;
};

}  // namespace zenqay
