#include "erp/row_key.h"

namespace zenqay {
namespace {

constexpr std::size_t kPrefixLength = std::string_view("get").size();

/// An object is not asked for what it stands for.
bool IsTold(const Value& answer) {
  return !answer.Is<Empty>() && !answer.IsNull() && !answer.Is<Object>();
}

}  // namespace

void RowKey::Remember(std::string_view getX, const Value& answer) {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (getX == fields_[i].getX) answers_[i] = answer;
  }
}

Text RowKey::Told() const {
  Text told;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (!IsTold(answers_[i])) continue;
    if (!told.empty()) told += ", ";
    told.append(std::string_view(fields_[i].getX).substr(kPrefixLength)).append("=").append(answers_[i].AsText());
  }
  return OneLine(told);
}

}  // namespace zenqay
