// Texts word by word: what changes, and what stands between.
#pragma once

#include <functional>

#include "base/text_functions.h"
#include "control/anonymise/word_mapping.h"

namespace zenqay {

/// A run of letters and digits, or what stands between two of them.
struct Piece {
  std::string_view text;
  bool isWord = false;
};

/// Cuts a text into its pieces. A byte that is no UTF-8 is no letter.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : rest_(text) {}

  /// False at the end.
  bool Next(Piece& piece);

  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

/// Makes other texts of texts: each word as WordMapping says, everything between them as it was. So the same word
/// becomes the same other word wherever it stands, also within a longer text.
class TextMapping {
 public:
  explicit TextMapping(const KeyedHash::Key& key) : words_(key) {}

  Text Changed(std::string_view text) const;

  /// As Changed, without the words that stay.
  Text Changed(std::string_view text, const std::function<bool(std::string_view word)>& stays) const;

  /// Of a word without anything between.
  Text ChangedWord(std::string_view word) const;

 private:
  WordMapping words_;
};

}  // namespace zenqay
