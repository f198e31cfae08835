// Tells the publisher what happened, always on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "ads/api/VADBannerViewDelegate.h"
#include "ads/request/VADRequestError.h"
#include "ads/web/VADAdEvents.h"
#include "platform/base/WeakPtr.h"

namespace valdren {

class VADBannerView;

/// Up to three delegates, none of them owned; a dead one counts as none. An event raised on another
/// thread is delivered on the main thread before the raising call returns. A delegate may release
/// whatever it likes during a callback.
class VADDelegateManager final : public VADAdEvents,
                                 public std::enable_shared_from_this<VADDelegateManager> {
 public:
  VADBannerViewDelegate* bannerDelegate() const { return bannerDelegate_.get(); }
  void setBannerDelegate(VADBannerViewDelegate* delegate) { bannerDelegate_ = delegate; }
  /// The banner that is passed to the banner delegate; without one, that delegate is not called.
  VADBannerView* adView() const;
  void setAdView(VADBannerView* adView);
  VADInterstitialDelegate* interstitialDelegate() const { return interstitialDelegate_.get(); }
  void setInterstitialDelegate(VADInterstitialDelegate* delegate) {
    interstitialDelegate_ = delegate;
  }
  VADInterstitial* interstitial() const { return interstitial_; }
  void setInterstitial(VADInterstitial* interstitial) { interstitial_ = interstitial; }
  /// Called before the publisher's interstitial delegate.
  VADInterstitialDelegate* sdkInterstitialDelegate() const {
    return sdkInterstitialDelegate_.get();
  }
  void setSdkInterstitialDelegate(VADInterstitialDelegate* delegate) {
    sdkInterstitialDelegate_ = delegate;
  }

  void didReceiveAd() override;
  void didFailToReceiveAdWithError(const VADRequestError& error) override;
  void willPresentScreen() override;
  void willDismissScreen() override;
  void didDismissScreen() override;
  void willLeaveApplication() override;

  /// Whether the delegate is there and wants the operation.
  template <class Delegate>
  static bool didYouNilOutYourDelegate(const platform::WeakPtr<Delegate>& delegate,
                                       std::string_view selector) {
    return delegate && delegate->respondsToSelector(selector);
  }

 private:
  using BannerCall = std::function<void(VADBannerViewDelegate&, VADBannerView&)>;
  using InterstitialCall = std::function<void(VADInterstitialDelegate&, VADInterstitial*)>;
  void dispatch(std::string_view bannerSelector, const BannerCall& bannerCall,
                std::string_view interstitialSelector, const InterstitialCall& interstitialCall);

  platform::WeakPtr<VADBannerViewDelegate> bannerDelegate_;
  platform::WeakPtr<VADBannerView> adView_;
  platform::WeakPtr<VADInterstitialDelegate> interstitialDelegate_;
  VADInterstitial* interstitial_ = nullptr;
  platform::WeakPtr<VADInterstitialDelegate> sdkInterstitialDelegate_;
};

}  // namespace valdren
