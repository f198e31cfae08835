// The client as an application has it: the shared library, and a banner that asks for an ad at
// once.
#include <valdren/valdren.h>

#include "benchmarks/start_time/BareWindow.h"

void addTo(GtkWindow* window, GtkBox* box) {
  // Nobody listens there.
  valdren::VADConfiguration::setAdNetwork("http://127.0.0.1:9");
  static const auto banner =
      std::make_shared<valdren::VADBannerView>(valdren::platform::Rect{0, 0, 320, 50});
  banner->setAdUnitID("example");
  banner->setRootViewController(valdren::platform::hostScreen(window));
  gtk_box_append(box, valdren::platform::hostWidget(banner));
  banner->loadRequest(valdren::VADRequest::request());
}
