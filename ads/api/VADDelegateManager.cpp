#include "ads/api/VADDelegateManager.h"

#include "ads/api/VADBannerView.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/RunLoop.h"

namespace valdren {

VADBannerView* VADDelegateManager::adView() const {
  return adView_.get();
}

void VADDelegateManager::setAdView(VADBannerView* adView) {
  adView_ = adView;
}

void VADDelegateManager::dispatch(std::string_view bannerSelector, const BannerCall& bannerCall,
                                  std::string_view interstitialSelector,
                                  const InterstitialCall& interstitialCall) {
  // From the start: while another thread waits here, the main thread may let go of the last banner.
  auto keptAlive = weak_from_this().lock();
  platform::RunLoop::shared().performOnMainThreadAndWait([&] {
    // Let go of on the main thread, whichever thread raised the event.
    const auto keptUntilReturn = std::move(keptAlive);
    // The banner outlives a callback that lets go of it.
    const auto adView = platform::held(adView_);
    if (adView_ && didYouNilOutYourDelegate(bannerDelegate_, bannerSelector)) {
      bannerCall(*bannerDelegate_.get(), *adView_.get());
    }
    for (const auto* delegate : {&sdkInterstitialDelegate_, &interstitialDelegate_}) {
      if (didYouNilOutYourDelegate(*delegate, interstitialSelector)) {
        interstitialCall(*delegate->get(), interstitial_);
      }
    }
  });
}

void VADDelegateManager::didReceiveAd() {
  dispatch(
      "adViewDidReceiveAd:",
      [](auto& delegate, auto& adView) { delegate.adViewDidReceiveAd(adView); },
      "interstitialDidReceiveAd:",
      [](auto& delegate, auto* interstitial) { delegate.interstitialDidReceiveAd(interstitial); });
}

void VADDelegateManager::didFailToReceiveAdWithError(const VADRequestError& error) {
  dispatch(
      "adView:didFailToReceiveAdWithError:",
      [&](auto& delegate, auto& adView) {
        delegate.adViewDidFailToReceiveAdWithError(adView, error);
      },
      "interstitial:didFailToReceiveAdWithError:",
      [&](auto& delegate, auto* interstitial) {
        delegate.interstitialDidFailToReceiveAdWithError(interstitial, error);
      });
}

void VADDelegateManager::willPresentScreen() {
  dispatch(
      "adViewWillPresentScreen:",
      [](auto& delegate, auto& adView) { delegate.adViewWillPresentScreen(adView); },
      "interstitialWillPresentScreen:",
      [](auto& delegate, auto* interstitial) {
        delegate.interstitialWillPresentScreen(interstitial);
      });
}

void VADDelegateManager::willDismissScreen() {
  dispatch(
      "adViewWillDismissScreen:",
      [](auto& delegate, auto& adView) { delegate.adViewWillDismissScreen(adView); },
      "interstitialWillDismissScreen:",
      [](auto& delegate, auto* interstitial) {
        delegate.interstitialWillDismissScreen(interstitial);
      });
}

void VADDelegateManager::didDismissScreen() {
  dispatch(
      "adViewDidDismissScreen:",
      [](auto& delegate, auto& adView) { delegate.adViewDidDismissScreen(adView); },
      "interstitialDidDismissScreen:",
      [](auto& delegate, auto* interstitial) {
        delegate.interstitialDidDismissScreen(interstitial);
      });
}

void VADDelegateManager::willLeaveApplication() {
  dispatch(
      "adViewWillLeaveApplication:",
      [](auto& delegate, auto& adView) { delegate.adViewWillLeaveApplication(adView); },
      "interstitialWillLeaveApplication:",
      [](auto& delegate, auto* interstitial) {
        delegate.interstitialWillLeaveApplication(interstitial);
      });
}

}  // namespace valdren
