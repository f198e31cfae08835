#include "ads/loading/VADReadyPage.h"

#include "ads/web/VADScreen.h"
#include "platform/application/Application.h"
#include "platform/base/NotificationCenter.h"
#include "platform/web/WebView.h"

namespace valdren {
namespace {

/// The start of a process should not delay the ad itself.
constexpr platform::Seconds kSoonSeconds{1};

}  // namespace

VADReadyPage::VADReadyPage() {
  observe(platform::kApplicationDidEnterBackground, &VADReadyPage::giveBack);
  observe(platform::kApplicationDidReceiveMemoryWarning, &VADReadyPage::giveBack);
  observe(platform::kApplicationWillEnterForeground, &VADReadyPage::keepSoon);
  observe(kVADViewControllerDidRelinquishFullScreen, &VADReadyPage::keepSoon);
}

VADReadyPage::~VADReadyPage() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
  giveBack();
}

void VADReadyPage::observe(const char* name, void (VADReadyPage::*handler)()) {
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, name, [this, handler](const auto&) { (this->*handler)(); });
}

void VADReadyPage::adIsShown() {
  isShown_ = true;
  keepSoon();
}

void VADReadyPage::keepSoon() {
  if (!isShown_) return;
  soon_ = platform::RunLoop::shared().scheduleTimer(kSoonSeconds,
                                                    [] { platform::WebView::keepNext(true); });
}

void VADReadyPage::giveBack() {
  soon_.reset();
  if (isShown_) platform::WebView::keepNext(false);
}

}  // namespace valdren
