// What a banner tells the application.
#pragma once

#include <string_view>

#include "platform/base/Export.h"
#include "platform/base/WeakPtr.h"

namespace valdren {

class VADBannerView;
class VADRequestError;

/// Override what is of interest. Always called on the main thread; the banner may be removed, or
/// the delegate destroyed, from inside any of these.
class VALDREN_EXPORT VADBannerViewDelegate : public virtual platform::WeakTarget {
 public:
  /// An ad is shown.
  virtual void adViewDidReceiveAd(VADBannerView&) {}
  /// The request failed; the banner keeps what it shows.
  virtual void adViewDidFailToReceiveAdWithError(VADBannerView&, const VADRequestError&) {}
  /// A full-screen page is about to cover the application.
  virtual void adViewWillPresentScreen(VADBannerView&) {}
  virtual void adViewWillDismissScreen(VADBannerView&) {}
  virtual void adViewDidDismissScreen(VADBannerView&) {}
  /// Another application is about to be opened.
  virtual void adViewWillLeaveApplication(VADBannerView&) {}

  /// Whether the delegate wants the operation of this name; one that says no is not called for it.
  virtual bool respondsToSelector(std::string_view) const { return true; }

 protected:
  ~VADBannerViewDelegate() = default;
};

/// The same for a full-screen interstitial. `VADInterstitial` is what the application knows it by.
class VADInterstitial;
class VALDREN_EXPORT VADInterstitialDelegate : public virtual platform::WeakTarget {
 public:
  virtual void interstitialDidReceiveAd(VADInterstitial*) {}
  virtual void interstitialDidFailToReceiveAdWithError(VADInterstitial*, const VADRequestError&) {}
  virtual void interstitialWillPresentScreen(VADInterstitial*) {}
  virtual void interstitialWillDismissScreen(VADInterstitial*) {}
  virtual void interstitialDidDismissScreen(VADInterstitial*) {}
  virtual void interstitialWillLeaveApplication(VADInterstitial*) {}

  virtual bool respondsToSelector(std::string_view) const { return true; }

 protected:
  ~VADInterstitialDelegate() = default;
};

}  // namespace valdren
