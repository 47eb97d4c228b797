#include "control/local_tables.h"

#include <algorithm>

#include "check/copied_tables.h"
#include "control/exit_status.h"
#include "control/job_command.h"
#include "control/nearest_word.h"
#include "engines/databases.h"
#include "localdb/local_connection.h"

namespace zenqay {
namespace {

constexpr const char* kProductId = "4010";
constexpr std::int16_t kAnswersWithin = 20;  // seconds: a look at a server that is silent must end

Text Literal(const Text& text) {
  return "N'" + Replaced(text, "'", "''") + "'";
}

Text RegistryQuery(const Text& generation) {
  return Text("SELECT a.tableid, a.tablename, a.lutm, a.in_use FROM tstables a, tstreenodes b, tsi18ntext c ") +
         "WHERE a.productid = " + Literal(kProductId) + " AND b.groupid = " + Literal(generation) +
         " AND a.tableid = b.tableid AND b.label = c.label ORDER BY a.tableid";
}

LocalTable ReadTable(Recordset& row) {
  LocalTable table;
  table.id = row.FieldValue("tableid").AsInt32();
  table.name = Trim(row.FieldValue("tablename").Joined());
  const Value updated = row.FieldValue("lutm");
  if (!updated.IsNull()) table.updated = updated.AsDateTime();
  table.isTaken = row.FieldValue("in_use").EqualsNumber(1);
  return table;
}

bool IsCalled(const LocalTable& table, const Text& nameOrId) {
  return EqualsIgnoringCase(table.name, nameOrId) || std::to_string(table.id) == nameOrId;
}

std::vector<Text> NamesOf(const std::vector<LocalTable>& tables) {
  std::vector<Text> names(tables.size());
  std::ranges::transform(tables, names.begin(), &LocalTable::name);
  return names;
}

const LocalTable& Find(const JobSettings& job, const Text& generation, const std::vector<LocalTable>& known,
                       const Text& nameOrId) {
  const auto found =
      std::find_if(known.begin(), known.end(), [&](const LocalTable& table) { return IsCalled(table, nameOrId); });
  if (found != known.end()) return *found;
  throw WrongUsage(job.place + ": [job." + job.name + "]: the database registers no table \"" + nameOrId +
                   "\" for generation " + generation + NearestWordHint(nameOrId, NamesOf(known)));
}

void RequireCopy(const JobSettings& job, const Text& generation, const LocalTable& table) {
  const Text what =
      job.place + ": [job." + job.name + "]: table " + std::to_string(table.id) + " is \"" + table.name + "\", ";
  if (!HasCopy(table.name)) {
    throw WrongUsage(what + "and nothing is copied into a table of this name" +
                     NearestWordHint(table.name, CopiedNames()));
  }
  if (!HasCopy(table.name, generation)) {
    throw WrongUsage(what + "which the ERP's generation " + generation + " has nothing for");
  }
}

void AddOnce(std::vector<LocalTable>& chosen, const LocalTable& table) {
  const bool isThere =
      std::any_of(chosen.begin(), chosen.end(), [&](const LocalTable& other) { return other.id == table.id; });
  if (!isThere) chosen.push_back(table);
}

}  // namespace

DatabaseAccess AccessTo(const JobFile& file, const DatabaseSettings& database, const Environment& environment) {
  if (!database.password) return {.connection = database.connection};
  DatabaseAccess access;
  access.password = ReadPassword(file, *database.password, environment);
  access.connection = ConnectionWithPassword(database, access.password);
  return access;
}

LocalTables::LocalTables(const DatabaseSettings& database, const DatabaseAccess& access, Use use)
    : databases_(std::make_shared<LocalDatabases>()), connection_(std::make_shared<EngineConnection>()) {
  connection_->PutConnectionString(access.connection + (use == Use::Read ? ";Mode=Read" : ""));
  connection_->PutConnectionTimeout(kAnswersWithin);
  connection_->PutCommandTimeout(kAnswersWithin);
  try {
    connection_->Open();
    SelectDatabase(*connection_, database.platform, database.catalogue);
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), error.source(), Replaced(error.description(), access.password, "***"));
  }
}

std::vector<LocalTable> LocalTables::OfGeneration(const Text& generation) {
  const std::shared_ptr<Recordset> rows = databases_->CreateRecordset();
  rows->Open(RegistryQuery(generation), connection_, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  std::vector<LocalTable> tables;
  for (; !rows->AtEnd(); rows->MoveNext()) AddOnce(tables, ReadTable(*rows));
  return tables;
}

bool LocalTables::IsTaken(const Text& table) {
  const std::shared_ptr<Recordset> rows = databases_->CreateRecordset();
  rows->Open("SELECT in_use FROM tstables WHERE tablename = " + Literal(table), connection_, CursorType::Static,
             LockType::ReadOnly, CommandType::SqlText);
  return !rows->AtEnd() && rows->FieldValue("in_use").EqualsNumber(1);
}

void LocalTables::Free(const Text& table) {
  connection_->Execute("UPDATE tstables SET in_use = 0 WHERE tablename = " + Literal(table));
}

std::vector<LocalTable> ChooseTables(const JobSettings& job, const Text& generation,
                                     const std::vector<LocalTable>& known, const std::vector<Text>& asked) {
  std::vector<LocalTable> ofJob;
  for (const Text& name : job.tables) AddOnce(ofJob, Find(job, generation, known, name));
  if (job.tables.empty()) ofJob = known;
  if (ofJob.empty()) {
    throw WrongUsage(job.place + ": [job." + job.name + "]: the database registers no table for generation " +
                     generation);
  }
  std::vector<LocalTable> chosen;
  for (const Text& name : asked) AddOnce(chosen, Find(job, generation, ofJob, name));
  if (asked.empty()) chosen = ofJob;
  for (const LocalTable& table : chosen) RequireCopy(job, generation, table);
  return chosen;
}

}  // namespace zenqay
