// The engine behind one banner view: it fetches the ad engine script, has it build the ad's
// address, downloads the ad, shows it, fires its pings and refreshes it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ads/loading/VADAd.h"
#include "ads/loading/VADAdEngineScript.h"
#include "ads/loading/VADAdURLBuilder.h"
#include "ads/loading/VADLoaderState.h"
#include "ads/loading/VADReadyPage.h"
#include "ads/loading/VADReloadTimer.h"
#include "ads/request/VADRequestParameters.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/support/VADCachedFile.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/telemetry/VADClickTrackers.h"
#include "ads/web/VADAdController.h"
#include "ads/web/VADAdEvents.h"
#include "platform/ui/View.h"
#include "platform/ui/ViewController.h"

namespace valdren {

class VADBannerWebViewDelegate;

/// Main thread only. Every callback into the publisher's code may end this object's life; whatever
/// calls such code holds a reference until it is done.
class VADObjectPrivate final : public VADPrivateObject,
                               public VADAdController,
                               private VADCachedFileDelegate {
 public:
  /// Whether the launch of the application is over; loads during it need no active application.
  static bool didAppFinishLaunching();

  /// A loader for the view, which it does not own. Adds its web view to it. The delegate manager is
  /// told what happens.
  static std::shared_ptr<VADObjectPrivate> initWithView(
      platform::View& view, std::shared_ptr<VADAdEvents> delegateManager);
  ~VADObjectPrivate() override;
  VADObjectPrivate(const VADObjectPrivate&) = delete;
  VADObjectPrivate& operator=(const VADObjectPrivate&) = delete;

  const std::string& adUnitID() const { return adUnitID_; }
  void setAdUnitID(const std::string& adUnitID) { adUnitID_ = adUnitID; }
  platform::ViewController* rootViewController() const override {
    return rootViewController_.get();
  }
  void setRootViewController(platform::ViewController* controller) {
    rootViewController_ = controller;
  }
  /// Always NO.
  bool hasAutoRefreshed() const { return hasAutoRefreshed_; }

  /// Asks for an ad; null stands for a request with default values. Nothing happens while a request
  /// is under way or the application is not active. The request is copied.
  void loadRequest(const std::shared_ptr<VADRequest>& request);
  /// The same for a full-screen ad.
  void loadInterstitialRequest(const std::shared_ptr<VADRequest>& request);
  /// Begins a request as `loadRequest` does, and in place of asking for an ad gives what it would
  /// tell. Nothing is given when the loader goes first.
  void tellRequest(const std::shared_ptr<VADRequest>& request,
                   std::function<void(const platform::Dictionary& parameters)> tell);
  /// Drops every delayed call and the pending refresh.
  void cancelPendingActions();

  VADState state() const override { return state_.now(); }
  void changeState(VADState state) override;
  /// Whether a request is under way, so that no other one is accepted.
  bool isMakingRequest() const { return state_.isMakingRequest(); }
  double timeLastLoaded() const override { return state_.timeLastLoaded(); }
  const std::shared_ptr<VADRequestPrivate>& request() const override { return request_; }
  const std::shared_ptr<VADAdEvents>& delegateManager() const override { return delegateManager_; }
  const std::shared_ptr<VADWebView>& webView() const override { return webView_; }
  /// None without an ad, or when it is no text.
  std::optional<std::string> adHTMLString() const { return ad_.content(); }
  std::optional<platform::URL> adHTMLBaseURL() const { return ad_.baseURL(); }
  std::vector<platform::URL> pendingTrackingURLs() const override { return ad_.trackingURLs(); }
  std::vector<platform::URL> pendingClickURLs() const override { return ad_.clickURLs(); }
  int supportedOrientations() const override { return ad_.supportedOrientations(); }
  void trackURLs(const std::vector<platform::URL>& urls) override { trackers_.trackURLs(urls); }
  void webProcessDidEnd() override;

  /// The pings that have not been cleared away yet.
  const std::set<std::shared_ptr<VADClickTracker>>& pendingTrackers() const {
    return trackers_.pending();
  }

 private:
  VADObjectPrivate(const platform::Rect& frame, std::shared_ptr<VADAdEvents> delegateManager);

  void loadPrivateRequest(const std::shared_ptr<VADRequestPrivate>& request, bool autoRefresh);
  void takeRequest(const std::shared_ptr<VADRequestPrivate>& request);
  void reloadCurrentRequest();
  bool supportsMinimumRequirementsForRequest(const VADRequestPrivate* request);

  void ensureSupportFiles();
  void failedToDownloadJavaScriptWithError(const std::optional<platform::Error>& error);
  void buildAdUrl();
  /// Gives what the request tells, once the window is as the person sees it.
  void gatherParameters(std::function<void(const platform::Dictionary& parameters)> use);
  VADAdSlot slot() const;

  void loadAdURL(const platform::Dictionary& userInfo);
  void refusedByScript(const char* how, const platform::Dictionary& userInfo);
  void scriptDidNotAnswer();

  void loadHTMLFromURL(const std::optional<platform::URL>& url);
  void showAd();
  void adDidNotShow();
  /// Ends a request that does not come to an end by itself, as a page that fails to load would.
  void giveUp();
  void failedAdRequestWithError(const std::optional<platform::Error>& error, int httpStatusCode);
  void addReloadInformationFromHeaders();

  void reportError(std::int32_t code, const VADRequest* request);
  void debug(const std::string& line) const;

  void cachedFileDownloadDidEnd(VADCachedFile& file) override;
  void cachedFileDownloadDidFail(VADCachedFile& file,
                                 const std::optional<platform::Error>& error) override;
  std::optional<platform::Error> cachedFileShouldRedirectToURL(VADCachedFile& file,
                                                               const platform::URL& url) override;

  platform::WeakPtr<platform::View> adView_;
  std::string adUnitID_;
  std::shared_ptr<VADAdEvents> delegateManager_;
  platform::WeakPtr<platform::ViewController> rootViewController_;
  std::shared_ptr<VADWebView> webView_;
  std::shared_ptr<VADBannerWebViewDelegate> webViewDelegate_;
  VADLoaderState state_;
  std::shared_ptr<VADRequestPrivate> request_;
  VADAdEngineScript script_;
  VADAdURLBuilder adURLBuilder_;
  VADAd ad_;
  VADClickTrackers trackers_;
  VADReloadTimer reloadTimer_;
  VADReadyPage readyPage_;
  bool hasAutoRefreshed_ = false;
};

}  // namespace valdren
