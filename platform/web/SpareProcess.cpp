#include "platform/web/SpareProcess.h"

#include <fstream>
#include <memory>
#include <string>

#include "platform/base/RunLoop.h"
#include "platform/web/Refusals.h"
#include "platform/web/WebSession.h"

namespace valdren::platform {
namespace {

/// The longest time between a touch and the page that it opens, in seconds.
constexpr Seconds kKeptSeconds{5};

/// An empty web process takes less than a tenth of it.
constexpr double kLeastAvailableMebibytes = 1024;

struct Spare {
  GObjectPtr<WebKitWebView> view;
  bool isKept = false;
  std::unique_ptr<Timer> end;
};

Spare& spare() {
  // Never destroyed: the engine's own objects may not exist any more when the process ends.
  static auto* const spare = new Spare;
  return *spare;
}

GObjectPtr<WebKitWebView> makeEmptyView() {
  const GObjectPtr<WebKitSettings> settings(makeStrangersSettings());
  auto* const made = g_object_new(WEBKIT_TYPE_WEB_VIEW, "settings", settings.get(), "web-context",
                                  webContext(), "network-session", webSession(), nullptr);
  GObjectPtr<WebKitWebView> view(WEBKIT_WEB_VIEW(g_object_ref_sink(made)));
  refuseWhatReachesBeyondThePage(view.get());
  webkit_web_view_load_uri(view.get(), "about:blank");  // the first load starts the process
  return view;
}

/// Where nothing tells, memory counts as short.
double availableMebibytes() {
  std::ifstream memory("/proc/meminfo");
  for (std::string word; memory >> word;) {
    double kibibytes = 0;
    if (word == "MemAvailable:" && memory >> kibibytes) return kibibytes / 1024;
  }
  return 0;
}

}  // namespace

void startSpareProcess() {
  if (spare().isKept) return;
  if (!spare().view) spare().view = makeEmptyView();
  spare().end = RunLoop::shared().scheduleTimer(kKeptSeconds, [] { spare().view.reset(); });
}

void keepSpareProcess() {
  if (availableMebibytes() < kLeastAvailableMebibytes) return;
  spare().isKept = true;
  spare().end.reset();
  if (!spare().view) spare().view = makeEmptyView();
}

void endSpareProcess() {
  spare().isKept = false;
  spare().end.reset();
  spare().view.reset();
}

GObjectPtr<WebKitWebView> takeSpareProcess() {
  spare().isKept = false;
  spare().end.reset();
  return std::move(spare().view);
}

}  // namespace valdren::platform
