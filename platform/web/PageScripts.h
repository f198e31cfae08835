// The platform's own scripts in a page, in a script world that the page cannot reach.
#pragma once

#include <functional>

#include "platform/base/GObjectPtr.h"
#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

class PageScripts {
 public:
  PageScripts();
  ~PageScripts();
  PageScripts(const PageScripts&) = delete;
  PageScripts& operator=(const PageScripts&) = delete;

  WebKitUserContentManager* manager() const { return manager_.get(); }

  /// Applies from the next page on: the types of text to turn into links (a sum, 0 for none), and
  /// whether to report the page's width.
  void select(unsigned detectors, bool measures);
  /// Receives the viewport's width at the page's present zoom and the width that the page needs, 0
  /// when the viewport is wide enough. Both are in the page's own pixels.
  void setWidthHandler(std::function<void(double viewport, double width)> handler);

 private:
  static void messageReceived(WebKitUserContentManager* manager, JSCValue* value, gpointer self);
  void add(const char* name);

  GObjectPtr<WebKitUserContentManager> manager_;
  std::function<void(double, double)> widthHandler_;
  unsigned detectors_ = 0;
  bool measures_ = false;
};

}  // namespace valdren::platform
