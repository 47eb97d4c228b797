// A hash that nobody can compute without its key: SipHash-2-4.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zenqay {

class KeyedHash {
 public:
  using Key = std::array<std::uint64_t, 2>;

  /// A key that nobody has had before and nobody can guess.
  static Key RandomKey();

  explicit KeyedHash(const Key& key) : key_(key) {}

  std::uint64_t operator()(std::string_view bytes) const;

 private:
  Key key_;
};

}  // namespace zenqay
