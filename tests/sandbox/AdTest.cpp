// Ads and landing pages are complete and linked correctly.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "sandbox/Ads.h"
#include "tests/sandbox/Network.h"

namespace {

using sandbox_tests::Network;

std::set<std::string> found(const std::string& text, const std::regex& pattern) {
  std::set<std::string> all;
  for (std::sregex_iterator each(text.begin(), text.end(), pattern), end; each != end; ++each) {
    all.insert((*each)[1]);
  }
  return all;
}

TEST(Ad, IsSelfContainedAndItsLinksLeadToPagesThatExist) {
  Network network;
  std::set<std::string> pages;
  for (const sandbox::Ad& ad : sandbox::ads()) {
    const std::string body = network.ask("/ad?slotname=ad-" + std::string(ad.name)).body;
    EXPECT_EQ(body.find("{{"), std::string::npos) << ad.name << " has a gap";
    const std::regex resources("(?:src|srcset|poster)=[\"'](?!gmsg)([^\"']+)|url\\((http[^)]+)");
    EXPECT_TRUE(found(body, resources).empty()) << ad.name << " fetches something";
    EXPECT_NE(body.find("URVO_ReceiveMessage"), std::string::npos) << ad.name;
    pages.merge(found(body, std::regex("/land/([a-z-]+)")));
  }
  for (const char* page : {"plain", "webapp"}) {
    const std::string body = network.ask("/land/" + std::string(page)).body;
    pages.merge(found(body, std::regex("/land/([a-z-]+[a-z.]*)")));
  }
  EXPECT_GE(pages.size(), 8U);
  for (const std::string& page : pages) {
    EXPECT_NE(network.ask("/land/" + page).status, 404) << page;
  }
}

TEST(Script, IsSentAgainOnlyWhenItIsNewer) {
  Network network;
  const std::string path = "/urvo/sdk-core-v40.js";
  const sandbox::Answer first = network.ask(path);
  EXPECT_EQ(first.body.find("</script"), std::string::npos) << "it would end its own element";
  const std::string modified = first.headers.at(0).second;
  const std::pair<std::string, int> cases[] = {
      {modified, 304},
      {modified.substr(0, modified.size() - 4), 304},  // without the zone
      {"Wed, 09 Jun 2010 10:18:14", 200},
      {"yesterday", 200},
  };
  for (const auto& [since, status] : cases) {
    EXPECT_EQ(network.ask(path, {{"If-Modified-Since", since}}).status, status) << since;
  }
}

}  // namespace
