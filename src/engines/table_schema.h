// A table of any engine as the embedded engine is to make it: a copy that takes and refuses what the table does.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// What a column holds.
enum class ColumnKind { Characters, Integer, Number, Date, DateTime };

/// A column as its database describes it.
struct TableColumn {
  Text name;
  ColumnKind kind = ColumnKind::Characters;
  std::int64_t length = 0;  // the most characters of a text; 0: no limit
  bool isPadded = false;    // a text is filled up with blanks
  bool mayBeNull = true;
  Text defaultValue;  // as the database words it; empty for none
};

/// Columns whose values no two rows share.
using UniqueKey = std::vector<Text>;

struct TableSchema {
  std::vector<Text> columns;
  std::vector<Text> statements;  // make the table and its keys
  std::vector<Text> computed;    // columns whose default is worked out by the server: no copy has it
  std::vector<Text> padded;      // columns whose texts come with blanks at the end that do not count
};

/// What of a database's own ways its tables' copies must know.
struct DatabaseWays {
  bool dropsBlanks = true;  // blanks at the end of a text that is too long go without an error
  Text firstDate;           // of those that it takes; empty where all do
};

/// The ways of the database of this name, as drivers give it (SQL_DBMS_NAME).
DatabaseWays WaysOf(const Text& dbms);

/// The statements for a table of that name. Each limit is a constraint whose name says it, since a failure names it:
/// "SITE.DESCRIPTION takes 100 characters".
TableSchema SchemaFor(const Text& table, const std::vector<TableColumn>& columns, const std::vector<UniqueKey>& keys,
                      const DatabaseWays& ways);

/// A name in quotes, as SQL has it.
Text QuotedName(const Text& name);

}  // namespace zenqay
