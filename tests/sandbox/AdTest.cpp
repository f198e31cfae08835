// Ads and landing pages are complete, counted, and linked correctly.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "sandbox/Ads.h"
#include "sandbox/Sandbox.h"
#include "tests/support/HttpClient.h"

namespace {

using namespace quorbel_tests;
using sandbox::Sandbox;

std::set<std::string> found(const std::string& text, const std::regex& pattern) {
  std::set<std::string> all;
  for (std::sregex_iterator each(text.begin(), text.end(), pattern), end; each != end; ++each) {
    all.insert((*each)[1]);
  }
  return all;
}

TEST(Ad, IsSelfContainedAndFilledIn) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  for (const sandbox::Ad& ad : sandbox::ads()) {
    const Reply reply = get(sandbox->baseURL() + "/ad?slotname=ad-" + std::string(ad.name));
    ASSERT_EQ(reply.status, 200) << ad.name;
    EXPECT_EQ(reply.body.find("{{"), std::string::npos) << ad.name << " has a gap";
    const std::regex resources("(?:src|srcset|poster)=[\"'](?!gmsg)([^\"']+)|url\\((http[^)]+)");
    EXPECT_TRUE(found(reply.body, resources).empty()) << ad.name << " fetches something";
    EXPECT_NE(reply.body.find("URVO_ReceiveMessage"), std::string::npos) << ad.name;
  }
}

TEST(Ad, ComesWithAllFiveHeaders) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const Reply reply = get(sandbox->baseURL() + "/ad?slotname=ad-alpine");
  const std::string impressions = reply.header("X-Urvo-Tracking-Urls");
  const std::string click = reply.header("X-Urvo-Click-Tracking-Urls");
  EXPECT_EQ(reply.header("X-Urvo-Orientation"), "any");
  EXPECT_EQ(reply.header("X-Urvo-Interstitial-Timeout"), "5");
  EXPECT_EQ(reply.header("X-Urvo-Refresh-Rate"), "30");
  // The ticket is the click's path without its first four characters.
  const std::string path = click.substr(sandbox->baseURL().size());
  ASSERT_GT(path.size(), 5U) << click;
  const std::string ticket = path.substr(5);
  EXPECT_EQ(path.substr(0, 5), "/clk/");
  EXPECT_TRUE(impressions.starts_with(sandbox->baseURL() + "/imp/" + ticket + " "));
  EXPECT_NE(reply.body.find(ticket), std::string::npos) << "the ad does not know its ticket";
}

TEST(Ad, LinksAndMessagesLeadToPagesThatExist) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  std::set<std::string> pages;
  for (const sandbox::Ad& ad : sandbox::ads()) {
    const Reply reply = get(sandbox->baseURL() + "/ad?slotname=ad-" + std::string(ad.name));
    pages.merge(found(reply.body, std::regex("/land/([a-z-]+)")));
  }
  for (const char* page : {"plain", "webapp"}) {
    const Reply reply = get(sandbox->baseURL() + "/land/" + page);
    pages.merge(found(reply.body, std::regex("/land/([a-z-]+[a-z.]*)")));
  }
  EXPECT_GE(pages.size(), 8U);
  for (const std::string& page : pages) {
    const Reply reply = ask({.url = sandbox->baseURL() + "/land/" + page, .patienceSeconds = 1});
    EXPECT_NE(reply.status, 404) << page;
  }
}

TEST(Ad, TheGoodOnesComeInTurnUnlessOneIsChosen) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const auto title = [&](const std::string& unit) {
    const Reply reply = get(sandbox->baseURL() + "/ad?slotname=" + unit);
    const auto titles = found(reply.body, std::regex("<title>([^<]*)</title>"));
    return titles.empty() ? "" : *titles.begin();
  };
  std::set<std::string> seen;
  for (int each = 0; each < 4; ++each) seen.insert(title("anything"));
  EXPECT_EQ(seen.size(), 4U);
  EXPECT_TRUE(sandbox->setAd("call"));
  EXPECT_FALSE(sandbox->setAd("nobody"));
  EXPECT_EQ(title("anything"), "Corner Bakery");
  EXPECT_EQ(title("ad-video"), "Night Bus") << "the ad unit's own choice counts more";
}

TEST(Landing, PagesAreGoodAndBadAsTheyAreNamed) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const auto land = [&](const char* page) {
    return ask({.url = sandbox->baseURL() + "/land/" + page + "?t=t1", .patienceSeconds = 1});
  };
  EXPECT_EQ(land("plain").status, 200);
  EXPECT_EQ(land("webapp").status, 200);
  EXPECT_EQ(land("failing").status, 500);
  EXPECT_EQ(land("missing").status, 404);
  EXPECT_EQ(land("../../etc/passwd").status, 404);
  EXPECT_EQ(land("cut").status, 0);
  EXPECT_EQ(land("hang").status, 0);
  EXPECT_EQ(land("to-store").header("Location").substr(0, 9), "itms-apps");
  EXPECT_EQ(land("loop").header("Location"), sandbox->baseURL() + "/land/loop?t=t1");
  const Reply clip = land("clip.webm");
  EXPECT_EQ(clip.header("Content-Type"), "video/webm");
  EXPECT_EQ(clip.body.substr(0, 4), "\x1A\x45\xDF\xA3");
}

TEST(Landing, TheBadCertificateIsRefusedUnlessAnyWillDo) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const std::string secure = sandbox->secureBaseURL();
  if (secure.empty()) GTEST_SKIP() << "no TLS on this machine";
  EXPECT_EQ(get(sandbox->baseURL() + "/land/secure?t=t1").header("Location"),
            secure + "/land/plain?t=t1");
  EXPECT_EQ(get(secure + "/land/plain").status, 0);
  EXPECT_EQ(ask({.url = secure + "/land/plain", .acceptsAnyCertificate = true}).status, 200);
}

TEST(Script, IsSentAgainOnlyWhenItIsNewer) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const std::string url = sandbox->baseURL() + "/urvo/sdk-core-v40.js";
  const Reply first = get(url);
  EXPECT_EQ(first.status, 200);
  EXPECT_NE(first.body.find("URVO_buildAdURL"), std::string::npos);
  EXPECT_EQ(first.body.find("</script"), std::string::npos) << "it would end its own element";
  const std::string modified = first.header("Last-Modified");
  ASSERT_TRUE(modified.ends_with(" GMT")) << modified;
  const auto statusSince = [&](const std::string& since) {
    return ask({.url = url, .headers = {{"If-Modified-Since", since}}}).status;
  };
  EXPECT_EQ(statusSince(modified), 304);
  EXPECT_EQ(statusSince(modified.substr(0, modified.size() - 4)), 304) << "without the zone";
  EXPECT_EQ(statusSince("Wed, 09 Jun 2010 10:18:14"), 200);
  EXPECT_EQ(statusSince("yesterday"), 200);
}

}  // namespace
