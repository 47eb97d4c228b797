// A row of an ERP file, as the object that the job asks field by field.
#pragma once

#include "components/files/export_header.h"
#include "components/operation_table.h"

namespace zenqay {

/// What all rows of one listing share.
struct RowShape {
  CsvSource source;
  ExportColumns columns;
  OperationTable operations;
  OperationTable oldOperations;  // of the object with the old values
};

/// `plural` names the old values: every row answers has<Plural> and get<Plural>.
std::shared_ptr<const RowShape> MakeRowShape(const CsvSource& source, ExportColumns columns, const Text& plural);

/// Answers hasX, getX and setX of each column X. The fields are null, empty or read as their column's type; the values
/// that the job sets stay in this object. Asking twice gives the same answer, the same date object too.
class ExportRow : public Component, public std::enable_shared_from_this<ExportRow> {
 public:
  ExportRow(std::shared_ptr<const RowShape> shape, CsvRecord record, bool hasOldValues);
  ExportRow(const ExportRow&) = delete;  // its part with the old values points to it
  ExportRow& operator=(const ExportRow&) = delete;

  /// Raises 438 for a field whose column the file does not have, naming file and column.
  Value Call(std::string_view operation, Arguments arguments) override;
  Value Get(std::string_view property) override;
  void Put(std::string_view property, const Value& value) override;

 private:
  /// The object on which the "Old." columns answer. It is a part of its row and lives as long.
  class OldValues : public Component {
   public:
    explicit OldValues(ExportRow& row) : row_(row) {}

    Value Call(std::string_view operation, Arguments arguments) override;
    Value Get(std::string_view property) override { return row_.Get(property); }
    void Put(std::string_view property, const Value& value) override { row_.Put(property, value); }

   private:
    ExportRow& row_;
  };

  struct Kept {
    std::size_t column;
    Value value;
  };

  Value Perform(const RowOperation* found, std::string_view operation, Arguments arguments, bool onOldValues);
  bool IsPresent(std::size_t column) const;
  Value Field(std::size_t column);
  Value OldValuesObject();
  void Keep(std::size_t column, const Value& value);
  const Value* FindKept(std::size_t column) const;
  [[noreturn]] void RaiseNoColumn(std::string_view operation, bool onOldValues) const;

  std::shared_ptr<const RowShape> shape_;
  CsvRecord record_;
  std::vector<Kept> kept_;  // what was set, and the date objects that were handed out
  OldValues oldValues_{*this};
  bool hasOldValues_;
};

}  // namespace zenqay
