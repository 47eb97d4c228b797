#include "control/anonymise/keyed_hash.h"

#include <openssl/evp.h>
#include <openssl/params.h>

#include <new>
#include <random>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

constexpr std::size_t kKeySize = 16;  // bytes
constexpr std::size_t kHashSize = 8;

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

KeyedHash::KeyedHash(const Key& key) {
  for (std::size_t i = 0; i < kKeySize; ++i) key_[i] = static_cast<unsigned char>(key[i / 8] >> (8 * (i % 8)));
  EVP_MAC* method = EVP_MAC_fetch(nullptr, "SIPHASH", nullptr);
  if (method == nullptr) {
    throw RuntimeError(static_cast<std::int32_t>(PlatformFault::CannotCreateObject), "OpenSSL",
                       "the OpenSSL of this machine has no SipHash");
  }
  context_.reset(EVP_MAC_CTX_new(method), EVP_MAC_CTX_free);
  EVP_MAC_free(method);
  std::size_t size = kHashSize;
  const OSSL_PARAM settings[] = {OSSL_PARAM_construct_size_t("size", &size), OSSL_PARAM_construct_end()};
  if (context_ == nullptr || EVP_MAC_CTX_set_params(context_.get(), settings) != 1) throw std::bad_alloc();
}

std::uint64_t KeyedHash::operator()(std::string_view bytes) const {
  unsigned char hash[kHashSize];
  std::size_t size = 0;
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const bool isDone = EVP_MAC_init(context_.get(), key_.data(), key_.size(), nullptr) == 1 &&
                      EVP_MAC_update(context_.get(), data, bytes.size()) == 1 &&
                      EVP_MAC_final(context_.get(), hash, &size, sizeof hash) == 1;
  if (!isDone || size != kHashSize) throw std::bad_alloc();
  std::uint64_t number = 0;
  for (std::size_t i = kHashSize; i-- > 0;) number = number << 8 | hash[i];
  return number;
}

}  // namespace zenqay
