// Scripts of our own in a page, in a world that the page's scripts cannot reach.
#pragma once

#include <webkit/webkit.h>

#include <functional>

#include "platform/base/GObjectPtr.h"

namespace valdren::platform {

class PageScripts {
 public:
  PageScripts();
  ~PageScripts();
  PageScripts(const PageScripts&) = delete;
  PageScripts& operator=(const PageScripts&) = delete;

  WebKitUserContentManager* manager() const { return manager_.get(); }

  /// From the next page on: what it turns into links (a sum of the types, 0 for nothing), and
  /// whether its width is told.
  void select(unsigned detectors, bool measures);
  /// Gets the viewport's width at the page's present zoom, and the width that the page needs to be
  /// seen whole, 0 when the viewport's will do; both in the page's own pixels.
  void setWidthHandler(std::function<void(double viewport, double width)> handler);

 private:
  static void messageReceived(WebKitUserContentManager* manager, JSCValue* value, gpointer self);
  void add(const char* source);

  GObjectPtr<WebKitUserContentManager> manager_;
  std::function<void(double, double)> widthHandler_;
  unsigned detectors_ = 0;
  bool measures_ = false;
};

}  // namespace valdren::platform
