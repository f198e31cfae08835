// Banners that are destroyed at difficult moments.
#include <gmock/gmock.h>

#include "ads/web/VADWebViewDelegate.h"
#include "tests/support/LoaderTest.h"

namespace {

using namespace valdren;
using testing::IsEmpty;

class LifetimeTest : public quorbel_tests::LoaderTest {
 protected:
  struct Case {
    const char* name;
    VADState state;  // in which it happens
    std::function<void()> happens;
  };
  const platform::Error kCut{"test", 1, "cut"};

  std::weak_ptr<VADObjectPrivate> bringTo(const Case& wanted) {
    SCOPED_TRACE(wanted.name);
    device.version = "12";
    clearCaches();
    makeBanner();
    if (wanted.state != kVADStateIdle) {
      LoaderTest::bringTo(wanted.state,
                          {{"X-Urvo-Refresh-Rate", "30"},
                           {"X-Urvo-Tracking-Urls", "http://p.test/1 http://p.test/2"}});
    }
    return loader();
  }

  /// Destroys the banner in the publisher's next callback.
  void removeBannerWhenTold() {
    record.onEvent = [this](const std::string&) {
      record.onEvent = nullptr;
      banner.reset();
    };
  }

  /// Checks that everything of the banner is destroyed and that nothing happens afterwards.
  void expectGone(const std::weak_ptr<VADObjectPrivate>& loader) {
    EXPECT_EQ(banner, nullptr);
    EXPECT_TRUE(loader.expired()) << "the loader outlived its banner";
    EXPECT_THAT(engines.engines(), IsEmpty()) << "a page outlived its banner";
    record.take();
    const std::size_t before = fetches.count();
    for (std::size_t number = 0; number < before; ++number) {
      EXPECT_FALSE(fetches.fetch(number).isUnderWay()) << fetches.fetch(number).url();
    }
    application.enterBackground();
    application.enterForeground();
    loop.advance(5000);
    EXPECT_EQ(fetches.count(), before);
    EXPECT_THAT(record.take(), IsEmpty());
    EXPECT_EQ(application.runningTasks(), 0u);
  }
};

TEST_F(LifetimeTest, EndsInEveryState) {
  const Case cases[] = {
      {"idle", kVADStateIdle, [] {}},
      {"script", kVADStateLoadingScript, [] {}},
      {"script failed", kVADStateLoadingScript, [&] { fetches.last().answer(404); }},
      {"address", kVADStateBuildingURL, [] {}},
      {"ad", kVADStateLoadingAd, [] {}},
      {"ad failed", kVADStateLoadingAd, [&] { fetches.last().fail(kCut); }},
      {"between the hops", kVADStateLoadingAd,
       [&] { fetches.last().redirect("http://ads.test/2"); }},
      {"rendering", kVADStateRenderingAd, [] {}},
      {"shown", kVADStateShowingAd, [] {}},
      {"pinged", kVADStateShowingAd, [&] { fetches.last().answer(200); }},
  };
  for (const Case& each : cases) {
    const auto watched = bringTo(each);
    each.happens();
    const std::size_t last = fetches.count();
    std::shared_ptr<VADWebView> view = loader()->webView();
    banner.reset();
    EXPECT_EQ(quorbel_tests::FakeWebEngines::of(*view).pages.back().text, "");
    EXPECT_EQ(view->delegate(), nullptr);
    EXPECT_EQ(view->superview(), nullptr);
    view.reset();
    if (last > 0) {
      fetches.last().redirect("http://ads.test/3");
      fetches.last().answer(200, {}, kAd);
    }
    expectGone(watched);
  }
}

TEST_F(LifetimeTest, EndsInsideEveryCallback) {
  const Case cases[] = {
      {"no root view controller", kVADStateIdle,
       [&] {
         banner->setRootViewController(nullptr);
         load();
       }},
      {"system too old", kVADStateIdle,
       [&] {
         device.version = "2.0";
         load();
       }},
      {"refresh of a system too old", kVADStateShowingAd,
       [&] {
         record.take();
         device.version = "2.0";
         loop.advance(30);
       }},
      {"script status", kVADStateLoadingScript, [&] { fetches.last().answer(404); }},
      {"script empty", kVADStateLoadingScript, [&] { fetches.last().answer(200); }},
      {"script errors", kVADStateBuildingURL, [&] { scriptSays("loadAdURL?errors=x"); }},
      {"script invalid", kVADStateBuildingURL, [&] { scriptSays("invalidRequest"); }},
      {"script no address", kVADStateBuildingURL, [&] { scriptSays("loadAdURL"); }},
      {"ad status after a redirect", kVADStateLoadingAd,
       [&] {
         auto& fetch = fetches.last();
         fetch.redirect("http://ads.test/2", {{"X-Urvo-Refresh-Rate", "5"}});
         fetch.answer(400, {{"X-Urvo-Refresh-Rate", "5"}});
       }},
      {"ad empty", kVADStateLoadingAd, [&] { answerAd({}, " "); }},
      {"ad cannot be rendered", kVADStateRenderingAd, [&] { adPage().fail(); }},
      {"ad received", kVADStateRenderingAd, [&] { adPage().finish(); }},
      {"no answer", kVADStateBuildingURL,
       [&] { loop.advance(VADAdURLBuilder::kBuildSeconds.count()); }},
      {"no end", kVADStateRenderingAd, [&] { loop.advance(VADLoaderState::kShowSeconds.count()); }},
      {"web process", kVADStateShowingAd,
       [&] {
         record.take();
         adPage().client.engineProcessDidEnd({"fake", 1, "gone"});
       }},
  };
  for (const Case& each : cases) {
    const auto watched = bringTo(each);
    removeBannerWhenTold();
    each.happens();
    expectGone(watched);
  }
}

TEST_F(LifetimeTest, EndsInTheDecisionOnANavigation) {
  struct Observer : platform::WeakTarget {};
  for (const char* const address : {"gmsg://x/settings", "gmsg://x/open?a=app&u=tel%3A1",
                                    "mailto:a@b.test", "http://a.test/page", "tel:1"}) {
    SCOPED_TRACE(address);
    makeBanner();
    LoaderTest::bringTo(kVADStateShowingAd);
    adPage().host.hitTest({1, 1}, platform::EventType::Touches);
    clock.advance(1);
    const std::weak_ptr<VADObjectPrivate> watched = loader();
    Observer observer;
    platform::NotificationCenter::defaultCenter().addObserver(
        observer, VADWebViewDelegateDidReceiveWebAction, [&](const auto&) { banner.reset(); });
    EXPECT_FALSE(adPage().navigate(address, platform::NavigationType::LinkClicked));
    loop.advance(1);
    expectGone(watched);
  }
}

}  // namespace
