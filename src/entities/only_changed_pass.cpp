// The only-changed pass: apply or delete the rows that changed in the ERP since the table's last update time.
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "job/clsDataCopy.h"
#include "localdb/copy_state.h"
#include "process/QTMDeclarations.h"
#include "process/logs.h"

namespace zenqay {
namespace {

/// The objects that say what a net-change listing gives.
struct Criteria {
  Object criteria;
  Object input;
  Object output;
  Object period;
  std::vector<Object> parameters;
};

Criteria CreateCriteria(ComponentHost& components, std::size_t parameterCount) {
  Criteria created;
  created.criteria = components.Create(kCriteriaClass);
  created.input = components.Create(kCriteriaInputClass);
  created.output = components.Create(kCriteriaOutputClass);
  created.period = components.Create(kCriteriaPeriodClass);
  for (std::size_t i = 0; i < parameterCount; ++i) {
    created.parameters.push_back(components.Create(kCriteriaParameterClass));
  }
  return created;
}

void PassByReference(const Object& target, std::string_view operation, const Object& argument) {
  Value reference = argument;
  target.Call(operation, Argument::ByReference(reference));
}

void SetPeriod(const Criteria& selection, const Object& fromDate, const Object& toDate) {
  selection.period.Call("setFrom", fromDate);
  selection.period.Call("setTo", toDate);
  PassByReference(selection.criteria, "setNetListPeriod", selection.period);
}

}  // namespace

Enumeration clsDataCopy::ListChanges(const Text& KXWBusComponent, const OnlyChangedPass& entity, const Text& TableName,
                                     ErpSource& erp, Object& toDate) {
  entity.open(erp);
  RegisterManager(process_, erp.manager.object());
  const Criteria selection = CreateCriteria(process_.components, entity.parameterCount);
  erp.manager.Initialize(KXWBusComponent);

  const Object fromDate = GetLastUpdateDate(process_, TableName);
  toDate = GetCurrentErpDate(process_);
  SetPeriod(selection, fromDate, toDate);

  for (std::size_t i = 0; i < entity.ranges.size(); ++i) {
    const Object& parameter = selection.parameters[i];
    parameter.Call("setFieldName", entity.ranges[i].fieldName);
    parameter.Call("setFrom", entity.ranges[i].from);
    parameter.Call("setTo", entity.ranges[i].to);
  }
  for (std::size_t i = 0; i < entity.ranges.size(); ++i) {
    PassByReference(selection.input, "addNetListParameter", selection.parameters[i]);
  }
  PassByReference(selection.criteria, "setNetListIn", selection.input);

  for (const OutputField& field : entity.fields) {
    selection.output.Call(field.withOld ? "addFieldNameWithOld" : "addFieldNameWithoutOld", field.name);
  }
  PassByReference(selection.criteria, "setNetListOut", selection.output);

  return erp.manager.NetList(entity.listing, erp.tableCode, selection.criteria);
}

void clsDataCopy::CopyOnlyChanged(const Text& TableName, const Text& KXWBusComponent, const OnlyChangedPass& entity) {
  ucount = 0;
  icount = 0;
  dcount = 0;
  ErpSource erp = entity.known;
  try {
    Object toDate;
    const Enumeration rows = ListChanges(KXWBusComponent, entity, TableName, erp, toDate);
    while (rows.HasMoreElements()) {
      const Row row = rows.NextElement();
      const Text action = Trim(row.GetText("getActionType"));
      entity.change(row, action);
    }
    if (ConvertErpDateToSql(process_, toDate, false)) {
      lutm = process_.DateLiteral;
      SetLastUpdateTime(process_, TableName, lutm);
    }
    WriteTableRunLog(process_, TableName, icount, ucount, dcount);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    // The manager is not closed on this path, neither here nor above; it goes with its last reference.
    WriteErrorLog(process_, error);
    RaiseCopyFailure(error, entity.failureSource, entity.entityLabel, erp.erpLabel);
  }
}

}  // namespace zenqay
