#include "ads/loading/VADResponseHeaders.h"

#include <gmock/gmock.h>

#include "tests/support/LoaderTest.h"

namespace {

using namespace valdren;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> texts(const std::vector<platform::URL>& urls) {
  std::vector<std::string> texts;
  texts.reserve(urls.size());
  for (const platform::URL& url : urls) texts.push_back(url.absoluteString());
  return texts;
}

std::vector<std::string> urlsIn(const std::string& value) {
  std::vector<platform::URL> urls;
  appendURLsFromHeader(urls, {{"X-List", value}}, "x-list");
  return texts(urls);
}

TEST(VADResponseHeaders, SplitsAndBoundsLists) {
  EXPECT_THAT(urlsIn("http://a/  http://b/\t   http://c/ "),
              ElementsAre("http://a/", "http://b/", "http://c/"));
  EXPECT_THAT(urlsIn("http://a/ ht\x01tp http://[ %zz http://b/"),
              ElementsAre("http://a/", "http://b/"));
  EXPECT_THAT(urlsIn("   "), IsEmpty());
  EXPECT_THAT(urlsIn(""), IsEmpty());
  std::string many;
  for (std::size_t number = 0; number < 3 * kVADMostTrackingURLs; ++number) many += "http://a/ ";
  EXPECT_EQ(urlsIn(many).size(), kVADMostTrackingURLs);
}

class VADResponseHeadersTest : public quorbel_tests::LoaderTest {};

TEST_F(VADResponseHeadersTest, KeepsTheInterstitialTimeout) {
  const std::pair<const char*, double> cases[] = {
      {"2.5", 2.5}, {"7 seconds", 7}, {"never", 0}, {"nan", 0}, {"1e300", 3.4028234663852886e38}};
  for (const auto& [header, seconds] : cases) {
    storeInterstitialTimeout({{"X-Urvo-Interstitial-Timeout", header}});
    EXPECT_EQ(defaults.written().at("applicationTimeout").doubleValue(), seconds) << header;
  }
  storeInterstitialTimeout({{"X-Urvo-Interstitial-Timeout", ""}});
  storeInterstitialTimeout({});
  EXPECT_EQ(defaults.written().at("applicationTimeout").doubleValue(), cases[4].second);
}

TEST_F(VADResponseHeadersTest, GatherOverTheHopsOfARedirectAndBelongToOneAd) {
  bringTo(kVADStateLoadingAd);
  auto& fetch = fetches.last();
  fetch.redirect("http://ads.test/2", {{"X-Urvo-Tracking-Urls", "http://p.test/1"},
                                       {"X-Urvo-Orientation", "landscape"}});
  fetch.redirect("http://ads.test/3", {{"X-Urvo-Tracking-Urls", "http://p.test/2"},
                                       {"X-Urvo-Click-Tracking-Urls", "http://c.test/1"},
                                       {"X-Urvo-Orientation", "upside"}});
  fetch.answer(200,
               {{"X-Urvo-Tracking-Urls", "http://p.test/3"},
                {"X-Urvo-Click-Tracking-Urls", "http://c.test/2"}},
               kAd);
  EXPECT_THAT(texts(loader()->pendingTrackingURLs()),
              ElementsAre("http://p.test/1", "http://p.test/2", "http://p.test/3"));
  EXPECT_THAT(texts(loader()->pendingClickURLs()),
              ElementsAre("http://c.test/1", "http://c.test/2"));
  EXPECT_EQ(loader()->supportedOrientations(), kVADOrientationLandscape);
  EXPECT_EQ(adPage().pages.at(0).baseURL->absoluteString(), "http://ads.test/3");
  adPage().finish();
  bringTo(kVADStateShowingAd);
  EXPECT_THAT(loader()->pendingTrackingURLs(), IsEmpty());
  EXPECT_THAT(loader()->pendingClickURLs(), IsEmpty());
  EXPECT_EQ(loader()->supportedOrientations(), kVADOrientationLandscape);
}

}  // namespace
