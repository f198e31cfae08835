#include "ads/loading/VADAdURLBuilder.h"

#include "ads/protocol/Messages.h"
#include "ads/protocol/Script.h"
#include "ads/request/VADConfiguration.h"
#include "ads/support/VADMacros.h"
#include "ads/web/VADNotificationCenter.h"
#include "ads/web/VADWebViewDelegate.h"
#include "platform/base/Log.h"
#include "platform/base/MainThread.h"

namespace valdren {
namespace {

/// The same JSON value, so written that no text in it can end the script that it stands in, or a
/// line of it.
std::string insideScript(const std::string& json) {
  std::string escaped;
  escaped.reserve(json.size());
  for (std::size_t place = 0; place < json.size(); ++place) {
    const std::string_view rest = std::string_view(json).substr(place);
    if (rest.front() == '<') {
      escaped += "\\u003c";
    } else if (rest.starts_with("\u2028") || rest.starts_with("\u2029")) {
      escaped += rest[2] == '\xA8' ? "\\u2028" : "\\u2029";
      place += 2;
    } else {
      escaped += rest.front();
    }
  }
  return escaped;
}

}  // namespace

VADAdURLBuilder::~VADAdURLBuilder() {
  platform::assertMainThread();
  resetBuildAdWebView();
  invalidateWeakReferences();
}

std::string VADAdURLBuilder::pageWithScript(std::string_view script,
                                            const platform::Dictionary& parameters) {
  const std::string json = VADMacros::jsonify(parameters);
  platform::logDebug("Ad request parameters: " + json);
  std::string page = "<html><head><script>";
  page += script;
  page += "</script>";
  page +=
      "<script>" + std::string(kVADScriptEntryFunction) + "(" + insideScript(json) + ");</script>";
  page += "</head><body></body></html>";
  return page;
}

void VADAdURLBuilder::build(const std::string& page, platform::WebView& related) {
  platform::assertMainThread();
  resetBuildAdWebView();
  setupBuildAdWebView(related);
  buildAdWebView_->loadHTMLString(page, VADConfiguration::adServerBaseURL());
}

void VADAdURLBuilder::setupBuildAdWebView(platform::WebView& related) {
  buildAdWebViewDelegate_ = std::make_shared<VADWebViewDelegate>();
  buildAdWebView_ = std::make_shared<platform::WebView>(platform::Rect{0, 0, 1, 1}, &related);
  buildAdWebView_->setHidden(true);
  buildAdWebView_->setDelegate(buildAdWebViewDelegate_.get());
  observe(kVADMessageLoadAdURL, answers_.loadAdURL);
  observe(kVADMessageInvalidRequest, answers_.invalidRequest);
  observe(kVADMessageUnableToServe, answers_.unableToServe);
  deadline_ = platform::RunLoop::shared().scheduleTimer(kBuildSeconds, [this] { giveUp(); });
}

void VADAdURLBuilder::giveUp() {
  const std::function<void()> called = answers_.none;  // a copy, for the same reason as below
  resetBuildAdWebView();
  if (called) called();
}

void VADAdURLBuilder::observe(std::string_view name, const Answer& answer) {
  VADNotificationCenter::defaultCenter().addObserver(
      *this, name,
      [this, answer](const platform::Notification& notification) {
        // Copies: the answer may end the life of this builder, and of what it was called by.
        const Answer called = answer;
        const platform::Dictionary userInfo =
            notification.userInfo.value_or(platform::Dictionary());
        platform::logDebug("The ad engine script answers \"" + notification.name +
                           "\": " + VADMacros::jsonify(userInfo));
        resetBuildAdWebView();
        if (called) called(userInfo);
      },
      buildAdWebView_.get());
}

void VADAdURLBuilder::resetBuildAdWebView() {
  if (!buildAdWebView_) return;
  deadline_.reset();
  for (const char* const name :
       {kVADMessageLoadAdURL, kVADMessageInvalidRequest, kVADMessageUnableToServe}) {
    VADNotificationCenter::defaultCenter().removeObserver(*this, name, buildAdWebView_.get());
  }
  buildAdWebView_->setDelegate(nullptr);
  buildAdWebView_.reset();
  buildAdWebViewDelegate_.reset();
}

}  // namespace valdren
