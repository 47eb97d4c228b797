#include "engines/odbc/prepared_statement.h"

#include <sql.h>
#include <sqlext.h>

namespace zenqay {

std::int16_t PreparedStatement::Execute() {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    Parameter& parameter = parameters_[i];
    parameter.length = parameter.isNull ? SQL_NULL_DATA : static_cast<std::int64_t>(parameter.text.size());
    if (parameter.boundAt == parameter.text.data()) continue;
    const SQLRETURN result = Bind(i);
    if (!SQL_SUCCEEDED(result)) return result;
  }
  return SQLExecute(handle_);
}

std::int16_t PreparedStatement::Bind(std::size_t index) {
  constexpr SQLULEN kAnySize = 1;  // the driver goes by the length alone
  Parameter& parameter = parameters_[index];
  parameter.boundAt = parameter.text.data();
  return SQLBindParameter(handle_, static_cast<SQLUSMALLINT>(index + 1), SQL_PARAM_INPUT, SQL_C_CHAR, SQL_VARCHAR,
                          kAnySize, 0, parameter.text.data(), 0, &parameter.length);
}

}  // namespace zenqay
