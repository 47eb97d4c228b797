// What is the program's own: its words, the names of tables and columns, and what its operations and columns mean.
#pragma once

#include <map>
#include <unordered_set>

#include "control/anonymise/meaning.h"

namespace zenqay {

/// All names and words are compared without regard to case.
class Vocabulary {
 public:
  Vocabulary();

  /// Whether a word belongs to statements: a word of SQL, a part of a table's or a column's name.
  bool IsName(std::string_view word) const { return Has(names_, word); }

  /// Whether a word may stand in a message for itself: a name, or a word of the labels, of the page of failures, of
  /// class ids and operations, of what databases and their drivers say.
  bool IsProgramWord(std::string_view word) const { return IsName(word) || Has(words_, word); }

  /// Whether failures tell a row by a key of this name.
  bool IsKeyName(std::string_view name) const { return Has(keyNames_, name); }

  /// Of what a component's operation is given, and gives: "getLocation", "put CurrentInstanceNumber".
  Meaning OfOperation(std::string_view operation) const;

  /// Of a cell of a local table, and of what a statement compares the column with or stores in it.
  Meaning OfColumn(std::string_view table, std::string_view column) const;

  /// Whether a table is of the registry of tables, whose names and labels are the program's.
  bool IsRegistry(std::string_view table) const;

 private:
  using Words = std::unordered_set<Text>;

  static bool Has(const Words& words, std::string_view word) { return words.contains(LowerCased(word)); }
  static void AddWordsOf(std::string_view text, Words& words);
  void AddOperationsOfExports();
  void AddEntities();
  void AddMessages();

  Words names_;
  Words words_;
  Words keyNames_;
  std::map<Text, Meaning> operations_;  // in lower case
  std::map<Text, Meaning> columns_;     // "table.column" in lower case; those of numbers
};

}  // namespace zenqay
