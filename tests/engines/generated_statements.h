// Statements that nobody wrote: as a job composes them, and as it never would.
//
//     GeneratedStatements statements({.columns = …, .values = …}, /*seed=*/1);
//     connection->Execute(statements.Next());
#pragma once

#include <random>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// What the statements are made of.
struct StatementWords {
  std::vector<Text> tables;
  std::vector<Text> columns;               // every table has them; the first one is its key
  std::vector<Text> keys;                  // the values of keys
  std::vector<Text> values;                // what a job writes
  std::vector<Text> oddities;              // what it does not
  std::vector<std::vector<Text>> fitting;  // by column: what it takes; where there is none, any value
  std::vector<Text> conditions;            // whole ones
  std::vector<Text> statements;            // whole ones, each once in a while
};

class GeneratedStatements {
 public:
  GeneratedStatements(StatementWords words, unsigned seed) : words_(std::move(words)), random_(seed) {}

  Text Next() {
    if (Chance(100)) return OneOf(words_.statements);
    switch (random_() % 8) {
      case 0:
        return Deletion();
      case 1:
      case 2:
      case 3:
        return Insertion();
      default:
        return Update();
    }
  }

 private:
  bool Chance(unsigned oneIn) { return random_() % oneIn == 0; }
  const Text& OneOf(const std::vector<Text>& texts) { return texts[random_() % texts.size()]; }
  Text Blank() { return Chance(3) ? "" : " "; }

  Text NewValue() { return Chance(25) ? OneOf(words_.oddities) : OneOf(words_.values); }
  Text NewKey() { return Chance(20) ? NewValue() : OneOf(words_.keys); }
  std::size_t Column() { return 1 + random_() % (words_.columns.size() - 1); }

  Text NewValueOf(std::size_t column) {
    const bool isFitting = !words_.fitting.empty() && !Chance(12);
    return isFitting ? OneOf(words_.fitting[column]) : NewValue();
  }

  /// A job sets the same columns again and again, so a few lists of them serve for most statements.
  std::vector<std::size_t> Columns() {
    std::mt19937 few(random_() % 6);
    if (Chance(10)) few.seed(random_());
    std::vector<std::size_t> columns;
    for (std::size_t column = 1; column < words_.columns.size(); ++column) {
      if (few() % 3 == 0) columns.push_back(column);
    }
    return columns;
  }

  Text Condition() {
    if (Chance(8)) return OneOf(words_.conditions);
    const std::vector<Text> operators = {"=", "=", "=", " = ", " <> ", " < ", " >= "};
    const std::size_t column = Column();
    return words_.columns[column] + OneOf(operators) + NewValueOf(column);
  }

  Text Where() {
    Text where = "WHERE " + (Chance(5) ? Condition() : words_.columns.front() + " =" + NewKey());
    while (Chance(3)) where += Blank() + (Chance(4) ? "OR " : "AND ") + Condition();
    return where;
  }

  Text Update() {
    const Text key = NewKey();
    Text update = "UPDATE " + OneOf(words_.tables) + " SET " + words_.columns.front() + " = " + key;
    for (const std::size_t column : Columns()) {
      update += "," + Blank() + words_.columns[column] + Blank() + "= " + NewValueOf(column);
    }
    if (!Chance(2)) return update + Blank() + Where();
    return update + Blank() + "WHERE " + words_.columns.front() + " =" + key;  // as a job finds the row that it writes
  }

  Text Insertion() {
    const std::vector<std::size_t> columns = Columns();
    Text insertion = "INSERT INTO " + OneOf(words_.tables) + " (" + words_.columns.front();
    for (const std::size_t column : columns) insertion += "," + words_.columns[column];
    insertion += " )VALUES ";
    do {
      if (!insertion.ends_with(' ')) insertion += ",";
      insertion += "(" + NewKey();
      for (const std::size_t column : columns) insertion += "," + NewValueOf(column);
      insertion += ")";
    } while (Chance(20));
    return insertion;
  }

  Text Deletion() { return "DELETE FROM " + OneOf(words_.tables) + " " + Where(); }

  StatementWords words_;
  std::mt19937 random_;
};

}  // namespace zenqay
