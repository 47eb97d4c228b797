// What zenqay-dbsync-check says of itself.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

Text CheckHelp();

}  // namespace zenqay
