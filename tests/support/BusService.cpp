#include "tests/support/BusService.h"

#include <cstdlib>
#include <filesystem>

#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace quorbel_tests {

namespace {

constexpr guint32 kVersion = 3;

/// Answers every question for a property on the library's thread, since some clients block this one
/// until they know the service's version.
GDBusMessage* answerProperty(GDBusConnection* connection, GDBusMessage* message, gboolean incoming,
                             gpointer) {
  const char* const member = g_dbus_message_get_member(message);
  if (!incoming || !member || std::string(member) != "Get") return message;
  GDBusMessage* const reply = g_dbus_message_new_method_reply(message);
  g_dbus_message_set_body(reply, g_variant_new("(v)", g_variant_new_uint32(kVersion)));
  g_dbus_connection_send_message(connection, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                 nullptr);
  g_object_unref(reply);
  g_object_unref(message);
  return nullptr;
}

}  // namespace

BusService::~BusService() {
  if (name_) g_bus_unown_name(name_);
  if (!connection_) return;
  std::filesystem::remove(description_);
  reloadBus();
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

bool BusService::appear(const char* name, const char* path, const char* interfaces) {
  const char* const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  const int flags = G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                    G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
  connection_.reset(g_dbus_connection_new_for_address_sync(
      bus ? bus : "", GDBusConnectionFlags(flags), nullptr, nullptr, nullptr));
  if (!connection_) return false;
  g_dbus_connection_add_filter(connection_.get(), answerProperty, nullptr, nullptr);
  GDBusInterfaceVTable table{};
  table.method_call = [](GDBusConnection*, const char* caller, const char*, const char*,
                         const char* method, GVariant* parameters,
                         GDBusMethodInvocation* invocation, gpointer self) {
    auto& service = *static_cast<BusService*>(self);
    service.caller_ = caller;
    if (GVariant* const answer = service.answer_(method, parameters)) {
      g_dbus_method_invocation_return_value(invocation, answer);
    } else {
      g_dbus_method_invocation_return_dbus_error(invocation, "org.example.None", "none");
    }
  };
  GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interfaces, nullptr);
  for (GDBusInterfaceInfo** each = node->interfaces; *each; ++each) {
    g_dbus_connection_register_object(connection_.get(), path, *each, &table, this, nullptr,
                                      nullptr);
  }
  g_dbus_node_info_unref(node);
  makeKnown(name);
  bool owns = false;
  name_ = g_bus_own_name_on_connection(
      connection_.get(), name, G_BUS_NAME_OWNER_FLAGS_NONE,
      [](GDBusConnection*, const char*, gpointer flag) { *static_cast<bool*>(flag) = true; },
      nullptr, &owns, nullptr);
  return runUntil([&] { return owns; });
}

/// Describes the service to the bus, which starts none that it does not know.
void BusService::makeKnown(const std::string& name) {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  description_ = std::string(runtime ? runtime : "") + "/dbus-1/services/" + name + ".service";
  writeFile(description_, "[D-BUS Service]\nName=" + name + "\nExec=/bin/false\n");
  reloadBus();
}

void BusService::reloadBus() {
  g_dbus_connection_call_sync(connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "ReloadConfig", nullptr, nullptr,
                              G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
}

void BusService::emit(const std::string& path, const char* interface, const char* signal,
                      GVariant* content) {
  g_dbus_connection_emit_signal(connection_.get(), caller_.c_str(), path.c_str(), interface, signal,
                                content, nullptr);
}

}  // namespace quorbel_tests
