// Site contract: the lines that tie a contract to what it covers. Generation 3 knows a site, a contract, a term and a
// line; generation 8 a site, a contract, an object with its serial number and a term. Generation 1 has no component.
#include "base/numbers.h"
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kSiteContractLabel = "STIT0098";

// Ranges of the numeric keys.
constexpr std::int16_t kLowest = 0;
constexpr std::int16_t kHighestTerm3 = 9999;
constexpr std::int16_t kHighestLine3 = 999;
constexpr std::int16_t kHighestChangedLine3 = 99;
constexpr std::int16_t kHighest8 = 999;

Text Terms(const Row& row) {
  return row.Has("hasContractTerms") ? row.GetText("getContractTerms") : "0";
}

Text Line(const Row& row) {
  return row.Has("hasLine") ? row.GetText("getLine") : "0";
}

/// A value of generation 8 that may be unknown; it is then compared with NULL by an equals sign, which no row meets.
Text EncodedOrNull(const modDeclarations& process, const Row& row, std::string_view hasX, std::string_view getX) {
  return row.Has(hasX) ? EncodeSqlString(process, row.GetText(getX)) : "NULL";
}

Text SiteText(const modDeclarations& process, const Row& row) {
  return EncodedOrNull(process, row, "hasCluster", "getCluster");
}

Text ObjectText(const modDeclarations& process, const Row& row) {
  return EncodedOrNull(process, row, "hasItem", "getItem");
}

}  // namespace

void clsDataCopy::CopySiteContract(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySiteContractFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySiteContractChanged(TableName, KXWBusComponent);
}

void clsDataCopy::OpenSiteContracts(ErpSource& erp) {
  if (process_.ErpGeneration == kGeneration3) {
    erp.manager = Manager(process_.components.Create(kContractConfigurationLinesManager3));
    erp.tableCode = "tsctm310";
    erp.erpLabel = GetLabel(process_, "STIT0095");
  } else if (process_.ErpGeneration == kGeneration8) {
    erp.manager = Manager(process_.components.Create(kContractConfigurationLinesManager8));
    erp.tableCode = "tsctm110";
    erp.erpLabel = GetLabel(process_, "STIT0097");
  }
}

void clsDataCopy::CopySiteContractFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kSiteContractLabel,
            .open = [this](ErpSource& erp) { OpenSiteContracts(erp); },
            .list =
                [this](const Manager& lines) {
                  if (process_.ErpGeneration == kGeneration3) {
                    return lines.List("", HighValueString(9), kLowest, kHighestTerm3, kLowest, kHighestLine3);
                  }
                  if (process_.ErpGeneration == kGeneration8) return lines.List(kLowest, kHighest8, kLowest, kHighest8);
                  return Enumeration();  // another generation would leave here, had it got past the missing manager
                },
            .apply = [&](const Row& row) { ApplySiteContractRow(row, TableName); }});
}

void clsDataCopy::CopySiteContractChanged(const Text& TableName, const Text& KXWBusComponent) {
  Manager siteContracts;
  OnlyChangedPass lines = {.entityLabel = kSiteContractLabel,
                           .failureSource = "SiteContracts - Only Changed",
                           .open =
                               [&](ErpSource& erp) {
                                 OpenSiteContracts(erp);
                                 siteContracts = erp.manager;
                               },
                           .parameterCount = 2,
                           .listing = "NetListContractConfigurationLines"};
  if (process_.ErpGeneration == kGeneration3) {
    lines.ranges = {{"csco", "", HighValueString(9)}, {"seqn", kLowest, kHighestChangedLine3}};
    lines.fields = {"csco", "seqn", WithOld("ccfg"), WithOld("efdt"), "exdt"};
  } else if (process_.ErpGeneration == kGeneration8) {
    // Numbers and texts are mixed within these ranges; each stays of its type.
    lines.ranges = {{"term", kLowest, "9999"}, {"cfln", "0", "99"}};
    lines.fields = {"clst", "csco", "item", "sern", "efdt", "exdt"};
  }
  lines.change = [&](const Row& row, const Text& action) {
    if (action == "D") return DeleteSiteContract(row, TableName);
    if (process_.ErpGeneration == kGeneration3) LookUpTerms(siteContracts, row);
    ApplySiteContractRow(row, TableName);
  };
  CopyOnlyChanged(TableName, KXWBusComponent, lines);
}

/// The change rows of generation 3 come without their term: it is asked for by the row's own contract and line, on the
/// manager whose change listing is still open. With several terms the last one stays.
void clsDataCopy::LookUpTerms(const Manager& siteContracts, const Row& row) {
  const Value fromContract = row.Get("getServiceContract");
  const Value toContract = row.Get("getServiceContract");
  const Value fromLine = row.Get("getLine");
  const Value toLine = row.Get("getLine");
  const Enumeration terms = siteContracts.List(fromContract, toContract, kLowest, kHighestTerm3, fromLine, toLine);
  while (terms.HasMoreElements()) {
    const Row element = terms.NextElement();
    const Value term = element.Get("getContractTerms");
    row.object().Call("setContractTerms", term);
  }
}

/// Counts the rows that went, unlike every other entity.
void clsDataCopy::DeleteSiteContract(const Row& row, const Text& TableName) {
  SqlText deletion;
  if (process_.ErpGeneration == kGeneration3) {
    // Every term and line of the contract at the site, not only the line that the row names.
    deletion.Add("DELETE FROM ", TableName);
    deletion.Add(" WHERE SITE = ", Encoded(row, "getConfiguration"));
    deletion.Add(" AND CONTRACT =", Encoded(row, "getServiceContract"));
  } else if (process_.ErpGeneration == kGeneration8) {
    const Text site = SiteText(process_, row);
    const Text object = ObjectText(process_, row);
    deletion.Add("DELETE FROM ", TableName);
    deletion.Add(" WHERE SITE=", site);
    deletion.Add(" AND OBJECT =", object);
    if (row.Has("hasSerialNumber")) deletion.Add(" AND OBJECTNR =", Encoded(row, "getSerialNumber"));
    deletion.Add(" AND TERM =", Terms(row));
  }
  Text recordsAffected;
  process_.LocalConnection->Execute(deletion.text(), recordsAffected);
  dcount = CheckedAdd(dcount, RoundToInt32(ToDouble(recordsAffected)));
}

void clsDataCopy::ApplySiteContractRow(const Row& row, const Text& TableName) {
  const bool isGeneration3 = process_.ErpGeneration == kGeneration3;
  if (CountUpdate(isGeneration3 ? SiteContractUpdate3(row, TableName) : SiteContractUpdate8(row, TableName))) return;
  CountInsert(isGeneration3 ? SiteContractInsert3(row, TableName) : SiteContractInsert8(row, TableName));
}

SqlText clsDataCopy::SiteContractUpdate3(const Row& row, const Text& TableName) const {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", Encoded(row, "getConfiguration"));
  if (row.Has("hasServiceContract")) update.Add(", CONTRACT = ", Encoded(row, "getServiceContract"));
  update.Add(", TERM = ", Terms(row));
  update.Add(", LINE = ", Line(row));
  if (row.Has("hasEffectiveDate")) update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  // A line that moved to another site is found by the site that it had.
  if (!row.Has("hasContractConfigurationLines")) {
    update.Add("SITE =", Encoded(row, "getConfiguration"));
  } else if (Row(row.Get("getContractConfigurationLines").AsObject()).Has("hasConfiguration")) {
    const Row oldValues(row.Get("getContractConfigurationLines").AsObject());
    update.Add("SITE =", Encoded(oldValues, "getConfiguration"));
  } else {
    update.Add("SITE  =", Encoded(row, "getConfiguration"));
  }
  update.Add(" AND CONTRACT =", Encoded(row, "getServiceContract"));
  update.Add("AND TERM = ", Terms(row));  // right behind the closing quote
  update.Add("AND LINE = ", Line(row));   // right behind the last digit
  return update;
}

SqlText clsDataCopy::SiteContractInsert3(const Row& row, const Text& TableName) const {
  SqlText insert("INSERT INTO ", TableName);
  insert.Add(" (SITE ");
  if (row.Has("hasServiceContract")) insert.Add(",CONTRACT ");
  insert.Add(", TERM ");
  insert.Add(", LINE ");
  if (row.Has("hasEffectiveDate")) insert.Add(",EFFECTIVE_DATE ");
  if (row.Has("hasExpiryDate")) insert.Add(",EXPIRY_DATE ");
  insert.Add(",upd_flag )VALUES (", Encoded(row, "getConfiguration"));
  if (row.Has("hasServiceContract")) insert.Add(",", Encoded(row, "getServiceContract"));
  insert.Add(",", Terms(row));
  insert.Add(",", Line(row));
  if (row.Has("hasEffectiveDate")) insert.Add(",", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) insert.Add(",", EncodedDate(row, "getExpiryDate"));
  insert.Add(",0)");
  return insert;
}

SqlText clsDataCopy::SiteContractUpdate8(const Row& row, const Text& TableName) const {
  const Text site = SiteText(process_, row);
  const Text object = ObjectText(process_, row);
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", site);
  if (row.Has("hasServiceContract1")) update.Add(", CONTRACT = ", Encoded(row, "getServiceContract1"));
  update.Add(", OBJECT = ", object);
  if (row.Has("hasSerialNumber")) update.Add(", OBJECTNR = ", Encoded(row, "getSerialNumber"));
  update.Add(", TERM = ", Terms(row));
  if (row.Has("hasEffectiveDate")) update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("SITE =", site);
  update.Add(" AND CONTRACT =", Encoded(row, "getServiceContract1"));  // the match asks no gate
  update.Add(" AND OBJECT =", object);
  update.Add(" AND OBJECTNR =", Encoded(row, "getSerialNumber"));
  update.Add("AND TERM = ", Terms(row));
  return update;
}

SqlText clsDataCopy::SiteContractInsert8(const Row& row, const Text& TableName) const {
  const Text site = SiteText(process_, row);
  const Text object = ObjectText(process_, row);
  SqlText insert("INSERT INTO ", TableName);
  insert.Add(" (SITE ");
  if (row.Has("hasServiceContract1")) insert.Add(",CONTRACT ");
  insert.Add(",OBJECT ");
  if (row.Has("hasSerialNumber")) insert.Add(",OBJECTNR ");
  insert.Add(",TERM ");
  if (row.Has("hasEffectiveDate")) insert.Add(",EFFECTIVE_DATE ");
  if (row.Has("hasExpiryDate")) insert.Add(",EXPIRY_DATE ");
  insert.Add(",upd_flag )VALUES (", site);
  if (row.Has("hasServiceContract1")) insert.Add(",", Encoded(row, "getServiceContract1"));
  insert.Add(",", object);
  if (row.Has("hasSerialNumber")) insert.Add(",", Encoded(row, "getSerialNumber"));
  insert.Add(",", Terms(row));
  if (row.Has("hasEffectiveDate")) insert.Add(",", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) insert.Add(",", EncodedDate(row, "getExpiryDate"));
  insert.Add(",0)");
  return insert;
}

}  // namespace zenqay
