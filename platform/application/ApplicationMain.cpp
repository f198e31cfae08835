#include "platform/application/ApplicationMain.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <vector>

#include "platform/application/OwnApplication.h"
#include "platform/application/SessionBus.h"
#include "platform/application/ShaderCache.h"
#include "platform/device/Renderer.h"
#include "platform/storage/Bundle.h"

namespace valdren::platform {
namespace {

/// While it exists, SIGTERM, SIGINT and SIGHUP end the application in order.
class EndingSignals {
 public:
  EndingSignals() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
      sources_.push_back(g_unix_signal_add(signal, end, nullptr));
    }
  }
  ~EndingSignals() { std::for_each(sources_.begin(), sources_.end(), g_source_remove); }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

 private:
  static gboolean end(gpointer) {
    terminateApplication(0);
    return G_SOURCE_CONTINUE;
  }

  std::vector<guint> sources_;
};

}  // namespace

bool hasDisplay() {
  // The toolkit uses both as soon as it opens a display.
  leaveSilentSessionBus();
  leaveShaderCacheWithoutRoom();
  chooseRenderer();
  // later calls of gtk_init_check always return true
  return gtk_init_check() && gdk_display_get_default();
}

int applicationMain(const ApplicationDescription& description) {
  Bundle::main().setIdentifier(description.identifier);
  Bundle::main().setVersion(description.version);
  if (!hasDisplay()) {
    std::fprintf(stderr,
                 "%s: there is no display to open a window on. Start it in a desktop session, or "
                 "set DISPLAY or WAYLAND_DISPLAY.\n",
                 description.name.c_str());
    return 1;
  }
  if (!g_get_application_name()) g_set_application_name(description.name.c_str());
  OwnApplication application(description);
  const EndingSignals signals;
  return application.run();
}

void terminateApplication(int status) {
  if (OwnApplication* const running = OwnApplication::running()) running->terminate(status);
}

}  // namespace valdren::platform
