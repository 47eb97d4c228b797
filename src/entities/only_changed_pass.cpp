// The only-changed pass: apply or delete the rows that changed in the ERP since the table's last update time.
#include "entities/passes.h"
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "job/clsDataCopy.h"
#include "localdb/copy_state.h"
#include "process/QTMDeclarations.h"
#include "process/logs.h"

namespace zenqay {
namespace {

/// What a pass has of the ERP besides its manager. All of it is kept to the end of the pass, behind the record of a
/// failure.
struct ChangeListing {
  Object criteria;
  Object input;
  Object output;
  Object period;
  std::vector<Object> parameters;
  Object fromDate;
  Object toDate;
  Enumeration rows;
  Row row;
};

void CreateCriteria(ComponentHost& components, std::size_t parameterCount, ChangeListing& listing) {
  listing.criteria = components.Create(kCriteriaClass);
  listing.input = components.Create(kCriteriaInputClass);
  listing.output = components.Create(kCriteriaOutputClass);
  listing.period = components.Create(kCriteriaPeriodClass);
  for (std::size_t i = 0; i < parameterCount; ++i) {
    listing.parameters.push_back(components.Create(kCriteriaParameterClass));
  }
}

void PassByReference(const Object& target, std::string_view operation, const Object& argument) {
  Value reference = argument;
  CallNamed(target, operation, Argument::ByReference(reference));
}

void SetPeriod(const ChangeListing& listing) {
  CallNamed(listing.period, "setFrom", listing.fromDate);
  CallNamed(listing.period, "setTo", listing.toDate);
  PassByReference(listing.criteria, "setNetListPeriod", listing.period);
}

void SetRanges(const ChangeListing& listing, const std::vector<ListingRange>& ranges) {
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    const Object& parameter = listing.parameters[i];
    CallNamed(parameter, "setFieldName", ranges[i].fieldName);
    CallNamed(parameter, "setFrom", ranges[i].from);
    CallNamed(parameter, "setTo", ranges[i].to);
  }
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    PassByReference(listing.input, "addNetListParameter", listing.parameters[i]);
  }
  PassByReference(listing.criteria, "setNetListIn", listing.input);
}

void SetFields(const ChangeListing& listing, const std::vector<OutputField>& fields) {
  for (const OutputField& field : fields) {
    CallNamed(listing.output, field.withOld ? "addFieldNameWithOld" : "addFieldNameWithoutOld", field.name);
  }
  PassByReference(listing.criteria, "setNetListOut", listing.output);
}

void ListChanges(modDeclarations& process, const Text& TableName, const Text& KXWBusComponent, OnlyChangedPass& pass,
                 ChangeListing& listing) {
  ErpSource& erp = pass.erp;
  OpenSource(process, pass.entity, pass.open, erp);
  erp.manager = Manager(RegisterManager(process, erp.manager.object()));
  CreateCriteria(process.components, pass.parameterCount, listing);
  erp.manager.Initialize(KXWBusComponent);
  listing.fromDate = GetLastUpdateDate(process, TableName);
  listing.toDate = GetCurrentErpDate(process);
  SetPeriod(listing);
  SetRanges(listing, pass.ranges);
  SetFields(listing, pass.fields);
  listing.rows = erp.manager.NetList(pass.listing, erp.tableCode, listing.criteria);
}

}  // namespace

void clsDataCopy::CopyOnlyChanged(const Text& TableName, const Text& KXWBusComponent, OnlyChangedPass& pass) {
  ucount = 0;
  icount = 0;
  dcount = 0;
  ChangeListing listing;
  RowKey key(KeysOf(process_, pass.entity));
  try {
    ListChanges(process_, TableName, KXWBusComponent, pass, listing);
    RowCounts counts;
    while (listing.rows.HasMoreElements()) {
      listing.row = listing.rows.NextElement(&key);
      NamingRow(key, [&] {
        const Text action = Trim(listing.row.GetText("getActionType"));
        pass.change(listing.row, action);
      });
      counts = {.met = counts.met + 1, .inserted = icount, .updated = ucount, .deleted = dcount};
      process_.listener->RowDone(counts);
    }
    process_.listener->PassDone(counts, std::nullopt);
    if (ConvertErpDateToSql(process_, listing.toDate, false)) {
      lutm = process_.DateLiteral;
      SetLastUpdateTime(process_, TableName, lutm);
    }
    WriteTableRunLog(process_, TableName, icount, ucount, dcount);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process_.interruption->Forbid();
    // The manager is not closed on this path, neither here nor above; it goes with its last reference.
    WriteErrorLog(process_, error);
    RaiseCopyFailure(error, pass.failureSource, pass.entity, pass.erp.erpLabel);
  }
}

}  // namespace zenqay
