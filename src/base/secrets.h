// Keeping passwords out of every output.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// The text with each password in it replaced by "***".
///
/// A password is the value behind a key of connection strings (password, passwd, pass, pwd, secret, access token; no
/// regard to case, blanks and tabs around the equals sign), and what stands behind the "/" of a user (User ID=name/…).
/// A value in quotes or braces goes to its closing mark. A bare one goes to the end of the line or of the command
/// line's item, or to a ";" that another entry follows: any other ";" may belong to a password that should have been
/// quoted. Where it cannot be told how far a password goes, rather too much is hidden.
Text WithoutSecrets(std::string_view text);

}  // namespace zenqay
