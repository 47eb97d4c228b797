// The trace: a record of everything that one run said to the outside, as JSON lines.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <unordered_map>
#include <vector>

#include "base/runtime_error.h"
#include "contracts/platform.h"
#include "contracts/value.h"
#include "system/output_file.h"

namespace zenqay {

/// Of the form of a trace; the first one had neither a head nor times.
inline constexpr int kTraceVersion = 2;

class Trace {
 public:
  /// Replaces the file at `path` (a path of the operating system), in whose name "%p" stands for the process id. Only
  /// its owner may read it: it holds the data that was copied. That it cannot be written is kept for RequireUsable, so
  /// that it is reported by the path that every failure at start takes. The first line tells the version of the program
  /// that writes the trace, its process id and when the trace was begun.
  Trace(const Text& path, Text programVersion);

  /// Raises 75 when the file could not be opened.
  void RequireUsable() const;

  /// Who hears, once, that the trace ends before the job does, since its disk is full. It must outlive the trace's use.
  void TellEndTo(Platform& platform) { platform_ = &platform; }

  /// Writes one line at once: `n`, `kind`, then the members of `rest` in their order, without passwords, and `ms`, the
  /// milliseconds since the trace was begun. A line that the file cannot take whole is the end of the trace, and no
  /// failure of the job.
  void Write(std::string_view kind, nlohmann::ordered_json rest);

  void Event(std::string_view name, std::span<const Value> arguments);

  /// A log record that was written, whose lines are free of passwords already, or one that could not be.
  void LogRecord(const Text& file, const std::vector<Text>& lines);
  void LogRecord(const Text& file, const RuntimeError& error);

  void MessageBox(const Text& text);

  /// The number of an object, given at first sight and kept; 0 for an empty reference.
  std::int64_t IdOf(const Object& object);

  /// The value as it stands in the trace.
  nlohmann::ordered_json Shown(const Value& value);
  static nlohmann::ordered_json Shown(const RuntimeError& error);

 private:
  /// As Write, with the texts as they are.
  void Put(std::string_view kind, const nlohmann::ordered_json& rest);

  void PutLine(const nlohmann::ordered_json& line);

  struct Known {
    std::weak_ptr<Component> component;  // an address that was given away anew is another object
    std::int64_t id;
  };

  /// Keeps the memory of released objects from growing with the rows of a run.
  void ForgetReleased();

  Text path_;
  OutputFile file_;  // closed once the trace has ended
  bool isUsable_;
  Text programVersion_;
  Text begun_;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  Platform* platform_ = nullptr;
  std::int64_t lines_ = 0;
  std::int64_t lastId_ = 0;
  std::unordered_map<const Component*, Known> known_;
  std::size_t forgetAt_ = 1024;
};

}  // namespace zenqay
