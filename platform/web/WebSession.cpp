#include "platform/web/WebSession.h"

namespace platform {
namespace {

/// A page that wants more ends with its web process; heavy landing pages need about a third.
constexpr guint kMemoryLimitMegabytes = 1024;
constexpr double kMemoryPollSeconds = 5;

void refuseDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
  webkit_download_cancel(download);
}

WebKitWebContext* makeContext() {
  // Other models keep the web processes of closed views for later. The model is one for all
  // contexts, and a context looks at it when it is made, so another one has to set it first.
  webkit_web_context_set_cache_model(webkit_web_context_get_default(),
                                     WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  WebKitMemoryPressureSettings* const limits = webkit_memory_pressure_settings_new();
  webkit_memory_pressure_settings_set_memory_limit(limits, kMemoryLimitMegabytes);
  webkit_memory_pressure_settings_set_kill_threshold(limits, 1.0);
  webkit_memory_pressure_settings_set_poll_interval(limits, kMemoryPollSeconds);
  auto* const context = WEBKIT_WEB_CONTEXT(
      g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "memory-pressure-settings", limits, nullptr));
  webkit_memory_pressure_settings_free(limits);
  return context;
}

WebKitNetworkSession* makeSession() {
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

}  // namespace platform
