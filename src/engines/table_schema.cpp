#include "engines/table_schema.h"

#include "base/numbers.h"
#include "engines/dialect/sql_tokens.h"

namespace zenqay {
namespace {

const char* TypeOf(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Characters:
      return "NVARCHAR";
    case ColumnKind::Integer:
      return "INT";  // not INTEGER, which as a primary key would number its rows
    case ColumnKind::Number:
      return "NUMERIC";
    case ColumnKind::Date:
      return "DATE";
    case ColumnKind::DateTime:
      return "DATETIME";
  }
  return "";
}

Text Constraint(const Text& table, const TableColumn& column, const Text& says, const Text& condition) {
  return " CONSTRAINT " + QuotedName(table + "." + column.name + " " + says) + " CHECK (" + condition + ")";
}

Text TextLimit(const Text& table, const TableColumn& column, const DatabaseWays& ways) {
  if (column.length == 0) return "";
  const Text name = QuotedName(column.name);
  const Text counted = ways.dropsBlanks ? "rtrim(" + name + ", ' ')" : name;
  const Text limit = std::to_string(column.length);
  return Constraint(table, column, "takes " + limit + " characters", "length(" + counted + ") <= " + limit);
}

Text DateLimit(const Text& table, const TableColumn& column, const DatabaseWays& ways) {
  const Text name = QuotedName(column.name);
  if (ways.firstDate.empty()) {
    return Constraint(table, column, "takes dates", name + " IS NULL OR " + name + " GLOB '[0-9]*-[0-9]*-[0-9]*'");
  }
  return Constraint(table, column, "takes dates from " + ways.firstDate,
                    name + " IS NULL OR coalesce(date(" + name + "), '') >= '" + ways.firstDate + "'");
}

Text LimitOf(const Text& table, const TableColumn& column, const DatabaseWays& ways) {
  switch (column.kind) {
    case ColumnKind::Characters:
      return TextLimit(table, column, ways);
    case ColumnKind::Integer:
    case ColumnKind::Number:
      return Constraint(table, column, "takes numbers", "typeof(" + QuotedName(column.name) + ") <> 'text'");
    case ColumnKind::Date:
    case ColumnKind::DateTime:
      return DateLimit(table, column, ways);
  }
  return "";
}

/// The type that a server names behind a literal, or nothing; no more of an expression.
bool IsTypeBehind(std::string_view text) {
  return text.empty() || (text.starts_with("::") && text.find_first_of("|+-*/%'") == std::string_view::npos);
}

/// A number or a text in quotes, of which servers show more: ((0)), 'x'::character varying, N'x'. Empty for any other.
Text LiteralIn(Text value) {
  value = Trim(value);
  while (value.starts_with('(') && value.ends_with(')')) value = Trim(value.substr(1, value.size() - 2));
  if (value.starts_with("N'")) value.erase(0, 1);
  if (value.starts_with('\'')) {
    SqlTokens tokens(value);
    const SqlToken text = tokens.Next();
    const bool isLiteral =
        text.kind == SqlToken::Kind::Literal && IsTypeBehind({text.end(), value.data() + value.size()});
    return isLiteral ? Text(text.text) : "";
  }
  const Text number = value.substr(0, value.find("::"));
  const bool isLiteral = IsNumeric(number) && IsTypeBehind(std::string_view(value).substr(number.size()));
  return isLiteral ? number : "";
}

}  // namespace

DatabaseWays WaysOf(const Text& dbms) {
  if (StartsWithIgnoringCase(dbms, "Oracle")) return {.dropsBlanks = false, .firstDate = ""};
  if (dbms.find("SQL Server") != Text::npos) return {.dropsBlanks = true, .firstDate = "1753-01-01"};
  return {};
}

TableSchema SchemaFor(const Text& table, const std::vector<TableColumn>& columns, const std::vector<UniqueKey>& keys,
                      const DatabaseWays& ways) {
  TableSchema schema;
  Text create = "CREATE TABLE " + QuotedName(table) + " (";
  for (const TableColumn& column : columns) {
    create += (schema.columns.empty() ? "" : ", ") + QuotedName(column.name) + " " + TypeOf(column.kind);
    if (column.length > 0) create += "(" + std::to_string(column.length) + ")";
    const Text value = Trim(column.defaultValue.substr(0, column.defaultValue.find("::")));
    const bool hasDefault = !value.empty() && !EqualsIgnoringCase(value, "NULL");
    const Text literal = hasDefault ? LiteralIn(column.defaultValue) : "";
    const bool isComputed = hasDefault && literal.empty();
    if (!literal.empty()) create += " DEFAULT " + literal;
    if (!column.mayBeNull && !isComputed) create += " NOT NULL";
    create += LimitOf(table, column, ways);
    schema.columns.push_back(column.name);
    if (isComputed) schema.computed.push_back(column.name);
    if (column.isPadded) schema.padded.push_back(column.name);
  }
  schema.statements.push_back(create + ")");
  for (std::size_t i = 0; i < keys.size(); ++i) {
    Text names;
    for (const Text& column : keys[i]) names += (names.empty() ? "" : ", ") + QuotedName(column);
    schema.statements.push_back("CREATE UNIQUE INDEX " + QuotedName(table + "_key" + std::to_string(i + 1)) + " ON " +
                                QuotedName(table) + " (" + names + ")");
  }
  return schema;
}

Text QuotedName(const Text& name) {
  return "\"" + Replaced(name, "\"", "\"\"") + "\"";
}

}  // namespace zenqay
