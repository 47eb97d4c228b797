// A statement that PostgreSQL's driver keeps prepared, and the texts of its parameters.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// Each parameter goes to the server as a text without a type, so that it gets that of its place, as a literal does.
/// The driver passes the bytes on as they are: UTF-8.
class PreparedStatement {
 public:
  struct Parameter {
    Text text;
    bool isNull = false;

   private:
    friend class PreparedStatement;
    std::int64_t length = 0;
    const char* boundAt = nullptr;  // where the driver looks for the text
  };

  /// `handle` has been prepared with a text of so many parameters. It stays its caller's.
  PreparedStatement(void* handle, std::size_t parameters) : handle_(handle), parameters_(parameters) {}
  PreparedStatement(const PreparedStatement&) = delete;
  PreparedStatement& operator=(const PreparedStatement&) = delete;

  void* handle() const { return handle_; }

  /// They keep what they have from one execution to the next.
  std::vector<Parameter>& parameters() { return parameters_; }

  /// What the driver returned.
  std::int16_t Execute();

 private:
  std::int16_t Bind(std::size_t index);

  void* handle_;
  std::vector<Parameter> parameters_;
};

}  // namespace zenqay
