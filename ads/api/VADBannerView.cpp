#include "ads/api/VADBannerView.h"

#include "ads/api/VADDelegateManager.h"
#include "ads/loading/VADObjectPrivate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/web/VADWebView.h"
#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/base/NotificationCenter.h"

namespace valdren {

VADBannerView::VADBannerView(const platform::Rect& frame) : View(frame) {
  commonInitializer();
}

void VADBannerView::commonInitializer() {
  platform::assertMainThread();
  setBackgroundColor(platform::Color::clear());
  VADPrivateUtilities::setPrivateObject(
      VADObjectPrivate::initWithView(*this, std::make_shared<VADDelegateManager>()), this);
}

VADBannerView::~VADBannerView() {
  platform::assertMainThread();
  loader()->cancelPendingActions();
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
  invalidateWeakReferences();
  VADPrivateUtilities::removePrivateObjectForKey(this);
}

std::shared_ptr<VADObjectPrivate> VADBannerView::loader() const {
  return VADPrivateUtilities::privateObjectForKey<VADObjectPrivate>(this);
}

/// The loader knows the one that it was made with as what it tells its events.
std::shared_ptr<VADDelegateManager> VADBannerView::delegateManager() const {
  return std::static_pointer_cast<VADDelegateManager>(loader()->delegateManager());
}

std::string VADBannerView::adUnitID() const {
  return loader()->adUnitID();
}

void VADBannerView::setAdUnitID(const std::string& adUnitID) {
  loader()->setAdUnitID(adUnitID);
}

platform::ViewController* VADBannerView::rootViewController() const {
  return loader()->rootViewController();
}

void VADBannerView::setRootViewController(platform::ViewController* controller) {
  loader()->setRootViewController(controller);
}

VADBannerViewDelegate* VADBannerView::delegate() const {
  return delegateManager()->bannerDelegate();
}

void VADBannerView::setDelegate(VADBannerViewDelegate* delegate) {
  platform::assertMainThread();
  delegateManager()->setBannerDelegate(delegate);
  delegateManager()->setAdView(this);
}

const std::shared_ptr<VADWebView>& VADBannerView::webView() const {
  return loader()->webView();
}

platform::View* VADBannerView::hitTest(platform::Point point, platform::EventType type) {
  platform::View* const hit = View::hitTest(point, type);
  if (hit && hit == webView().get() && type == platform::EventType::Touches) {
    platform::WebView::prepareNext();
  }
  return hit;
}

bool VADBannerView::hasAutoRefreshed() const {
  return loader()->hasAutoRefreshed();
}

void VADBannerView::loadRequest(const std::shared_ptr<VADRequest>& request) {
  if (!platform::isMainThread()) {
    platform::log("<Valdren> loadRequest belongs on the main thread; nothing is asked.");
    return;
  }
  if (!VADConfiguration::isAdNetworkSet()) {
    platform::log("<Valdren> No ad network is set, so there will be no ad: setAdNetwork names it.");
  }
  if (rootViewController()) {
    loader()->loadRequest(request);
    return;
  }
  platform::log(
      "<Valdren> Must set the rootViewController property of VADBannerView before calling "
      "loadRequest:");
  delegateManager()->didFailToReceiveAdWithError(
      VADRequestError::errorWithCode(kVADErrorInvalidRequest, request.get()));
}

}  // namespace valdren
