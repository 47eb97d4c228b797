// A statement that is taken apart: with its values put back it is, token by token, what SQLite gets of it whole.
#include "engines/dialect/statement_shape.h"

#include "engines/dialect/sql_tokens.h"
#include "engines/dialect/sqlite_dialect.h"
#include "engines/dialect/translation.h"
#include "fuzz/fuzz.h"

using namespace zenqay;

namespace {

Text Written(const StatementValue& value) {
  Text text;
  switch (value.kind) {
    case StatementValue::Kind::Null:
      return "NULL";
    case StatementValue::Kind::Integer:
      return Text(value.text);
    case StatementValue::Kind::Literal:
      return "'" + Text(value.text) + "'";
    default:
      AppendDate(text, value.date, value.kind == StatementValue::Kind::DateTime);
      return "'" + text + "'";
  }
}

std::vector<Text> PiecesOf(std::string_view statement) {
  std::vector<Text> pieces;
  SqlTokens tokens(statement);
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::End; token = tokens.Next()) {
    pieces.push_back(EqualsIgnoringCase(token.text, "NULL") ? "NULL" : Text(token.text));
  }
  return pieces;
}

}  // namespace

FUZZ(input) {
  StatementShape shape;
  if (!TakeShape(input, shape)) return;
  Text whole;
  std::size_t uncopied = 0;
  for (const StatementValue& value : shape.values) {
    Hold(shape.text[value.at] == '?', "a question mark stands for a value");
    whole.append(shape.text, uncopied, value.at - uncopied);
    whole += Written(value);
    uncopied = value.at + 1;
  }
  whole.append(shape.text, uncopied);
  Text translated;
  SqlTokens tokens(input);
  if (TakeUpdateStatistics(tokens)) return;  // a command with a value would be no statement
  Hold(Succeeds([&] { TranslateForSqlite(input, translated); }), "what has a shape has a translation");
  Hold(PiecesOf(whole) == PiecesOf(translated), "a shape and its values say what the statement said");
}
