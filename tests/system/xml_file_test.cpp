#include "system/xml_file.h"

#include <gtest/gtest.h>

#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

struct XmlDirectory {
  TempDirectory directory;
  pugi::xml_document document;

  Text Path() const { return (directory.path() / "a.xml").string(); }

  /// The fault of reading a file with this content, its path left out; "ok" for none.
  Text Read(std::string_view content) {
    directory.Write("a.xml", content);
    const XmlRead read = ReadXmlFile(Path(), document);
    return read ? "ok" + read.fault : read.fault.substr(read.fault.starts_with(Path()) ? Path().size() : 0);
  }
};

TEST(ReadXmlFile, ReadsAWellFormedFile) {
  XmlDirectory xml;

  EXPECT_EQ(
      xml.Read("<?xml version=\"1.0\"?>\n<!-- texts -->\n<T><A>one &amp; two</A><B><![CDATA[<b>]]></B><C> </C></T>\n"),
      "ok");
  EXPECT_STREQ(xml.document.child("T").child_value("A"), "one & two");
  EXPECT_STREQ(xml.document.child("T").child_value("B"), "<b>");
  EXPECT_STREQ(xml.document.child("T").child_value("C"), " ");
}

TEST(ReadXmlFile, ReadsUtf8WithAndWithoutAByteOrderMark) {
  XmlDirectory xml;

  EXPECT_EQ(xml.Read("<T>é東</T>"), "ok");
  EXPECT_STREQ(xml.document.child_value("T"), "é東");
  EXPECT_EQ(xml.Read("\xEF\xBB\xBF<T>é東</T>"), "ok");
  EXPECT_STREQ(xml.document.child_value("T"), "é東");
}

TEST(ReadXmlFile, ReadsUtf16) {
  XmlDirectory xml;

  EXPECT_EQ(xml.Read(std::string_view("\xFF\xFE<\0T\0>\0\xE9\0<\0/\0T\0>\0", 18)), "ok");
  EXPECT_STREQ(xml.document.child_value("T"), "é");
}

TEST(ReadXmlFile, NamesTheLineOfMalformedText) {
  XmlDirectory xml;

  EXPECT_EQ(xml.Read("<T>\n<A>one</A>\n<B>two</C>\n</T>\n"), ", line 3: Start-end tags mismatch");
  EXPECT_EQ(xml.Read("<T>\n<A x=1/>\n</T>\n"), ", line 2: Error parsing element attribute");
}

TEST(ReadXmlFile, RefusesAFileWithoutExactlyOneTopLevelElement) {
  XmlDirectory xml;

  EXPECT_EQ(xml.Read(""), ", line 1: No document element found");
  EXPECT_EQ(xml.Read("<A/><B/>"), ": there must be exactly one top-level element");
  EXPECT_EQ(xml.Read("<A/>\n<A/>\n<A/>"), ": there must be exactly one top-level element");
}

TEST(ReadXmlFile, NamesAFileThatIsMissingOrNoFile) {
  TempDirectory directory;
  pugi::xml_document document;
  const Text missing = (directory.path() / "none.xml").string();

  EXPECT_EQ(ReadXmlFile(missing, document).fault, missing + ": the file is missing or cannot be read");
  EXPECT_EQ(ReadXmlFile(directory.path().string(), document).fault,
            directory.path().string() + ": the file is missing or cannot be read");
}

TEST(LineOf, CountsTheLinesOfTheFileFromOne) {
  XmlDirectory xml;
  ASSERT_EQ(xml.Read("<T>\n  <A/>\r\n  <B\n    x='1'/><C/>\n</T>\n"), "ok");
  const pugi::xml_node root = xml.document.child("T");

  EXPECT_EQ(LineOf(xml.Path(), root), 1);
  EXPECT_EQ(LineOf(xml.Path(), root.child("A")), 2);
  EXPECT_EQ(LineOf(xml.Path(), root.child("B")), 3);
  EXPECT_EQ(LineOf(xml.Path(), root.child("C")), 4);
}

}  // namespace
}  // namespace zenqay
