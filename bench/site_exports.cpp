#include "site_exports.h"

#include <cstdio>
#include <fstream>

namespace zenqay::bench {
namespace {

void WriteLocation(std::ofstream& file, long row, const char* description) {
  char line[160];
  std::snprintf(line, sizeof line, "L%08ld,%s %ld of the service region,C%07ld\n", row, description, row, row % 5000);
  file << line;
}

}  // namespace

void WriteLocations(const Workplace& place, long rows) {
  std::ofstream all(place.Erp("Kv40QTMtssmaLocations.csv"), std::ios::binary);
  all << "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  for (long row = 0; row < rows; ++row) WriteLocation(all, row, "Location number");
}

void WriteLocationChanges(const Workplace& place, long rows) {
  std::ofstream changes(place.Erp("Kv40QTMtssmaLocations.changes.csv"), std::ios::binary);
  changes << "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  const std::string now = UtcNow();
  for (long row = 0; row < rows; row += 10) {
    changes << now << ",U,";
    WriteLocation(changes, row, "Changed location");
  }
}

}  // namespace zenqay::bench
