#include "ads/web/VADWebView.h"

#include "ads/support/VADPrivateUtilities.h"

namespace valdren {

/// What a `VADWebView` remembers beyond its base class.
class VADWebViewPrivate final : public VADPrivateObject {
 public:
  bool touched_ = false;
};

VADWebView::VADWebView(const platform::Rect& frame, platform::WebView* related)
    : WebView(frame, related) {
  VADPrivateUtilities::setPrivateObject(std::make_shared<VADWebViewPrivate>(), this);
  setClipsToBounds(true);
  setScalesPageToFit(true);
  setAutoresizingMask(platform::kFlexibleWidth | platform::kFlexibleHeight);
  setOpaque(false);
  setBackgroundColor(platform::Color::clear());
  setDataDetectorTypes(platform::kNoDataDetectors);
  setAllowsInlineMediaPlayback(true);
  setMediaPlaybackRequiresUserAction(false);
  setAllowsAirPlay(true);
  setAccessibilityLabel("Advertisement");
}

VADWebView::~VADWebView() {
  invalidateWeakReferences();
  VADPrivateUtilities::removePrivateObjectForKey(this);
}

platform::View* VADWebView::hitTest(platform::Point point, platform::EventType type) {
  if (type == platform::EventType::Touches) setTouched(true);
  return WebView::hitTest(point, type);
}

bool VADWebView::touched() const {
  return vars()->touched_;
}

void VADWebView::setTouched(bool touched) {
  vars()->touched_ = touched;
}

VADWebViewPrivate* VADWebView::vars() const {
  return VADPrivateUtilities::privateObjectForKey<VADWebViewPrivate>(this).get();
}

}  // namespace valdren
