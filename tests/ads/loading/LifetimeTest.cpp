// Banners that are destroyed at difficult moments.
#include <gmock/gmock.h>

#include "ads/web/VADWebViewDelegate.h"
#include "platform/base/NotificationCenter.h"
#include "tests/support/LoaderTest.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;
using testing::ElementsAre;
using testing::IsEmpty;

class LifetimeTest : public quorbel_tests::LoaderTest {
 protected:
  /// Destroys the banner in the publisher's next callback.
  void removeBannerWhenTold() {
    record.onEvent = [this] {
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
  for (const VADState last : {kVADStateIdle, kVADStateLoadingScript, kVADStateBuildingURL,
                              kVADStateLoadingAd, kVADStateRenderingAd, kVADStateShowingAd}) {
    SCOPED_TRACE(last);
    clearCaches();
    makeBanner();
    if (last != kVADStateIdle) {
      bringTo(last, {{"X-Urvo-Refresh-Rate", "30"},
                     {"X-Urvo-Tracking-Urls", "http://p.test/1 http://p.test/2"}});
    }
    const std::weak_ptr<VADObjectPrivate> watched = loader();
    banner.reset();
    expectGone(watched);
  }
}

TEST_F(LifetimeTest, EndsAfterEveryFailure) {
  using Call = std::function<void()>;
  const Call failures[] = {
      [&] { fetches.last().answer(404); },
      [&] {
        answerScript();
        scriptGivesURL();
        fetches.last().fail({"test", 1, "cut"});
      },
  };
  for (const Call& fail : failures) {
    clearCaches();
    makeBanner();
    load();
    fail();
    const std::weak_ptr<VADObjectPrivate> watched = loader();
    banner.reset();
    expectGone(watched);
  }
}

TEST_F(LifetimeTest, EndsInsideEveryCallback) {
  struct Case {
    const char* name;
    VADState state;  // in which the callback happens
    std::function<void()> happens;
  };
  const Case cases[] = {
      {"no root view controller", kVADStateIdle,
       [&] {
         banner->setRootViewController(nullptr);
         load();
       }},
      {"script status", kVADStateLoadingScript, [&] { fetches.last().answer(404); }},
      {"script connection", kVADStateLoadingScript,
       [&] {
         fetches.last().fail({"t", 1, "cut"});
       }},
      {"script empty", kVADStateLoadingScript, [&] { fetches.last().answer(200); }},
      {"script errors", kVADStateBuildingURL, [&] { scriptSays("loadAdURL?errors=x"); }},
      {"script invalid", kVADStateBuildingURL, [&] { scriptSays("invalidRequest"); }},
      {"script unable", kVADStateBuildingURL, [&] { scriptSays("unableToServe"); }},
      {"script no address", kVADStateBuildingURL, [&] { scriptSays("loadAdURL"); }},
      {"ad status", kVADStateLoadingAd, [&] { fetches.last().answer(500); }},
      {"ad status after a redirect", kVADStateLoadingAd,
       [&] {
         auto& fetch = fetches.last();
         fetch.redirect("http://ads.test/2", {{"X-Urvo-Refresh-Rate", "5"}});
         fetch.answer(400, {{"X-Urvo-Refresh-Rate", "5"}});
       }},
      {"ad connection", kVADStateLoadingAd,
       [&] {
         fetches.last().fail({"t", 1, "cut"});
       }},
      {"ad empty", kVADStateLoadingAd,
       [&] {
         answerAd({{"X-Urvo-Refresh-Rate", "5"}}, " ");
       }},
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
    SCOPED_TRACE(each.name);
    clearCaches();
    makeBanner();
    if (each.state != kVADStateIdle) {
      bringTo(each.state, {{"X-Urvo-Tracking-Urls", "http://p.test/1"}});
    }
    const std::weak_ptr<VADObjectPrivate> watched = loader();
    removeBannerWhenTold();
    each.happens();
    expectGone(watched);
  }
}

TEST_F(LifetimeTest, EndsWhenTheSystemIsTooOld) {
  device.version = "2.0";
  const std::weak_ptr<VADObjectPrivate> watched = loader();
  removeBannerWhenTold();
  load();
  expectGone(watched);
}

TEST_F(LifetimeTest, EndsInTheRefresh) {
  bringTo(kVADStateShowingAd, {{"X-Urvo-Refresh-Rate", "30"}});
  device.version = "2.0";
  const std::weak_ptr<VADObjectPrivate> watched = loader();
  removeBannerWhenTold();
  loop.advance(30);
  expectGone(watched);
}

TEST_F(LifetimeTest, EndsBetweenTheHopsOfARedirect) {
  bringTo(kVADStateLoadingAd);
  auto& fetch = fetches.last();
  fetch.redirect("http://ads.test/2");
  const std::weak_ptr<VADObjectPrivate> watched = loader();
  banner.reset();
  EXPECT_TRUE(fetch.isCancelled());
  fetch.redirect("http://ads.test/3");
  fetch.answer(200, {}, kAd);
  expectGone(watched);
}

TEST_F(LifetimeTest, EndsWhilePingsAndTheirCleaningUpAreUnderWay) {
  bringTo(kVADStateShowingAd, {{"X-Urvo-Tracking-Urls", "http://p.test/1 http://p.test/2"}});
  fetches.fetch(fetches.count() - 2).answer(200);
  const std::weak_ptr<VADObjectPrivate> watched = loader();
  banner.reset();
  expectGone(watched);
}

TEST_F(LifetimeTest, EndsInTheDecisionOnANavigation) {
  struct Observer : platform::WeakTarget {};
  for (const char* const address : {"gmsg://x/settings", "gmsg://x/open?a=app&u=tel%3A1",
                                    "mailto:a@b.test", "http://a.test/page", "tel:1"}) {
    SCOPED_TRACE(address);
    makeBanner();
    bringTo(kVADStateShowingAd);
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

TEST_F(LifetimeTest, ThePageIsEmptiedWhenTheBannerEnds) {
  bringTo(kVADStateShowingAd);
  const std::shared_ptr<VADWebView> view = loader()->webView();
  banner.reset();
  EXPECT_EQ(quorbel_tests::FakeWebEngines::of(*view).pages.back().text, "");
  EXPECT_EQ(view->delegate(), nullptr);
  EXPECT_EQ(view->superview(), nullptr);
}

TEST_F(LifetimeTest, DoesNotCallDestroyedDelegatesAndScreens) {
  bringTo(kVADStateRenderingAd);
  {
    quorbel_tests::BannerRecord shortLived;
    banner->setDelegate(&shortLived);
  }
  adPage().finish();
  EXPECT_EQ(state(), kVADStateShowingAd);
  EXPECT_EQ(banner->delegate(), nullptr);
  banner->setDelegate(&record);
  screen.reset();
  load();
  EXPECT_THAT(record.take(), ElementsAre("failed 0"));
}

TEST_F(LifetimeTest, TwoBannersAreIndependent) {
  bringTo(kVADStateBuildingURL);
  const auto first = banner;
  makeBanner();
  load();
  scriptGivesURL();
  answerAd();
  adPage().finish();
  EXPECT_EQ(state(), kVADStateShowingAd);
  banner = first;
  EXPECT_EQ(state(), kVADStateBuildingURL);
  EXPECT_THAT(record.take(), ElementsAre("received"));
}

}  // namespace
