// The process-wide values. The entry makes one modDeclarations and hands it down by reference.
#pragma once

#include <array>
#include <memory>
#include <pugixml.hpp>

#include "contracts/connection.h"
#include "contracts/platform.h"
#include "system/append_file.h"
#include "trace/trace.h"

namespace zenqay {

/// One table that can be copied, at the index of its table id.
struct TableEntry {
  Text ERPTableID;
  Text TableName;
  Text Caption;
};

inline constexpr std::int32_t kHighestTableId = 128;

struct modDeclarations {
  Platform& platform;
  ComponentHost& components;
  Database& database;
  Trace* trace = nullptr;  // null when no trace is written

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
  pugi::xml_document LabelDocument;
  bool LabelDocumentLoaded = false;
  Text LabelFaultNamed;  // what was wrong with the label file when it was last read
  Text LogFilePath;      // the run log of the current table, empty until a job has set it
  bool RunLogDateWritten = false;
  AppendFile LogFile;  // the one handle on which every log record is written
};

}  // namespace zenqay
