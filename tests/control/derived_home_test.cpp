#include "control/derived_home.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "doubles/file_content.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

class DerivedHomeOf : public testing::Test {
 protected:
  DerivedHomeOf() { directory.Write("I18nText.xml", "<TEXTS/>"); }

  ErpSettings Erp() const { return {.name = "main", .home = directory.path().string(), .place = "zenqay.toml:4:8"}; }
  Text Components(const Text& sweepLimit) {
    const DerivedHome home(Erp(), sweepLimit);
    return Replaced(ContentOf(home.path() + "/Components.xml"), directory.path().string(), "HOME");
  }

  TempDirectory directory;
};

TEST_F(DerivedHomeOf, HasAbsolutePathsTheLockAndTheSweepLimit) {
  directory.Write("Components.xml",
                  "<COMPONENTS>\n"
                  "  <HOST prefix=\"Kv\" kind=\"files\" directory=\"erp\"/>\n"
                  "  <HOST prefix=\"java:\" kind=\"jvm\" classpath=\"a/*.jar:/opt/b.jar\" options=\"-Xmx1g\"/>\n"
                  "  <HOST prefix=\"Z\" kind=\"file\" file=\"../status.jsonl\"/>\n"
                  "  <TRACE file=\"/tmp/trace-%p.jsonl\"/>\n"
                  "</COMPONENTS>\n");

  EXPECT_EQ(Replaced(Components("10%"), std::filesystem::path("HOME/..").string(), "HOME/.."),
            "<?xml version=\"1.0\"?>\n"
            "<COMPONENTS>\n"
            "  <HOST prefix=\"Kv\" kind=\"files\" directory=\"HOME/erp\" />\n"
            "  <HOST prefix=\"java:\" kind=\"jvm\" classpath=\"HOME/a/*.jar:/opt/b.jar\" options=\"-Xmx1g\" />\n"
            "  <HOST prefix=\"Z\" kind=\"file\" file=\"" +
                (directory.path().parent_path() / "status.jsonl").string() +
                "\" />\n"
                "  <TRACE file=\"/tmp/trace-%p.jsonl\" />\n"
                "  <LOCK takeover=\"yes\" />\n"
                "  <SWEEP limit=\"10%\" from=\"100\" />\n"
                "</COMPONENTS>\n");
}

TEST_F(DerivedHomeOf, KeepsWhatTheHomeItselfSaysOfThem) {
  directory.Write("Components.xml",
                  "<COMPONENTS>"
                  "<SWEEP limit=\"5%\" from=\"20\"><TABLE name=\"SITE\" limit=\"3\"/></SWEEP>"
                  "<LOCK/>"
                  "</COMPONENTS>");

  EXPECT_EQ(Components(""),
            "<?xml version=\"1.0\"?>\n"
            "<COMPONENTS>\n"
            "  <SWEEP limit=\"5%\" from=\"20\">\n"
            "    <TABLE name=\"SITE\" limit=\"3\" />\n"
            "  </SWEEP>\n"
            "  <LOCK takeover=\"yes\" />\n"
            "</COMPONENTS>\n");
  EXPECT_EQ(Components("500"),
            "<?xml version=\"1.0\"?>\n"
            "<COMPONENTS>\n"
            "  <SWEEP limit=\"500\" from=\"20\">\n"
            "    <TABLE name=\"SITE\" limit=\"3\" />\n"
            "  </SWEEP>\n"
            "  <LOCK takeover=\"yes\" />\n"
            "</COMPONENTS>\n");
}

TEST_F(DerivedHomeOf, HasTheTextsAndGoesWithTheObject) {
  directory.Write("Components.xml", "<COMPONENTS/>");
  Text path;
  {
    const DerivedHome home(Erp(), "");
    path = home.path();
    EXPECT_EQ(ContentOf(path + "/I18nText.xml"), "<TEXTS/>");
  }

  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(directory.Read("I18nText.xml"), "<TEXTS/>");
}

TEST_F(DerivedHomeOf, HasTheTextsOfTheLanguageThatIsAskedFor) {
  directory.Write("I18nText.de.xml", "<TEXTE/>");
  directory.Write("Components.xml", "<COMPONENTS><TEXTS language=\"de\"/></COMPONENTS>");

  const DerivedHome home(Erp(), "");

  EXPECT_EQ(ContentOf(home.path() + "/I18nText.de.xml"), "<TEXTE/>");
}

TEST_F(DerivedHomeOf, NeedsComponents) {
  EXPECT_EQ(Replaced(Raised([&] { DerivedHome(Erp(), ""); }), directory.path().string(), "HOME"),
            "2 zenqayctl: zenqay.toml:4:8: HOME/Components.xml: the file is missing or cannot be read");
}

}  // namespace
}  // namespace zenqay
