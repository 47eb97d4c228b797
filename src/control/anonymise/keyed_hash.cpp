#include "control/anonymise/keyed_hash.h"

#include <bit>
#include <random>

namespace zenqay {
namespace {

/// Up to eight bytes, the first one lowest.
std::uint64_t LittleEndian(std::string_view bytes) {
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    word |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  }
  return word;
}

struct State {
  std::uint64_t v0;
  std::uint64_t v1;
  std::uint64_t v2;
  std::uint64_t v3;

  void Round() {
    v0 += v1;
    v1 = std::rotl(v1, 13) ^ v0;
    v0 = std::rotl(v0, 32);
    v2 += v3;
    v3 = std::rotl(v3, 16) ^ v2;
    v0 += v3;
    v3 = std::rotl(v3, 21) ^ v0;
    v2 += v1;
    v1 = std::rotl(v1, 17) ^ v2;
    v2 = std::rotl(v2, 32);
  }

  void Take(std::uint64_t word) {
    v3 ^= word;
    Round();
    Round();
    v0 ^= word;
  }
};

}  // namespace

KeyedHash::Key KeyedHash::RandomKey() {
  std::random_device source;  // the operating system's
  Key key{};
  for (std::uint64_t& half : key) {
    half = source();
    half = half << 32 | source();
  }
  return key;
}

std::uint64_t KeyedHash::operator()(std::string_view bytes) const {
  State state = {key_[0] ^ 0x736f6d6570736575, key_[1] ^ 0x646f72616e646f6d, key_[0] ^ 0x6c7967656e657261,
                 key_[1] ^ 0x7465646279746573};
  const std::uint64_t length = bytes.size();
  for (; bytes.size() >= 8; bytes.remove_prefix(8)) state.Take(LittleEndian(bytes.substr(0, 8)));
  state.Take(LittleEndian(bytes) | length << 56);
  state.v2 ^= 0xff;
  for (int i = 0; i < 4; ++i) state.Round();
  return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace zenqay
