#include "check/label_keys.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <regex>
#include <set>
#include <string>

namespace zenqay {
namespace {

const std::set<std::string> kListed(kLabelKeys.begin(), kLabelKeys.end());

TEST(LabelKeys, AreThoseOfTheSharedTexts) {
  pugi::xml_document texts;
  texts.load_file(ZENQAY_SHARE "/I18nText.xml");
  std::set<std::string> shared;
  for (const pugi::xml_node text : texts.child("I18NTEXT").children()) {
    if (text.type() == pugi::node_element) shared.insert(text.name());
  }

  EXPECT_EQ(kListed, shared);
}

TEST(LabelKeys, AreThoseThatTheProgramNames) {
  const std::regex key("\"(S(?:LBL|TIT)[0-9]{4})\"");
  std::set<std::string> named;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(ZENQAY_SHARE "/../src")) {
    const bool isListItself = entry.path().parent_path().filename() == "check";
    if (!entry.is_regular_file() || isListItself) continue;
    std::ifstream file(entry.path());
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    for (std::sregex_iterator found(source.begin(), source.end(), key), end; found != end; ++found) {
      named.insert((*found)[1]);
    }
  }

  EXPECT_EQ(kListed, named);
}

}  // namespace
}  // namespace zenqay
