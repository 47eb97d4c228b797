// Writing to a descriptor until all is written.
#pragma once

#include <string_view>

namespace zenqay {

/// Writes all of the bytes, also when signals interrupt it. 0, or the errno that it stopped at.
int WriteAll(int descriptor, std::string_view bytes);

}  // namespace zenqay
