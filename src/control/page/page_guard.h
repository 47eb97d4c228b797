// Who may ask the page for what.
#pragma once

#include <optional>

#include "control/page/page_request.h"

namespace zenqay {

struct PageRules {
  Text token;  // empty: there is none
  bool readNeedsToken = false;
  bool allowActions = false;  // only with a token
  std::vector<Text> hosts;    // the names that the page is asked by, beside localhost and any address in digits
};

/// Nothing for a request that may be answered. Refused are:
/// - a Host header that is missing, or names something else: another site whose name has been made to lead here
/// - reading without the token where it is needed, as the password of Basic or behind Bearer
/// - whatever another site's page asks for, but for a link that is followed to here
/// - an action without the token in X-Zenqay-Token, which no other site's page can send
std::optional<PageAnswer> RefusalOf(const PageRequest& request, const PageRules& rules);

/// Takes as long wherever the first difference lies.
bool IsSameToken(std::string_view given, std::string_view token);

/// True for what only this machine reaches.
bool IsLoopback(std::string_view address);

/// An answer that says why nothing else is answered.
PageAnswer Refuse(int status, const Text& reason);

}  // namespace zenqay
