#include "process/labels.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <regex>

#include "base/windows1252.h"
#include "doubles/process_fixture.h"

namespace zenqay {
namespace {

/// A process whose I18nText.xml a test writes.
struct LabelFile {
  TempDirectory home;
  ProcessFixture fixture{1, home.path().string()};

  void Write(std::string_view content) const { home.Write("I18nText.xml", content); }
  void Remove() const { std::filesystem::remove(home.path() / "I18nText.xml"); }
  Text Path() const { return (home.path() / "I18nText.xml").string(); }
  Text Label(const Text& key) { return GetLabel(fixture.process, key); }
  bool IsLoaded() const { return fixture.process.LabelDocumentLoaded; }
};

TEST(GetLabel, LoadsTheDocumentWhenItIsAskedForTheFirstLabelAndNotAgain) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>first</A></I18NTEXT>");

  EXPECT_FALSE(labels.IsLoaded());
  EXPECT_EQ(labels.Label("A"), "first");
  EXPECT_TRUE(labels.IsLoaded());
  labels.Write("<I18NTEXT><A>second</A></I18NTEXT>");
  EXPECT_EQ(labels.Label("A"), "first");
  labels.Remove();

  EXPECT_EQ(labels.Label("A"), "first");
  EXPECT_EQ(labels.fixture.Causes(), "");
}

TEST(GetLabel, ReadsTheFileOfTheLanguage) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>first</A></I18NTEXT>");
  labels.home.Write("I18nText.de.xml", "<I18NTEXT><A>erstens</A></I18NTEXT>");

  for (const auto& [language, text] : {std::pair("", "first"), {"en", "first"}, {"de", "erstens"}, {"fr", "A"}}) {
    labels.fixture.process.LabelLanguage = language;
    labels.fixture.process.LabelDocumentLoaded = false;

    EXPECT_EQ(labels.Label("A"), text) << language;
  }
  EXPECT_EQ(labels.fixture.Causes(),
            (labels.home.path() / "I18nText.fr.xml").string() + ": the file is missing or cannot be read\n");
}

TEST(GetLabel, LoadsTheDocumentAnewWhenTheFlagWasReset) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>first</A></I18NTEXT>");
  labels.Label("A");
  labels.Write("<I18NTEXT><A>second</A></I18NTEXT>");

  labels.fixture.process.LabelDocumentLoaded = false;

  EXPECT_EQ(labels.Label("A"), "second");
}

TEST(GetLabel, GivesTheKeyWhenTheFileIsMissingAndTriesTheFileAgainNextTime) {
  LabelFile labels;

  EXPECT_EQ(labels.Label("SLBL0009"), "SLBL0009");
  EXPECT_EQ(labels.Label(""), "");
  EXPECT_FALSE(labels.IsLoaded());
  labels.Write("<I18NTEXT><SLBL0009>started</SLBL0009></I18NTEXT>");

  EXPECT_EQ(labels.Label("SLBL0009"), "started");
  EXPECT_EQ(labels.fixture.Causes(), labels.Path() + ": the file is missing or cannot be read\n");
}

TEST(GetLabel, GivesTheKeyWhenTheFileIsMalformedAndTriesTheFileAgainNextTime) {
  LabelFile labels;
  labels.Write("<I18NTEXT>\n<A>one</B>\n</I18NTEXT>");

  EXPECT_EQ(labels.Label("A"), "A");
  EXPECT_FALSE(labels.IsLoaded());
  labels.Write("<I18NTEXT><A>one</A></I18NTEXT>");

  EXPECT_EQ(labels.Label("A"), "one");
  EXPECT_EQ(labels.fixture.Causes(), labels.Path() + ", line 2: Start-end tags mismatch\n");
}

TEST(GetLabel, GivesTheKeyWhenTheFileIsADirectoryOrEmpty) {
  LabelFile labels;

  labels.Write("");
  EXPECT_EQ(labels.Label("A"), "A");
  labels.Remove();
  std::filesystem::create_directory(labels.Path());
  EXPECT_EQ(labels.Label("A"), "A");

  EXPECT_FALSE(labels.IsLoaded());
  EXPECT_EQ(labels.fixture.Causes(), labels.Path() + ", line 1: No document element found\n" + labels.Path() +
                                         ": the file is missing or cannot be read\n");
}

TEST(GetLabel, GivesTheKeyWhenTheNodeIsMissingAndKeepsTheDocument) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>one</A></I18NTEXT>");

  EXPECT_EQ(labels.Label("B"), "B");
  EXPECT_TRUE(labels.IsLoaded());
  EXPECT_EQ(labels.fixture.Causes(), "");
}

TEST(GetLabel, GivesTheKeyWhenTheTopLevelElementHasAnotherName) {
  LabelFile labels;
  labels.Write("<i18ntext><A>one</A></i18ntext>");

  EXPECT_EQ(labels.Label("A"), "A");
  EXPECT_TRUE(labels.IsLoaded());
}

TEST(GetLabel, GivesAnEmptyTextForANodeWithAnEmptyTextAndKeepsTheDocument) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A></A><B/></I18NTEXT>");

  EXPECT_EQ(labels.Label("A"), "");
  EXPECT_EQ(labels.Label("B"), "");
  EXPECT_TRUE(labels.IsLoaded());
}

TEST(GetLabel, GivesAnEmptyTextForAnEmptyKeyAndLoadsTheDocumentAgainNextTime) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>first</A></I18NTEXT>");
  labels.Label("A");

  EXPECT_EQ(labels.Label(""), "");
  EXPECT_FALSE(labels.IsLoaded());
  labels.Write("<I18NTEXT><A>second</A></I18NTEXT>");

  EXPECT_EQ(labels.Label("A"), "second");
}

TEST(GetLabel, GivesAnEmptyTextForEveryKeyThatMakesAnInvalidExpressionAndNamesTheCause) {
  for (const Text& key : {Text("["), Text("A["), Text("A B"), Text("1x"), Text("/"), Text("%1")}) {
    LabelFile labels;
    labels.Write("<I18NTEXT><A>one</A></I18NTEXT>");

    EXPECT_EQ(labels.Label(key), "") << key;
    EXPECT_FALSE(labels.IsLoaded()) << key;
    ASSERT_EQ(labels.fixture.platform.causes.size(), 1u) << key;
    EXPECT_TRUE(labels.fixture.platform.causes[0].starts_with("label \"" + key + "\": ")) << key;
  }
}

TEST(GetLabel, LooksKeysUpExactlyAsGiven) {
  LabelFile labels;
  labels.Write("<I18NTEXT><SLBL0009>started</SLBL0009></I18NTEXT>");

  EXPECT_EQ(labels.Label("slbl0009"), "slbl0009");
  EXPECT_EQ(labels.Label("SLBL0009"), "started");
  EXPECT_EQ(labels.Label("Slbl0009"), "Slbl0009");
}

TEST(GetLabel, TakesTheFirstElementOfANameRightUnderTheTop) {
  LabelFile labels;
  labels.Write("<I18NTEXT><X><A>deep</A></X><A>first</A><A>second</A></I18NTEXT>");

  EXPECT_EQ(labels.Label("A"), "first");
}

TEST(GetLabel, GivesTheWholeTextContentOfTheElement) {
  LabelFile labels;
  labels.Write(
      "<I18NTEXT>\n"
      "  <A lang='en'>one <b>two</b> &lt;three&gt;<!-- no --><![CDATA[ <four> & ]]>&#233; 東</A>\n"
      "  <B> blanks around </B>\n"
      "  <C> </C>\n"
      "</I18NTEXT>\n");

  EXPECT_EQ(labels.Label("A"), "one two <three> <four> & é 東");
  EXPECT_EQ(labels.Label("B"), " blanks around ");
  EXPECT_EQ(labels.Label("C"), " ");
}

TEST(FilledLabel, ReplacesEveryOccurrenceOfEachMarkInAscendingOrderOnTheGrowingText) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>%1, %2, %1, %3, %4, %5, %6</A><B>%2%1</B></I18NTEXT>");
  modDeclarations& process = labels.fixture.process;

  EXPECT_EQ(FilledLabel(process, "A", "a", "b", "c", "d", "e"), "a, b, a, c, d, e, %6");
  EXPECT_EQ(FilledLabel(process, "B", "%2", "%1"), "%1%1");
  EXPECT_EQ(FilledLabel(process, "B", "%1", "x"), "x%1");
  EXPECT_EQ(FilledLabel(process, "A"), "%1, %2, %1, %3, %4, %5, %6");
}

TEST(FilledLabel, LeavesATextWithoutThePlaceholderAsItIs) {
  LabelFile labels;
  labels.Write("<I18NTEXT><A>no placeholder</A></I18NTEXT>");

  EXPECT_EQ(FilledLabel(labels.fixture.process, "A", "a", "b"), "no placeholder");
}

TEST(FilledLabel, FindsNothingToReplaceInAKeyThatStandsInForItsLabel) {
  LabelFile labels;

  EXPECT_EQ(FilledLabel(labels.fixture.process, "SLBL0009", "Sites", "T100"), "SLBL0009");
}

/// The texts that are shipped: every key that the job uses has an element, with the placeholders that it fills.
TEST(ShippedLabels, HoldEveryKeyWithItsPlaceholdersInBothLanguages) {
  const struct {
    const char* key;
    int placeholders;
  } keys[] = {
      {"SLBL0006", 2}, {"SLBL0007", 2}, {"SLBL0009", 2}, {"SLBL0010", 5}, {"SLBL0026", 0}, {"SLBL0041", 1},
      {"SLBL0120", 0}, {"SLBL0133", 3}, {"SLBL0143", 2}, {"SLBL0232", 0}, {"SLBL0234", 1}, {"SLBL0235", 1},
      {"SLBL0237", 1}, {"SLBL0278", 0}, {"SLBL0302", 0}, {"SLBL0321", 0}, {"SLBL0374", 0}, {"SLBL0375", 1},
      {"SLBL0376", 1}, {"SLBL0377", 1}, {"SLBL0455", 1}, {"SLBL0456", 1}, {"SLBL0504", 0}, {"SLBL0507", 2},
      {"STIT0015", 0}, {"STIT0039", 0}, {"STIT0089", 0}, {"STIT0090", 0}, {"STIT0091", 0}, {"STIT0092", 0},
      {"STIT0098", 0}, {"STIT0099", 0}, {"STIT0100", 0}, {"STIT0101", 0}, {"STIT0088", 0}, {"STIT0095", 0},
      {"STIT0097", 0},
  };
  for (const char* language : {"", "de"}) {
    ProcessFixture fixture;
    fixture.process.LabelLanguage = language;
    for (const auto& [key, placeholders] : keys) {
      const Text label = GetLabel(fixture.process, key);

      EXPECT_NE(label, key);
      EXPECT_NE(Trim(label), "") << key;
      for (int place = 1; place <= 9; ++place) {
        const bool stands = label.find("%" + std::to_string(place)) != Text::npos;
        EXPECT_EQ(stands, place <= placeholders) << language << key << " %" << place;
      }
    }
  }
}

/// A file of shipped texts; `read` is called with each key and text.
template <typename Read>
void ReadShipped(const char* name, Read read) {
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file((Text(ZENQAY_SHARE "/") + name).c_str()));
  for (const pugi::xml_node label : document.child("I18NTEXT").children()) {
    if (label.type() == pugi::node_element) read(Text(label.name()), Text(label.text().as_string()));
  }
}

/// The values that a text tells its reader to put; they are the program's, in every language.
Text ValuesIn(const Text& text) {
  const std::regex value("[0-9]+|tstables|SQL Server|Oracle|ERP|%[1-9]");
  Text values;
  for (std::sregex_iterator found(text.begin(), text.end(), value), end; found != end; ++found) {
    values += found->str() + " ";
  }
  return values;
}

TEST(ShippedLabels, HaveTheSameKeysPlaceholdersAndValuesInBothLanguages) {
  Text english;
  Text german;

  ReadShipped("I18nText.xml", [&](const Text& key, const Text& text) { english += key + " " + ValuesIn(text) + "\n"; });
  ReadShipped("I18nText.de.xml",
              [&](const Text& key, const Text& text) { german += key + " " + ValuesIn(text) + "\n"; });

  EXPECT_EQ(german, english);
}

TEST(ShippedLabels, CanBeWrittenInTheCodePageOfTheLogs) {
  for (const char* name : {"I18nText.xml", "I18nText.de.xml"}) {
    ReadShipped(name, [&](const Text& key, const Text& text) {
      EXPECT_EQ(ToWindows1252(text).find('?'), Text::npos) << name << " " << key;
    });
  }
}

}  // namespace
}  // namespace zenqay
