// Records what an ad tells its publisher.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ads/api/VADBannerViewDelegate.h"
#include "ads/request/VADRequestError.h"

namespace quorbel_tests {

/// A banner's or an interstitial's delegate.
class PublisherRecord final : public valdren::VADBannerViewDelegate,
                              public valdren::VADInterstitialDelegate {
  using Banner = valdren::VADBannerView;
  using Interstitial = valdren::VADInterstitial;
  using Error = valdren::VADRequestError;

 public:
  ~PublisherRecord() { invalidateWeakReferences(); }

  /// The events since the last call: "received", "failed 2", "will present", "will dismiss",
  /// "did dismiss", "will leave".
  std::vector<std::string> take() { return std::exchange(events_, {}); }
  void add(const std::string& event) {
    events_.push_back(event);
    if (const auto kept = onEvent) kept(event);
  }
  /// Called after each event.
  std::function<void(const std::string&)> onEvent;
  /// The only operation that it wants; empty for all.
  std::string only;
  /// The sender of the latest interstitial's event.
  Interstitial* sender = nullptr;

  void adViewDidReceiveAd(Banner&) override { add("received"); }
  void adViewDidFailToReceiveAdWithError(Banner&, const Error& error) override { fail(error); }
  void adViewWillPresentScreen(Banner&) override { add("will present"); }
  void adViewWillDismissScreen(Banner&) override { add("will dismiss"); }
  void adViewDidDismissScreen(Banner&) override { add("did dismiss"); }
  void adViewWillLeaveApplication(Banner&) override { add("will leave"); }

  void interstitialDidReceiveAd(Interstitial* ad) override { add("received", ad); }
  void interstitialDidFailToReceiveAdWithError(Interstitial*, const Error& error) override {
    fail(error);
  }
  void interstitialWillPresentScreen(Interstitial* ad) override { add("will present", ad); }
  void interstitialWillDismissScreen(Interstitial* ad) override { add("will dismiss", ad); }
  void interstitialDidDismissScreen(Interstitial* ad) override { add("did dismiss", ad); }
  void interstitialWillLeaveApplication(Interstitial* ad) override { add("will leave", ad); }

  bool respondsToSelector(std::string_view selector) const override {
    return only.empty() || selector == only;
  }

 private:
  void add(const std::string& event, Interstitial* ad) {
    sender = ad;
    add(event);
  }
  void fail(const Error& error) { add("failed " + std::to_string(error.code())); }

  std::vector<std::string> events_;
};

}  // namespace quorbel_tests
