#include "platform/web/WebSession.h"

#include <memory>
#include <utility>

#include "platform/base/RunLoop.h"
#include "platform/web/MemoryGuard.h"

namespace valdren::platform {
namespace {

/// A web process above this is ended; heavy landing pages need about a third.
constexpr guint kWebMegabytes = 1024;
/// Temporary storage of pages is in the network process's memory, besides about forty megabytes for
/// itself.
constexpr guint kNetworkMegabytes = 384;
/// A page can use several hundred megabytes per second.
constexpr double kPollSeconds = 1;

struct FreeLimits {
  void operator()(WebKitMemoryPressureSettings* limits) const {
    webkit_memory_pressure_settings_free(limits);
  }
};
using Limits = std::unique_ptr<WebKitMemoryPressureSettings, FreeLimits>;

/// A web process above the limit is ended. A network process only frees what it can.
Limits limitsOf(guint megabytes) {
  Limits limits(webkit_memory_pressure_settings_new());
  webkit_memory_pressure_settings_set_memory_limit(limits.get(), megabytes);
  webkit_memory_pressure_settings_set_kill_threshold(limits.get(), 1.0);
  webkit_memory_pressure_settings_set_poll_interval(limits.get(), kPollSeconds);
  return limits;
}

void refuseDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
  webkit_download_cancel(download);
}

WebKitWebContext* makeContext() {
  return WEBKIT_WEB_CONTEXT(g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings",
                                         limitsOf(kWebMegabytes).get(), nullptr));
}

WebKitNetworkSession* makeSession() {
  guardNetworkProcess(kNetworkMegabytes);
  // All sessions share one network process, which uses the settings made before the first session.
  webkit_network_session_set_memory_pressure_settings(limitsOf(kNetworkMegabytes).get());
  WebKitNetworkSession* const session = webkit_network_session_new_ephemeral();
  webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_FAIL);
  webkit_network_session_set_persistent_credential_storage_enabled(session, FALSE);
  webkit_network_session_set_itp_enabled(session, TRUE);
  g_signal_connect(session, "download-started", G_CALLBACK(refuseDownload), nullptr);
  return session;
}

bool endIsDue = false;

}  // namespace

WebKitWebContext* webContext() {
  static WebKitWebContext* const context = makeContext();
  return context;
}

WebKitNetworkSession* webSession() {
  static WebKitNetworkSession* const session = makeSession();
  return session;
}

void endKeptProcesses() {
  if (std::exchange(endIsDue, true)) return;
  RunLoop::shared().performAfterDelay(kNextTurn, [] {
    endIsDue = false;
    // The processes end with the cache that keeps them. A cache model without such would do as
    // well, but the model belongs to the whole process, and so to a host.
    webkit_website_data_manager_clear(webkit_network_session_get_website_data_manager(webSession()),
                                      WEBKIT_WEBSITE_DATA_MEMORY_CACHE, 0, nullptr, nullptr,
                                      nullptr);
  });
}

}  // namespace valdren::platform
