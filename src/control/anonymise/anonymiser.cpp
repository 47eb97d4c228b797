#include "control/anonymise/anonymiser.h"

#include <charconv>

namespace zenqay {

bool IsAllDigits(std::string_view word) {
  return word.find_first_not_of("0123456789") == std::string_view::npos;
}

Text Anonymiser::Value(Meaning meaning, std::string_view text) const {
  if (Stays(meaning, text)) return Text(text);
  return meaning == Meaning::Message ? Message(text) : mapping_.Changed(text);
}

std::int64_t Anonymiser::Number(std::int64_t key) const {
  const Text changed = mapping_.Changed(std::to_string(key));
  std::int64_t number = key;
  std::from_chars(changed.data(), changed.data() + changed.size(), number);  // 19 digits may not fit: they stay
  return number;
}

Text Anonymiser::Name(std::string_view text) const {
  return mapping_.Changed(text, [&](std::string_view word) { return vocabulary_.IsName(word) || IsAllDigits(word); });
}

Text Anonymiser::Message(std::string_view message) const {
  return mapping_.Changed(message,
                          [&](std::string_view word) { return vocabulary_.IsProgramWord(word) || IsAllDigits(word); });
}

}  // namespace zenqay
