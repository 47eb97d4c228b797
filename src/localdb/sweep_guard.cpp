#include "localdb/sweep_guard.h"

namespace zenqay {
namespace {

constexpr std::int32_t kSweepRefused = 20211;

}  // namespace

SweepGuard::SweepGuard(modDeclarations& process, const Text& tableName)
    : process_(process), tableName_(tableName), limit_(process.safeguards.sweep.For(tableName)) {
  if (limit_ != nullptr) before_ = Count("");
}

void SweepGuard::RequireWithinLimit() {
  if (limit_ == nullptr) return;
  const std::int64_t marked = Count(" WHERE upd_flag = 1");
  if (marked < process_.safeguards.sweep.from || !limit_->IsExceededBy(marked, before_)) return;
  throw RuntimeError(kSweepRefused, "Sweep limit",
                     "The sweep would delete " + std::to_string(marked) + " of the " + std::to_string(before_) +
                         " rows that " + tableName_ + " had before the copy, more than the limit of " + limit_->text() +
                         ".");
}

std::int64_t SweepGuard::Count(const Text& condition) {
  const std::shared_ptr<Recordset> rows = process_.database.CreateRecordset();
  rows->Open("SELECT COUNT(*) AS counted FROM " + tableName_ + condition, process_.LocalConnection, CursorType::Static,
             LockType::ReadOnly, CommandType::SqlText);
  const double counted = rows->FieldValue("counted").AsDouble();
  rows->Close();
  return static_cast<std::int64_t>(counted);
}

}  // namespace zenqay
