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

void WriteAll(const Workplace& place, long rows, const char* description) {
  std::ofstream all(place.Erp("Kv40QTMtssmaLocations.csv"), std::ios::binary);
  all << "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
  for (long row = 0; row < rows; ++row) WriteLocation(all, row, description);
}

}  // namespace

void WriteLocations(const Workplace& place, long rows) {
  WriteAll(place, rows, "Location number");
}

void WriteChangedLocations(const Workplace& place, long rows) {
  WriteAll(place, rows, "Changed location");
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

void WriteExportsOfTenTables(const Workplace& place, long rows) {
  const auto write = [&](const char* name, long count, const char* header, const char* format) {
    std::ofstream file(place.Erp(std::string(name) + ".csv"), std::ios::binary);
    file << header << "\n";
    for (long row = 1; row <= count; ++row) {
      char line[300];
      std::snprintf(line, sizeof line, format, row, row);
      file << line << "\n";
    }
  };
  const long few = rows / 4;
  write("Kv50QTMtscfgConfigurations", rows,
        "Configuration:text:ccfg:key,SoldtoBusinessPartner:text:ofbp:key,ConfigurationDescription:text:desc",
        "C%06ld,BP1,Configuration %ld");
  write("Kv50QTMtsclmProblems", rows, "Problem:text:cprl:key,Description:text:desc,CallType:text:cltp",
        "P%06ld,Problem %ld,CORR");
  write("Kv50QTMtcmcsPriorities", rows, "Priority:int:prio:key,Description:text:dsca", "%ld,Priority %ld");
  write("Kv50QTMtscfgObjects", few,
        "Configuration:text:ccfg:key,Object:text:crob:key,ObjectNumber:int:oseq:key,Description:text:desc,"
        "DerivedFromItem:text:item,DerivedFromItemDescription:text,SerialNumber:text:cser,InstallationDate:date:indt,"
        "DeliveryDate:date:dldt,Warranty:text:cwte",
        "C000001,PUMP,%ld,Object %ld,ITEM,Pump,SN1,2024-01-31,2024-01-15,W000001");
  write("Kv50QTMtsctmContractConfigurationLines", rows,
        "ServiceContract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key,Configuration:text:ccfg,"
        "EffectiveDate:date:efdt,ExpiryDate:date:exdt",
        "S%06ld,1,10,C%06ld,2024-01-01,2026-12-31");
  write("Kv50QTMtsctmServiceContracts", rows,
        "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon", "S%06ld,Contract %ld,10");
  write("Kv50QTMtsctmWarranties", few,
        "Warranty:text:cwte:key,Description:text:desc,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,"
        "WarrantyType:int:wttp",
        "W%06ld,Warranty %ld,12,15,10");
  write("Kv40QTMtssmaInstallations", rows,
        "Installation:text:cins:key,Description:text:desc,Location:text:cloc,Contract:text:ccon,Warranty:text:cgua,"
        "WarrantyExpiryDate:date:gdat,MaintenanceStartDate:date:sdat,MaintenanceEndDate:date:edat",
        "I%06ld,Installation %ld,L1,S1,W1,2027-03-31,2025-04-01,2027-03-31");
  write("Kv40QTMtsspfSymptoms", rows, "Symptom:text:csym:key,Description:text:desc", "Y%06ld,Symptom %ld");
  write("Kv61QTMtscfgSerializedItems", rows,
        "Item:text:item:key,SerialNumber:text:sern:key,Description:text:desc,Cluster:text:clst,"
        "SoldtoBusinessPartner:text:ofbp,AlternateSerialNumber:text,Warranty:text,InstallationTime:datetime,"
        "DeliveryTime:datetime",
        "SRV,X%06ld,Item %ld,CL1,BP1,A1,W1,2025-01-15T09:30:00,2025-01-10T14:00:00");
}

}  // namespace zenqay::bench
