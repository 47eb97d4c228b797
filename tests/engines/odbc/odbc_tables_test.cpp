// The tables of SQL Server, Oracle and PostgreSQL as their drivers describe them.
#include "engines/odbc/odbc_tables.h"

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

namespace zenqay {
namespace {

/// A column in the words of SQLColumns.
struct Described {
  const char* name;
  std::int32_t type;
  const char* typeName;
  std::optional<std::int32_t> size;
  bool mayBeNull = true;
  const char* defaultValue = nullptr;
  std::optional<std::int32_t> typeModifier = {};  // psqlodbc's
};

void Add(RowStore& rows, const std::optional<std::int32_t>& number) {
  if (number) {
    rows.AddInteger(*number);
  } else {
    rows.AddNull();
  }
}

void Add(RowStore& rows, const char* text) {
  if (text != nullptr) {
    rows.AddText(text);
  } else {
    rows.AddNull();
  }
}

void AddColumns(RowStore& rows, const Text& schema, const Text& table, const std::vector<Described>& columns) {
  rows.PutColumns({"TABLE_CAT", "TABLE_SCHEM", "TABLE_NAME", "COLUMN_NAME", "DATA_TYPE", "TYPE_NAME", "COLUMN_SIZE",
                   "BUFFER_LENGTH", "DECIMAL_DIGITS", "NUM_PREC_RADIX", "NULLABLE", "REMARKS", "COLUMN_DEF", "TYPMOD"});
  for (const Described& column : columns) {
    rows.AddText("service");
    rows.AddText(schema);
    rows.AddText(table);
    rows.AddText(column.name);
    rows.AddInteger(column.type);
    rows.AddText(column.typeName);
    Add(rows, column.size);
    for (int i = 0; i < 3; ++i) rows.AddNull();
    rows.AddInteger(column.mayBeNull ? SQL_NULLABLE : SQL_NO_NULLS);
    rows.AddNull();
    Add(rows, column.defaultValue);
    Add(rows, column.typeModifier);
    rows.EndRow();
  }
}

/// How the embedded engine makes the table OBJECT of these columns; then what is worked out and what is padded.
Text MadeOf(const std::vector<Described>& columns, const Text& dbms) {
  RowStore rows;
  AddColumns(rows, "dbo", "OBJECT", columns);
  const DescribedTable table = TablesIn(rows).front();
  const TableSchema schema = SchemaFor("OBJECT", table.columns, {}, WaysOf(dbms));
  Text text = Replaced(Replaced(schema.statements.front(), ", \"", ",\n\""), "\"OBJECT\" (", "\"OBJECT\"\n(") + "\n";
  for (const Text& column : schema.computed) text += "computed " + column + "\n";
  for (const Text& column : schema.padded) text += "padded " + column + "\n";
  return text;
}

TEST(OdbcTables, OfSqlServerTakeWhatItTakes) {
  EXPECT_EQ(
      MadeOf({{"ID", SQL_INTEGER, "int identity", 10, false},
              {"SITE", SQL_WVARCHAR, "nvarchar", 10, false},
              {"CODE", SQL_WCHAR, "nchar", 4},
              {"MEMO", SQL_WVARCHAR, "nvarchar", 1073741823},
              {"NOTE", SQL_WLONGVARCHAR, "ntext", 1073741823},
              {"BLANK", SQL_VARCHAR, "varchar", 0},
              {"OBJECTNR", SQL_INTEGER, "int", 10, false, "((0))"},
              {"AMOUNT", SQL_DECIMAL, "decimal", 12, true, "(N'1')"},
              {"MADE", SQL_TYPE_DATE, "date", 10},
              {"DELIVERY_DATE", SQL_TYPE_TIMESTAMP, "datetime", 23},
              {"OFFSET", -155, "datetimeoffset", 34},
              {"AT", SQL_TYPE_TIMESTAMP, "datetime", 23, false, "(getdate())"}},
             "Microsoft SQL Server"),
      "CREATE TABLE \"OBJECT\"\n"
      "(\"ID\" INT CONSTRAINT \"OBJECT.ID takes numbers\" CHECK (typeof(\"ID\") <> 'text'),\n"
      "\"SITE\" NVARCHAR(10) NOT NULL CONSTRAINT \"OBJECT.SITE takes 10 characters\" CHECK (length(rtrim(\"SITE\", "
      "' ')) <= 10),\n"
      "\"CODE\" NVARCHAR(4) CONSTRAINT \"OBJECT.CODE takes 4 characters\" CHECK (length(rtrim(\"CODE\", ' ')) <= "
      "4),\n"
      "\"MEMO\" NVARCHAR,\n"
      "\"NOTE\" NVARCHAR,\n"
      "\"BLANK\" NVARCHAR,\n"
      "\"OBJECTNR\" INT DEFAULT 0 NOT NULL CONSTRAINT \"OBJECT.OBJECTNR takes numbers\" CHECK "
      "(typeof(\"OBJECTNR\") <> 'text'),\n"
      "\"AMOUNT\" NUMERIC DEFAULT '1' CONSTRAINT \"OBJECT.AMOUNT takes numbers\" CHECK (typeof(\"AMOUNT\") <> "
      "'text'),\n"
      "\"MADE\" DATE CONSTRAINT \"OBJECT.MADE takes dates from 1753-01-01\" CHECK (\"MADE\" IS NULL OR "
      "coalesce(date(\"MADE\"), '') >= '1753-01-01'),\n"
      "\"DELIVERY_DATE\" DATETIME CONSTRAINT \"OBJECT.DELIVERY_DATE takes dates from 1753-01-01\" CHECK "
      "(\"DELIVERY_DATE\" IS NULL OR coalesce(date(\"DELIVERY_DATE\"), '') >= '1753-01-01'),\n"
      "\"OFFSET\" DATETIME CONSTRAINT \"OBJECT.OFFSET takes dates from 1753-01-01\" CHECK (\"OFFSET\" IS NULL OR "
      "coalesce(date(\"OFFSET\"), '') >= '1753-01-01'),\n"
      "\"AT\" DATETIME CONSTRAINT \"OBJECT.AT takes dates from 1753-01-01\" CHECK (\"AT\" IS NULL OR "
      "coalesce(date(\"AT\"), '') >= '1753-01-01'))\n"
      "computed ID\n"
      "computed AT\n"
      "padded CODE\n");
}

TEST(OdbcTables, OfOracleTakeWhatItTakes) {
  EXPECT_EQ(
      MadeOf({{"SITE", SQL_WVARCHAR, "NVARCHAR2", 10, false},
              {"MEMO", SQL_WLONGVARCHAR, "NCLOB", 2147483647},
              {"OBJECTNR", SQL_DECIMAL, "NUMBER", 38, false, "0 "},
              {"RATE", SQL_DOUBLE, "FLOAT", 15},
              {"DELIVERY_DATE", SQL_TYPE_TIMESTAMP, "DATE", 19}},
             "Oracle"),
      "CREATE TABLE \"OBJECT\"\n"
      "(\"SITE\" NVARCHAR(10) NOT NULL CONSTRAINT \"OBJECT.SITE takes 10 characters\" CHECK (length(\"SITE\") <= "
      "10),\n"
      "\"MEMO\" NVARCHAR,\n"
      "\"OBJECTNR\" NUMERIC DEFAULT 0 NOT NULL CONSTRAINT \"OBJECT.OBJECTNR takes numbers\" CHECK "
      "(typeof(\"OBJECTNR\") <> 'text'),\n"
      "\"RATE\" NUMERIC CONSTRAINT \"OBJECT.RATE takes numbers\" CHECK (typeof(\"RATE\") <> 'text'),\n"
      "\"DELIVERY_DATE\" DATETIME CONSTRAINT \"OBJECT.DELIVERY_DATE takes dates\" CHECK (\"DELIVERY_DATE\" IS NULL "
      "OR \"DELIVERY_DATE\" GLOB '[0-9]*-[0-9]*-[0-9]*'))\n");
}

TEST(OdbcTables, OfPostgreSqlTellALimitOfTheDriverFromOneOfTheColumn) {
  EXPECT_EQ(MadeOf({{"limited", SQL_WVARCHAR, "varchar", 255, true, "'x'::character varying", 259},
                    {"unlimited", SQL_WVARCHAR, "varchar", 255, true, nullptr, -1}},
                   "PostgreSQL"),
            "CREATE TABLE \"OBJECT\"\n"
            "(\"limited\" NVARCHAR(255) DEFAULT 'x' CONSTRAINT \"OBJECT.limited takes 255 characters\" CHECK "
            "(length(rtrim(\"limited\", ' ')) <= 255),\n"
            "\"unlimited\" NVARCHAR)\n");
}

/// What is made of a column with this default, behind its name and type.
Text MadeOfDefault(const char* value) {
  const Text made = MadeOf({{"MEMO", SQL_WLONGVARCHAR, "text", 8190, true, value}}, "PostgreSQL");
  const Text begin = "CREATE TABLE \"OBJECT\"\n(\"MEMO\" NVARCHAR";
  EXPECT_TRUE(made.starts_with(begin)) << made;
  return made.substr(begin.size());
}

TEST(OdbcTables, HaveThePlainValuesOfDefaultsAlone) {
  for (const char* value : {"'it''s'", "''", "-1", "1.5", ".5", "+5", "1e3"}) {
    EXPECT_EQ(MadeOfDefault(value), Text(" DEFAULT ") + value + ")\n");
  }
  EXPECT_EQ(MadeOfDefault("'2'::numeric(5,2)"), " DEFAULT '2')\n");
  EXPECT_EQ(MadeOfDefault("7::bigint"), " DEFAULT 7)\n");
  EXPECT_EQ(MadeOfDefault("null"), ")\n");
  EXPECT_EQ(MadeOfDefault("NULL::character varying"), ")\n");
  for (const char* value : {"'a' || 'b'", "('a')||('b')", "1-2", "-", ".", "(1)-(2)", "1::integer - 2",
                            "'a'::text || 'b'", "'a'::text || now()", "now()", "'a"}) {
    EXPECT_EQ(MadeOfDefault(value), ")\ncomputed MEMO\n") << value;
  }
}

TEST(OdbcTables, OfOneNameInSeveralSchemasAreSeveral) {
  RowStore rows;
  AddColumns(rows, "dbo", "SITE", {{"SITE", SQL_WVARCHAR, "nvarchar", 10}});
  AddColumns(rows, "old", "SITE", {{"SITE", SQL_WVARCHAR, "nvarchar", 8}, {"CUSTOMER", SQL_WVARCHAR, "nvarchar", 8}});

  const std::vector<DescribedTable> tables = TablesIn(rows);

  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0].schema, "dbo");
  EXPECT_EQ(tables[0].ColumnNames(), (std::vector<Text>{"SITE"}));
  EXPECT_EQ(tables[1].schema, "old");
  EXPECT_EQ(tables[1].ColumnNames(), (std::vector<Text>{"SITE", "CUSTOMER"}));
}

/// A row of SQLStatistics.
void AddIndex(RowStore& rows, std::optional<std::int32_t> nonUnique, const char* name, const char* column,
              const char* filter = nullptr) {
  for (const char* text : {"service", "dbo", "OBJECT"}) rows.AddText(text);
  Add(rows, nonUnique);
  rows.AddNull();
  Add(rows, name);
  rows.AddInteger(name == nullptr ? SQL_TABLE_STAT : SQL_INDEX_OTHER);
  rows.AddInteger(1);
  Add(rows, column);
  for (int i = 0; i < 3; ++i) rows.AddNull();
  Add(rows, filter);
  rows.EndRow();
}

TEST(OdbcTables, HaveTheKeysOfTheirUniqueIndexesOverWholeColumnsAndAllRows) {
  RowStore rows;
  rows.PutColumns({"TABLE_CAT", "TABLE_SCHEM", "TABLE_NAME", "NON_UNIQUE", "INDEX_QUALIFIER", "INDEX_NAME", "TYPE",
                   "ORDINAL_POSITION", "COLUMN_NAME", "ASC_OR_DESC", "CARDINALITY", "PAGES", "FILTER_CONDITION"});
  AddIndex(rows, {}, nullptr, nullptr);
  AddIndex(rows, SQL_FALSE, "key", "SITE");
  AddIndex(rows, SQL_FALSE, "key", "OBJECT");
  AddIndex(rows, SQL_FALSE, "by_expression", "lower(SITE)");
  AddIndex(rows, SQL_FALSE, "of_some_rows", "OBJECT", "SITE IS NOT NULL");
  AddIndex(rows, SQL_TRUE, "no_key", "OBJECT");
  const DescribedTable table = {.schema = "dbo", .name = "OBJECT", .columns = {{.name = "SITE"}, {.name = "OBJECT"}}};

  const std::vector<UniqueKey> keys = KeysIn(rows, table);

  EXPECT_EQ(keys, (std::vector<UniqueKey>{{"SITE", "OBJECT"}}));
  EXPECT_EQ(SchemaFor("OBJECT", table.columns, keys, {}).statements.back(),
            "CREATE UNIQUE INDEX \"OBJECT_key1\" ON \"OBJECT\" (\"SITE\", \"OBJECT\")");
}

}  // namespace
}  // namespace zenqay
