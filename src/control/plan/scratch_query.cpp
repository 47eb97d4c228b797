#include "control/plan/scratch_query.h"

namespace zenqay {

std::unique_ptr<QueryRows> RowsIn(Connection& connection, const Text& query) {
  return connection.RowsOf(query, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
}

std::int64_t NumberIn(Connection& connection, const Text& query) {
  const auto rows = RowsIn(connection, query);
  rows->Next();
  return static_cast<std::int64_t>(rows->Field(0).AsDouble());
}

}  // namespace zenqay
