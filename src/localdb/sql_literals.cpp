#include "localdb/sql_literals.h"

#include "contracts/named_calls.h"
#include "process/logs.h"

namespace zenqay {

Text EncodeSqlString(const modDeclarations& process, std::string_view text) {
  if (text.empty() && process.DatabasePlatform == 2) return "N' '";
  Text literal;
  literal.reserve(text.size() + 3);
  literal += "N'";
  for (auto quote = text.find('\''); quote != std::string_view::npos; quote = text.find('\'')) {
    literal.append(text, 0, quote + 1) += '\'';
    text.remove_prefix(quote + 1);
  }
  literal.append(text) += '\'';
  return literal;
}

Text WrapSqlDateTime(const modDeclarations& process, Text& dateTime) {
  if (process.DatabasePlatform == 2) {
    dateTime = "TO_DATE( '" + dateTime + "','yyyy-mm-dd HH24:MI:SS')";
  } else {
    dateTime = "CONVERT(DATETIME,'" + dateTime + "',120)";
  }
  return dateTime;
}

Text SQLEncodeForDate(const Value& i_sDateValue) {
  const Text date = i_sDateValue.Joined();
  // Null has no length to compare with 0: it takes the second branch, with nothing between the quotes.
  if (date.empty() && !i_sDateValue.IsNull()) return "NULL";
  return "{d '" + date + "'}";
}

Text SQLEncodeForDateTime(const Object& date) {
  return "'" + CallNamed(date, "toLocaleString").Joined() + "'";
}

Text HighValueString(std::int16_t length) {
  if (length < 0) throw RuntimeError(PlatformFault::InvalidCall);
  return Text(static_cast<std::size_t>(length), '\x7f');
}

void UpdateTableStatistics(modDeclarations& process, const Text& tableName) {
  const Text statement = "UPDATE STATISTICS " + Trim(tableName);
  try {
    process.LocalConnection->Execute(statement);
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    Interruption::LetThrough(error);
    WriteErrorLog(process, error);
  }
}

}  // namespace zenqay
