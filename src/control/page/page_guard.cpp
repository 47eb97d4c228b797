#include "control/page/page_guard.h"

#include <algorithm>
#include <array>

namespace zenqay {
namespace {

/// "localhost" of "localhost:8930", "[::1]" of "[::1]:8930"
Text NameOf(const Text& host) {
  const std::size_t behindAddress = host.starts_with('[') ? host.find(']') : 0;
  if (behindAddress == Text::npos) return host;
  return LowerCased(host.substr(0, host.find(':', behindAddress)));
}

/// An address cannot be made to lead elsewhere, as a name can.
bool IsAddress(std::string_view name) {
  if (name.starts_with('[') && name.ends_with(']')) {
    return name.find_first_not_of("0123456789abcdef:.", 1) == name.size() - 1;
  }
  return std::count(name.begin(), name.end(), '.') == 3 &&
         name.find_first_not_of("0123456789.") == std::string_view::npos;
}

bool IsOurs(const Text& host, const PageRules& rules) {
  const Text name = NameOf(host);
  if (name == "localhost" || IsAddress(name)) return true;
  return std::any_of(rules.hosts.begin(), rules.hosts.end(),
                     [&](const Text& ours) { return EqualsIgnoringCase(ours, name); });
}

int SextetOf(char c) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const std::size_t at = kDigits.find(c);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// What stands in Base64, up to the first character that is none of it.
Text FromBase64(std::string_view text) {
  Text bytes;
  unsigned held = 0;
  int bits = 0;
  for (const char c : text) {
    const int sextet = SextetOf(c);
    if (sextet < 0) break;
    held = ((held << 6) | static_cast<unsigned>(sextet)) & 0xFFFF;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>((held >> bits) & 0xFF);
  }
  return bytes;
}

/// The token as browsers and programs send it: the password of any user, or by itself.
Text TokenOf(const PageRequest& request) {
  const Text authorization = request.Header("authorization");
  const std::size_t blank = authorization.find(' ');
  if (blank == Text::npos) return "";
  const Text rest = authorization.substr(authorization.find_first_not_of(' ', blank) == Text::npos
                                             ? authorization.size()
                                             : authorization.find_first_not_of(' ', blank));
  const Text scheme = authorization.substr(0, blank);
  if (EqualsIgnoringCase(scheme, "Bearer")) return rest;
  if (!EqualsIgnoringCase(scheme, "Basic")) return "";
  const Text both = FromBase64(rest);
  const std::size_t colon = both.find(':');
  return colon == Text::npos ? "" : both.substr(colon + 1);
}

/// Browsers say where a request comes from; who is no browser need not. A reader may follow a link, or write the
/// address.
bool ComesFromElsewhere(const PageRequest& request, bool reads) {
  const Text site = request.Header("sec-fetch-site");
  const bool isVisit = reads && (site == "none" || request.Header("sec-fetch-mode") == "navigate");
  if (!site.empty() && site != "same-origin" && !isVisit) return true;
  const Text origin = request.Header("origin");
  const Text host = request.Header("host");
  return !origin.empty() && origin != "http://" + host && origin != "https://" + host;
}

}  // namespace

PageAnswer Refuse(int status, const Text& reason) {
  return {.status = status, .body = reason + "\n", .refusal = reason};
}

bool IsSameToken(std::string_view given, std::string_view token) {
  if (token.empty()) return false;
  unsigned differences = given.size() == token.size() ? 0 : 1;
  for (std::size_t i = 0; i < given.size(); ++i) {
    differences |= static_cast<unsigned char>(given[i]) ^ static_cast<unsigned char>(token[i % token.size()]);
  }
  return differences == 0;
}

bool IsLoopback(std::string_view address) {
  return address == "localhost" || address == "::1" || (IsAddress(address) && address.starts_with("127."));
}

std::optional<PageAnswer> RefusalOf(const PageRequest& request, const PageRules& rules) {
  const bool reads = request.method == "GET" || request.method == "HEAD";
  if (!reads && request.method != "POST") return Refuse(405, "the page can be read, and jobs started");
  const Text host = request.Header("host");
  if (host.empty()) return Refuse(400, "the request does not say whom it asks (Host)");
  if (!IsOurs(host, rules)) {
    return Refuse(403, "the page is not asked by the name " + host + "; --host lets it be");
  }
  if (rules.readNeedsToken && !IsSameToken(TokenOf(request), rules.token)) {
    PageAnswer answer = Refuse(401, "the page needs its token");
    answer.headers["WWW-Authenticate"] = "Basic realm=\"zenqayctl: the token is the password\", charset=\"UTF-8\"";
    return answer;
  }
  if (ComesFromElsewhere(request, reads)) return Refuse(403, "another site's page asks");
  if (reads) return std::nullopt;
  if (!rules.allowActions) return Refuse(403, "the page starts and unlocks nothing without --allow-actions");
  if (!IsSameToken(request.Header("x-zenqay-token"), rules.token)) return Refuse(401, "this is not the page's token");
  return std::nullopt;
}

}  // namespace zenqay
