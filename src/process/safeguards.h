// What keeps a copy from doing harm, where it is asked for.
#pragma once

#include <optional>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// How much a sweep may take from a table: a number of rows, or a share of the rows that were there before the copy.
class SweepLimit {
 public:
  /// "120" or "12.5%", a share up to 100 and with at most two places behind the point; none for any other text.
  static std::optional<SweepLimit> Read(const Text& text);

  bool IsExceededBy(std::int64_t swept, std::int64_t before) const;

  /// As it was written.
  const Text& text() const { return text_; }

 private:
  SweepLimit(Text text, std::int64_t amount, bool isShare)
      : text_(std::move(text)), amount_(amount), isShare_(isShare) {}

  Text text_;
  std::int64_t amount_;  // rows, or hundredths of a percent
  bool isShare_;
};

struct SweepLimits {
  std::optional<SweepLimit> general;
  std::vector<std::pair<Text, SweepLimit>> ofTables;
  std::int64_t from = 0;  // a sweep of fewer rows is never refused

  /// The limit of a table, whose case does not count; null without one.
  const SweepLimit* For(const Text& table) const;
};

/// Whether jobs keep each other off a table by a lock of the database's, besides the flag in `tstables`.
enum class TableLock {
  NotUsed,
  Used,
  TakesOver,  // and who gets it takes a flag that is set as left behind
};

struct Safeguards {
  SweepLimits sweep;
  TableLock lock = TableLock::NotUsed;
};

}  // namespace zenqay
