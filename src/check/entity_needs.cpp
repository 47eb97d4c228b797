#include "check/entity_needs.h"

#include <algorithm>

#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

struct Entry {
  const char* name;
  const char* generation;
  EntityNeeds needs;
};

const std::vector<Entry>& Entries() {
  static const std::vector<Text> kSite = {"SITE", "DESCRIPTION", "CUSTOMER", "upd_flag"};
  static const std::vector<Text> kPriority = {"PRIORITY", "DESCRIPTION", "upd_flag"};
  static const std::vector<Text> kProblem = {"PROBLEM", "DESCRIPTION", "upd_flag"};
  static const std::vector<Text> kContract = {"CONTRACT", "CDESCRIPTION", "upd_flag"};
  static const std::vector<Text> kWarranty = {"WARRANTY",    "WDESCRIPTION",  "NUMBER_OF_PERIODS",
                                              "PERIOD_UNIT", "WARRANTY_TYPE", "upd_flag"};
  static const std::vector<Entry> kEntries = {
      {"site", kGeneration1, {kLocationsManager1, kSite}},
      {"site", kGeneration3, {kConfigurationsManager3, kSite}},
      {"site", kGeneration8, {kClustersManager8, kSite}},
      {"product",
       kGeneration1,
       {kInstallationsManager1,
        {"PRODUCT", "DESCRIPTION", "SITE", "CONTRACT", "EFFECTIVE_DATE", "EXPIRY_DATE", "WARRANTY", "WEXPIRY_DATE",
         "upd_flag"}}},
      {"problem", kGeneration1, {kProblemsManager1, kProblem}},
      {"problem", kGeneration3, {kProblemsManager3, {"PROBLEM", "DESCRIPTION", "CALLTYPE", "upd_flag"}}},
      {"problem", kGeneration8, {kProblemsManager8, kProblem}},
      {"symptom", kGeneration1, {kSymptomsManager1, {"SYMPTOM", "DESCRIPTION", "upd_flag"}}},
      {"priority", kGeneration1, {kPrioritiesManager1, kPriority}},
      {"priority", kGeneration3, {kPrioritiesManager3, kPriority}},
      {"priority", kGeneration8, {kPrioritiesManager8, kPriority}},
      {"object",
       kGeneration3,
       {kObjectsManager3,
        {"SITE", "OBJECT", "OBJECTNR", "OBJECTDESC", "ITEM", "ITEMDESC", "SERIALNUMBER", "WARRANTY",
         "INSTALLATION_DATE", "DELIVERY_DATE", "upd_flag"}}},
      {"warranties", kGeneration1, {kWarrantiesManager1, {"WARRANTY", "WDESCRIPTION", "upd_flag"}}},
      {"warranties", kGeneration3, {kWarrantiesManager3, kWarranty}},
      {"warranties", kGeneration8, {kWarrantiesManager8, kWarranty}},
      {"sitecontract",
       kGeneration3,
       {kContractConfigurationLinesManager3,
        {"SITE", "CONTRACT", "TERM", "LINE", "EFFECTIVE_DATE", "EXPIRY_DATE", "upd_flag"}}},
      {"sitecontract",
       kGeneration8,
       {kContractConfigurationLinesManager8,
        {"SITE", "CONTRACT", "OBJECT", "OBJECTNR", "TERM", "EFFECTIVE_DATE", "EXPIRY_DATE", "upd_flag"}}},
      {"contracts", kGeneration1, {kContractsManager1, kContract}},
      {"contracts", kGeneration3, {kServiceContractsManager3, kContract}},
      // A contract that becomes active in a change pass fills a column of its own.
      {"contracts", kGeneration8, {kServiceContractsManager8, {"CONTRACT", "CONTRACTS", "CDESCRIPTION", "upd_flag"}}},
      {"serializeditem",
       kGeneration8,
       {kSerializedItemsManager8,
        {"OBJECT", "OBJECTNR", "OBJECTDESC", "SITE", "SERIALNUMBER", "WARRANTY", "INSTALLATION_DATE", "DELIVERY_DATE",
         "CUSTOMER", "upd_flag"}}},
  };
  return kEntries;
}

}  // namespace

const std::vector<Text>& EntityNames() {
  static const std::vector<Text> kNames = {"site",   "product",    "problem",      "symptom",   "priority",
                                           "object", "warranties", "sitecontract", "contracts", "serializeditem"};
  return kNames;
}

std::optional<EntityNeeds> NeedsOf(const Text& tableName, const Text& generation) {
  for (const Entry& entry : Entries()) {
    if (EqualsIgnoringCase(tableName, entry.name) && generation == entry.generation) return entry.needs;
  }
  return std::nullopt;
}

const std::vector<ExpiryNeeds>& NeedsOfWarrantyExpiry() {
  static const std::vector<ExpiryNeeds> kNeeds = {
      {"OBJECT", {"SITE", "OBJECT", "OBJECTNR", "WARRANTY", "INSTALLATION_DATE", "DELIVERY_DATE", "WEXPIRY_DATE"}},
      {"WARRANTIES", {"WARRANTY", "NUMBER_OF_PERIODS", "PERIOD_UNIT", "WARRANTY_TYPE"}},
  };
  return kNeeds;
}

}  // namespace zenqay
