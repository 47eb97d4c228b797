// The process-wide values. The entry makes one modDeclarations and hands it down by reference.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include "contracts/connection.h"
#include "contracts/data_copy_events.h"
#include "contracts/interruption.h"
#include "contracts/job_listener.h"
#include "contracts/platform.h"
#include "process/safeguards.h"

namespace pugi {
class xml_document;
}

namespace zenqay {

class clsDataCopyHandler;

/// One table that can be copied, at the index of its table id. The type is qualified since a field bears its name.
struct TableEntry {
  zenqay::Text ERPTableID;
  zenqay::Text TableName;
  zenqay::Text Text;  // the caption
};

inline constexpr std::int32_t kHighestTableId = 128;

struct modDeclarations {
  Platform& platform;
  ComponentHost& components;
  Database& database;

  /// Who hears the job's events, given the handler's sinks: the sinks themselves, or what stands in front of them.
  std::function<DataCopyEvents&(DataCopyEvents& sinks)> eventsThrough = std::identity();

  /// Whether the job is asked to stop. The seams know the same one.
  std::shared_ptr<Interruption> interruption = std::make_shared<Interruption>();

  std::shared_ptr<JobListener> listener = std::make_shared<JobListener>();

  Safeguards safeguards;

  /// The `productid` of this system's rows in `tstables`. Related products are 4009 and 1028; where behaviour depends
  /// on the product, the code compares this value. Nothing but a test ever changes it.
  Text ProductId = "4010";

  // From the command line.
  bool NoStatusComponent = false;
  bool TableStatusEnabled = false;
  std::int32_t StatusHandle = 0;
  std::int16_t InstanceNumber = 0;
  Text ErpGeneration;  // "1", "3" or "8"; also the group id of the generation's tables
  Text FreeText98;
  Text FreeText99;
  Text LogDirectoryAsGiven;
  bool AllTablesRun = false;

  std::shared_ptr<clsDataCopyHandler> DataCopyHandler;  // the one handler, while the entry has it

  // The local database.
  std::int16_t DatabasePlatform = 0;  // 1 SQL Server, 2 Oracle
  Text CurrentDatabaseName;
  std::array<TableEntry, kHighestTableId + 1> TableRegistry{};
  std::shared_ptr<Connection> LocalConnection;
  std::shared_ptr<Recordset> LocalRecordset;
  std::shared_ptr<Errors> LocalErrors;  // absent until a table's copy has started

  // The ERP.
  Object ErpSession;
  Object MinimumDate;
  Object MaximumDate;
  Text DateLiteral;  // the result of the latest ConvertErpDateToSql, empty when there was none

  // Texts and logs.
  Text LabelLanguage;                                 // "de"; empty for the one that the texts are written in, English
  std::shared_ptr<pugi::xml_document> LabelDocument;  // absent until the first label was looked up
  bool LabelDocumentLoaded = false;
  Text LabelFaultNamed;  // what was wrong with the label file when it was last read
  Text LogFilePath;      // the run log of the current table, empty until a job has set it
  bool RunLogDateWritten = false;
};

}  // namespace zenqay
