#include "engines/odbc/odbc_rows.h"

#include <cmath>
#include <limits>

namespace zenqay {
namespace {

constexpr SQLSMALLINT kTimestampWithOffset = -155;  // SQL Server's own

class ResultReader {
 public:
  ResultReader(OdbcCalls& calls, Diagnostics& diagnostics, SQLHSTMT statement, RowSink& rows)
      : calls_(calls), diagnostics_(diagnostics), statement_(statement), rows_(rows) {}

  void Run() {
    ReadColumns();
    while (Fetch()) {
      for (std::size_t index = 0; index < types_.size(); ++index) {
        AddField(static_cast<SQLUSMALLINT>(index + 1), types_[index]);
      }
      rows_.EndRow();
    }
  }

 private:
  void Require(SQLRETURN result) { diagnostics_.Require(result, SQL_HANDLE_STMT, statement_); }

  void ReadColumns() {
    SQLSMALLINT count = 0;
    Require(SQLNumResultCols(statement_, &count));
    std::vector<Text> names(static_cast<std::size_t>(count));
    types_.resize(names.size());
    for (std::size_t index = 0; index < names.size(); ++index) {
      Require(calls_.DescribeColumn(statement_, static_cast<SQLUSMALLINT>(index + 1), names[index], types_[index]));
    }
    rows_.PutColumns(std::move(names));
  }

  bool Fetch() {
    const SQLRETURN result = SQLFetch(statement_);
    Require(result);
    return result != SQL_NO_DATA;
  }

  void AddField(SQLUSMALLINT column, SQLSMALLINT type) {
    switch (type) {
      case SQL_BIT:
      case SQL_TINYINT:
      case SQL_SMALLINT:
      case SQL_INTEGER:
        return AddInteger(column);
      case SQL_BIGINT:
      case SQL_REAL:
      case SQL_FLOAT:
      case SQL_DOUBLE:
      case SQL_DECIMAL:
      case SQL_NUMERIC:
        return AddNumber(column);
      case SQL_TYPE_DATE:
      case SQL_TYPE_TIMESTAMP:
      case kTimestampWithOffset:
        return AddDateTime(column);
      default:
        return AddText(column);
    }
  }

  /// False for a null, which is then added.
  template <typename T>
  bool Get(SQLUSMALLINT column, SQLSMALLINT type, T& value) {
    SQLLEN length = 0;
    Require(SQLGetData(statement_, column, type, &value, sizeof value, &length));
    if (length != SQL_NULL_DATA) return true;
    rows_.AddNull();
    return false;
  }

  void AddInteger(SQLUSMALLINT column) {
    SQLINTEGER value = 0;
    if (Get(column, SQL_C_SLONG, value)) rows_.AddInteger(value);
  }

  void AddNumber(SQLUSMALLINT column) {
    double value = 0;
    if (!Get(column, SQL_C_DOUBLE, value)) return;
    using Limits = std::numeric_limits<std::int32_t>;
    const bool isInteger = value >= Limits::min() && value <= Limits::max() && std::trunc(value) == value;
    if (isInteger) {
      rows_.AddInteger(static_cast<std::int32_t>(value));
    } else {
      rows_.AddDouble(value);
    }
  }

  void AddDateTime(SQLUSMALLINT column) {
    SQL_TIMESTAMP_STRUCT value{};
    if (!Get(column, SQL_C_TYPE_TIMESTAMP, value)) return;
    rows_.AddDateTime(DateTime::FromParts({.year = value.year,
                                           .month = value.month,
                                           .day = value.day,
                                           .hour = value.hour,
                                           .minute = value.minute,
                                           .second = value.second}));
  }

  void AddText(SQLUSMALLINT column) {
    bool isNull = false;
    Require(calls_.GetText(statement_, column, text_, isNull));
    if (isNull) {
      rows_.AddNull();
    } else {
      rows_.AddText(text_);
    }
  }

  OdbcCalls& calls_;
  Diagnostics& diagnostics_;
  SQLHSTMT statement_;
  RowSink& rows_;
  std::vector<SQLSMALLINT> types_;
  Text text_;  // kept for its memory
};

}  // namespace

void ReadRows(OdbcCalls& calls, Diagnostics& diagnostics, SQLHSTMT statement, RowSink& rows) {
  ResultReader(calls, diagnostics, statement, rows).Run();
}

}  // namespace zenqay
