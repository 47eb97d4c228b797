// A process at its start: a command line that is in order, and everything that it reaches between doubles.
#pragma once

#include "doubles/process_fixture.h"
#include "process/QTMDeclarations.h"
#include "startup/modStartUp.h"

namespace zenqay {

inline constexpr const char* kRegistryQuery =
    "SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where a.productid "
    "= N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label";

inline constexpr const char* kGroupQuery =
    "SELECT tableid FROM tstreenodes WHERE groupid = '1'  AND tableid is not null";

/// Table 1 is "Branch", for which there is no copy: its job shows a message box and is complete. Table 2 is "Site".
class StartFixture : public ProcessFixture {
 public:
  explicit StartFixture(const Text& programDirectory = ZENQAY_SHARE) : ProcessFixture(1, programDirectory) {
    process.ErpGeneration.clear();
    process.DatabasePlatform = 0;
    process.LogFilePath.clear();
    database.Answer(kRegistryQuery,
                    {RegistryRow(1, "Branch", "tssma110", "Branches"), RegistryRow(2, "Site", "tssma120", "Sites")});
    info->Answers("getVersion", "2.4");
    components.Register(kAdapterAccessClass, "access")->Answers("kxiToolKit_getDefaultToolkit", Object(toolkit));
    toolkit->Answers("createUserSession", Object(components.Make("session")));
    handle->Answers("getInstance", Object(status)).Answers("CurrentInstanceNumber", Value());
    for (const char* call : {"writeToMessageBox", "WriteToAlertBox", "UpdateSyncStatus", "UpdateStatusByTable"}) {
      status->Answers(call, Value());
    }
  }

  /// The items of the command line; a test changes what it is about.
  std::vector<Text> items = {"Provider=SQLite;Data Source=C:\\a.db",
                             "SERVICE",
                             "1",
                             "1",
                             directory.path().string(),
                             "100",
                             "5",
                             "",
                             "1",
                             "7",
                             "1"};

  std::shared_ptr<ScriptedObject> info = components.Register(kAdapterInfoClass, "info");
  std::shared_ptr<ScriptedObject> toolkit = components.Make("toolkit");
  std::shared_ptr<ScriptedObject> handle = components.Register(kStatusClass, "handle");
  std::shared_ptr<ScriptedObject> status = components.Make("status");

  static TableRow RegistryRow(std::int32_t id, const Text& name, const Text& erpTableId, const Text& caption) {
    return {{"tableid", id}, {"tablename", name}, {"erptableid", erpTableId}, {"text", caption}};
  }

  Text CommandLine() const {
    Text line;
    for (std::size_t i = 0; i < items.size(); ++i) line += (i == 0 ? "" : "{}") + items[i];
    return line;
  }

  void Run() { RunProcess(process, CommandLine()); }

  Text FileText(const Text& name) const {
    return std::filesystem::exists(directory.path() / name) ? directory.Read(name) : Text("no file");
  }
  Text StartupLog() const { return FileText("ZenqayDBSync.log"); }

  /// The start-up log with this one record.
  static Text StartupRecord(const Text& numberAndDescription) {
    return "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
           "The data copy failed.\r\n"
           "Error is - " +
           numberAndDescription + "\r\n";
  }
};

}  // namespace zenqay
