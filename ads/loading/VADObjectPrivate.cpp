#include "ads/loading/VADObjectPrivate.h"

#include "ads/loading/VADLaunchObserver.h"
#include "ads/loading/VADResponseHeaders.h"
#include "ads/request/VADConfiguration.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/request/VADRequestError.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/screens/VADViewController.h"
#include "ads/signals/Signals.h"
#include "ads/support/VADMacros.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/telemetry/VADTiming.h"
#include "ads/web/VADBannerWebViewDelegate.h"
#include "ads/web/VADWebView.h"
#include "platform/application/Application.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Text.h"
#include "platform/device/Device.h"

namespace valdren {
namespace {

constexpr const char* kScriptPath = "/urvo/sdk-core-v40.js";
/// So many pings may be under way at once: a page may open one destination after another, and a
/// server may send ad after ad, each with its pings.
constexpr std::size_t kMostTrackers = 1000;
constexpr int kMinimumOSMajor = 3;
constexpr int kMinimumOSMinor = 0;

const char* nameOf(VADState state) {
  constexpr const char* kNames[] = {"idle",       "loading script", "script failed", "building URL",
                                    "loading ad", "rendering ad",   "showing ad",    "failed"};
  return kNames[state];
}

std::string described(const platform::Headers& headers) {
  platform::Dictionary dictionary;
  for (const auto& [name, value] : headers) dictionary.set(name, platform::repairedUTF8(value));
  return VADMacros::jsonify(dictionary);
}

std::string described(const std::optional<platform::Error>& error) {
  return error ? error->domain + " " + std::to_string(error->code) + ": " + error->message
               : "no error below HTTP";
}

}  // namespace

bool VADObjectPrivate::didAppFinishLaunching() {
  return VADLaunchObserver::shared().didAppFinishLaunching();
}

std::shared_ptr<VADObjectPrivate> VADObjectPrivate::initWithView(
    platform::View& view, std::shared_ptr<VADAdEvents> delegateManager) {
  const std::shared_ptr<VADObjectPrivate> loader(
      new VADObjectPrivate(view.bounds(), std::move(delegateManager)));
  loader->adView_ = &view;
  view.addSubview(loader->webView_);
  return loader;
}

VADObjectPrivate::VADObjectPrivate(const platform::Rect& frame,
                                   std::shared_ptr<VADAdEvents> delegateManager)
    : delegateManager_(std::move(delegateManager)),
      webView_(std::make_shared<VADWebView>(frame)),
      adURLBuilder_({.loadAdURL = [this](const auto& userInfo) { loadAdURL(userInfo); },
                     .invalidRequest = [this](const auto& userInfo) { invalidRequest(userInfo); },
                     .unableToServe = [this](const auto& userInfo) { unableToServe(userInfo); },
                     .none = [this] { scriptDidNotAnswer(); }}),
      reloadTimer_([this] { reloadCurrentRequest(); }) {
  webView_->setScalesPageToFit(false);
  webView_->setMediaPlaybackRequiresUserAction(true);
  webView_->setHidden(true);
  webViewDelegate_ = VADBannerWebViewDelegate::initWithObjectPrivate(*this, openerWithScreens());
  observeNotifications();
}

void VADObjectPrivate::observeNotifications() {
  const bool hasBackground = VADIdentifierUtilities::isOSAtLeastMajor(4, 0, 0);
  const auto observe = [this](const char* name, void (VADObjectPrivate::*handler)()) {
    platform::NotificationCenter::defaultCenter().addObserver(
        *this, name, [this, handler](const auto&) { (this->*handler)(); });
  };
  observe(hasBackground ? platform::kApplicationDidEnterBackground
                        : platform::kApplicationWillResignActive,
          &VADObjectPrivate::appDidBackground);
  observe(hasBackground ? platform::kApplicationWillEnterForeground
                        : platform::kApplicationDidBecomeActive,
          &VADObjectPrivate::appDidForeground);
  observe(kVADViewControllerWillPresentFullScreen, &VADObjectPrivate::adWillPresentFullScreen);
  observe(kVADViewControllerDidRelinquishFullScreen, &VADObjectPrivate::adDidRelinquishFullScreen);
}

VADObjectPrivate::~VADObjectPrivate() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
  invalidateWeakReferences();
  webView_->setDelegate(nullptr);
  webView_->loadHTMLString("", std::nullopt);
  webView_.reset();
  webViewDelegate_.reset();
  adURLBuilder_.resetBuildAdWebView();
  if (buildAdJS_) buildAdJS_->setDelegate(nullptr);
  setAdHTML(nullptr);
  for (const auto& tracker : trackers_) tracker->reset();
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

std::shared_ptr<VADRequestPrivate> VADObjectPrivate::privateRequestWithRequest(
    const std::shared_ptr<VADRequest>& request) {
  if (!request) return std::make_shared<VADRequestPrivate>();
  return std::dynamic_pointer_cast<VADRequestPrivate>(request);
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

void VADObjectPrivate::takeRequest(const std::shared_ptr<VADRequestPrivate>& request) {
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
  takeRequest(privateRequestWithRequest(request));
  gatherParameters(std::move(tell));
}

void VADObjectPrivate::reloadCurrentRequest() {
  if (isMakingRequest() || !isAppActive()) {
    debug("the refresh is put off");
    return reloadTimer_.putOff();
  }
  loadPrivateRequest(request_, true);
}

bool VADObjectPrivate::isMakingRequest() const {
  return state_ != kVADStateIdle && state_ != kVADStateScriptFailed &&
         state_ != kVADStateShowingAd && state_ != kVADStateFailed;
}

bool VADObjectPrivate::isAppActive() {
  const auto state = platform::Application::shared().applicationState();
  return state == platform::ApplicationState::Active || !didAppFinishLaunching();
}

bool VADObjectPrivate::supportsMinimumRequirementsForRequest(const VADRequestPrivate* request) {
  if (VADRequestPrivate::deviceAtLeastMinimumOSMajorVersion(kMinimumOSMajor, kMinimumOSMinor)) {
    return true;
  }
  reportError(kVADErrorOSVersionTooLow, request);
  changeState(kVADStateFailed);
  return false;
}

platform::URL VADObjectPrivate::jsBuildAdURL() {
  const platform::URL& host = VADConfiguration::scriptHostBaseURL();
  std::string address = host.absoluteString();
  if (address.ends_with('/')) address.pop_back();
  return platform::URL::parse(address + kScriptPath).value_or(host);
}

void VADObjectPrivate::ensureSupportFiles() {
  if (!buildAdJS_) {
    changeState(kVADStateLoadingScript);
    buildAdJS_ = VADCachedFile::initWithDelegate(this, jsBuildAdURL());
  }
  if (scriptFreshness_.isFresh() && !buildAdJS_->content().value_or("").empty()) {
    cachedFileDownloadDidEnd(*buildAdJS_);
    return;
  }
  scriptFreshness_.asked();
  changeState(kVADStateLoadingScript);
  debug("asking for the ad engine script at " + buildAdJS_->sourceURL().absoluteString());
  buildAdJS_->validate();
}

void VADObjectPrivate::failedToDownloadJavaScriptWithError(
    const std::optional<platform::Error>& error) {
  debug("no new ad engine script: status " + std::to_string(buildAdJS_->httpStatusCode()) + ", " +
        described(error));
  // The fetch is over by now in any case. Seen so, the publisher may ask for the next ad when told
  // of the error.
  buildAdJS_->cancel();
  changeState(kVADStateScriptFailed);
  if (!buildAdJS_->content().value_or("").empty()) {
    buildAdUrl();
    return;
  }
  buildAdJS_->invalidate();  // a copy that is no script must not be found unchanged next time
  keepRefreshing();
  reportError(kVADErrorNetworkError, nullptr);
}

void VADObjectPrivate::buildAdUrl() {
  const std::optional<std::string> script = buildAdJS_->content();
  if (!script || script->empty()) {
    failedToDownloadJavaScriptWithError(std::nullopt);
    return;
  }
  changeState(kVADStateBuildingURL);
  gatherParameters([this, script = *script](const platform::Dictionary& parameters) {
    adURLBuilder_.build(VADAdURLBuilder::pageWithScript(script, parameters), *webView_);
  });
}

void VADObjectPrivate::gatherParameters(
    std::function<void(const platform::Dictionary& parameters)> use) {
  settling_ = platform::Screen::shared().whenSettled([this, use = std::move(use)] {
    const platform::KeptUntilReturn kept(*this);
    use(VADRequestParameters::of(*request_, slot()));
  });
}

VADAdSlot VADObjectPrivate::slot() const {
  const platform::View& view = adView_ ? *adView_.get() : *webView_;
  return {adUnitID_, VADAdSlot::Place{view.frame(), view.bounds()}};
}

void VADObjectPrivate::loadAdURL(const platform::Dictionary& userInfo) {
  const platform::KeptUntilReturn kept(*this);
  scriptFreshness_.answered();
  if (userInfo.contains("errors")) {
    reportError(kVADErrorInvalidRequest, request_.get());
    return;
  }
  changeState(kVADStateLoadingAd);
  std::optional<platform::URL> url;
  if (const std::string* const address = userInfo.text("url")) {
    url = platform::URL::fromPage(*address);
  }
  const std::string* const type = userInfo.text("type");
  vad_gig(VADRequestPrivate::requestTypeFromString(type ? *type : ""), VADRequest::sdkVersion());
  const platform::Dictionary spamSignals = request_->spamSignals();
  if (url && !spamSignals.empty()) {
    url = VADNetworkUtilities::appendQueryParameters(spamSignals, *url);
  }
  if (url && type && *type == "tovask") {
    url = VADNetworkUtilities::appendQueryKey("seq_num", platform::Value("1"), *url);
  }
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorRequestLatency);
  loadHTMLFromURL(url);
}

void VADObjectPrivate::invalidRequest(const platform::Dictionary& userInfo) {
  const platform::KeptUntilReturn kept(*this);
  scriptFreshness_.answered();
  platform::log("<Valdren> Invalid Request: " + platform::Value(userInfo).description());
  reportError(kVADErrorInvalidRequest, request_.get());
}

void VADObjectPrivate::unableToServe(const platform::Dictionary& userInfo) {
  const platform::KeptUntilReturn kept(*this);
  scriptFreshness_.answered();
  platform::log("<Valdren> Unable to serve: " + platform::Value(userInfo).description());
  reportError(kVADErrorInvalidRequest, request_.get());
}

void VADObjectPrivate::scriptDidNotAnswer() {
  const platform::KeptUntilReturn kept(*this);
  debug("the ad engine script has not answered");
  buildAdJS_->invalidate();  // the next request asks the script host anew
  giveUp();
}

void VADObjectPrivate::loadHTMLFromURL(const std::optional<platform::URL>& url) {
  if (!url) {  // the script gave no address, or none that can be asked
    setAdHTML(nullptr);
    failedAdRequestWithError(std::nullopt, 0);
    return;
  }
  debug("asking for the ad at " + url->absoluteString());
  setAdHTML(VADCachedFile::initWithDelegate(this, *url));
}

void VADObjectPrivate::setAdHTML(std::shared_ptr<VADCachedFile> adHTML) {
  if (adHTML == adHTML_) return;
  if (adHTML_) {
    adHTML_->setDelegate(nullptr);
    adHTML_->invalidate();
  }
  adHTML_ = std::move(adHTML);
  if (const auto startedHere = adHTML_) startedHere->validate();
  pendingTrackingURLs_.clear();
  pendingClickURLs_.clear();
}

void VADObjectPrivate::processHTTPHeaders(const VADCachedFile& file) {
  const platform::Headers& headers = file.httpHeaders();
  appendURLsFromHeader(pendingTrackingURLs_, headers, kVADHeaderTrackingURLs);
  appendURLsFromHeader(pendingClickURLs_, headers, kVADHeaderClickTrackingURLs);
  const auto orientation = nonEmptyHeader(headers, kVADHeaderOrientation);
  const VADOrientationCode code =
      VADViewController::orientationFromString(orientation.value_or(""));
  if (code != kVADOrientationUnknown) supportedOrientations_ = code;
  storeInterstitialTimeout(headers);
}

void VADObjectPrivate::showAd() {
  const std::string content = adHTMLString().value_or("");
  const std::string_view ad = platform::trimmed(content);
  addReloadInformationFromHeaders();
  if (ad.empty()) {
    changeState(kVADStateFailed);
    reportError(kVADErrorNoFill, request_.get());
    return;
  }
  changeState(kVADStateRenderingAd);
  webView_->loadHTMLString(std::string(ad), adHTMLBaseURL());
}

void VADObjectPrivate::adDidNotShow() {
  const platform::KeptUntilReturn kept(*this);
  debug("the ad has not shown in time");
  webView_->loadHTMLString("", std::nullopt);
  giveUp();
}

void VADObjectPrivate::webProcessDidEnd() {
  const platform::KeptUntilReturn kept(*this);
  if (adURLBuilder_.buildAdWebView()) return scriptDidNotAnswer();  // its page was in it, too
  if (isMakingRequest() || state_ == kVADStateShowingAd) giveUp();
}

void VADObjectPrivate::giveUp() {
  adURLBuilder_.resetBuildAdWebView();
  changeState(kVADStateFailed);
  keepRefreshing();
  reportError(kVADErrorNetworkError, request_.get());
}

void VADObjectPrivate::failedAdRequestWithError(const std::optional<platform::Error>& error,
                                                int httpStatusCode) {
  debug("no ad: status " + std::to_string(httpStatusCode) + ", " + described(error));
  changeState(kVADStateFailed);
  std::int32_t code = kVADErrorServerError;
  if (httpStatusCode == 400) {
    platform::log(
        "<Valdren> Server rejected ad parameters.  Typically this is because the ad unit ID is "
        "incorrect.");
    code = kVADErrorInvalidRequest;
  } else if (httpStatusCode < 400) {
    code = kVADErrorNetworkError;
  }
  reportError(code, request_.get());
  addReloadInformationFromHeaders();
}

void VADObjectPrivate::reportError(std::int32_t code, const VADRequest* request) {
  const VADRequestError error = VADRequestError::errorWithCode(code, request);
  debug("error " + std::to_string(code) + " goes to the delegate: " + error.localizedDescription());
  delegateManager_->didFailToReceiveAdWithError(error);
}

void VADObjectPrivate::debug(const std::string& line) const {
  platform::logDebug("Banner \"" + adUnitID_ + "\": " + line);
}

void VADObjectPrivate::changeState(VADState state) {
  if (state == state_) return;
  debug(std::string(nameOf(state_)) + " -> " + nameOf(state));
  state_ = state;
  settling_.reset();
  showDeadline_.reset();
  if (state == kVADStateRenderingAd) {
    showDeadline_ =
        platform::RunLoop::shared().scheduleTimer(kShowSeconds, [this] { adDidNotShow(); });
  }
  if (state != kVADStateShowingAd) return;
  webView_->setTouched(false);
  timeLastLoaded_ = VADTiming::counter();
}

void VADObjectPrivate::addReloadInformationFromHeaders() {
  const auto refreshRate = adHTML_ ? nonEmptyHeader(adHTML_->httpHeaders(), kVADHeaderRefreshRate)
                                   : std::optional<std::string_view>();
  reloadTimer_.scheduleReloadTimer(refreshRate ? VADReloadTimer::secondsFromHeader(*refreshRate)
                                               : reloadTimer_.reloadSeconds());
}

void VADObjectPrivate::keepRefreshing() {
  if (!reloadTimer_.isPending()) reloadTimer_.activateReloadTimer();
}

void VADObjectPrivate::trackURLs(const std::vector<platform::URL>& urls) {
  for (const platform::URL& url : urls) {
    if (trackers_.size() >= kMostTrackers) cleanupTrackers();
    if (trackers_.size() >= kMostTrackers) {
      debug("pings are dropped, for there are too many under way");
      return;
    }
    debug("ping to " + url.absoluteString());
    const auto tracker = std::make_shared<VADClickTracker>();
    tracker->setDelegate(this);
    tracker->trackURL(url);
    trackers_.insert(tracker);
  }
}

void VADObjectPrivate::cancelPendingActions() {
  platform::RunLoop::shared().cancelPerformRequests(*this);
  reloadTimer_.resetReloadTimer();
}

std::optional<std::string> VADObjectPrivate::adHTMLString() const {
  return adHTML_ ? adHTML_->content() : std::nullopt;
}

std::optional<platform::URL> VADObjectPrivate::adHTMLBaseURL() const {
  if (!adHTML_) return std::nullopt;
  return adHTML_->httpDestinationURL();
}

void VADObjectPrivate::cachedFileDownloadDidEnd(VADCachedFile& file) {
  const platform::KeptUntilReturn kept(*this);
  if (&file == buildAdJS_.get()) {
    buildAdUrl();
    return;
  }
  debug("the ad server answers " + std::to_string(file.httpStatusCode()) + " " +
        described(file.httpHeaders()));
  processHTTPHeaders(file);
  showAd();
}

void VADObjectPrivate::cachedFileDownloadDidFail(VADCachedFile& file,
                                                 const std::optional<platform::Error>& error) {
  const platform::KeptUntilReturn kept(*this);
  if (&file == buildAdJS_.get()) {
    failedToDownloadJavaScriptWithError(error);
  } else {
    failedAdRequestWithError(error, file.httpStatusCode());
  }
}

std::optional<platform::Error> VADObjectPrivate::cachedFileShouldRedirectToURL(
    VADCachedFile& file, const platform::URL& url) {
  debug("redirected to " + url.absoluteString() + " " + described(file.httpHeaders()));
  processHTTPHeaders(file);
  return std::nullopt;
}

void VADObjectPrivate::trackerDidRedirect(VADClickTracker&, const platform::URL& url) {
  debug("a ping has arrived at " + url.absoluteString());
  cleanupTrackersOnNextTurn();
}

void VADObjectPrivate::trackerDidFailWithError(VADClickTracker&,
                                               const std::optional<platform::Error>& error) {
  debug("a ping has failed: " + described(error));
  cleanupTrackersOnNextTurn();
}

void VADObjectPrivate::cleanupTrackersOnNextTurn() {
  platform::RunLoop::shared().performAfterDelay(*this, 0, [this] { cleanupTrackers(); });
}

void VADObjectPrivate::cleanupTrackers() {
  // Those that the system ended in the background have no outcome, and no URL any more.
  std::erase_if(trackers_, [](const auto& tracker) {
    return tracker->hasTracked() || !tracker->trackingURL();
  });
}

}  // namespace valdren
