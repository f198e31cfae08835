#include "platform/application/SessionBus.h"

#include <gio/gio.h>

#include <filesystem>
#include <string>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

constexpr guint kPatienceMilliseconds = 2000;
constexpr const char* kAddress = "DBUS_SESSION_BUS_ADDRESS";
/// An address that fails at once, so that GLib does not look for the bus elsewhere.
constexpr const char* kNoBus = "disabled:";

/// The bus's address; empty when there is none. Starts no bus.
std::string busAddress() {
  const char* const named = g_getenv(kAddress);
  if (named && *named) return named;
  const std::string socket = std::string(g_get_user_runtime_dir()) + "/bus";
  std::error_code ignored;
  if (!std::filesystem::exists(socket, ignored)) return {};
  return "unix:path=" + socket;
}

/// One attempt to connect, in a main context of its own.
struct Asking {
  GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
  bool hasAnswered = false;
  bool isOverdue = false;
};

void answered(GObject*, GAsyncResult* result, gpointer data) {
  // A refused connection counts as an answer.
  GDBusConnection* const connection = g_dbus_connection_new_for_address_finish(result, nullptr);
  static_cast<Asking*>(data)->hasAnswered = true;
  if (connection) g_object_unref(connection);
}

gboolean overdue(gpointer data) {
  auto* const asking = static_cast<Asking*>(data);
  asking->isOverdue = true;
  g_cancellable_cancel(asking->cancellable.get());
  return G_SOURCE_REMOVE;
}

bool answersInTime(const std::string& address) {
  GMainContext* const context = g_main_context_new();
  g_main_context_push_thread_default(context);
  Asking asking;
  g_dbus_connection_new_for_address(
      address.c_str(),
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, asking.cancellable.get(), answered, &asking);
  GSourcePtr timer(g_timeout_source_new(kPatienceMilliseconds));
  g_source_set_callback(timer.get(), overdue, &asking, nullptr);
  g_source_attach(timer.get(), context);
  while (!asking.hasAnswered) g_main_context_iteration(context, TRUE);
  timer.reset();
  g_main_context_pop_thread_default(context);
  g_main_context_unref(context);
  return !asking.isOverdue;
}

}  // namespace

void leaveSilentSessionBus() {
  static bool hasAsked = false;
  if (hasAsked) return;
  hasAsked = true;
  const std::string address = busAddress();
  if (address.empty() || answersInTime(address)) return;
  g_setenv(kAddress, kNoBus, TRUE);
  logWarning("The session bus does not answer; it is not used in this run.");
}

}  // namespace valdren::platform
