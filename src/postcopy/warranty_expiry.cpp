#include "postcopy/warranty_expiry.h"

#include "base/numbers.h"
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"

namespace zenqay {
namespace {

// Only this warranty type counts from the installation; every other from the delivery.
constexpr std::int32_t kFromInstallation = 10;

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

}  // namespace

void clsDataCopy::CalculateWarrantyExpiry() {
  const std::shared_ptr<Recordset> rows = process_.database.CreateRecordset();
  rows->PutActiveConnection(process_.LocalConnection);
  // The warranty code is a pattern: one with a wildcard joins several objects.
  rows->Open("SELECT * FROM  OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY",
             process_.LocalConnection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
  if (rows->RecordCount() > 0) {
    while (!rows->AtBeginning() && !rows->AtEnd()) {
      StoreWarrantyExpiry(*rows);
      rows->MoveNext();
    }
  }
  rows->Close();
}

void clsDataCopy::StoreWarrantyExpiry(Recordset& row) {
  const std::int32_t type = row.FieldValue("WARRANTY_TYPE").AsInt32();
  const std::int32_t numberOfPeriods = row.FieldValue("NUMBER_OF_PERIODS").AsInt32();
  const std::int32_t periodUnit = row.FieldValue("PERIOD_UNIT").AsInt32();
  DateTime baseDate = kZeroDate;
  if (type == kFromInstallation) {
    if (row.FieldValue("INSTALLATION_DATE").IsNull()) return;
    baseDate = row.FieldValue("INSTALLATION_DATE").AsDateTime();
  } else {
    baseDate = row.FieldValue("DELIVERY_DATE").AsDateTime();  // a null fails the pass
  }
  if (baseDate <= kZeroDate) return;

  DateTime expiry = kZeroDate;
  ComputeWarrantyExpiry(baseDate, numberOfPeriods, periodUnit, expiry);
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
