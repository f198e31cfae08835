#include "ads/api/VADBannerView.h"

#include <gmock/gmock.h>

#include "tests/support/LoaderTest.h"

namespace {

using namespace valdren;
using testing::ElementsAre;

class VADBannerViewTest : public quorbel_tests::LoaderTest {};

TEST_F(VADBannerViewTest, NeedsARootViewController) {
  screen = std::make_shared<platform::ViewController>();  // the one before is gone
  load();
  EXPECT_THAT(log.take(), ElementsAre("<Valdren> Must set the rootViewController property of "
                                      "VADBannerView before calling loadRequest:"));
  EXPECT_THAT(record.take(), ElementsAre("failed 0"));
  EXPECT_EQ(fetches.count(), 0u);
  EXPECT_EQ(state(), kVADStateIdle);
  banner->setRootViewController(screen.get());
  load();
  EXPECT_EQ(fetches.count(), 1u);
}

TEST_F(VADBannerViewTest, FillsABannerThatIsFramedAndWatchedLater) {
  banner = std::make_shared<VADBannerView>();
  EXPECT_EQ(banner->frame(), platform::Rect());
  EXPECT_EQ(banner->backgroundColor(), platform::Color::clear());
  ASSERT_THAT(banner->subviews(), ElementsAre(banner->webView()));
  banner->setFrame({10, 20, 320, 50});
  EXPECT_EQ(banner->webView()->frame(), (platform::Rect{0, 0, 320, 50}));
  banner->setRootViewController(screen.get());
  EXPECT_EQ(banner->delegate(), nullptr);
  bringTo(kVADStateRenderingAd);
  banner->setDelegate(&record);
  adPage().finish();
  EXPECT_THAT(record.take(), ElementsAre("received"));
}

TEST_F(VADBannerViewTest, AsksTheConfiguredNetwork) {
  const platform::URL adServer = VADConfiguration::adServerBaseURL();
  const platform::URL scriptHost = VADConfiguration::scriptHostBaseURL();
  VADConfiguration::setAdServerBaseURL(*platform::URL::parse("http://ads.test/base/"));
  for (const char* const host : {"http://scripts.test:81", "http://scripts.test:81/"}) {
    VADConfiguration::setScriptHostBaseURL(*platform::URL::parse(host));
    clearCaches();
    makeBanner();
    load();
    EXPECT_EQ(fetches.last().url(), "http://scripts.test:81/urvo/sdk-core-v40.js");
    answerScript();
    EXPECT_EQ(builderPage().pages.at(0).baseURL->absoluteString(), "http://ads.test/base/");
  }
  log.take();
  for (const char* const wrong : {"", "ads your.example", "ads.example", "file:///ads"}) {
    EXPECT_FALSE(VADConfiguration::setAdNetwork(wrong)) << wrong;
    EXPECT_THAT(log.take(), ElementsAre(testing::StartsWith("<Valdren> \"" + std::string(wrong) +
                                                            "\" is no address")));
  }
  EXPECT_EQ(VADConfiguration::adServerBaseURL().host(), "ads.test") << "nothing may change";
  EXPECT_TRUE(VADConfiguration::setAdNetwork("https://one.test"));
  EXPECT_EQ(VADConfiguration::adServerBaseURL().host(), "one.test");
  EXPECT_EQ(VADConfiguration::scriptHostBaseURL().host(), "one.test");
  VADConfiguration::setAdServerBaseURL(adServer);
  VADConfiguration::setScriptHostBaseURL(scriptHost);
}

}  // namespace
