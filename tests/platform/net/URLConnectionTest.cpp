// Fetches from a real server on loopback.
#include "platform/net/URLConnection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/net/RedirectLocation.h"
#include "tests/support/FetchRecorder.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;
using ::testing::ElementsAre;

class URLConnectionTest : public ::testing::Test {
 protected:
  LoopbackServer server;
  FetchRecorder fetch;
};

TEST_F(URLConnectionTest, SendsTheGivenHeadersAloneAndNoneThatSmugglesInAnother) {
  server.answer("/", 200);
  ASSERT_TRUE(fetch.fetch(server.url("/")));
  EXPECT_FALSE(server.requests().at(0).headers.contains("User-Agent"));
  EXPECT_FALSE(server.requests().at(0).headers.contains("Accept-Language"));
  const std::pair<const char*, const char*> cases[] = {{"User-Agent", "Phone (like a phone)"},
                                                       {"If-Modified-Since", "then"},
                                                       {"X-Bad", "a\r\nX-Forged: 1"},
                                                       {"X-Na me", "b"},
                                                       {"X-Forged: 2\r\nY", "c"}};
  URLRequest request{server.url("/")};
  for (const auto& [name, value] : cases) request.headers[name] = value;
  FetchRecorder second;
  ASSERT_TRUE(second.fetch(request));
  const Headers& sent = server.requests().at(1).headers;
  EXPECT_EQ(sent.at("User-Agent"), "Phone (like a phone)");
  EXPECT_EQ(sent.at("If-Modified-Since"), "then");
  EXPECT_FALSE(sent.contains("X-Forged") || sent.contains("X-Bad"));
}

TEST_F(URLConnectionTest, OnlyWebURLsHaveAConnectionAndOnesWithoutHostFailLater) {
  for (const char* text : {"ftp://host/", "file:///etc/passwd", "data:,x", "itms://store", "tel:1",
                           "about:blank", "relative/path", "//host/path"}) {
    EXPECT_FALSE(fetch.start(*URL::parse(text))) << text;
  }
  for (const char* text : {"http:///path", "http:path", "https:"}) {
    FetchRecorder recorder;
    ASSERT_TRUE(recorder.fetch(*URL::parse(text))) << text;
    EXPECT_EQ(recorder.errorCode(), kURLErrorUnsupportedURL) << text;
  }
}

TEST_F(URLConnectionTest, HeadersArriveAsTextHoweverTheyAreSent) {
  const std::string urls(60000, 'u');
  server.answer("/", 200,
                {{"X-Urls", "http://a/"},
                 {"x-urls", "http://b/ http://c/"},
                 {"X-Latin", "caf\xE9"},
                 {"X-Utf", "caf\xC3\xA9"},
                 {"X-Long", urls}});
  ASSERT_TRUE(fetch.fetch(server.url("/")));
  EXPECT_EQ(fetch.response->headers.at("X-Urls"), "http://a/, http://b/ http://c/");
  EXPECT_EQ(fetch.response->headers.at("X-Latin"), "caf\xEF\xBF\xBD");
  EXPECT_EQ(fetch.response->headers.at("X-Utf"), "caf\xC3\xA9");
  EXPECT_EQ(fetch.response->headers.at("X-Long"), urls);
}

TEST_F(URLConnectionTest, ReportsEachStepAndRedirectInOrderAndNothingBeforeStartReturns) {
  server.answer("/1", 301, {{"Location", "/2"}, {"X-Hop", "one"}}, "moved");
  server.answer("/2", 307, {{"Location", "3?q#f"}, {"X-Hop", "two"}});
  server.answer("/3", 200, {{"X-Hop", "three"}}, "end");
  ASSERT_TRUE(fetch.start(URLRequest{server.url("/1"), {{"User-Agent", "me"}}}));
  EXPECT_TRUE(fetch.events.empty());
  ASSERT_TRUE(runUntil([&] { return fetch.isOver(); }));
  EXPECT_THAT(fetch.events,
              ElementsAre("send", "redirect", "redirect", "response", "data", "finish"));
  EXPECT_THAT(fetch.urls,
              ElementsAre(server.address("/1"), server.address("/2"), server.address("/3?q#f")));
  EXPECT_EQ(fetch.redirects.at(0).headers.at("X-Hop"), "one");
  EXPECT_EQ(fetch.redirects.at(1).headers.at("X-Hop"), "two");
  EXPECT_EQ(fetch.redirects.at(1).statusCode, 307);
  EXPECT_EQ(fetch.response->statusCode, 200);
  EXPECT_EQ(fetch.response->url, server.url("/3?q#f"));
  EXPECT_EQ(fetch.response->headers.at("x-HOP"), "three");
  EXPECT_EQ(fetch.body, "end");
  EXPECT_EQ(server.requests("/3").at(0).target, "/3?q");
  EXPECT_EQ(server.requests("/3").at(0).headers.at("User-Agent"), "me");
}

TEST_F(URLConnectionTest, OnlyRedirectsWithALocationAreFollowed) {
  server.answer("/target", 200, {}, "followed");
  const std::pair<int, bool> cases[] = {{300, false}, {301, true},  {302, true}, {303, true},
                                        {304, false}, {305, false}, {307, true}, {308, true},
                                        {200, false}, {404, false}};
  for (const auto& [status, follows] : cases) {
    server.answer("/", status, {{"Location", "/target"}});
    FetchRecorder recorder;
    ASSERT_TRUE(recorder.fetch(server.url("/"))) << status;
    EXPECT_EQ(recorder.response->statusCode, follows ? 200 : status);
  }
  server.answer("/", 302);
  ASSERT_TRUE(fetch.fetch(server.url("/")));
  EXPECT_EQ(fetch.response->statusCode, 302);
}

TEST_F(URLConnectionTest, TwentyRedirectsAreFollowedAndNoMore) {
  for (int hop = 0; hop < 22; ++hop) {
    server.redirect("/" + std::to_string(hop), "/" + std::to_string(hop + 1));
  }
  server.answer("/22", 200);
  for (const bool tooMany : {false, true}) {
    FetchRecorder recorder;
    ASSERT_TRUE(recorder.fetch(server.url(tooMany ? "/1" : "/2")));
    EXPECT_EQ(recorder.errorCode(), tooMany ? kURLErrorTooManyRedirects : 0);
  }
}

TEST_F(URLConnectionTest, ARedirectToAnotherSchemeIsAskedAboutThenFails) {
  for (const char* target :
       {"itms://store.example/app?id=1", "file:///etc/passwd", "data:text/html,x",
        "javascript:alert(1)", "HTTPX://host/", "tel:+1234"}) {
    server.redirect("/", target);
    FetchRecorder recorder;
    ASSERT_TRUE(recorder.fetch(server.url("/"))) << target;
    EXPECT_THAT(recorder.events, ElementsAre("send", "redirect", "fail")) << target;
    EXPECT_EQ(recorder.urls.back(), target);
    EXPECT_EQ(recorder.errorCode(), kURLErrorUnsupportedURL);
  }
}

TEST_F(URLConnectionTest, LettingGoInAnyCallbackEndsTheCallbacks) {
  server.redirect("/", "/body");
  server.answer("/body", 200, {}, std::string(200000, 'x'));
  server.answer("/cut", {.body = std::string(1000, 'x'), .ending = LoopbackResponse::Ending::Cut});
  for (const char* last : {"send", "redirect", "response", "data", "finish", "fail"}) {
    FetchRecorder recorder;
    recorder.onEvent = [&](const std::string& event) {
      if (event == last) recorder.connection.reset();
    };
    ASSERT_TRUE(recorder.start(server.url(last == std::string("fail") ? "/cut" : "/")));
    ASSERT_TRUE(runUntil([&] { return !recorder.connection; })) << last;
    const std::size_t received = recorder.bodySize;
    runFor(0.05);
    EXPECT_EQ(recorder.events.back(), last);
    EXPECT_EQ(recorder.bodySize, received);
    const bool isBefore = last == std::string("send") || last == std::string("redirect");
    EXPECT_EQ(server.requests("/body").empty(), isBefore) << "a refused redirect is sent";
  }
}

TEST_F(URLConnectionTest, CookiesAreKeptForThoseWhoHandleThemAndDoNotGrowWithoutEnd) {
  server.answer("/", 200, {{"Set-Cookie", "taste=sweet; Path=/"}});
  ASSERT_TRUE(fetch.fetch(server.url("/")));
  FetchRecorder with, without;
  ASSERT_TRUE(with.fetch(server.url("/")));
  ASSERT_TRUE(without.fetch(URLRequest{.url = server.url("/"), .handlesCookies = false}));
  EXPECT_EQ(server.requests().at(1).headers.at("Cookie"), "taste=sweet");
  EXPECT_FALSE(server.requests().at(2).headers.contains("Cookie"));
  int set = 0;
  server.answer("/", [&](const LoopbackRequest&) {
    LoopbackResponse response;
    for (int count = 0; count < 100; ++count) {
      response.headers.emplace_back("Set-Cookie", "c" + std::to_string(set++) + "=1; Path=/");
    }
    return response;
  });
  for (int round = 0; round < 20; ++round) ASSERT_TRUE(FetchRecorder().fetch(server.url("/")));
  const Headers headers = server.requests().back().headers;
  const std::string sent = headers.contains("Cookie") ? headers.at("Cookie") : "";
  EXPECT_LE(std::count(sent.begin(), sent.end(), '='), 600);
}

TEST_F(URLConnectionTest, OneConnectionServesAChainAndWhatFollows) {
  server.answer("/1", 302, {{"Location", "/2"}}, "moved");
  server.redirect("/2", "/3", 303);
  server.answer("/3", 200, {}, std::string(100000, 'x'));
  server.answer("/missing", 404, {}, "abc");
  for (int round = 0; round < 3; ++round) {
    FetchRecorder chain, missing;
    ASSERT_TRUE(chain.fetch(server.url("/1")));
    // Released as soon as the status is known, as the resource cache does.
    missing.onEvent = [&](const std::string& event) {
      if (event == "response") missing.connection.reset();
    };
    ASSERT_TRUE(missing.start(server.url("/missing")));
    ASSERT_TRUE(runUntil([&] { return missing.response.has_value(); }));
  }
  EXPECT_EQ(server.connectionCount(), 1u);
}

TEST_F(URLConnectionTest, AnAbandonedLongBodyIsNotReadToItsEnd) {
  server.answer("/",
                {.body = std::string(10000, 'x'), .ending = LoopbackResponse::Ending::Endless});
  fetch.onEvent = [&](const std::string& event) {
    if (event == "response") fetch.connection.reset();
  };
  ASSERT_TRUE(fetch.start(server.url("/")));
  EXPECT_TRUE(runUntil([&] { return fetch.response && server.unfinishedCount() == 0; }));
}

TEST_F(URLConnectionTest, ManyHangingPingsDoNotHoldUpAnotherHost) {
  server.answer("/hang", {.delay = 1000});
  LoopbackServer other;
  other.answer("/", 200, {}, "here");
  std::vector<std::unique_ptr<FetchRecorder>> pings;
  for (int count = 0; count < 100; ++count) {
    pings.push_back(std::make_unique<FetchRecorder>());
    ASSERT_TRUE(pings.back()->start(server.url("/hang")));
  }
  ASSERT_TRUE(runUntil([&] { return !server.requests().empty(); }));
  ASSERT_TRUE(fetch.fetch(other.url("/")));
  EXPECT_EQ(fetch.body, "here");
}

TEST_F(URLConnectionTest, NobodyThereOrAnUntrustedCertificateIsAFailure) {
  LoopbackServer impostor(LoopbackServer::Security::SelfSigned);
  impostor.answer("/", 200, {}, "secret");
  ASSERT_TRUE(fetch.fetch(impostor.url("/")));
  EXPECT_EQ(fetch.errorCode(), kURLErrorSecureConnectionFailed);
  EXPECT_TRUE(impostor.requests().empty());
  FetchRecorder second;
  ASSERT_TRUE(second.fetch([] { return LoopbackServer().url("/"); }()));
  EXPECT_EQ(second.errorCode(), kURLErrorCannotConnectToHost);
}

TEST(RedirectLocationTest, LeadsToAURLHoweverItIsWritten) {
  const URL base = *URL::parse("http://host:8080/a/b?c#d");
  const std::pair<const char*, const char*> cases[] = {
      {"/x", "http://host:8080/x"},
      {"x", "http://host:8080/a/x"},
      {"../../../x", "http://host:8080/x"},
      {"?q", "http://host:8080/a/b?q"},
      {"//other/x", "http://other/x"},
      {"HTTPS://Other/%7e", "HTTPS://Other/%7e"},
      {"itms://store/app", "itms://store/app"},
      {" \t/x \t", "http://host:8080/x"},
      {"http://other/\xE9", "http://other/%E9"},
  };
  for (const auto& [location, expected] : cases) {
    const auto url = resolvedLocation(location, base);
    ASSERT_TRUE(url) << location;
    EXPECT_EQ(url->absoluteString(), expected);
  }
  for (const char* location : {"", "  ", "http://["}) {
    EXPECT_FALSE(resolvedLocation(location, base)) << location;
  }
}

}  // namespace
}  // namespace valdren::platform
