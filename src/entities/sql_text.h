// A statement while it is put together from its fragments, in their order.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

class SqlText {
 public:
  template <typename... Fragments>
  explicit SqlText(const Fragments&... fragments) {
    text_.reserve(kUsualLength);
    Add(fragments...);
  }

  template <typename... Fragments>
  void Add(const Fragments&... fragments) {
    (text_.append(std::string_view(fragments)), ...);
  }

  const Text& text() const { return text_; }

 private:
  static constexpr std::size_t kUsualLength = 240;

  Text text_;
};

}  // namespace zenqay
