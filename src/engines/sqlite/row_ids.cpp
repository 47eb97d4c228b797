#include "engines/sqlite/row_ids.h"

#include <algorithm>
#include <vector>

#include "engines/dialect/sql_tokens.h"

namespace zenqay {
namespace {

/// The place behind the columns; null without any.
const char* BehindColumns(const Text& create) {
  const char* behind = nullptr;
  SqlTokens tokens(create);
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::End; token = tokens.Next()) {
    if (token.text == ")") behind = token.end();
  }
  return behind;
}

/// Between the commas, the words of each with one blank between them.
std::vector<Text> OptionsIn(std::string_view text) {
  std::vector<Text> options(1);
  SqlTokens tokens(text);
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::End; token = tokens.Next()) {
    const bool isComment = token.text.starts_with("--") || token.text.starts_with("/*");
    if (isComment) continue;
    if (token.text == ",") {
      options.emplace_back();
    } else {
      options.back() += (options.back().empty() ? "" : " ") + Text(token.text);
    }
  }
  return options;
}

}  // namespace

Text WithRowIds(const Text& create) {
  const char* const behind = BehindColumns(create);
  if (behind == nullptr) return create;
  std::vector<Text> options = OptionsIn(std::string_view(behind, create.data() + create.size()));
  const auto isWithout = [](const Text& option) { return EqualsIgnoringCase(option, "WITHOUT ROWID"); };
  if (std::erase_if(options, isWithout) == 0) return create;
  Text with(create.data(), behind);
  for (const Text& option : options) with += (&option == options.data() ? " " : ", ") + option;
  return with;
}

}  // namespace zenqay
