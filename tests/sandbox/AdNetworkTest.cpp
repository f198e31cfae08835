// Ads and landing pages are complete and linked correctly; the log is decrypted and bounded.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "ads/request/VADLocation.h"
#include "ads/signals/EncryptedSignals.h"
#include "platform/base/PercentEncoding.h"
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

/// The named value as text; empty when there is none.
std::string text(const platform::Value& entry, std::string_view key) {
  const platform::Value* value = entry.dictionary() ? entry.dictionary()->find(key) : nullptr;
  return value ? value->description() : "";
}

TEST(Log, ShowsARequestWithItsParametersAndWhatWasSealed) {
  Network network;
  const auto location = valdren::VADLocation::initWithLatitude(47.37F, 8.54F, 65.0F);
  ASSERT_TRUE(location && location->oolongRepresentation());
  const std::string parameters =
      *platform::writeJson(platform::Dictionary{{"preqs", 7},
                                                {"kw", platform::Array{"a&b", "c;d"}},
                                                {"uule", *location->oolongRepresentation()}});
  const auto signals = valdren::encryptSignals({{"viewed", 1234}, {"sdk", "x"}});
  ASSERT_TRUE(signals);
  network.ask("/ad?slotname=unit%201&params=" + platform::percentEncoded(parameters) +
              "&ms=" + *signals);

  const auto log = platform::parseJson(network.ask("/log.json?since=0").body);
  const platform::Array& seen = *log->dictionary()->find("requests")->array();
  ASSERT_EQ(seen.size(), 1U);
  const platform::Dictionary& entry = *seen.front().dictionary();
  EXPECT_EQ(text(seen.front(), "kind"), "ad");
  EXPECT_EQ(text(*entry.find("query"), "slotname"), "unit 1");
  EXPECT_EQ(text(*entry.find("parameters"), "preqs"), "7");
  EXPECT_EQ(text(*entry.find("parameters"), "kw"), R"(["a&b","c;d"])");
  EXPECT_NE(text(seen.front(), "location").find("latitude_e7: 473699989"), std::string::npos)
      << text(seen.front(), "location");
  EXPECT_EQ(text(*entry.find("signals"), "viewed"), "1234");
}

TEST(Log, ForgetsTheOldestAndCutsWhatIsLong) {
  sandbox::RequestLog log(3);
  for (int each = 0; each < 10; ++each) {
    sandbox::Seen seen;
    seen.kind = "ad";
    seen.request.path = std::string(1 << 20, 'p');
    seen.request.query = "q=" + std::string(1 << 20, 'q');
    seen.request.headers.assign(1000, {"name", std::string(1 << 16, 'h')});
    log.add(seen);
  }
  EXPECT_EQ(log.last(), 10U);
  const auto kept = log.after(0);
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_EQ(text(kept.front(), "number"), "8");
  EXPECT_LT(platform::writeJson(kept)->size(), 1U << 20);
  EXPECT_EQ(text(log.counts(), "ad"), "10");
}

}  // namespace
