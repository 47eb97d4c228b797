// A table of the embedded engine before and after.
#pragma once

#include "control/plan/table_differences.h"
#include "doubles/temp_directory.h"
#include "engines/databases.h"
#include "engines/engine_connection.h"
#include "engines/sqlite/table_filler.h"

namespace zenqay {

/// Two states of a table T with the key K, which is no unique one, made by statements.
class TwoStates {
 public:
  TwoStates(const std::vector<Text>& before, const std::vector<Text>& then, const Text& collation = "BINARY") {
    const Text text = "NVARCHAR(10) COLLATE " + collation;
    const Text create = "CREATE TABLE T (K " + text + ", A " + text + ", D DATETIME, upd_flag INTEGER)";
    Make("before.db", create, before);
    Make("after.db", create, before);
    connection->PutConnectionString(EmbeddedConnection(Path("after.db")));
    connection->Open();
    AttachBefore(*connection, Path("before.db"));
    for (const Text& statement : then) connection->Execute(statement);
  }

  Text Path(const Text& name) const { return (directory_.path() / name).string(); }

  /// "1+ 2~ 0-", and each example.
  Text Compared() const {
    const TableDifferences d = Compare(*connection, table, 5);
    Text text =
        std::to_string(d.inserted) + "+ " + std::to_string(d.changed) + "~ " + std::to_string(d.deleted) + "-\n";
    for (const RowDifference& row : d.examples) {
      text += row.deed == RowDeed::Insert ? "+" : row.deed == RowDeed::Change ? "~" : "-";
      for (const FieldDifference& field : row.key) text += " " + field.after.value_or(field.before.value_or("NULL"));
      for (const FieldDifference& field : row.fields) {
        text += " " + field.column + " " + field.before.value_or("NULL") + ">" + field.after.value_or("NULL");
      }
      text += "\n";
    }
    return text;
  }

  const ComparedTable table = {.name = "T", .key = {"K"}, .copied = {"K", "A", "upd_flag"}};
  const std::shared_ptr<EngineConnection> connection = std::make_shared<EngineConnection>();

 private:
  void Make(const Text& name, const Text& create, const std::vector<Text>& statements) const {
    TableFiller filler(Path(name));
    filler.Run(create);
    for (const Text& statement : statements) filler.Run(statement);
    filler.Finish();
  }

  TempDirectory directory_;
};

inline const std::vector<Text> kThree = {
    "INSERT INTO T VALUES ('k1', 'a', '2004-01-31', 0), ('k2', 'b', NULL, 0), "
    "('k3', NULL, NULL, 1)"};

}  // namespace zenqay
