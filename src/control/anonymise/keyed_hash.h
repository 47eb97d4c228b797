// A hash that nobody can compute without its key: SipHash-2-4.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

struct evp_mac_ctx_st;

namespace zenqay {

/// Raises 429 where the library has no such hash, std::bad_alloc where it has no memory. Copies work in one place, so
/// they belong to one thread.
class KeyedHash {
 public:
  using Key = std::array<std::uint64_t, 2>;

  /// A key that nobody has had before and nobody can guess.
  static Key RandomKey();

  explicit KeyedHash(const Key& key);

  std::uint64_t operator()(std::string_view bytes) const;

 private:
  std::array<unsigned char, 16> key_{};
  std::shared_ptr<evp_mac_ctx_st> context_;
};

}  // namespace zenqay
