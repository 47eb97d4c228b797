#include "check/undated_objects.h"

#include "postcopy/warranty_expiry.h"

namespace zenqay {

Text UndatedObjects(Database& database, const std::shared_ptr<Connection>& connection) {
  constexpr std::int32_t kMostShown = 5;
  const std::shared_ptr<Recordset> rows = database.CreateRecordset();
  rows->Open(Text("SELECT OBJECT.SITE, OBJECT.OBJECT, OBJECT.OBJECTNR FROM ") + kExpiryJoin +
                 " WHERE OBJECT.DELIVERY_DATE IS NULL AND WARRANTIES.WARRANTY_TYPE <> " +
                 std::to_string(kFromInstallation) + " ORDER BY OBJECT.SITE, OBJECT.OBJECT, OBJECT.OBJECTNR",
             connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  const std::int32_t count = rows->RecordCount();
  Text shown;
  for (std::int32_t row = 0; row < count && row < kMostShown; ++row, rows->MoveNext()) {
    shown += row == 0 ? "" : ", ";
    for (const char* column : {"SITE", "OBJECT", "OBJECTNR"}) {
      shown += (EqualsIgnoringCase(column, "SITE") ? "" : "/") + rows->FieldValue(column).Joined();
    }
  }
  rows->Close();
  if (count == 0) return "";
  if (count > kMostShown) shown += ", …";
  return "the warranty expiry fails at the first object that has a warranty and no delivery date, and the objects "
         "behind it get none; there are " +
         std::to_string(count) + ": " + shown;
}

}  // namespace zenqay
