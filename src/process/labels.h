// Localised texts by key, from a file beside the program.
#pragma once

#include "process/modDeclarations.h"

namespace zenqay {

/// The file of a language's texts: I18nText.xml for "en" and for an empty one, I18nText.de.xml for "de".
Text LabelFileName(const Text& language);

/// The text of a label, in the language of the process. The key itself when the file is missing or malformed or has no
/// such element; an empty text when the key makes no valid expression. Never fails. The file is read on the first
/// lookup and stays; after a failure the next lookup reads it again.
Text GetLabel(modDeclarations& process, const Text& key);

/// As GetLabel, with "%1", "%2" … replaced in this order, each on the text that the one before it left.
template <typename... Fillings>
Text FilledLabel(modDeclarations& process, const Text& key, const Fillings&... fillings) {
  Text text = GetLabel(process, key);
  int place = 0;
  ((text = Replaced(text, "%" + std::to_string(++place), fillings)), ...);
  return text;
}

}  // namespace zenqay
