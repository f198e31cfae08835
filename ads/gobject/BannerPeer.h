// The banner behind a `ValdrenBanner`, and the delegate that turns its callbacks into signals.
#pragma once

#include <memory>

#include "ads/api/VADBannerView.h"
#include "ads/gobject/ValdrenBanner.h"

class BannerPeer final : public valdren::VADBannerViewDelegate {
 public:
  /// Installs the signals of the class; once.
  static void installSignals(GType type);

  /// The widget owns the peer, which makes a widget of its own to be the widget's child.
  explicit BannerPeer(ValdrenBanner* widget);
  ~BannerPeer();

  /// Lets go of the banner and its child widget.
  void release();

  /// Null after `release`.
  valdren::VADBannerView* banner() const { return banner_.get(); }
  bool hasAd() const { return hasAd_; }
  /// Has the banner's pages open over the window in which the widget stands; over none while it
  /// stands in no window, and then `loadRequest` fails with code 0.
  void findWindow();

 private:
  void adViewDidReceiveAd(valdren::VADBannerView&) override;
  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError& error) override;
  void adViewWillPresentScreen(valdren::VADBannerView&) override;
  void adViewWillDismissScreen(valdren::VADBannerView&) override;
  void adViewDidDismissScreen(valdren::VADBannerView&) override;
  void adViewWillLeaveApplication(valdren::VADBannerView&) override;

  ValdrenBanner* widget_;
  std::shared_ptr<valdren::VADBannerView> banner_;
  GtkWidget* child_;
  bool hasAd_ = false;
};
