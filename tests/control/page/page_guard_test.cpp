#include "control/page/page_guard.h"

#include <gtest/gtest.h>

#include <sstream>

#include "control/page/refusal_log.h"

namespace zenqay {
namespace {

const Text kToken = "0123456789abcdef";

/// "", or "403 why".
Text Refusal(const PageRequest& request, const PageRules& rules) {
  const auto refusal = RefusalOf(request, rules);
  return refusal ? std::to_string(refusal->status) + " " + refusal->refusal : "";
}

PageRequest Get(const Text& host, std::map<Text, Text> more = {}) {
  more["host"] = host;
  return {.method = "GET", .path = "/", .headers = std::move(more)};
}

PageRequest Post(std::map<Text, Text> headers) {
  headers.emplace("host", "localhost:8930");
  return {.method = "POST", .path = "/api/jobs/demo/run", .headers = std::move(headers)};
}

TEST(RefusalOfARequest, LetsThePageBeAskedByItsOwnNamesAlone) {
  const PageRules rules{.hosts = {"dbhost.example"}};
  for (const char* host : {"localhost", "localhost:8930", "LOCALHOST:1", "127.0.0.1:8930", "[::1]:8930", "[::1]",
                           "10.1.2.3", "dbhost.example:80", "DBHOST.example"}) {
    EXPECT_EQ(Refusal(Get(host), rules), "") << host;
  }
  for (const char* host : {"evil.example", "evil.example:8930", "localhost.evil.example", "127.0.0.1.evil.example",
                           "dbhost.example.evil", "1.2.3", "[evil]", "[::1", "127.0.0.1,evil.example", "::1"}) {
    EXPECT_EQ(Refusal(Get(host), rules), Text("403 the page is not asked by the name ") + host + "; --host lets it be");
  }
  EXPECT_EQ(Refusal({.method = "GET", .path = "/"}, rules), "400 the request does not say whom it asks (Host)");
}

TEST(RefusalOfARequest, KnowsTwoDeedsAlone) {
  for (const char* method : {"PUT", "DELETE", "OPTIONS", "TRACE", "CONNECT", "get", ""}) {
    PageRequest request = Get("localhost");
    request.method = method;
    EXPECT_EQ(Refusal(request, {}), "405 the page can be read, and jobs started") << method;
  }
}

TEST(RefusalOfARequest, AsksForTheTokenOutsideTheLoopback) {
  const PageRules rules{.token = kToken, .readNeedsToken = true};
  const Text refused = "401 the page needs its token";
  const struct {
    Text authorization;
    Text outcome;
  } cases[] = {
      {"", refused},
      {"Bearer " + kToken, ""},
      {"bearer   " + kToken, ""},
      {"Bearer " + kToken + "x", refused},
      {"Bearer 0123456789abcde", refused},
      {"Bearer ", refused},
      {"Bearer", refused},
      {"Basic eDowMTIzNDU2Nzg5YWJjZGVm", ""},       // x:0123456789abcdef
      {"Basic OjAxMjM0NTY3ODlhYmNkZWY=", ""},       // :0123456789abcdef
      {"Basic MDEyMzQ1Njc4OWFiY2RlZjo=", refused},  // 0123456789abcdef:
      {"Basic MDEyMzQ1Njc4OWFiY2RlZg==", refused},  // without a colon
      {"Basic !!", refused},
      {"Digest " + kToken, refused},
      {kToken, refused},
  };
  for (const auto& [authorization, outcome] : cases) {
    const auto request =
        authorization.empty() ? Get("localhost") : Get("localhost", {{"authorization", authorization}});
    EXPECT_EQ(Refusal(request, rules), outcome) << authorization;
  }
  EXPECT_EQ(RefusalOf(Get("localhost"), rules)->headers.at("WWW-Authenticate"),
            "Basic realm=\"zenqayctl: the token is the password\", charset=\"UTF-8\"");
  EXPECT_EQ(Refusal(Get("localhost"), {.token = kToken}), "");
}

TEST(RefusalOfARequest, LetsNobodyActWithoutAllowanceAndToken) {
  const PageRules rules{.token = kToken, .allowActions = true};
  const std::map<Text, Text> token = {{"x-zenqay-token", kToken}};

  EXPECT_EQ(Refusal(Post(token), rules), "");
  EXPECT_EQ(Refusal(Post(token), {.token = kToken}), "403 the page starts and unlocks nothing without --allow-actions");
  EXPECT_EQ(Refusal(Post({}), rules), "401 this is not the page's token");
  EXPECT_EQ(Refusal(Post({{"x-zenqay-token", "0123456789abcdeF"}}), rules), "401 this is not the page's token");
  EXPECT_EQ(Refusal(Post({{"authorization", "Bearer " + kToken}}), rules), "401 this is not the page's token");
  EXPECT_EQ(Refusal(Post({{"x-zenqay-token", ""}}), {.allowActions = true}), "401 this is not the page's token");
}

TEST(RefusalOfARequest, LetsNoOtherSitesPageAsk) {
  const PageRules rules{.token = kToken, .allowActions = true};
  const Text refused = "403 another site's page asks";
  const struct {
    std::map<Text, Text> headers;
    Text read;
    Text act;
  } cases[] = {
      {{{"sec-fetch-site", "same-origin"}, {"origin", "http://localhost:8930"}}, "", ""},
      {{{"origin", "https://localhost:8930"}}, "", ""},
      {{{"origin", "http://localhost:8931"}}, refused, refused},
      {{{"origin", "http://evil.example"}}, refused, refused},
      {{{"origin", "null"}}, refused, refused},
      {{{"sec-fetch-site", "cross-site"}, {"sec-fetch-mode", "no-cors"}}, refused, refused},
      {{{"sec-fetch-site", "same-site"}, {"sec-fetch-mode", "cors"}}, refused, refused},
      {{{"sec-fetch-site", "cross-site"}, {"sec-fetch-mode", "navigate"}}, "", refused},  // a link
      {{{"sec-fetch-site", "none"}, {"sec-fetch-mode", "navigate"}}, "", refused},        // the address bar
  };
  for (const auto& [headers, read, act] : cases) {
    std::map<Text, Text> withToken = headers;
    withToken["x-zenqay-token"] = kToken;
    EXPECT_EQ(Refusal(Get("localhost:8930", headers), rules), read);
    EXPECT_EQ(Refusal(Post(withToken), rules), act);
  }
}

TEST(IsLoopback, IsTrueOfWhatThisMachineAloneReaches) {
  for (const char* address : {"127.0.0.1", "127.1.2.3", "::1", "localhost"}) EXPECT_TRUE(IsLoopback(address));
  for (const char* address : {"0.0.0.0", "::", "10.0.0.1", "127.evil.example", "dbhost", "128.0.0.1", ""}) {
    EXPECT_FALSE(IsLoopback(address)) << address;
  }
}

TEST(RefusalLog, SaysTenInTenSecondsAndTheNumberOfTheRest) {
  std::ostringstream out;
  RefusalLog log(out);
  const RefusalLog::Moment start{std::chrono::seconds(100)};
  for (int i = 0; i < 25; ++i) log.NoteAt(start, "::1", 403, "no");
  std::string ten;
  for (int i = 0; i < 10; ++i) ten += "zenqayctl: refused ::1 (403): no\n";
  EXPECT_EQ(out.str(), ten);

  log.NoteAt(start + std::chrono::seconds(10), "::1", 400, "a\nb\x1b[2J" + std::string(300, 'x'));

  EXPECT_EQ(out.str(), ten + "zenqayctl: refused 15 more\nzenqayctl: refused ::1 (400): a?b?[2J" +
                           std::string(193, 'x') + "...\n");
}

}  // namespace
}  // namespace zenqay
