#include "check/check.h"

#include "check/database_check.h"
#include "check/erp_check.h"
#include "check/program_files.h"
#include "check/table_check.h"

namespace zenqay {
namespace {

void CheckManagers(modDeclarations& process, const JobLine& line, const std::vector<Text>& tables, bool hasComponents,
                   CheckReport& report) {
  if (!hasComponents) return report.LeaveOut("ERP components of the tables", "the components");
  for (const Text& table : tables) CheckManager(process, line, table, report);
}

}  // namespace

bool RunCheck(Platform& platform, ComponentCatalogue& catalogue, Database& database, const Text& commandLine,
              std::ostream& out) {
  modDeclarations process{.platform = platform, .components = catalogue, .database = database};
  process.safeguards = catalogue.safeguards();
  process.LabelLanguage = catalogue.language();
  CheckReport report(out);
  JobLine line;
  const bool hasLine = CheckLine(process, commandLine, line, report);
  if (hasLine) CheckLogDirectory(line, report);
  CheckLabels(process, report);
  const bool hasComponents = CheckComponents(process, report);
  if (hasComponents) {
    CheckTrace(catalogue.traceFile(), report);
    TellSweepLimit(process.safeguards.sweep, report);
    CheckErp(process, hasLine ? &line : nullptr, report);
  } else {
    report.LeaveOut("ERP adapter, dates and status component", "the components");
  }
  if (hasLine) {
    std::shared_ptr<Connection> connection;
    if (CheckDatabase(process, line, connection, report)) {
      const std::vector<Text> tables = CheckTables(process, line, connection, report);
      CheckManagers(process, line, tables, hasComponents, report);
    }
  } else {
    report.LeaveOut("log directory, database and tables", "the command line");
  }
  report.Conclude();
  return report.CanRun();
}

}  // namespace zenqay
