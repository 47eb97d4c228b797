// A command line: its items, joined again, are the line, and its checks end in one of their own errors.
#include <algorithm>

#include "base/secrets.h"
#include "fuzz/fuzz.h"
#include "fuzz/surroundings.h"
#include "startup/modStartUp.h"

using namespace zenqay;

namespace {

Text Joined(const std::vector<Text>& items) {
  Text line;
  for (std::size_t i = 0; i < items.size(); ++i) line += (i == 0 ? "" : "{}") + items[i];
  return line;
}

bool IsExpected(std::int32_t number) {
  for (const std::int32_t expected : {6, 9, 13, 9999, 2021003, 2021004, 2021005}) {
    if (number == expected) return true;
  }
  return false;
}

std::string_view BehindBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// True when stars stand behind each "password=" and "pwd=".
bool HoldsNoSecret(std::string_view shown) {
  for (std::size_t at = 0; at < shown.size(); ++at) {
    for (const std::string_view key : {"password", "pwd"}) {
      if (!StartsWithIgnoringCase(shown.substr(at), key)) continue;
      const std::string_view value = BehindBlanks(shown.substr(at + key.size()));
      if (value.starts_with('=') && !BehindBlanks(value.substr(1)).starts_with("***")) return false;
    }
  }
  return true;
}

}  // namespace

FUZZ(input) {
  const Text line(input);
  const std::vector<Text> items = SplitCommandLine(line);
  Hold(Joined(items) == line, "the items are what the line holds");
  for (const Text& item : items) Hold(item.find("{}") == Text::npos, "no item holds a separator");

  Surroundings surroundings("/nonexistent");
  modDeclarations& process = surroundings.process;
  try {
    ValidateArguments(process, items);
    Hold(items.size() >= 11, "a line that serves has the items to the generation");
    Hold(process.NoStatusComponent == (items.size() == 12), "a twelfth item switches the status component off");
    Hold(!process.TableStatusEnabled || !process.NoStatusComponent, "without it there is no status by table");
  } catch (const RuntimeError& error) {
    Hold(IsExpected(error.number()), "a line that does not serve has one of the errors of the command line");
  }
  Hold(HoldsNoSecret(WithoutSecrets(line)), "what is shown without secrets holds none");
}
