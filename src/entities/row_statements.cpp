// What all row operations share: a field's literal, and the statements that count.
#include "base/numbers.h"
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"

namespace zenqay {

Text clsDataCopy::Encoded(const Row& row, std::string_view getX) const {
  return EncodeSqlString(process_, row.GetText(getX));
}

Text clsDataCopy::EncodedDate(const Row& row, std::string_view getX) const {
  return SQLEncodeForDate(row.Get(getX));
}

bool clsDataCopy::CountUpdate(const SqlText& update) {
  std::int16_t recordsAffected = 0;
  process_.LocalConnection->Execute(update.text(), recordsAffected);
  if (recordsAffected == 0) return false;
  ucount = CheckedAdd(ucount, 1);
  return true;
}

void clsDataCopy::CountInsert(const SqlText& insert) {
  std::int16_t recordsAffected = 0;
  process_.LocalConnection->Execute(insert.text(), recordsAffected);
  if (recordsAffected == 1) icount = CheckedAdd(icount, 1);
}

void clsDataCopy::CountDelete(const SqlText& deletion) {
  process_.LocalConnection->Execute(deletion.text());
  dcount = CheckedAdd(dcount, 1);
}

}  // namespace zenqay
