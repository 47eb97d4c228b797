// Contract. A full copy takes every contract; the only-changed pass follows a contract into and out of one status, so
// that the local table keeps the contracts of that status up to date.
#include "base/numbers.h"
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"CONTRACT", "CDESCRIPTION", "upd_flag"};
// A contract that becomes active in a change pass fills a column of its own.
constexpr const char* kColumns8[] = {"CONTRACT", "CONTRACTS", "CDESCRIPTION", "upd_flag"};

constexpr KeyField kKeys1[] = {{"getContract", "CONTRACT"}};
constexpr KeyField kKeys[] = {{"getServiceContract", "CONTRACT"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtssmaContracts.ContractsManager", "tssma220", "STIT0088", kColumns, kKeys1},
    {kGeneration3, "Kv50QTMtsctmServiceContracts.ServiceContractsManager", "tsctm300", "STIT0095", kColumns, kKeys},
    {kGeneration8, "Kv61QTMtsctmServiceContracts.ServiceContractsManager", "tsctm300", "STIT0097", kColumns8, kKeys},
};

/// What a row's key and its old values are called.
struct ContractAccessors {
  std::string_view getKey;
  std::string_view hasOldValues;
  std::string_view getOldValues;
};

constexpr ContractAccessors kContractAccessors = {"getContract", "hasContracts", "getContracts"};
constexpr ContractAccessors kServiceContractAccessors = {"getServiceContract", "hasServiceContracts",
                                                         "getServiceContracts"};

const ContractAccessors& ContractAccessorsOf(const Text& generation) {
  return generation == kGeneration1 ? kContractAccessors : kServiceContractAccessors;
}

bool StatusIs(const Row& row, std::int16_t status) {
  const Value value = row.Get("getContractStatus");
  return Naming("getContractStatus", [&] { return value.EqualsNumber(status); });
}

bool StatusIsNot(const Row& row, std::int16_t status) {
  const Value value = row.Get("getContractStatus");
  return Naming("getContractStatus", [&] { return !value.IsNull() && !value.EqualsNumber(status); });
}

SqlText ContractUpdate(const modDeclarations& process, const Row& row, const Text& TableName) {
  const ContractAccessors& erp = ContractAccessorsOf(process.ErpGeneration);
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("CONTRACT = ", Encoded(process, row, erp.getKey));
  if (row.Has("hasDescription")) update.Add(", CDESCRIPTION = ", Encoded(process, row, "getDescription"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("CONTRACT =", Encoded(process, row, erp.getKey));
  return update;
}

}  // namespace

const Entity clsDataCopy::kContract = {
    .name = "contracts",
    .label = "STIT0100",
    .sources = kSources,
    .hasPrimaryKey = false,
    .copy = &clsDataCopy::CopyContract,
};

void clsDataCopy::CopyContract(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyContractFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyContractChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyContractFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kContract,
            .list =
                [this](const Manager& contracts) {
                  return contracts.List("", HighValueString(process_.ErpGeneration == kGeneration1 ? 10 : 9));
                },
            .apply = [&](const Row& row) { ApplyContractRow(row, TableName); }});
}

void clsDataCopy::CopyContractChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass contracts = {.entity = kContract, .failureSource = "Contract - Only Changed"};
  if (process_.ErpGeneration == kGeneration1) {
    contracts.ranges = {{"ccon", "", HighValueString(10)}};
    contracts.fields = {"ccon", WithOld("desc"), WithOld("ctst")};
    contracts.listing = "NetListContracts";
  } else if (process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8) {
    contracts.ranges = {{"csco", "", HighValueString(9)}};
    contracts.fields = {"csco", WithOld("desc"), WithOld("scon")};
    contracts.listing = "NetListServiceContracts";
  }
  contracts.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyContractChange(action, row, TableName);
    const ContractAccessors& erp = ContractAccessorsOf(process_.ErpGeneration);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE CONTRACT=", Encoded(process_, row, erp.getKey)));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, contracts);
}

void clsDataCopy::ApplyContractRow(const Row& row, const Text& TableName) {
  if (CountUpdate(ContractUpdate(process_, row, TableName))) return;

  const ContractAccessors& erp = ContractAccessorsOf(process_.ErpGeneration);
  SqlText insert("INSERT INTO ", TableName, " (CONTRACT ");
  if (row.Has("hasDescription")) insert.Add(",CDESCRIPTION ");
  insert.Add(",upd_flag )VALUES (", Encoded(process_, row, erp.getKey));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  insert.Add(",0)");
  CountInsert(insert);
}

/// Follows a contract into and out of the one status that a change pass keeps; the numbers of the status are the ERP's.
/// Four rules, of which a row can meet more than one. Every getter that a rule names is called, also where an earlier
/// answer has decided.
void clsDataCopy::ApplyContractChange(const Text& action, const Row& row, const Text& TableName) {
  const std::int16_t CopiedContractStatus = process_.ErpGeneration == kGeneration1 ? 2 : 10;
  const ContractAccessors& erp = ContractAccessorsOf(process_.ErpGeneration);

  // Leaving the status.
  if (action == "U") {
    const bool hasStatus = row.Has("hasContractStatus");
    const bool isOther = StatusIsNot(row, CopiedContractStatus);
    if (hasStatus && isOther) DeleteContractRow(row, TableName);
  }

  // Entering the status.
  if (row.Has(erp.hasOldValues)) {
    const bool hadStatus = row.GetRow(erp.getOldValues).Has("hasContractStatus");
    const bool wasOther = StatusIsNot(row.GetRow(erp.getOldValues), CopiedContractStatus);
    const bool hasStatus = row.Has("hasContractStatus");
    const bool isCopied = StatusIs(row, CopiedContractStatus);
    if (action == "U" && hadStatus && wasOther && hasStatus && isCopied) InsertContractRow(row, TableName);
  }

  // A changed text.
  const bool hasDescription = row.Has("hasDescription");
  if (action == "U" && hasDescription) UpdateContractRow(row, TableName);

  // A new contract.
  const bool hasStatus = row.Has("hasContractStatus");
  const bool isCopied = StatusIs(row, CopiedContractStatus);
  if (action == "I" && hasStatus && isCopied) InsertContractRow(row, TableName);
}

void clsDataCopy::DeleteContractRow(const Row& row, const Text& TableName) {
  const ContractAccessors& erp = ContractAccessorsOf(process_.ErpGeneration);
  CountDelete(SqlText("DELETE FROM ", TableName, " WHERE CONTRACT=", Encoded(process_, row, erp.getKey)));
}

void clsDataCopy::UpdateContractRow(const Row& row, const Text& TableName) {
  std::int16_t recordsAffected = 0;  // not looked at: a row that is missing is not inserted here
  process_.LocalConnection->Execute(ContractUpdate(process_, row, TableName).text(), recordsAffected);
  ucount = CheckedAdd(ucount, 1);
}

void clsDataCopy::InsertContractRow(const Row& row, const Text& TableName) {
  bool isCopied = false;
  if (process_.ErpGeneration == kGeneration1) isCopied = StatusIs(row, 2);
  if (process_.ErpGeneration == kGeneration3) isCopied = StatusIs(row, 10);
  if (process_.ErpGeneration == kGeneration8) isCopied = StatusIs(row, 10);
  if (!isCopied) return;

  // Generation 8 has its own column and its own field here.
  const bool isGeneration8 = process_.ErpGeneration == kGeneration8;
  const std::string_view getKey = isGeneration8 ? "getCluster" : ContractAccessorsOf(process_.ErpGeneration).getKey;
  SqlText insert("INSERT INTO ", TableName, isGeneration8 ? " (CONTRACTS " : " (CONTRACT ");
  if (row.Has("hasDescription")) insert.Add(",CDESCRIPTION ");
  insert.Add(",upd_flag )VALUES (", Encoded(process_, row, getKey));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  insert.Add(",0)");
  std::int16_t recordsAffected = 0;
  process_.LocalConnection->Execute(insert.text(), recordsAffected);
  icount = CheckedAdd(icount, 1);
}

}  // namespace zenqay
