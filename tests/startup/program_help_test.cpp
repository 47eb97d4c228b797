#include "startup/program_help.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zenqay {
namespace {

TEST(AnswerToQuestion, IsTheVersionOrTheHelpForNothingElse) {
  EXPECT_EQ(AnswerToQuestion("--version", "zenqay-dbsync", "help\n"), "zenqay-dbsync " ZENQAY_VERSION "\n");
  EXPECT_EQ(AnswerToQuestion("--help", "zenqay-dbsync", "help\n"), "help\n");
  for (const char* line :
       {"", "--version ", "--help --version", "--Help", "-h", "a{}b{}5{}1{}log{}MAIN{}0{}{}1{}0{}1"}) {
    EXPECT_EQ(AnswerToQuestion(line, "zenqay-dbsync", "help\n"), std::nullopt) << line;
  }
}

/// The items that docs/operating.md explains, "1 connection string…" and so on.
std::vector<Text> ItemsOfTheDocument() {
  std::ifstream file(std::filesystem::path(ZENQAY_SHARE).parent_path() / "docs" / "operating.md");
  std::vector<Text> items;
  for (Text line; items.size() < 12 && std::getline(file, line);) {
    const Text number = std::to_string(items.size() + 1);
    const Text beginning = "| " + number + " | ";
    if (line.starts_with(beginning)) {
      items.push_back(number + " " + line.substr(beginning.size(), line.size() - beginning.size() - Text(" |").size()));
    }
  }
  return items;
}

/// The items that the help explains, those that take several lines in one.
std::vector<Text> ItemsOfTheHelp() {
  std::vector<Text> items;
  Text help = ItemsHelp();
  help.erase(0, help.find("\n\n") + 2);
  for (std::size_t from = 0; from < help.size();) {
    const std::size_t end = help.find('\n', from);
    const Text line = TrimLeft(help.substr(from, end - from));
    if (help[from + 3] != ' ') {
      items.push_back(Replaced(line, "  ", " "));
    } else {
      items.back() += " " + line;
    }
    from = end + 1;
  }
  return items;
}

TEST(ItemsHelp, SaysOfEachItemWhatTheDocumentSays) {
  const std::vector<Text> items = ItemsOfTheHelp();

  EXPECT_EQ(items.size(), 12u);
  EXPECT_EQ(items, ItemsOfTheDocument());
}

TEST(JobHelp, FitsATerminalButForItsExample) {
  const Text help = JobHelp();
  Text tooLong;
  for (std::size_t from = 0; from < help.size();) {
    const std::size_t end = help.find('\n', from);
    if (end - from > 80) tooLong += help.substr(from, end - from) + "\n";
    from = end + 1;
  }

  EXPECT_EQ(
      tooLong,
      "  zenqay-dbsync \"Provider=SQLite;Data Source=/srv/service.db{}SERVICE{}128{}1{}/var/log/zenqay{}MAIN{}-1{}{}1"
      "{}0{}3\"\n");
}

}  // namespace
}  // namespace zenqay
