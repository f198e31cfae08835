#include "platform/web/WebSession.h"

#include <memory>

#include "platform/web/MemoryGuard.h"

namespace valdren::platform {
namespace {

/// A page that wants more ends with its web process; heavy landing pages need about a third.
constexpr guint kWebMegabytes = 1024;
/// What pages keep in storage that vanishes with the session is in the network process's memory,
/// beside the forty or so megabytes that it needs for itself.
constexpr guint kNetworkMegabytes = 384;
/// A page can take several hundred megabytes in a second.
constexpr double kPollSeconds = 1;

struct FreeLimits {
  void operator()(WebKitMemoryPressureSettings* limits) const {
    webkit_memory_pressure_settings_free(limits);
  }
};
using Limits = std::unique_ptr<WebKitMemoryPressureSettings, FreeLimits>;

/// A web process that takes more ends. A network process only lets go of what it can spare.
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
  // Other models keep the web processes of closed views for later. The model is one for all
  // contexts, and a context looks at it when it is made, so another one has to set it first.
  webkit_web_context_set_cache_model(webkit_web_context_get_default(),
                                     WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  return WEBKIT_WEB_CONTEXT(g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings",
                                         limitsOf(kWebMegabytes).get(), nullptr));
}

WebKitNetworkSession* makeSession() {
  guardNetworkProcess(kNetworkMegabytes);
  // All sessions have one network process, which is started with what is set before the first.
  webkit_network_session_set_memory_pressure_settings(limitsOf(kNetworkMegabytes).get());
  WebKitNetworkSession* const session = webkit_network_session_new_ephemeral();
  webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_FAIL);
  webkit_network_session_set_persistent_credential_storage_enabled(session, FALSE);
  webkit_network_session_set_itp_enabled(session, TRUE);
  g_signal_connect(session, "download-started", G_CALLBACK(refuseDownload), nullptr);
  return session;
}

}  // namespace

WebKitWebContext* webContext() {
  static WebKitWebContext* const context = makeContext();
  return context;
}

WebKitNetworkSession* webSession() {
  static WebKitNetworkSession* const session = makeSession();
  return session;
}

}  // namespace valdren::platform
