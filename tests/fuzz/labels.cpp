// A file of texts and a key, which is the first line of an input: asking for a label never fails, gives the key where
// the file is of no use, and gives the same again.
#include "process/labels.h"

#include "doubles/temp_directory.h"
#include "fuzz/fuzz.h"
#include "fuzz/surroundings.h"
#include "system/xml_file.h"

using namespace zenqay;

FUZZ(input) {
  static const TempDirectory home;
  const auto lineEnd = input.find('\n');
  const Text key(input.substr(0, lineEnd));
  const std::string_view content = lineEnd == std::string_view::npos ? std::string_view() : input.substr(lineEnd + 1);
  home.Write("I18nText.xml", content);
  Surroundings surroundings(home.path().string());

  const Text label = GetLabel(surroundings.process, key);

  Hold(GetLabel(surroundings.process, key) == label, "a label is found again");
  pugi::xml_document document;
  const bool isReadable = static_cast<bool>(ReadXmlFile(home.path().string() + "/I18nText.xml", document));
  Hold(isReadable || label == key, "a file that does not read leaves the key");
}
