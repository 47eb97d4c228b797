#include "doubles/copy_fixture.h"

#include "doubles/embedded_database.h"
#include "localdb/local_connection.h"

namespace zenqay {
namespace {

const Value kNothing;

/// Every operation that only takes something.
void Accept(ScriptedObject& object, const std::vector<Text>& operations) {
  for (const Text& operation : operations) object.Answers(operation, kNothing);
}

}  // namespace

CopyFixture::CopyFixture(const Text& generation, std::int16_t databasePlatform)
    : ProcessFixture(databasePlatform), job(process, *this) {
  Open(generation, "");
}

CopyFixture::CopyFixture(const Text& generation, EmbeddedDatabase& file)
    : ProcessFixture(file.databases), job(process, *this) {
  Open(generation, file.connectionString);
}

void CopyFixture::Open(const Text& generation, const Text& connectionString) {
  process.ErpGeneration = generation;
  const auto session = components.Make("session");
  Accept(*session, {"addManager"});
  process.ErpSession = Object(session);
  OpenLocalConnection(process, connectionString, "");
  process.LocalErrors = process.LocalConnection->ErrorCollection();
  journal.Take();
}

void CopyFixture::Apply(RowOperation operation, const RowFields& fields, const Text& TableName) {
  ApplyTo(operation, RowWith(fields), TableName);
}

std::shared_ptr<ScriptedObject> CopyFixture::AddManager(const Text& classId, const Text& name,
                                                        std::vector<Object> rows) {
  const auto manager = components.Register(classId, name);
  Accept(*manager, {"Initialize", "Close"});
  const Value enumeration = Object(components.MakeEnumeration("rows", std::move(rows)));
  for (const char* operation : {"List", "NetListLocations", "NetListConfigurations", "NetListClusters",
                                "NetListInstallations", "NetListProblems", "NetListPriorities", "NetListSymptoms",
                                "NetListObjects", "NetListContractConfigurationLines", "NetListContracts",
                                "NetListServiceContracts", "NetListWarranties", "NetListSerializedItems"}) {
    manager->Answers(operation, enumeration);
  }
  RegisterCriteria();
  return manager;
}

void CopyFixture::RegisterCriteria() {
  Accept(*components.Register("NetListSelectionCriteria.NetListSelectionCriteria", "criteria"),
         {"setNetListPeriod", "setNetListIn", "setNetListOut"});
  Accept(*components.Register("NetListSelectionCriteria.NetListIn", "input"), {"addNetListParameter"});
  Accept(*components.Register("NetListSelectionCriteria.NetListOut", "output"),
         {"addFieldNameWithoutOld", "addFieldNameWithOld"});
  Accept(*components.Register("NetListSelectionCriteria.NetListPeriod", "period"), {"setFrom", "setTo"});
  Accept(*components.Register("NetListSelectionCriteria.NetListParameter", "parameter"),
         {"setFieldName", "setFrom", "setTo"});
}

CopyResult CopyFixture::CopyTable(std::int16_t tableId, const Text& tableName, std::int16_t SyncMethod) {
  process.TableRegistry[static_cast<std::size_t>(tableId)].TableName = tableName;
  return job.CopySingleTable("", "", tableId, SyncMethod, "", "100");
}

Text CopyFixture::Counters() const {
  return "ucount " + std::to_string(job.ucount) + ", icount " + std::to_string(job.icount) + ", dcount " +
         std::to_string(job.dcount);
}

Text CopyFixture::JournalWithout(const std::vector<Text>& beginnings) {
  Text kept;
  const Text all = journal.Take();
  for (std::size_t from = 0; from < all.size();) {
    const std::size_t end = all.find('\n', from) + 1;
    const Text line = all.substr(from, end - from);
    bool left = false;
    for (const Text& beginning : beginnings) left = left || line.starts_with(beginning);
    if (!left) kept += line;
    from = end;
  }
  return kept;
}

void CopyFixture::DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) {
  journal.Line("event DataCopyAlreadyInProgress(" + Shown(iTime) + ", " + Shown(iTableName) + ")");
}

void CopyFixture::DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount,
                                               Value dcount) {
  journal.Line("event DataCopyComplete(" + Shown(iTime) + ", " + Shown(iTableName) + ", " + Shown(icount) + ", " +
               Shown(ucount) + ", " + Shown(dcount) + ")");
}

void CopyFixture::DataCopyJob_DataCopydone() {
  journal.Line("event DataCopydone()");
}

void CopyFixture::DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) {
  journal.Line("event DataCopyError(" + Shown(iTime) + ", " + Shown(iTableName) + ", " + Shown(ieNumber) + ", " +
               Shown(ieMessage) + ")");
}

void CopyFixture::DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) {
  journal.Line("event DataCopyStarted(" + Shown(iTime) + ", " + Shown(iTableName) + ")");
}

}  // namespace zenqay
