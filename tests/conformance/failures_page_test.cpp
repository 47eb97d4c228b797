// The page of failures: it has every text that a log can hold.
#include <gtest/gtest.h>

#include <filesystem>

#include "base/runtime_error.h"
#include "contracts/connection.h"
#include "doubles/file_content.h"
#include "doubles/outcome.h"
#include "engines/provider_errors.h"
#include "system/xml_file.h"

namespace zenqay {
namespace {

const std::filesystem::path kRoot = std::filesystem::path(ZENQAY_SHARE).parent_path();

const Text& Page() {
  static const Text page = ContentOf(kRoot / "docs/failures.md");
  return page;
}

bool Holds(const Text& text) {
  return Page().find(text) != Text::npos;
}

/// A text without what is filled in.
Text Pattern(const Text& text) {
  return Replaced(Replaced(text, "%1", "…"), "%2", "…");
}

TEST(FailuresPage, HasEveryFaultOfThePlatformByNumberAndText) {
  Text missing;
  for (int number = 1; number < 1000; ++number) {
    const Text text = FaultText(static_cast<PlatformFault>(number));
    if (text == "Unknown error") continue;
    const Text line = "| " + std::to_string(number) + " | `" + text + "` |";
    if (!Holds(line)) missing += line + "\n";
  }

  EXPECT_EQ(missing, "");
}

TEST(FailuresPage, HasEveryFaultOfAConnectionByNumberAndText) {
  for (const DatabaseFault fault :
       {DatabaseFault::NoCurrentRow, DatabaseFault::NoSuchField, DatabaseFault::Closed, DatabaseFault::OpenAlready,
        DatabaseFault::NoUsableConnection, DatabaseFault::NoCommandText}) {
    const Text raised = Raised([&] { Raise(fault); });  // 3704 ZenqayDBSync: text
    const Text text = raised.substr(raised.find(": ") + 2);
    EXPECT_TRUE(Holds("| " + std::to_string(static_cast<std::int32_t>(fault)) + " | `" + text + "`")) << text;
  }
}

TEST(FailuresPage, HasEveryNumberOfADatabase) {
  for (const char* sqlState : {"42S02", "42S22", "23000", "28000", "22001", "22007", "HYT00", "08001"}) {
    EXPECT_TRUE(Holds("| " + std::to_string(ProviderNumber(sqlState)) + " | ")) << sqlState;
  }
}

TEST(FailuresPage, HasTheLabelsOfFailures) {
  pugi::xml_document labels;
  ASSERT_TRUE(labels.load_file((kRoot / "share/I18nText.xml").c_str()));
  for (const char* key : {"SLBL0026", "SLBL0041", "SLBL0120", "SLBL0232", "SLBL0234", "SLBL0235", "SLBL0237",
                          "SLBL0278", "SLBL0302", "SLBL0321", "SLBL0456", "SLBL0507"}) {
    const Text text = labels.document_element().child(key).text().as_string();
    EXPECT_TRUE(Holds(Pattern(text))) << text;
  }
}

/// The literals between `from` and the end of the statement there.
void CollectLiterals(const Text& source, std::size_t from, std::vector<Text>& literals) {
  Text literal;
  bool isInside = false;
  for (std::size_t at = from; at < source.size() && (isInside || source[at] != ';'); ++at) {
    if (isInside && source[at] == '\\') {
      literal += source[++at];
    } else if (source[at] == '"') {
      if (isInside) literals.push_back(std::exchange(literal, {}));
      isInside = !isInside;
    } else if (isInside) {
      literal += source[at];
    }
  }
}

/// What joins a literal to its neighbours goes.
Text WithoutMarks(const Text& literal) {
  constexpr const char* kMarks = " :,()";
  const std::size_t from = literal.find_first_not_of(kMarks);
  return from == Text::npos ? Text() : literal.substr(from, literal.find_last_not_of(kMarks) + 1 - from);
}

/// Those of three words and more: what a text is put together from otherwise, are names.
bool IsPhrase(const Text& literal) {
  return std::ranges::count(WithoutMarks(literal), ' ') >= 2;
}

TEST(FailuresPage, HasThePhrasesOfEveryPlaceThatRaises) {
  const Text page = Replaced(Page(), "\"", "");
  Text missing;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(kRoot / "src")) {
    const Text file = std::filesystem::relative(entry.path(), kRoot / "src").string();
    if (entry.path().extension() != ".cpp" || file.starts_with("check/") || file.starts_with("control/")) continue;
    const Text source = ContentOf(entry.path());
    for (const char* raising : {"throw RuntimeError(", "Raise"}) {
      for (std::size_t at = source.find(raising); at != Text::npos; at = source.find(raising, at + 1)) {
        std::vector<Text> literals;
        CollectLiterals(source, at, literals);
        for (const Text& literal : literals) {
          const Text phrase = WithoutMarks(Replaced(literal, "\"", ""));
          if (IsPhrase(literal) && page.find(phrase) == Text::npos)
            missing += Text(file).append(": ").append(literal) + "\n";
        }
      }
    }
  }

  EXPECT_EQ(missing, "");
}

}  // namespace
}  // namespace zenqay
