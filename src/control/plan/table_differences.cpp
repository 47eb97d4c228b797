#include "control/plan/table_differences.h"

#include <algorithm>
#include <utility>

#include "control/plan/scratch_query.h"
#include "engines/table_schema.h"

namespace zenqay {
namespace {

constexpr const char* kMark = "upd_flag";  // of the full copy

struct Column {
  Text name;
  bool isDate = false;
};

bool Contains(const std::vector<Text>& names, const Text& name) {
  return std::ranges::any_of(names, [&](const Text& other) { return EqualsIgnoringCase(name, other); });
}

/// A name as the list has it; databases change its case.
Text AsIn(const std::vector<Text>& names, const Text& name) {
  const auto found = std::ranges::find_if(names, [&](const Text& other) { return EqualsIgnoringCase(name, other); });
  return found == names.end() ? name : *found;
}

Text Joined(const std::vector<Text>& parts, const Text& between) {
  Text all;
  for (const Text& part : parts) all += (all.empty() ? "" : between) + part;
  return all;
}

/// One comparison of one table. `a` stands for a row after, `b` for one before.
class Comparison {
 public:
  Comparison(Connection& connection, const ComparedTable& table) : connection_(connection), table_(table) {
    const auto columns = Rows("SELECT name, type FROM pragma_table_info('" + Replaced(table.name, "'", "''") + "')");
    while (columns->Next()) AddColumn(columns->Field(0).Joined(), LowerCased(columns->Field(1).Joined()));
  }

  TableDifferences Run(int examples) {
    FindGoneAndCome();
    PairUp();
    differences_.rows = Number("SELECT COUNT(*) FROM " + Before("b"));
    const std::int64_t paired = Number("SELECT COUNT(*) FROM temp.paired");
    differences_.deleted = Number("SELECT COUNT(*) FROM temp.gone") - paired;
    differences_.inserted = Number("SELECT COUNT(*) FROM temp.inserted_rows") - paired;
    Execute("DELETE FROM temp.gone WHERE id IN (SELECT before_id FROM temp.paired)");
    Execute("DELETE FROM temp.inserted_rows WHERE id IN (SELECT after_id FROM temp.paired)");
    CountChanged(InPlace());
    if (paired > 0) CountChanged(Paired());
    ShowExamples(examples);
    return std::move(differences_);
  }

 private:
  void AddColumn(const Text& name, const Text& type) {
    if (EqualsIgnoringCase(name, kMark)) return;
    const bool isDate = type.find("date") != Text::npos || type.find("time") != Text::npos;
    const bool isKey = Contains(table_.key, name);
    const Text shown = AsIn(isKey ? table_.key : table_.copied, name);
    (isKey ? keys_ : others_).push_back({shown, isDate});
  }

  Text After(const Text& alias) const { return "main." + QuotedName(table_.name) + " " + alias; }
  Text Before(const Text& alias) const { return "before." + QuotedName(table_.name) + " " + alias; }

  static Text Field(const Text& alias, const Column& column) { return alias + "." + QuotedName(column.name); }

  /// A value as it is written, whatever the column takes for the same.
  static Text Exact(const Text& alias, const Column& column) { return Field(alias, column) + " COLLATE BINARY"; }

  static Text Differs(const Column& column) {
    const Text a = Field("a", column);
    const Text b = Field("b", column);
    const Text plain = Exact("a", column) + " IS NOT " + b;
    if (!column.isDate) return plain;
    return "(" + plain + " AND coalesce(datetime(" + a + "), " + a + ") IS NOT coalesce(datetime(" + b + "), " + b +
           "))";
  }

  Text AnyDiffers(bool onlyCopied) const {
    std::vector<Text> parts;
    for (const auto* columns : {&keys_, &others_}) {
      for (const Column& column : *columns) {
        if (!onlyCopied || Contains(table_.copied, column.name)) parts.push_back(Differs(column));
      }
    }
    return parts.empty() ? "0" : "(" + Joined(parts, " OR ") + ")";
  }

  Text SameKey(const Text& one, const Text& other) const {
    std::vector<Text> parts;
    for (const Column& column : keys_) parts.push_back(Field(one, column) + " IS " + Field(other, column));
    return parts.empty() ? "1" : Joined(parts, " AND ");
  }

  /// Rows that are not where they were before, and those that are where none of their key was.
  void FindGoneAndCome() {
    for (const char* name : {"gone", "inserted_rows", "paired"}) Execute(Text("DROP TABLE IF EXISTS temp.") + name);
    const Text there = " a.rowid = b.rowid AND " + SameKey("a", "b") + ")";
    Execute("CREATE TEMP TABLE gone AS SELECT b.rowid AS id FROM " + Before("b") + " WHERE NOT EXISTS (SELECT 1 FROM " +
            After("a") + " WHERE" + there);
    Execute("CREATE TEMP TABLE inserted_rows AS SELECT a.rowid AS id FROM " + After("a") +
            " WHERE NOT EXISTS (SELECT 1 FROM " + Before("b") + " WHERE" + there);
  }

  /// Rows that were deleted and inserted anew.
  void PairUp() {
    Execute("CREATE TEMP TABLE paired (before_id INTEGER PRIMARY KEY, after_id INTEGER)");
    const bool hasBoth =
        Number("SELECT EXISTS (SELECT 1 FROM temp.gone) AND EXISTS (SELECT 1 FROM temp.inserted_rows)");
    if (!hasBoth) return;
    Execute("INSERT INTO temp.paired SELECT b.id, a.id FROM (" + Numbered(Before("r"), "gone") + ") b JOIN (" +
            Numbered(After("r"), "inserted_rows") + ") a ON " + SameKey("a", "b") + " AND a.n = b.n");
  }

  Text Numbered(const Text& table, const Text& ids) const {
    std::vector<Text> keys;
    for (const Column& column : keys_) keys.push_back(Field("r", column));
    std::vector<Text> order;
    for (const auto* columns : {&keys_, &others_}) {
      for (const Column& column : *columns) order.push_back(Exact("r", column));
    }
    order.emplace_back("r.rowid");
    const Text group = keys.empty() ? "" : "PARTITION BY " + Joined(keys, ", ") + " ";
    return "SELECT r.rowid AS id" + (keys.empty() ? "" : ", " + Joined(keys, ", ")) + ", row_number() OVER (" + group +
           "ORDER BY " + Joined(order, ", ") + ") AS n FROM " + table + " JOIN temp." + ids + " i ON i.id = r.rowid";
  }

  Text InPlace() const {
    return " FROM " + Before("b") + " JOIN " + After("a") + " ON a.rowid = b.rowid AND " + SameKey("a", "b");
  }

  Text Paired() const {
    return " FROM temp.paired p JOIN " + Before("b") + " ON b.rowid = p.before_id JOIN " + After("a") +
           " ON a.rowid = p.after_id";
  }

  void CountChanged(const Text& pairs) {
    const auto counts =
        Rows("SELECT COUNT(*), coalesce(SUM(" + AnyDiffers(true) + "), 0)" + pairs + " WHERE " + AnyDiffers(false));
    counts->Next();
    differences_.changed += static_cast<std::int64_t>(counts->Field(0).AsDouble());
    differences_.changedByCopy += static_cast<std::int64_t>(counts->Field(1).AsDouble());
  }

  void ShowExamples(int most) {
    const Text limit = " LIMIT " + std::to_string(most);
    if (differences_.inserted > 0) {
      Show(RowDeed::Insert, " FROM temp.inserted_rows i JOIN " + After("a") + " ON a.rowid = i.id" + limit);
    }
    if (differences_.changed > 0) {
      const Text changed = " WHERE " + AnyDiffers(false) + limit;
      Show(RowDeed::Change, InPlace() + changed);
      const auto shown = std::ranges::count(differences_.examples, RowDeed::Change, &RowDifference::deed);
      if (shown < most) {
        Show(RowDeed::Change, Paired() + " WHERE " + AnyDiffers(false) + " LIMIT " + std::to_string(most - shown));
      }
    }
    if (differences_.deleted > 0) {
      Show(RowDeed::Delete, " FROM temp.gone i JOIN " + Before("b") + " ON b.rowid = i.id" + limit);
    }
  }

  void Show(RowDeed deed, const Text& from) {
    const Text before = deed == RowDeed::Insert ? "" : "b";
    const Text after = deed == RowDeed::Delete ? "" : "a";
    std::vector<Text> fields;
    for (const auto* columns : {&keys_, &others_}) {
      for (const Column& column : *columns) {
        fields.push_back(Shown(before, column));
        fields.push_back(Shown(after, column));
        fields.push_back(deed == RowDeed::Change ? Differs(column) : Shown(before + after, column) + " IS NOT NULL");
      }
    }
    const auto rows = Rows("SELECT " + Joined(fields, ", ") + from);
    while (rows->Next()) differences_.examples.push_back(ExampleAt(*rows, deed));
  }

  static Text Shown(const Text& alias, const Column& column) {
    return alias.empty() ? "NULL" : "CAST(" + Field(alias, column) + " AS TEXT)";
  }

  RowDifference ExampleAt(const QueryRows& row, RowDeed deed) const {
    RowDifference example{.deed = deed};
    std::size_t at = 0;
    for (const Column& column : keys_) {
      const std::size_t field = std::exchange(at, at + 3);
      example.key.push_back(FieldAt(row, column, field));
      const bool isRewritten = deed == RowDeed::Change && row.Field(field + 2).EqualsNumber(1);
      if (isRewritten) example.fields.push_back(example.key.back());
    }
    for (const Column& column : others_) {
      const std::size_t field = std::exchange(at, at + 3);
      if (row.Field(field + 2).EqualsNumber(1)) example.fields.push_back(FieldAt(row, column, field));
    }
    return example;
  }

  static FieldDifference FieldAt(const QueryRows& row, const Column& column, std::size_t at) {
    FieldDifference field{.column = column.name};
    if (const Value before = row.Field(at); !before.IsNull()) field.before = before.Joined();
    if (const Value after = row.Field(at + 1); !after.IsNull()) field.after = after.Joined();
    return field;
  }

  std::unique_ptr<QueryRows> Rows(const Text& query) { return RowsIn(connection_, query); }
  std::int64_t Number(const Text& query) { return NumberIn(connection_, query); }
  void Execute(const Text& statement) { connection_.Execute(statement); }

  Connection& connection_;
  const ComparedTable& table_;
  std::vector<Column> keys_;
  std::vector<Column> others_;
  TableDifferences differences_;
};

}  // namespace

TableDifferences Compare(Connection& connection, const ComparedTable& table, int examples) {
  return Comparison(connection, table).Run(examples);
}

void AttachBefore(Connection& connection, const Text& path) {
  connection.Execute("ATTACH DATABASE '" + Replaced(path, "'", "''") + "' AS before");
}

}  // namespace zenqay
