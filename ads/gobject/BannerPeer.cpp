#include "ads/gobject/BannerPeer.h"

#include <array>

#include "ads/request/VADRequestError.h"
#include "platform/application/Host.h"

namespace {

constexpr valdren::platform::Rect kBannerFrame{0, 0, 320, 50};

enum Signal { kReceived, kFailed, kWillPresent, kWillDismiss, kDidDismiss, kWillLeave, kSignals };

constexpr std::array<const char*, kSignals> kNames{"ad-received",         "ad-failed",
                                                   "will-present-screen", "will-dismiss-screen",
                                                   "did-dismiss-screen",  "will-leave-application"};

std::array<guint, kSignals> signalNumbers{};

}  // namespace

void BannerPeer::installSignals(GType type) {
  for (int signal = 0; signal < kSignals; ++signal) {
    signalNumbers[signal] = signal == kFailed
                                ? g_signal_new(kNames[signal], type, G_SIGNAL_RUN_LAST, 0, nullptr,
                                               nullptr, nullptr, G_TYPE_NONE, 1, G_TYPE_ERROR)
                                : g_signal_new(kNames[signal], type, G_SIGNAL_RUN_LAST, 0, nullptr,
                                               nullptr, nullptr, G_TYPE_NONE, 0);
  }
}

BannerPeer::BannerPeer(ValdrenBanner* widget)
    : widget_(widget),
      banner_(std::make_shared<valdren::VADBannerView>(kBannerFrame)),
      child_(valdren::platform::hostWidget(banner_)) {
  gtk_widget_set_parent(child_, GTK_WIDGET(widget));
  banner_->setDelegate(this);
}

BannerPeer::~BannerPeer() {
  release();
  invalidateWeakReferences();
}

void BannerPeer::release() {
  banner_.reset();
  g_clear_pointer(&child_, gtk_widget_unparent);
}

void BannerPeer::findWindow() {
  GtkRoot* const root = gtk_widget_get_root(GTK_WIDGET(widget_));
  const bool isWindow = root && GTK_IS_WINDOW(root);
  banner_->setRootViewController(isWindow ? valdren::platform::hostScreen(GTK_WINDOW(root))
                                          : nullptr);
}

// A handler may end the widget, and this object with it: nothing follows an emission.

void BannerPeer::adViewDidReceiveAd(valdren::VADBannerView&) {
  g_object_ref(widget_);
  ValdrenBanner* const widget = widget_;
  if (!hasAd_) {
    hasAd_ = true;
    g_object_notify(G_OBJECT(widget), "has-ad");
  }
  g_signal_emit(widget, signalNumbers[kReceived], 0);
  g_object_unref(widget);
}

void BannerPeer::adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                                   const valdren::VADRequestError& error) {
  GError* const told =
      g_error_new_literal(VALDREN_ERROR, error.code(), error.localizedDescription().c_str());
  g_signal_emit(widget_, signalNumbers[kFailed], 0, told);
  g_error_free(told);
}

void BannerPeer::adViewWillPresentScreen(valdren::VADBannerView&) {
  g_signal_emit(widget_, signalNumbers[kWillPresent], 0);
}

void BannerPeer::adViewWillDismissScreen(valdren::VADBannerView&) {
  g_signal_emit(widget_, signalNumbers[kWillDismiss], 0);
}

void BannerPeer::adViewDidDismissScreen(valdren::VADBannerView&) {
  g_signal_emit(widget_, signalNumbers[kDidDismiss], 0);
}

void BannerPeer::adViewWillLeaveApplication(valdren::VADBannerView&) {
  g_signal_emit(widget_, signalNumbers[kWillLeave], 0);
}
