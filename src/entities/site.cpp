// Site: the locations, configurations or clusters of the ERP, by generation.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kSiteLabel = "STIT0089";

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

void clsDataCopy::CopySite(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySiteFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySiteChanged(TableName, KXWBusComponent);
}

void clsDataCopy::OpenSites(ErpSource& erp) {
  if (process_.ErpGeneration == kGeneration1) {
    erp.manager = Manager(process_.components.Create(kLocationsManager1));
    erp.tableCode = "tssma110";
    erp.erpLabel = GetLabel(process_, "STIT0088");
  } else if (process_.ErpGeneration == kGeneration3) {
    erp.manager = Manager(process_.components.Create(kConfigurationsManager3));
    erp.tableCode = "tscfg220";
    erp.erpLabel = GetLabel(process_, "STIT0095");
  } else if (process_.ErpGeneration == kGeneration8) {
    erp.manager = Manager(process_.components.Create(kClustersManager8));
    erp.tableCode = "tsbsc100";
    erp.erpLabel = GetLabel(process_, "STIT0097");
  }
}

void clsDataCopy::CopySiteFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kSiteLabel,
            .open = [this](ErpSource& erp) { OpenSites(erp); },
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
  OnlyChangedPass sites = {.entityLabel = kSiteLabel,
                           .failureSource = "Site - Only Changed",
                           .open = [this](ErpSource& erp) { OpenSites(erp); }};
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
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE SITE=", Encoded(row, erp->getKey)));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, sites);
}

void clsDataCopy::ApplySiteRow(const Row& row, const Text& TableName) {
  const SiteAccessors* erp = SiteAccessorsOf(process_.ErpGeneration);

  SqlText update;
  if (erp != nullptr) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("SITE = ", Encoded(row, erp->getKey));
    if (row.Has(erp->hasDescription)) update.Add(", DESCRIPTION = ", Encoded(row, erp->getDescription));
    if (row.Has(erp->hasCustomer)) update.Add(", CUSTOMER = ", Encoded(row, erp->getCustomer));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("SITE =", Encoded(row, erp->getKey));  // no blank: the statement stands as it is
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (erp != nullptr) {
    insert.Add("INSERT INTO ", TableName, " (SITE ");
    if (row.Has(erp->hasDescription)) insert.Add(",DESCRIPTION ");
    if (row.Has(erp->hasCustomer)) insert.Add(",CUSTOMER");
    insert.Add(",upd_flag )VALUES (", Encoded(row, erp->getKey));
    if (row.Has(erp->hasDescription)) insert.Add(",", Encoded(row, erp->getDescription));
    if (row.Has(erp->hasCustomer)) insert.Add(",", Encoded(row, erp->getCustomer));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
