// Site: the locations, configurations or clusters of the ERP, by generation.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"SITE", "DESCRIPTION", "CUSTOMER", "upd_flag"};

constexpr KeyField kKeys1[] = {{"getLocation", "SITE"}};
constexpr KeyField kKeys3[] = {{"getConfiguration", "SITE"}};
constexpr KeyField kKeys8[] = {{"getCluster", "SITE"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtssmaLocations.LocationsManager", "tssma110", "STIT0088", kColumns, kKeys1},
    {kGeneration3, "Kv50QTMtscfgConfigurations.ConfigurationsManager", "tscfg220", "STIT0095", kColumns, kKeys3},
    {kGeneration8, "Kv61QTMtsbscClusters.ClustersManager", "tsbsc100", "STIT0097", kColumns, kKeys8},
};

/// One local table, three ERP entities: what a row's fields are called.
struct SiteAccessors {
  std::string_view getKey;
  std::string_view hasDescription;
  std::string_view getDescription;
  std::string_view hasCustomer;
  std::string_view getCustomer;
};

const SiteAccessors* SiteAccessorsOf(const Text& generation) {
  static constexpr SiteAccessors kLocation = {"getLocation", "hasDescription", "getDescription", "hasCustomer",
                                              "getCustomer"};
  static constexpr SiteAccessors kConfiguration = {"getConfiguration", "hasConfigurationDescription",
                                                   "getConfigurationDescription", "hasSoldtoBusinessPartner",
                                                   "getSoldtoBusinessPartner"};
  static constexpr SiteAccessors kCluster = {"getCluster", "hasDescription", "getDescription",
                                             "hasSoldtoBusinessPartner", "getSoldtoBusinessPartner"};
  if (generation == kGeneration1) return &kLocation;
  if (generation == kGeneration3) return &kConfiguration;
  if (generation == kGeneration8) return &kCluster;
  return nullptr;
}

}  // namespace

const Entity clsDataCopy::kSite = {
    .name = "site",
    .label = "STIT0089",
    .sources = kSources,
    .copy = &clsDataCopy::CopySite,
};

void clsDataCopy::CopySite(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySiteFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySiteChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopySiteFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kSite,
            .list =
                [this](const Manager& sites) {
                  if (process_.ErpGeneration == kGeneration1) return sites.List("", HighValueString(10));
                  if (process_.ErpGeneration == kGeneration3) {
                    return sites.List("", HighValueString(8), "", HighValueString(9));
                  }
                  return sites.List("", HighValueString(8));
                },
            .apply = [&](const Row& row) { ApplySiteRow(row, TableName); }});
}

void clsDataCopy::CopySiteChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass sites = {.entity = kSite, .failureSource = "Site - Only Changed"};
  if (process_.ErpGeneration == kGeneration1) {
    sites.ranges = {{"cloc", "", HighValueString(10)}};
    sites.fields = {"cloc", "cuno", "desc"};
    sites.listing = "NetListLocations";
  } else if (process_.ErpGeneration == kGeneration3) {
    sites.ranges = {{"ccfg", "", HighValueString(8)}};
    sites.fields = {"ccfg", "ofbp", "desc"};
    sites.listing = "NetListConfigurations";
  } else if (process_.ErpGeneration == kGeneration8) {
    sites.ranges = {{"clst", "", HighValueString(8)}};
    sites.fields = {"clst", "ofbp", "desc"};
    sites.listing = "NetListClusters";
  }
  sites.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplySiteRow(row, TableName);
    const SiteAccessors* erp = SiteAccessorsOf(process_.ErpGeneration);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE SITE=", Encoded(process_, row, erp->getKey)));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, sites);
}

void clsDataCopy::ApplySiteRow(const Row& row, const Text& TableName) {
  const SiteAccessors* erp = SiteAccessorsOf(process_.ErpGeneration);

  SqlText update;
  if (erp != nullptr) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("SITE = ", Encoded(process_, row, erp->getKey));
    if (row.Has(erp->hasDescription)) update.Add(", DESCRIPTION = ", Encoded(process_, row, erp->getDescription));
    if (row.Has(erp->hasCustomer)) update.Add(", CUSTOMER = ", Encoded(process_, row, erp->getCustomer));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("SITE =", Encoded(process_, row, erp->getKey));  // no blank: the statement stands as it is
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (erp != nullptr) {
    insert.Add("INSERT INTO ", TableName, " (SITE ");
    if (row.Has(erp->hasDescription)) insert.Add(",DESCRIPTION ");
    if (row.Has(erp->hasCustomer)) insert.Add(",CUSTOMER");
    insert.Add(",upd_flag )VALUES (", Encoded(process_, row, erp->getKey));
    if (row.Has(erp->hasDescription)) insert.Add(",", Encoded(process_, row, erp->getDescription));
    if (row.Has(erp->hasCustomer)) insert.Add(",", Encoded(process_, row, erp->getCustomer));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
