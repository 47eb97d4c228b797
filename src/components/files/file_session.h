// The ERP session of a directory of files. Nobody has to log in there.
#pragma once

#include <filesystem>

#include "contracts/value.h"

namespace zenqay {

/// Its property getVersion is the first line of adapter-version.txt in the directory, "2.4" when there is no such file.
/// Raises 75 for a file that cannot be read.
Object CreateAdapterInfo(const std::filesystem::path& directory);

/// Its property kxiToolKit_getDefaultToolkit gives an object, whose property createUserSession gives the session, which
/// answers addManager and remembers nothing.
Object CreateAdapterAccess();

}  // namespace zenqay
