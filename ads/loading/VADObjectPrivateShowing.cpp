// The second half of a request's road: from the script's answer to the ad that is shown, or to the
// failure that ends it.
#include "ads/loading/VADObjectPrivate.h"
#include "ads/loading/VADResponseHeaders.h"
#include "ads/protocol/Messages.h"
#include "ads/request/VADAdAddress.h"
#include "ads/support/VADErrorCode.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADWebView.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/Text.h"

namespace valdren {

void VADObjectPrivate::loadAdURL(const platform::Dictionary& userInfo) {
  const platform::KeptUntilReturn kept(*this);
  script_.answered();
  if (userInfo.contains(kVADMessageKeyErrors))
    return reportError(kVADErrorInvalidRequest, request_.get());
  changeState(kVADStateLoadingAd);
  const auto url = adURLFromAnswer(userInfo, *request_);
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorRequestLatency);
  loadHTMLFromURL(url);
}

void VADObjectPrivate::refusedByScript(const char* how, const platform::Dictionary& userInfo) {
  const platform::KeptUntilReturn kept(*this);
  script_.answered();
  platform::log("<Valdren> " + std::string(how) + ": " + platform::Value(userInfo).description());
  reportError(kVADErrorInvalidRequest, request_.get());
}

void VADObjectPrivate::scriptDidNotAnswer() {
  const platform::KeptUntilReturn kept(*this);
  debug("the ad engine script has not answered");
  script_.invalidate();  // the next request asks the script host anew
  giveUp();
}

void VADObjectPrivate::loadHTMLFromURL(const std::optional<platform::URL>& url) {
  if (!url) {  // the script gave no address, or none that can be asked
    ad_.drop();
    failedAdRequestWithError(std::nullopt, 0);
    return;
  }
  debug("asking for the ad at " + url->absoluteString());
  ad_.fetch(*url, this);
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
  if (isMakingRequest() || state() == kVADStateShowingAd) giveUp();
}

void VADObjectPrivate::giveUp() {
  adURLBuilder_.resetBuildAdWebView();
  changeState(kVADStateFailed);
  reloadTimer_.keepRefreshing();
  reportError(kVADErrorNetworkError, request_.get());
}

void VADObjectPrivate::failedAdRequestWithError(const std::optional<platform::Error>& error,
                                                int httpStatusCode) {
  debug("no ad: status " + std::to_string(httpStatusCode) + ", " + describedFailure(error));
  changeState(kVADStateFailed);
  reportError(errorCodeForStatus(httpStatusCode), request_.get());
  addReloadInformationFromHeaders();
}

void VADObjectPrivate::addReloadInformationFromHeaders() {
  reloadTimer_.scheduleReloadTimer(ad_.refreshSeconds().value_or(reloadTimer_.reloadSeconds()));
}

}  // namespace valdren
