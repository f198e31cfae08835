#include "ads/loading/VADObjectPrivate.h"

#include "ads/loading/VADLaunchObserver.h"
#include "ads/loading/VADResponseHeaders.h"
#include "ads/request/VADRequestError.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/web/VADBannerWebViewDelegate.h"
#include "ads/web/VADWebView.h"
#include "platform/application/Application.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/device/Device.h"
#include "platform/ui/KeyWindow.h"

namespace valdren {
namespace {

constexpr int kMinimumOSMajor = 3;
constexpr int kMinimumOSMinor = 0;

bool isAppActive() {
  const auto state = platform::Application::shared().applicationState();
  return state == platform::ApplicationState::Active || !VADObjectPrivate::didAppFinishLaunching();
}

std::shared_ptr<VADRequestPrivate> privateRequestWithRequest(
    const std::shared_ptr<VADRequest>& request) {
  if (!request) return std::make_shared<VADRequestPrivate>();
  return std::dynamic_pointer_cast<VADRequestPrivate>(request);
}

}  // namespace

bool VADObjectPrivate::didAppFinishLaunching() {
  return VADLaunchObserver::shared().didAppFinishLaunching();
}

std::shared_ptr<VADObjectPrivate> VADObjectPrivate::initWithView(
    platform::View& view, std::shared_ptr<VADAdEvents> delegateManager) {
  std::shared_ptr<VADObjectPrivate> loader(
      new VADObjectPrivate(view.bounds(), std::move(delegateManager)));
  loader->adView_ = &view;
  view.addSubview(loader->webView_);
  return loader;
}

VADObjectPrivate::VADObjectPrivate(const platform::Rect& frame,
                                   std::shared_ptr<VADAdEvents> delegateManager)
    : delegateManager_(std::move(delegateManager)),
      webView_(std::make_shared<VADWebView>(frame)),
      state_([this] { adDidNotShow(); }),
      adURLBuilder_({.loadAdURL = [this](const auto& answer) { loadAdURL(answer); },
                     .invalidRequest =
                         [this](const auto& answer) { refusedByScript("Invalid Request", answer); },
                     .unableToServe =
                         [this](const auto& answer) { refusedByScript("Unable to serve", answer); },
                     .none = [this] { scriptDidNotAnswer(); }}),
      trackers_([this](const std::string& line) { debug(line); }),
      reloadTimer_([this] { reloadCurrentRequest(); }) {
  platform::assertMainThread();
  webView_->setScalesPageToFit(false);
  webView_->setMediaPlaybackRequiresUserAction(true);
  webView_->setHidden(true);
  webViewDelegate_ = VADBannerWebViewDelegate::initWithObjectPrivate(*this, openerWithScreens());
}

VADObjectPrivate::~VADObjectPrivate() {
  platform::assertMainThread();
  invalidateWeakReferences();
  webView_->setDelegate(nullptr);
  webView_->loadHTMLString("", std::nullopt);
  webView_.reset();
  webViewDelegate_.reset();
}

void VADObjectPrivate::loadRequest(const std::shared_ptr<VADRequest>& request) {
  loadPrivateRequest(privateRequestWithRequest(request), false);
}

void VADObjectPrivate::loadInterstitialRequest(const std::shared_ptr<VADRequest>& request) {
  const auto privateRequest = privateRequestWithRequest(request);
  const auto interstitial =
      privateRequest ? privateRequest->copy() : std::make_shared<VADRequestPrivate>();
  interstitial->setInterstitialAd(true);
  loadPrivateRequest(interstitial, false);
}

void VADObjectPrivate::loadPrivateRequest(const std::shared_ptr<VADRequestPrivate>& request,
                                          bool autoRefresh) {
  const platform::KeptUntilReturn kept(*this);
  if (isMakingRequest() || !isAppActive()) {
    debug(isMakingRequest() ? "a request is ignored, for another one is under way"
                            : "a request is ignored, for the application is not active");
    return;
  }
  if (!supportsMinimumRequirementsForRequest(request.get())) return;
  if (!autoRefresh) hasAutoRefreshed_ = false;
  takeRequest(request);
  debug("request " + std::to_string(request_->counter()) + (autoRefresh ? ", a refresh" : ""));
  changeState(kVADStateBuildingURL);
  ensureSupportFiles();
}

bool VADObjectPrivate::supportsMinimumRequirementsForRequest(const VADRequestPrivate* request) {
  if (VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(kMinimumOSMajor, kMinimumOSMinor)) {
    return true;
  }
  reportError(kVADErrorOSVersionTooLow, request);
  changeState(kVADStateFailed);
  return false;
}

void VADObjectPrivate::takeRequest(const std::shared_ptr<VADRequestPrivate>& request) {
  platform::assertMainThread();
  if (!request) {
    request_ = std::make_shared<VADRequestPrivate>();
  } else if (request != request_) {
    request_ = request->copy();
  }
  VADRequestParameters::begin(*request_);
}

void VADObjectPrivate::tellRequest(
    const std::shared_ptr<VADRequest>& request,
    std::function<void(const platform::Dictionary& parameters)> tell) {
  platform::assertMainThread();
  takeRequest(privateRequestWithRequest(request));
  gatherParameters(std::move(tell));
}

void VADObjectPrivate::reloadCurrentRequest() {
  platform::assertMainThread();
  if (isMakingRequest() || !isAppActive()) {
    debug("the refresh is put off");
    return reloadTimer_.putOff();
  }
  loadPrivateRequest(request_, true);
}

void VADObjectPrivate::ensureSupportFiles() {
  if (script_.open(this)) changeState(kVADStateLoadingScript);
  if (script_.isFresh()) return buildAdUrl();
  changeState(kVADStateLoadingScript);
  debug("asking for the ad engine script at " + script_.file().sourceURL().absoluteString());
  script_.validate();
}

void VADObjectPrivate::failedToDownloadJavaScriptWithError(
    const std::optional<platform::Error>& error) {
  debug("no new ad engine script: status " + std::to_string(script_.file().httpStatusCode()) +
        ", " + describedFailure(error));
  // The fetch is over by now in any case. Seen so, the publisher may ask for the next ad when told
  // of the error.
  script_.cancel();
  changeState(kVADStateScriptFailed);
  if (!script_.content().empty()) return buildAdUrl();
  script_.invalidate();  // a copy that is no script must not be found unchanged next time
  reloadTimer_.keepRefreshing();
  reportError(kVADErrorNetworkError, nullptr);
}

void VADObjectPrivate::buildAdUrl() {
  const std::string script = script_.content();
  if (script.empty()) return failedToDownloadJavaScriptWithError(std::nullopt);
  changeState(kVADStateBuildingURL);
  gatherParameters([this, script](const platform::Dictionary& parameters) {
    adURLBuilder_.build(VADAdURLBuilder::pageWithScript(script, parameters), *webView_);
  });
}

void VADObjectPrivate::gatherParameters(
    std::function<void(const platform::Dictionary& parameters)> use) {
  const auto ownWindow = [this] {
    return rootViewController_ ? rootViewController_->window() : nullptr;
  };
  // Of several windows, a request tells the size and the orientation of its banner's.
  const platform::KeyWindow key(ownWindow());
  state_.waitFor(platform::Screen::shared().whenSettled([this, ownWindow, use = std::move(use)] {
    const platform::KeptUntilReturn kept(*this);
    const platform::KeyWindow key(ownWindow());
    use(VADRequestParameters::of(*request_, slot()));
  }));
}

VADAdSlot VADObjectPrivate::slot() const {
  const platform::View* const host = adView_.get();
  const platform::View& view = host ? *host : *webView_;
  return {adUnitID_, VADAdSlot::Place{view.frame(), view.bounds()}};
}

void VADObjectPrivate::reportError(std::int32_t code, const VADRequest* request) {
  const VADRequestError error = VADRequestError::errorWithCode(code, request);
  debug("error " + std::to_string(code) + " goes to the delegate: " + error.localizedDescription());
  delegateManager_->didFailToReceiveAdWithError(error);
}

void VADObjectPrivate::changeState(VADState state) {
  if (state == state_.now()) return;
  debug(std::string(VADLoaderState::nameOf(state_.now())) + " -> " + VADLoaderState::nameOf(state));
  state_.change(state);
  if (state != kVADStateShowingAd) return;
  webView_->setTouched(false);
  readyPage_.adIsShown();
}

void VADObjectPrivate::debug(const std::string& line) const {
  platform::logDebug("Banner \"" + adUnitID_ + "\": " + line);
}

void VADObjectPrivate::cancelPendingActions() {
  platform::assertMainThread();
  trackers_.cancelPendingActions();
  reloadTimer_.resetReloadTimer();
}

void VADObjectPrivate::cachedFileDownloadDidEnd(VADCachedFile& file) {
  const platform::KeptUntilReturn kept(*this);
  if (script_.isFile(file)) return buildAdUrl();
  debug("the ad server answers " + std::to_string(file.httpStatusCode()) + " " +
        describedHeaders(file.httpHeaders()));
  ad_.processHTTPHeaders(file.httpHeaders());
  showAd();
}

void VADObjectPrivate::cachedFileDownloadDidFail(VADCachedFile& file,
                                                 const std::optional<platform::Error>& error) {
  const platform::KeptUntilReturn kept(*this);
  if (script_.isFile(file)) return failedToDownloadJavaScriptWithError(error);
  failedAdRequestWithError(error, file.httpStatusCode());
}

std::optional<platform::Error> VADObjectPrivate::cachedFileShouldRedirectToURL(
    VADCachedFile& file, const platform::URL& url) {
  debug("redirected to " + url.absoluteString() + " " + describedHeaders(file.httpHeaders()));
  ad_.processHTTPHeaders(file.httpHeaders());
  return std::nullopt;
}

}  // namespace valdren
