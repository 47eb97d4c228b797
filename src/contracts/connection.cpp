#include "contracts/connection.h"

#include "base/numbers.h"

namespace zenqay {

void Connection::Execute(const Text& statement) {
  Run(statement, Count::NotAsked);
}

void Connection::Execute(const Text& statement, std::int16_t& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = FitInt16(rows);
}

void Connection::Execute(const Text& statement, std::int32_t& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = FitInt32(rows);
}

void Connection::Execute(const Text& statement, Text& recordsAffected) {
  const std::int64_t rows = Run(statement, Count::Asked);
  recordsAffected = std::to_string(rows);
}

Value Field::Get(std::string_view property) {
  if (EqualsIgnoringCase(property, "Value")) return Default();
  if (EqualsIgnoringCase(property, "Name")) return name_;
  RaiseNoSuchOperation(property, name_);
}

}  // namespace zenqay
