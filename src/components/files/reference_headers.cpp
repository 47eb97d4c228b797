#include "components/files/reference_headers.h"

#include <algorithm>

#include "contracts/value.h"

namespace zenqay {
namespace {

constexpr ReferenceHeader kReferenceHeaders[] = {
    {"Kv40QTMtssmaLocations", "Location:text:cloc:key,Description:text:desc,Customer:text:cuno"},
    {"Kv50QTMtscfgConfigurations",
     "Configuration:text:ccfg:key,SoldtoBusinessPartner:text:ofbp:key,ConfigurationDescription:text:desc"},
    {"Kv61QTMtsbscClusters", "Cluster:text:clst:key,Description:text:desc,SoldtoBusinessPartner:text:ofbp"},
    {"Kv40QTMtssmaInstallations",
     "Installation:text:cins:key,Description:text:desc,Location:text:cloc,Contract:text:ccon,Warranty:text:cgua,"
     "WarrantyExpiryDate:date:gdat,MaintenanceStartDate:date:sdat,MaintenanceEndDate:date:edat"},
    {"Kv40QTMtsspfProblems", "Problem:text:cprl:key,Description:text:desc"},
    {"Kv61QTMtsclmProblems", "Problem:text:cprl:key,Description:text:desc"},
    {"Kv50QTMtsclmProblems", "Problem:text:cprl:key,Description:text:desc,CallType:text:cltp"},
    {"Kv40QTMtssmaPriorities", "Priority:int:prno:key,Description:text:desc"},
    {"Kv50QTMtcmcsPriorities", "Priority:int:prio:key,Description:text:dsca"},
    {"Kv61QTMtcmcsPriorities", "Priority:int:prio:key,Description:text:dsca"},
    {"Kv40QTMtsspfSymptoms", "Symptom:text:csym:key,Description:text:desc"},
    {"Kv50QTMtscfgObjects",
     "Configuration:text:ccfg:key,Object:text:crob:key,ObjectNumber:int:oseq:key,Description:text:desc,DerivedFromItem:"
     "text:item,DerivedFromItemDescription:text,SerialNumber:text:cser,InstallationDate:date:indt,DeliveryDate:date:"
     "dldt,Warranty:text:cwte"},
    {"Kv50QTMtsctmContractConfigurationLines",
     "ServiceContract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key,Configuration:text:ccfg,EffectiveDate:"
     "date:efdt,ExpiryDate:date:exdt"},
    {"Kv61QTMtsctmContractConfigurationLines",
     "ContractTerms:int:term:key,ConfigurationLine:int:cfln:key,Cluster:text:clst,ServiceContract1:text:csco,Item:text:"
     "item,SerialNumber:text:sern,EffectiveDate:date:efdt,ExpiryDate:date:exdt"},
    {"Kv40QTMtssmaContracts", "Contract:text:ccon:key,Description:text:desc,ContractStatus:int:ctst"},
    {"Kv50QTMtsctmServiceContracts", "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon"},
    {"Kv61QTMtsctmServiceContracts",
     "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon,Cluster:text"},
    {"Kv40QTMtssmaWarranties", "Warranty:text:cgua:key,Description:text:desc"},
    {"Kv50QTMtsctmWarranties",
     "Warranty:text:cwte:key,Description:text:desc,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,WarrantyType:int:wttp"},
    {"Kv61QTMtsctmWarranties",
     "Warranty:text:cwte:key,Description:text:desc,NumberOfPeriods:int:nrpe,PeriodUnit:int:peru,WarrantyType:int:wttp"},
    {"Kv61QTMtscfgSerializedItems",
     "Item:text:item:key,SerialNumber:text:sern:key,Description:text:desc,Cluster:text:clst,SoldtoBusinessPartner:text:"
     "ofbp,AlternateSerialNumber:text,Warranty:text,InstallationTime:datetime,DeliveryTime:datetime"},
};

[[noreturn]] void RaiseMissing(std::string_view column, std::string_view operation, const CsvSource& source) {
  Text about(operation);
  about.append(" (").append(source.file).append(" has no column ").append(column).append(")");
  RaiseNoSuchOperation(about, source.classId);
}

}  // namespace

std::span<const ReferenceHeader> ReferenceHeaders() {
  return kReferenceHeaders;
}

std::size_t KeyCountOf(std::string_view fileStem) {
  const auto* known = std::ranges::find(kReferenceHeaders, fileStem, &ReferenceHeader::fileStem);
  if (known == std::end(kReferenceHeaders)) return 0;
  const auto isKey = [](std::string_view cell) { return cell.ends_with(":key"); };
  return static_cast<std::size_t>(std::ranges::count_if(Split(known->header, ","), isKey));
}

void RequireReferenceColumns(std::string_view fileStem, const ExportColumns& columns, std::string_view operation,
                             const CsvRecord& record, const CsvSource& source) {
  const auto* known = std::ranges::find(kReferenceHeaders, fileStem, &ReferenceHeader::fileStem);
  if (known == std::end(kReferenceHeaders)) return;
  for (const std::string_view cell : Split(known->header, ",")) {
    const std::vector<std::string_view> parts = Split(cell, ":");
    const ExportColumn* column = FindColumn(columns, parts[0]);
    if (column == nullptr) RaiseMissing(parts[0], operation, source);
    const ColumnType type = *ColumnTypeNamed(parts[1]);
    if (type == ColumnType::Plain || type == column->type) continue;
    RaiseHeaderCell(record, source, column - columns.data(), Text("is not declared as ").append(parts[1]));
  }
}

}  // namespace zenqay
