#include "check/label_keys.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <pugixml.hpp>
#include <regex>
#include <set>
#include <string>

#include "doubles/file_content.h"

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
    const std::string source = ContentOf(entry.path());
    for (std::sregex_iterator found(source.begin(), source.end(), key), end; found != end; ++found) {
      named.insert((*found)[1]);
    }
  }

  EXPECT_EQ(kListed, named);
}

}  // namespace
}  // namespace zenqay
