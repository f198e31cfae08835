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
