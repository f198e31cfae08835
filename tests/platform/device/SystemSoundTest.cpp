// A fake feedback daemon on the session's message bus.
#include "platform/device/SystemSound.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/base/GObjectPtr.h"
#include "tests/support/Loop.h"

namespace valdren::platform {
namespace {

using quorbel_tests::runFor;
using quorbel_tests::runUntil;

constexpr const char* kInterface =
    "<node><interface name='org.sigxcpu.Feedback'><method name='TriggerFeedback'>"
    "<arg direction='in' name='app_id' type='s'/><arg direction='in' name='event' type='s'/>"
    "<arg direction='in' name='hints' type='a{sv}'/><arg direction='in' name='timeout' type='i'/>"
    "<arg direction='out' name='id' type='u'/></method></interface></node>";

struct Daemon {
  int feedbacks = 0;
  bool answers = true;
  std::string profile;

  static void called(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
    auto& daemon = *static_cast<Daemon*>(self);
    ++daemon.feedbacks;
    GVariant* hints = g_variant_get_child_value(parameters, 2);
    const char* profile = "";
    if (g_variant_lookup(hints, "profile", "&s", &profile)) daemon.profile = profile;
    g_variant_unref(hints);
    if (daemon.answers) {
      g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", 1));
    } else {
      g_object_unref(invocation);
    }
  }
};

TEST(SystemSoundTest, VibratesThroughTheFeedbackDaemonOneAtATime) {
  auto& sound = SystemSound::standard();
  sound.play(1000);  // unknown: asks nobody

  // A second connection besides the one that the sound uses.
  const std::string address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  GObjectPtr<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
      address.c_str(),
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  ASSERT_TRUE(connection);
  GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(kInterface, nullptr);
  GDBusInterfaceVTable table{};
  table.method_call = Daemon::called;
  Daemon daemon;
  g_dbus_connection_register_object(connection.get(), "/org/sigxcpu/Feedback", node->interfaces[0],
                                    &table, &daemon, nullptr, nullptr);
  g_dbus_node_info_unref(node);

  sound.play(kSystemSoundVibrate);  // there is no daemon yet
  runFor(0.3);
  EXPECT_EQ(daemon.feedbacks, 0);

  bool owns = false;
  const guint name = g_bus_own_name_on_connection(
      connection.get(), "org.sigxcpu.Feedback", G_BUS_NAME_OWNER_FLAGS_NONE,
      [](GDBusConnection*, const char*, gpointer flag) { *static_cast<bool*>(flag) = true; },
      nullptr, &owns, nullptr);
  ASSERT_TRUE(runUntil([&] { return owns; }));
  sound.play(kSystemSoundVibrate);
  sound.play(kSystemSoundVibrate);
  ASSERT_TRUE(runUntil([&] { return daemon.feedbacks > 0; }));
  EXPECT_EQ(daemon.profile, "quiet");
  runFor(0.2);
  EXPECT_EQ(daemon.feedbacks, 1);
  sound.play(kSystemSoundVibrate);
  EXPECT_TRUE(runUntil([&] { return daemon.feedbacks == 2; }));
  runFor(0.1);

  g_bus_unown_name(name);
}

}  // namespace
}  // namespace valdren::platform
