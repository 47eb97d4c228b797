// What the tests of the ERP files share: a directory that a host serves, and the answers of its objects as texts.
#pragma once

#include <initializer_list>
#include <vector>

#include "base/runtime_error.h"
#include "components/files/file_host.h"
#include "doubles/temp_directory.h"

namespace zenqay {

/// "13 Type mismatch: about (source)", or "no error".
template <typename Deed>
Text ErrorOf(Deed deed) {
  try {
    deed();
  } catch (const RuntimeError& error) {
    return std::to_string(error.number()) + " " + error.description() + " (" + error.source() + ")";
  }
  return "no error";
}

/// A date object of some other host, with an offset of its own from UTC, in minutes (negative east of Greenwich).
class LocalDate : public Component {
 public:
  LocalDate(const DateTimeParts& local, std::int32_t offset) : local_(local), offset_(offset) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    RequireArguments(operation, arguments, 0, "LocalDate");
    if (EqualsIgnoringCase(operation, "getYear")) return local_.year - 1900;
    if (EqualsIgnoringCase(operation, "getMonth")) return local_.month - 1;
    if (EqualsIgnoringCase(operation, "getDate")) return local_.day;
    if (EqualsIgnoringCase(operation, "getHours")) return local_.hour;
    if (EqualsIgnoringCase(operation, "getMinutes")) return local_.minute;
    if (EqualsIgnoringCase(operation, "getSeconds")) return local_.second;
    if (EqualsIgnoringCase(operation, "getTimeZoneOffset")) return offset_;
    RaiseNoSuchOperation(operation, "LocalDate");
  }

  void MoveTo(const DateTimeParts& local) { local_ = local; }

 private:
  DateTimeParts local_;
  std::int32_t offset_;
};

inline Object DateAt(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int offset = 0) {
  return Object(std::make_shared<LocalDate>(DateTimeParts{year, month, day, hour, minute, second}, offset));
}

/// The text of HighValueString.
inline Text Highest(std::size_t length) {
  return Text(length, '\x7F');
}

/// A value as a test shows it: empty, null, 'text', 7, true, date 2004-1-31 10:11:12, nothing, object.
inline Text Shown(const Value& value) {
  if (value.Is<Empty>()) return "empty";
  if (value.IsNull()) return "null";
  if (const Text* text = value.If<Text>()) return "'" + *text + "'";
  if (const bool* truth = value.If<bool>()) return *truth ? "true" : "false";
  if (!value.Is<Object>()) return value.AsText();
  const Object object = value.AsObject();
  if (object.IsNothing()) return "nothing";
  try {
    const Text year = std::to_string(object.Call("getYear").AsInt32() + 1900);
    const Text month = std::to_string(object.Call("getMonth").AsInt32() + 1);
    const Text day = object.Call("getDate").AsText();
    const Text hours = object.Call("getHours").AsText();
    const Text minutes = object.Call("getMinutes").AsText();
    const Text seconds = object.Call("getSeconds").AsText();
    return "date " + year + "-" + month + "-" + day + " " + hours + ":" + minutes + ":" + seconds;
  } catch (const RuntimeError&) {
    return "object";
  }
}

/// What a row answers for one field: "absent" when hasX is false and getX empty, else what getX gives.
inline Text FieldOf(const Object& row, const Text& name) {
  const Value has = row.Call("has" + name);
  const Value get = row.Call("get" + name);
  if (Shown(has) == "false" && get.Is<Empty>()) return "absent";
  return (Shown(has) == "true" ? "" : Shown(has) + " ") + Shown(get);
}

using Names = std::initializer_list<const char*>;

inline Text FieldsOf(const Object& row, Names names) {
  Text fields;
  for (const char* name : names) fields += (fields.empty() ? "" : ", ") + FieldOf(row, name);
  return fields;
}

/// One line for each row that an enumeration gives, and one for the error that it ends with.
inline Text RowsOf(const Value& enumeration, Names names) {
  Text rows;
  const Object elements = enumeration.AsObject();
  const Text error = ErrorOf([&] {
    while (elements.Call("hasMoreElements").IsTrue()) {
      const Object row = elements.Call("nextElement").AsObject();
      rows += FieldsOf(row, names) + "\n";
    }
  });
  return error == "no error" ? rows : rows + error + "\n";
}

/// Calls an operation with a list of arguments by value.
inline Value CallWith(const Object& object, const Text& operation, std::vector<Value> values) {
  std::vector<Argument> arguments(values.begin(), values.end());
  return object.Call(operation, Arguments(arguments));
}

/// Criteria with nothing but a period.
inline Object CriteriaOf(ComponentHost& host, const Object& from, const Object& to) {
  const auto part = [&](const char* name) { return host.Create("NetListSelectionCriteria." + Text(name)); };
  const Object period = part("NetListPeriod");
  period.Call("setFrom", from);
  period.Call("setTo", to);
  const Object criteria = part("NetListSelectionCriteria");
  criteria.Call("setNetListPeriod", period);
  criteria.Call("setNetListIn", part("NetListIn"));
  criteria.Call("setNetListOut", part("NetListOut"));
  return criteria;
}

struct ErpFiles {
  TempDirectory directory;
  FileHost host{directory.path()};

  /// The manager of the entity "Lines", whose full export is `content`.
  Object Lines(std::string_view content) {
    directory.Write("Lines.csv", content);
    return host.Create("Lines.LinesManager");
  }
};

}  // namespace zenqay
