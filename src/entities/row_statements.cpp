// What all row operations share: the statements that count.
#include "base/numbers.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"

namespace zenqay {

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
