#include "platform/device/Launches.h"

#include <gio/gio.h>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Log.h"
#include "platform/device/Renderer.h"

namespace valdren::platform {
namespace {

struct Launch {
  std::string address;
  LaunchPermit::Touch touch;
};

/// Schemes that the portals of every desktop open.
bool isOpenedByPortals(const std::string& scheme) {
  return scheme == "http" || scheme == "https" || scheme == "mailto";
}

void launchInThread(GTask* task, gpointer, gpointer data, GCancellable*) {
  const GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
  leaveRendererToOthers(context.get());
  GError* error = nullptr;
  const bool launched = g_app_info_launch_default_for_uri(
      static_cast<Launch*>(data)->address.c_str(), context.get(), &error);
  if (launched) {
    g_task_return_boolean(task, TRUE);
  } else {
    g_task_return_error(task, error);
  }
}

void launched(GObject*, GAsyncResult* result, gpointer) {
  GTask* const task = G_TASK(result);
  GError* error = nullptr;
  if (g_task_propagate_boolean(task, &error)) return;
  logDebug(std::string("Nothing opened the URL: ") + error->message);
  g_error_free(error);
  LaunchPermit::shared().giveBack(static_cast<Launch*>(g_task_get_task_data(task))->touch);
}

}  // namespace

bool isInSandbox() {
  static const bool sandboxed = g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS);
  return sandboxed;
}

bool hasHandler(const URL& url) {
  const std::string scheme = url.lowercaseScheme();
  GAppInfo* const handler = g_app_info_get_default_for_uri_scheme(scheme.c_str());
  if (!handler) return isInSandbox() && isOpenedByPortals(scheme);
  g_object_unref(handler);
  return true;
}

void launch(const URL& url, LaunchPermit::Touch touch) {
  GTask* const task = g_task_new(nullptr, nullptr, launched, nullptr);
  g_task_set_task_data(task, new Launch{url.absoluteString(), touch},
                       [](gpointer data) { delete static_cast<Launch*>(data); });
  g_task_run_in_thread(task, launchInThread);
  g_object_unref(task);
}

}  // namespace valdren::platform
