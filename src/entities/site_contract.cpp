// Site contract: the lines that tie a contract to what it covers. Generation 3 knows a site, a contract, a term and a
// line; generation 8 a site, a contract, an object with its serial number and a term. Generation 1 has no component.
#include "base/numbers.h"
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns3[] = {"SITE", "CONTRACT", "TERM", "LINE", "EFFECTIVE_DATE", "EXPIRY_DATE", "upd_flag"};
constexpr const char* kColumns8[] = {"SITE", "CONTRACT",       "OBJECT",      "OBJECTNR",
                                     "TERM", "EFFECTIVE_DATE", "EXPIRY_DATE", "upd_flag"};

constexpr KeyField kKeys3[] = {{"getConfiguration", "SITE"},
                               {"getServiceContract", "CONTRACT"},
                               {"getContractTerms", "TERM"},
                               {"getLine", "LINE"}};
constexpr KeyField kKeys8[] = {{"getCluster", "SITE"},
                               {"getServiceContract1", "CONTRACT"},
                               {"getItem", "OBJECT"},
                               {"getSerialNumber", "OBJECTNR"},
                               {"getContractTerms", "TERM"}};

constexpr EntitySource kSources[] = {
    {kGeneration3, "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager", "tsctm310", "STIT0095",
     kColumns3, kKeys3, /*isFollowedByWarrantyExpiry=*/false, /*listsForChanges=*/true},
    {kGeneration8, "Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager", "tsctm110", "STIT0097",
     kColumns8, kKeys8},
};

// Ranges of the numeric keys.
constexpr std::int16_t kLowest = 0;
constexpr std::int16_t kHighestTerm3 = 9999;
constexpr std::int16_t kHighestLine3 = 999;
constexpr std::int16_t kHighestChangedLine3 = 99;
constexpr std::int16_t kHighest8 = 999;

Text Terms(const Row& row) {
  return row.Has("hasContractTerms") ? row.GetJoined("getContractTerms") : "0";
}

Text Line(const Row& row) {
  return row.Has("hasLine") ? row.GetJoined("getLine") : "0";
}

SqlText Update3(const modDeclarations& process, const Row& row, const Text& TableName) {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", Encoded(process, row, "getConfiguration"));
  if (row.Has("hasServiceContract")) update.Add(", CONTRACT = ", Encoded(process, row, "getServiceContract"));
  update.Add(", TERM = ", Terms(row));
  update.Add(", LINE = ", Line(row));
  if (row.Has("hasEffectiveDate")) update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  // A line that moved to another site is found by the site that it had.
  if (!row.Has("hasContractConfigurationLines")) {
    update.Add("SITE =", Encoded(process, row, "getConfiguration"));
  } else if (row.GetRow("getContractConfigurationLines").Has("hasConfiguration")) {
    const Row oldValues = row.GetRow("getContractConfigurationLines");
    update.Add("SITE =", Encoded(process, oldValues, "getConfiguration"));
  } else {
    update.Add("SITE  =", Encoded(process, row, "getConfiguration"));
  }
  update.Add(" AND CONTRACT =", Encoded(process, row, "getServiceContract"));
  update.Add("AND TERM = ", Terms(row));  // right behind the closing quote
  update.Add("AND LINE = ", Line(row));   // right behind the last digit
  return update;
}

SqlText Insert3(const modDeclarations& process, const Row& row, const Text& TableName) {
  SqlText insert("INSERT INTO ", TableName);
  insert.Add(" (SITE ");
  if (row.Has("hasServiceContract")) insert.Add(",CONTRACT ");
  insert.Add(", TERM ");
  insert.Add(", LINE ");
  if (row.Has("hasEffectiveDate")) insert.Add(",EFFECTIVE_DATE ");
  if (row.Has("hasExpiryDate")) insert.Add(",EXPIRY_DATE ");
  insert.Add(",upd_flag )VALUES (", Encoded(process, row, "getConfiguration"));
  if (row.Has("hasServiceContract")) insert.Add(",", Encoded(process, row, "getServiceContract"));
  insert.Add(",", Terms(row));
  insert.Add(",", Line(row));
  if (row.Has("hasEffectiveDate")) insert.Add(",", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) insert.Add(",", EncodedDate(row, "getExpiryDate"));
  insert.Add(",0)");
  return insert;
}

SqlText Update8(const modDeclarations& process, const Row& row, const Text& TableName) {
  const ClusterItemKey key(process, row);
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", key.site);
  if (row.Has("hasServiceContract1")) update.Add(", CONTRACT = ", Encoded(process, row, "getServiceContract1"));
  update.Add(", OBJECT = ", key.object);
  if (row.Has("hasSerialNumber")) update.Add(", OBJECTNR = ", Encoded(process, row, "getSerialNumber"));
  update.Add(", TERM = ", Terms(row));
  if (row.Has("hasEffectiveDate")) update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("SITE =", key.site);
  update.Add(" AND CONTRACT =", Encoded(process, row, "getServiceContract1"));  // the match asks no gate
  update.Add(" AND OBJECT =", key.object);
  update.Add(" AND OBJECTNR =", Encoded(process, row, "getSerialNumber"));
  update.Add("AND TERM = ", Terms(row));
  return update;
}

SqlText Insert8(const modDeclarations& process, const Row& row, const Text& TableName) {
  const ClusterItemKey key(process, row);
  SqlText insert("INSERT INTO ", TableName);
  insert.Add(" (SITE ");
  if (row.Has("hasServiceContract1")) insert.Add(",CONTRACT ");
  insert.Add(",OBJECT ");
  if (row.Has("hasSerialNumber")) insert.Add(",OBJECTNR ");
  insert.Add(",TERM ");
  if (row.Has("hasEffectiveDate")) insert.Add(",EFFECTIVE_DATE ");
  if (row.Has("hasExpiryDate")) insert.Add(",EXPIRY_DATE ");
  insert.Add(",upd_flag )VALUES (", key.site);
  if (row.Has("hasServiceContract1")) insert.Add(",", Encoded(process, row, "getServiceContract1"));
  insert.Add(",", key.object);
  if (row.Has("hasSerialNumber")) insert.Add(",", Encoded(process, row, "getSerialNumber"));
  insert.Add(",", Terms(row));
  if (row.Has("hasEffectiveDate")) insert.Add(",", EncodedDate(row, "getEffectiveDate"));
  if (row.Has("hasExpiryDate")) insert.Add(",", EncodedDate(row, "getExpiryDate"));
  insert.Add(",0)");
  return insert;
}

/// Every term and line of the contract at the site, not only the line that the row names.
SqlText Deletion3(const modDeclarations& process, const Row& row, const Text& TableName) {
  SqlText deletion("DELETE FROM ", TableName);
  deletion.Add(" WHERE SITE = ", Encoded(process, row, "getConfiguration"));
  deletion.Add(" AND CONTRACT =", Encoded(process, row, "getServiceContract"));
  return deletion;
}

SqlText Deletion8(const modDeclarations& process, const Row& row, const Text& TableName) {
  const ClusterItemKey key(process, row);
  SqlText deletion("DELETE FROM ", TableName);
  deletion.Add(" WHERE SITE=", key.site);
  deletion.Add(" AND OBJECT =", key.object);
  if (row.Has("hasSerialNumber")) deletion.Add(" AND OBJECTNR =", Encoded(process, row, "getSerialNumber"));
  deletion.Add(" AND TERM =", Terms(row));
  return deletion;
}

/// The change rows of generation 3 come without their term: it is asked for by the row's own contract and line, on the
/// manager whose change listing is still open. With several terms the last one stays.
class TermsLookup {
 public:
  void Complete(const Row& row, const Manager& siteContracts) {
    const Value fromContract = row.Get("getServiceContract");
    const Value toContract = row.Get("getServiceContract");
    const Value fromLine = row.Get("getLine");
    const Value toLine = row.Get("getLine");
    terms_ = siteContracts.List(fromContract, toContract, kLowest, kHighestTerm3, fromLine, toLine);
    while (terms_.HasMoreElements()) {
      element_ = terms_.NextElement();
      const Value term = element_.Get("getContractTerms");
      row.Set("setContractTerms", term);
    }
  }

 private:
  // Kept until the next row's, and to the end of the pass.
  Enumeration terms_;
  Row element_;
};

}  // namespace

const Entity clsDataCopy::kSiteContract = {
    .name = "sitecontract",
    .label = "STIT0098",
    .sources = kSources,
    .hasPrimaryKey = false,
    .copy = &clsDataCopy::CopySiteContract,
};

void clsDataCopy::CopySiteContract(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySiteContractFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySiteContractChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopySiteContractFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kSiteContract,
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
  OnlyChangedPass lines = {.entity = kSiteContract,
                           .failureSource = "SiteContracts - Only Changed",
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
  TermsLookup terms;
  lines.change = [&](const Row& row, const Text& action) {
    const bool isGeneration3 = process_.ErpGeneration == kGeneration3;
    if (action != "D") {
      if (isGeneration3) terms.Complete(row, lines.erp.manager);
      return ApplySiteContractRow(row, TableName);
    }
    const SqlText deletion = isGeneration3 ? Deletion3(process_, row, TableName) : Deletion8(process_, row, TableName);
    Text recordsAffected;
    process_.LocalConnection->Execute(deletion.text(), recordsAffected);
    // Counts the rows that went, unlike every other entity.
    dcount = CheckedAdd(dcount, RoundToInt32(ToDouble(recordsAffected)));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, lines);
}

void clsDataCopy::ApplySiteContractRow(const Row& row, const Text& TableName) {
  const bool isGeneration3 = process_.ErpGeneration == kGeneration3;
  if (CountUpdate(isGeneration3 ? Update3(process_, row, TableName) : Update8(process_, row, TableName))) return;
  CountInsert(isGeneration3 ? Insert3(process_, row, TableName) : Insert8(process_, row, TableName));
}

}  // namespace zenqay
