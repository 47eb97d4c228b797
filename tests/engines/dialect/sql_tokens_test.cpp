#include "engines/dialect/sql_tokens.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

/// The tokens, each with a letter for its kind: "w:SELECT n:1 o:, l:'x' L:N'x'".
Text Shown(std::string_view statement) {
  constexpr std::string_view kKinds = "ewnlLo";
  Text shown;
  SqlTokens tokens(statement);
  for (SqlToken token = tokens.Next(); token.kind != SqlToken::Kind::End; token = tokens.Next()) {
    if (!shown.empty()) shown += " ";
    shown.append(1, kKinds[static_cast<std::size_t>(token.kind)]).append(":").append(token.text);
  }
  return shown;
}

TEST(SqlTokens, CutAStatementIntoItsTokens) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {" \t\r\n", ""},
      {"SET x=1", "w:SET w:x o:= n:1"},
      {"A1B _x größe a$b #t @v", "w:A1B w:_x w:größe w:a$b w:#t w:@v"},
      {"T.SITE", "w:T o:. w:SITE"},
      {"1WHERE", "n:1 w:WHERE"},
      {"12 1.5 .5 5. 1e5 1E+5 1.5e-3 0x1F 007", "n:12 n:1.5 n:.5 n:5. n:1e5 n:1E+5 n:1.5e-3 n:0x1F n:007"},
      {"1e5AND 1ELSE 1e 1e+ 0xG 0x1FAND", "n:1e5 w:AND n:1 w:ELSE n:1 w:e n:1 w:e o:+ n:0 w:xG n:0x1FA w:ND"},
      {"-7", "o:- n:7"},
      {"'it''s' ''", "l:'it''s' l:''"},
      {"'a''''' x", "l:'a''''' w:x"},
      {"N'x' n'it''s'N''", "L:N'x' L:n'it''s' L:N''"},
      {"N 'x'", "w:N l:'x'"},
      {"AN'x'", "w:AN l:'x'"},
      {"1N'x'", "n:1 L:N'x'"},
      {"N'not closed", "w:N o:'not closed"},
      {"x 'not closed", "w:x o:'not closed"},
      {"x 'not closed''", "w:x o:'not closed''"},
      {"'", "o:'"},
      {"\"a 'b\" x", "o:\"a 'b\" w:x"},
      {"[a 'b] x", "o:[a 'b] w:x"},
      {"[not closed", "o:[not closed"},
      {"1 -- it's\nx", "n:1 o:-- it's\n w:x"},
      {"1 -- it's", "n:1 o:-- it's"},
      {"1 /* it's */x", "n:1 o:/* it's */ w:x"},
      {"/*/ 'x'", "o:/*/ 'x'"},
      {"a/b", "w:a o:/ w:b"},
  };
  for (const auto& [statement, tokens] : cases) {
    EXPECT_EQ(Shown(statement), tokens) << statement;
  }
}

}  // namespace
}  // namespace zenqay
