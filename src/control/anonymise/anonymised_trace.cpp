#include "control/anonymise/anonymised_trace.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "base/json_text.h"
#include "control/exit_status.h"
#include "system/output_file.h"
#include "trace/shown_value.h"
#include "trace/trace.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

/// Whether numbers that stand for keys change: those that a component gives. What it is given are bounds and counts.
enum class Numbers { Stay, Change };

class TraceLines {
 public:
  explicit TraceLines(const Anonymiser& anonymiser) : anonymiser_(anonymiser) {}

  void ChangeLine(ordered_json& line) {
    const Text kind = line.value("kind", "");
    for (auto& [key, member] : line.items()) ChangeMember(kind, key, line, member);
  }

  std::int64_t changed() const { return changed_; }

 private:
  void ChangeMember(const Text& kind, const Text& key, const ordered_json& line, ordered_json& member) {
    if (key == "kind" || kind == "trace") return;
    if (key == "error") {
      ChangeTexts(member, &Anonymiser::Failure);
    } else if (kind == "create" && key == "class") {
      return;
    } else if (kind == "call") {
      ChangeCall(key, line.value("op", ""), member);
    } else if ((kind == "sql" || kind == "query") && key == "text") {
      ChangeTexts(member, &Anonymiser::Statement);
    } else if (kind == "log" && key == "lines") {
      ChangeTexts(member, &Anonymiser::LogLine);
    } else if (kind == "log" || kind == "box" || kind == "event") {
      if (key != "name") ChangeTexts(member, &Anonymiser::Message);
    } else if (kind == "lock") {
      ChangeTexts(member, &Anonymiser::Name);
    } else {
      ChangeValues(Meaning::Words, Numbers::Stay, member);
    }
  }

  void ChangeCall(const Text& key, const Text& operation, ordered_json& member) {
    if (key == "op") return;
    ChangeValues(anonymiser_.vocabulary().OfOperation(operation), key == "returns" ? Numbers::Change : Numbers::Stay,
                 member);
  }

  using Making = Text (Anonymiser::*)(std::string_view) const;

  void ChangeTexts(ordered_json& value, Making make) {
    if (value.is_string()) {
      Replace(value, (anonymiser_.*make)(value.get_ref<const Text&>()));
    } else if (value.is_structured()) {
      for (ordered_json& element : value) ChangeTexts(element, make);
    }
  }

  void ChangeValues(Meaning meaning, Numbers numbers, ordered_json& value) {
    if (value.is_string()) {
      Replace(value, anonymiser_.Value(meaning, value.get_ref<const Text&>()));
    } else if (value.is_number_integer() && numbers == Numbers::Change && meaning == Meaning::Words) {
      const std::int64_t number = anonymiser_.Number(value.get<std::int64_t>());
      const bool isInt32 = static_cast<std::int32_t>(number) == number;
      Replace(value, isInt32 ? ordered_json(number) : ordered_json(static_cast<double>(number)));
    } else if (value.is_array()) {
      for (ordered_json& element : value) ChangeValues(meaning, numbers, element);
    } else if (value.is_object()) {
      for (auto& [key, member] : value.items()) {
        if (key == "field") {
          ChangeTexts(member, &Anonymiser::Name);
        } else if (key != "object") {
          ChangeValues(meaning, numbers, member);
        }
      }
    }
  }

  template <typename Value>
  void Replace(ordered_json& value, const Value& other) {
    if (value == other) return;
    value = other;
    ++changed_;
  }

  const Anonymiser& anonymiser_;
  std::int64_t changed_ = 0;
};

void Write(OutputFile& file, const Text& path, const ordered_json& line) {
  const auto fault = file.Write(JsonText(line) + "\n");
  if (fault) throw RuntimeError(*fault, path);
}

[[noreturn]] void Refuse(const Text& path, std::int64_t line, const Text& why) {
  throw WrongUsage(path + ":" + std::to_string(line) + ": " + why);
}

void RequireHead(const Text& path, const ordered_json& line) {
  if (!line.is_object() || line.value("kind", ordered_json()) != "trace") Refuse(path, 1, "that is no trace's head");
  if (line.value("version", ordered_json()) == kTraceVersion) return;
  Refuse(path, 1, "the trace has another version than " + std::to_string(kTraceVersion));
}

/// What a line is by, is a text.
bool HasWords(const ordered_json& line) {
  const auto isWord = [&](const char* key) { return !line.contains(key) || line[key].is_string(); };
  return isWord("kind") && isWord("op");
}

}  // namespace

AnonymisedTrace AnonymiseTrace(const Text& from, const Text& to, const Anonymiser& anonymiser) {
  std::ifstream trace(from, std::ios::binary);
  if (!trace) throw WrongUsage(from + " cannot be read");
  OutputFile file;
  if (const auto fault = file.OpenPrivate(to)) throw RuntimeError(*fault, to);
  AnonymisedTrace done;
  TraceLines lines(anonymiser);
  for (Text text; std::getline(trace, text);) {
    ordered_json line = ordered_json::parse(text, nullptr, false);
    const bool isWhole = line.is_object();
    done.endIsCut = !isWhole && trace.eof() && done.lines > 0;
    if (done.endIsCut) break;
    if (!isWhole) Refuse(from, done.lines + 1, "that is no line of a trace");
    if (done.lines == 0) RequireHead(from, line);
    if (!HasWords(line)) Refuse(from, done.lines + 1, "that is no line of a trace");
    lines.ChangeLine(line);
    Write(file, to, line);
    ++done.lines;
  }
  if (trace.bad()) throw WrongUsage(from + " cannot be read");
  if (done.lines == 0) Refuse(from, 1, "that is no trace's head");
  if (const auto fault = file.Close()) throw RuntimeError(*fault, to);
  done.changed = lines.changed();
  return done;
}

}  // namespace zenqay
