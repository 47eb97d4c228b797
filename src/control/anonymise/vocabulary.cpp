#include "control/anonymise/vocabulary.h"

#include <algorithm>

#include "components/files/reference_headers.h"
#include "control/anonymise/text_mapping.h"
#include "control/anonymise/word_lists.h"
#include "control/first_job_files.h"
#include "entities/entity.h"
#include "postcopy/warranty_expiry.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr std::string_view kGet = "get";

constexpr std::string_view kClasses[] = {
    kAdapterInfoClass,   kAdapterAccessClass,  kDateClass,           kCalendarClass,          kCriteriaClass,
    kCriteriaInputClass, kCriteriaOutputClass, kCriteriaPeriodClass, kCriteriaParameterClass, kStatusClass};

/// The operations whose texts the job looks into, and those that take its own texts. What rows and listings have is
/// told by the exports' headers.
constexpr struct {
  const char* operation;
  Meaning meaning;
} kOperations[] = {
    {"getActionType", Meaning::System},  // I, U, D
    {"getVersion", Meaning::System},
    {"setFieldName", Meaning::System},
    {"setFrom", Meaning::System},  // the bounds are the job's
    {"setTo", Meaning::System},
    {"addFieldNameWithOld", Meaning::System},
    {"addFieldNameWithoutOld", Meaning::System},
    {"toLocaleString", Meaning::Date},
    {"writeToMessageBox", Meaning::Message},
    {"WriteToAlertBox", Meaning::Message},
    {"UpdateStatusByTable", Meaning::Message},
    {"UpdateSyncStatus", Meaning::Message},
    {"Initialize", Meaning::Words},
    {"List", Meaning::Words},
};

constexpr const char* kRegistry[] = {"tstables", "tstreenodes", "tsi18ntext"};
constexpr const char* kRegistryColumns[] = {"tablename", "ERPTableID", "tableid", "productid", "lutm",
                                            "in_use",    "reqd",       "groupid", "label"};
constexpr const char* kNumberColumns[] = {"upd_flag",          "TERM",        "LINE",
                                          "NUMBER_OF_PERIODS", "PERIOD_UNIT", "WARRANTY_TYPE"};

bool IsOneOf(std::span<const char* const> names, std::string_view name) {
  return std::ranges::any_of(names, [&](const char* one) { return EqualsIgnoringCase(name, one); });
}

Meaning MeaningOf(ColumnType type) {
  if (type == ColumnType::Plain) return Meaning::Words;
  return type == ColumnType::Int ? Meaning::Number : Meaning::Date;
}

Text PlaceOf(std::string_view table, std::string_view column) {
  return LowerCased(table) + "." + LowerCased(column);
}

/// What the page of failures quotes.
std::vector<std::string_view> QuotedIn(std::string_view page) {
  std::vector<std::string_view> parts = Split(page, "`");
  std::vector<std::string_view> quoted;
  for (std::size_t i = 1; i < parts.size(); i += 2) quoted.push_back(parts[i]);
  return quoted;
}

}  // namespace

Vocabulary::Vocabulary() {
  for (const auto& [operation, meaning] : kOperations) {
    operations_[LowerCased(operation)] = meaning;
    AddWordsOf(operation, words_);
  }
  AddOperationsOfExports();
  AddEntities();
  AddWordsOf(StatementWords(), names_);
  AddMessages();
}

void Vocabulary::AddWordsOf(std::string_view text, Words& words) {
  Pieces pieces(text);
  for (Piece piece; pieces.Next(piece);) {
    if (piece.isWord) words.insert(LowerCased(piece.text));
  }
}

void Vocabulary::AddOperationsOfExports() {
  for (const ReferenceHeader& header : ReferenceHeaders()) {
    AddWordsOf(header.fileStem, words_);
    for (const std::string_view cell : Split(header.header, ",")) {
      const std::vector<std::string_view> parts = Split(cell, ":");
      const Meaning meaning = MeaningOf(*ColumnTypeNamed(parts[1]));
      for (const char* verb : {"get", "set", "has"}) {
        const Text operation = Text(verb).append(parts[0]);
        operations_[LowerCased(operation)] = verb == std::string_view("has") ? Meaning::Number : meaning;
        AddWordsOf(operation, words_);
      }
      AddWordsOf(cell, words_);
    }
  }
}

void Vocabulary::AddEntities() {
  for (const Entity* entity : Entities()) {
    AddWordsOf(entity->name, names_);
    for (const EntitySource& source : entity->sources) {
      AddWordsOf(Text(source.managerClass) + " " + source.tableCode, words_);
      for (const char* column : source.columns) AddWordsOf(column, names_);
      for (const KeyField& key : source.keys) {
        keyNames_.insert(LowerCased(std::string_view(key.getX).substr(kGet.size())));
        if (OfOperation(key.getX) == Meaning::Number) columns_[PlaceOf(entity->name, key.column)] = Meaning::Number;
      }
    }
  }
  for (const ExpiryTable& table : kExpiryTables) {
    for (const char* column : table.columns) {
      AddWordsOf(column, names_);
      keyNames_.insert(LowerCased(column));
    }
  }
  for (const char* table : kRegistry) AddWordsOf(table, names_);
  for (const char* column : kRegistryColumns) AddWordsOf(column, names_);
}

void Vocabulary::AddMessages() {
  for (const FirstJobFile& file : FirstJobFiles()) {
    if (file.path.starts_with("home/I18nText")) AddWordsOf(file.content, words_);
  }
  for (const std::string_view text : QuotedIn(FailuresPage())) AddWordsOf(text, words_);
  for (const std::string_view classId : kClasses) AddWordsOf(classId, words_);
  AddWordsOf(MessageWords(), words_);
}

Meaning Vocabulary::OfOperation(std::string_view operation) const {
  const Text name = LowerCased(operation.substr(operation.find(' ') + 1));
  const auto found = operations_.find(name);
  if (found != operations_.end()) return found->second;
  if (name.starts_with("netlist")) return Meaning::System;
  return name.starts_with("has") ? Meaning::Number : Meaning::Date;
}

Meaning Vocabulary::OfColumn(std::string_view table, std::string_view column) const {
  if (IsRegistry(table)) {
    if (EqualsIgnoringCase(column, "text")) return Meaning::Message;
    return IsOneOf(kRegistryColumns, column) ? Meaning::System : Meaning::Words;
  }
  const auto found = columns_.find(PlaceOf(table, column));
  if (found != columns_.end()) return found->second;
  if (IsOneOf(kNumberColumns, column)) return Meaning::Number;
  return LowerCased(column).ends_with("_date") ? Meaning::Date : Meaning::Words;
}

bool Vocabulary::IsRegistry(std::string_view table) const {
  return IsOneOf(kRegistry, table);
}

}  // namespace zenqay
