// The warranty expiry of objects, computed locally from their warranty's periods; and what it finds in the database for
// it. Its tables are these, whatever names `tstables` holds.
#pragma once

#include <cstdint>
#include <span>

namespace zenqay {

// Only this warranty type counts from the installation; every other from the delivery.
inline constexpr std::int32_t kFromInstallation = 10;

/// The warranty code is a pattern: one with a wildcard joins several objects.
inline constexpr const char* kExpiryJoin = "OBJECT INNER JOIN WARRANTIES ON OBJECT.WARRANTY LIKE WARRANTIES.WARRANTY";

inline constexpr const char* kExpiryObjectColumns[] = {
    "SITE", "OBJECT", "OBJECTNR", "WARRANTY", "INSTALLATION_DATE", "DELIVERY_DATE", "WEXPIRY_DATE"};
inline constexpr const char* kExpiryWarrantyColumns[] = {"WARRANTY", "NUMBER_OF_PERIODS", "PERIOD_UNIT",
                                                         "WARRANTY_TYPE"};

/// A table that the expiry reads or writes, with all columns that it names.
struct ExpiryTable {
  const char* name;
  std::span<const char* const> columns;
};

inline constexpr ExpiryTable kExpiryTables[] = {{"OBJECT", kExpiryObjectColumns},
                                                {"WARRANTIES", kExpiryWarrantyColumns}};

}  // namespace zenqay
