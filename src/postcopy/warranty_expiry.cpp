#include "postcopy/warranty_expiry.h"

#include "base/numbers.h"
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"

namespace zenqay {
namespace {

// The ERP's codes of what a period is counted in.
constexpr std::int32_t kDays = 5;
constexpr std::int32_t kWeeks = 10;
constexpr std::int32_t kMonths = 15;
constexpr std::int32_t kQuarters = 20;
constexpr std::int32_t kYears = 25;

constexpr DateTime kZeroDate;

/// The short date, followed by the time when there is one. Also on the zero date, which elsewhere stands for no date.
Text DateText(DateTime date) {
  const bool hasTime = date.TimeOnly() != DateTime();
  return hasTime ? ShortDate(date) + " " + LongTime(date) : ShortDate(date);
}

/// The object that the row is of, for a failure; unknown where the join does not have such columns.
Text ObjectAt(const Recordset& row) {
  Text object;
  try {
    for (const char* column : {"SITE", "OBJECT", "OBJECTNR"}) {
      const Text value = row.FieldValue(column).Joined();
      object.append(object.empty() ? "" : ", ").append(column).append("=").append(value);
    }
  } catch (const RuntimeError&) {
    object.clear();  // the failure at hand is the one to tell
  }
  return OneLine(object);
}

std::int32_t NumberIn(const Recordset& row, const char* column) {
  const Value value = row.FieldValue(column);
  return Naming(column, [&] { return value.AsInt32(); });
}

DateTime DateIn(const Recordset& row, const char* column) {
  const Value value = row.FieldValue(column);
  return Naming(column, [&] { return value.AsDateTime(); });
}

}  // namespace

void clsDataCopy::CalculateWarrantyExpiry() {
  const std::shared_ptr<Recordset> rows = process_.database.CreateRecordset();
  rows->PutActiveConnection(process_.LocalConnection);
  rows->Open(Text("SELECT * FROM  ") + kExpiryJoin, process_.LocalConnection, CursorType::Keyset, LockType::Optimistic,
             CommandType::SqlText);
  if (rows->RecordCount() > 0) {
    while (!rows->AtBeginning() && !rows->AtEnd()) {
      try {
        StoreWarrantyExpiry(*rows);
      } catch (...) {
        throw ErrorInFlight().OfRow(ObjectAt(*rows));
      }
      rows->MoveNext();
    }
  }
  rows->Close();
}

void clsDataCopy::StoreWarrantyExpiry(Recordset& row) {
  const std::int32_t type = NumberIn(row, "WARRANTY_TYPE");
  const std::int32_t numberOfPeriods = NumberIn(row, "NUMBER_OF_PERIODS");
  const std::int32_t periodUnit = NumberIn(row, "PERIOD_UNIT");
  DateTime baseDate = kZeroDate;
  if (type == kFromInstallation) {
    if (row.FieldValue("INSTALLATION_DATE").IsNull()) return;
    baseDate = DateIn(row, "INSTALLATION_DATE");
  } else {
    baseDate = DateIn(row, "DELIVERY_DATE");  // a null fails the pass
  }
  if (baseDate <= kZeroDate) return;

  DateTime expiry = kZeroDate;
  Naming("NUMBER_OF_PERIODS", [&] { ComputeWarrantyExpiry(baseDate, numberOfPeriods, periodUnit, expiry); });
  Text update = "UPDATE OBJECT SET WEXPIRY_DATE = ";
  update += "CONVERT(DATETIME,'" + DateText(expiry) + "',101)";
  update += " Where OBJECT.SITE = " + EncodeSqlString(process_, row.FieldValue("SITE").Joined());
  update += " And OBJECT.OBJECT = " + EncodeSqlString(process_, row.FieldValue("OBJECT").Joined());
  update += " And OBJECT.OBJECTNR = " + row.FieldValue("OBJECTNR").Joined();
  std::int32_t recordsAffected = 0;  // not looked at
  process_.LocalConnection->Execute(update, recordsAffected);
}

void clsDataCopy::ComputeWarrantyExpiry(DateTime baseDate, std::int32_t numberOfPeriods, std::int32_t periodUnit,
                                        DateTime& expiry) {
  WarrantyMonths = 0;
  WarrantyYears = 0;
  WarrantyDay = baseDate.Parts().day;
  const auto countMonths = [this](std::int32_t months) {
    WarrantyMonths = CheckedAdd(WarrantyMonths, months);
    if (WarrantyMonths < 12) return;  // a negative count stays as it is
    WarrantyYears += WarrantyMonths / 12;
    WarrantyMonths %= 12;
  };
  switch (periodUnit) {
    case kDays:
      expiry = AddDays(baseDate, numberOfPeriods);
      break;
    case kWeeks:
      expiry = AddDays(baseDate, CheckedMultiply(7, numberOfPeriods));
      break;
    case kMonths:
      countMonths(numberOfPeriods);
      ClampWarrantyDay();
      expiry = AddYears(AddMonths(baseDate, WarrantyMonths), WarrantyYears);
      break;
    case kQuarters:
      countMonths(CheckedMultiply(3, numberOfPeriods));
      expiry = AddYears(AddMonths(baseDate, WarrantyMonths), WarrantyYears);
      ClampWarrantyDay();
      break;
    case kYears:
      expiry = AddYears(baseDate, numberOfPeriods);
      break;
    default:
      break;  // the expiry keeps the date that it came with
  }
  expiry = AddDays(expiry, -1);  // a year from 15 March ends on 14 March
}

/// Works on the counts of months and years, not on a month of the calendar; nothing reads what it leaves.
void clsDataCopy::ClampWarrantyDay() {
  if (WarrantyMonths != 2 && WarrantyDay > 30) {
    const bool ends30 = WarrantyMonths / 2 != 0 ? WarrantyMonths > 8 : WarrantyMonths < 8;
    if (ends30) WarrantyDay = 30;
  }
  if (WarrantyMonths == 2 && WarrantyDay > 28) WarrantyDay = WarrantyYears / 4 != 0 ? 28 : 29;
}

}  // namespace zenqay
