// The objects that the warranty expiry fails at.
#pragma once

#include "contracts/connection.h"

namespace zenqay {

/// What there is to say of them as the tables now stand: how many have a warranty but no delivery date to count it
/// from, and which. Empty where there are none. The expiry fails at the first.
Text UndatedObjects(Database& database, const std::shared_ptr<Connection>& connection);

}  // namespace zenqay
