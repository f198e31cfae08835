#include "platform/device/SystemSound.h"

#include <gio/gio.h>

#include "platform/base/GObjectPtr.h"
#include "platform/storage/Bundle.h"

namespace valdren::platform {
namespace {

/// Asks the desktop's feedback daemon for an event that vibrates the phone. The quiet profile keeps
/// the daemon from also playing a sound.
class FeedbackDaemon final : public SystemSound {
 public:
  void play(std::uint32_t sound) override {
    if (sound != kSystemSoundVibrate || isAsking_) return;
    isAsking_ = true;
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected, this);
  }

 private:
  static void connected(GObject*, GAsyncResult* result, gpointer self) {
    auto& daemon = *static_cast<FeedbackDaemon*>(self);
    GError* error = nullptr;
    const GObjectPtr<GDBusConnection> bus(g_bus_get_finish(result, &error));
    const GErrorPtr ownedError(error);
    if (bus) {
      daemon.trigger(bus.get());
    } else {
      daemon.isAsking_ = false;
    }
  }

  void trigger(GDBusConnection* bus) {
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&hints, "{sv}", "profile", g_variant_new_string("quiet"));
    constexpr gint kEventsOwnLength = -1;
    g_dbus_connection_call(bus, "org.sigxcpu.Feedback", "/org/sigxcpu/Feedback",
                           "org.sigxcpu.Feedback", "TriggerFeedback",
                           g_variant_new("(ssa{sv}i)", Bundle::main().identifier().c_str(),
                                         "message-new-instant", &hints, kEventsOwnLength),
                           nullptr, G_DBUS_CALL_FLAGS_NONE, kLongestAnswer, nullptr, triggered,
                           this);
  }

  static void triggered(GObject* bus, GAsyncResult* result, gpointer self) {
    GError* error = nullptr;
    if (GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error)) {
      g_variant_unref(answer);
    }
    const GErrorPtr ownedError(error);
    static_cast<FeedbackDaemon*>(self)->isAsking_ = false;
  }

  static constexpr int kLongestAnswer = 5000;  // milliseconds

  bool isAsking_ = false;
};

}  // namespace

SystemSound& SystemSound::standard() {
  // Never destroyed: an answer may come while the process ends.
  static auto* const daemon = new FeedbackDaemon;
  return *daemon;
}

}  // namespace valdren::platform
