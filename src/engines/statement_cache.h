// The statements that a session keeps prepared.
#pragma once

#include <algorithm>
#include <list>
#include <optional>

#include "base/text_functions.h"

namespace zenqay {

/// Holds at most so many statements, each under its shape. Of more, the one goes that has not been asked for longest.
/// A job asks for few, and mostly for those that it asked for last, so they are looked for one after the other.
template <typename Statement>
class StatementCache {
 public:
  explicit StatementCache(std::size_t most) : most_(most) {}

  /// Null when there is none. It stays where it is until it is dropped or has to go.
  Statement* Find(const Text& shape) {
    const auto found = At(shape);
    if (found == entries_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, found);
    return &found->statement;
  }

  /// Takes the statement of a shape that has none, and gives back the one that had to go for it.
  std::optional<Statement> Add(const Text& shape, Statement statement) {
    entries_.push_front({shape, std::move(statement)});
    if (entries_.size() <= most_) return std::nullopt;
    std::optional<Statement> gone = std::move(entries_.back().statement);
    entries_.pop_back();
    return gone;
  }

  void Drop(const Text& shape) { entries_.erase(At(shape)); }

 private:
  struct Entry {
    Text shape;
    Statement statement;
  };

  auto At(const Text& shape) {
    return std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.shape == shape; });
  }

  std::size_t most_;
  std::list<Entry> entries_;  // the latest first
};

}  // namespace zenqay
