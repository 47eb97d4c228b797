// Takes a customer's names, keys and texts out of what a job said and stored.
#pragma once

#include "control/anonymise/text_mapping.h"
#include "control/anonymise/vocabulary.h"

namespace zenqay {

bool IsAllDigits(std::string_view word);

/// One secret for all that is made anonymous together: what was equal stays equal across files, too.
class Anonymiser {
 public:
  explicit Anonymiser(const KeyedHash::Key& key) : mapping_(key) {}

  /// A value of this meaning: as it was where it stays, else with other words.
  Text Value(Meaning meaning, std::string_view text) const;

  /// A number that stands for a key, such as a customer's. Its digits change as those of a text do.
  std::int64_t Number(std::int64_t key) const;

  /// Names of tables and columns stay, and what is none of them changes.
  Text Name(std::string_view text) const;

  /// A statement as the job composes it, or one that declares a table. Words of SQL, names, numbers and dates stay;
  /// literals change, those of numbers in columns of numbers excepted. A statement on the registry stays whole.
  Text Statement(std::string_view statement) const;

  /// A message of the job's own: its words and all numbers stay.
  Text Message(std::string_view message) const;

  /// What an adapter, a database or a driver says: the words that such messages are made of stay outside of quotes, of
  /// values in parentheses and of the key that is told behind " of ", and so do short numbers and those of failures.
  Text Failure(std::string_view description) const;

  /// A line of a log file: one of the job's messages, or a record of a failure.
  Text LogLine(std::string_view line) const;

  const Vocabulary& vocabulary() const { return vocabulary_; }

 private:
  Text RowKey(std::string_view told) const;
  Text Quoted(std::string_view text) const;
  Text FailureWord(std::string_view before, std::string_view word) const;
  Text Sentence(std::string_view text) const;

  TextMapping mapping_;
  Vocabulary vocabulary_;
};

}  // namespace zenqay
