// The web view that shows an ad; it remembers whether it was touched.
#pragma once

#include "platform/web/WebView.h"

namespace valdren {

class VADWebViewPrivate;

/// Transparent, without data detectors, media play inline and by themselves. Made with
/// `std::make_shared`.
class VADWebView : public platform::WebView {
 public:
  /// With `related`, shares that view's web process.
  explicit VADWebView(const platform::Rect& frame = {}, platform::WebView* related = nullptr);
  ~VADWebView() override;

  /// Sees every touch before the page does.
  platform::View* hitTest(platform::Point point, platform::EventType type) override;

  /// Whether a touch has reached the view. The view itself never clears it.
  bool touched() const;
  void setTouched(bool touched);

 private:
  VADWebViewPrivate* vars() const;
};

}  // namespace valdren
