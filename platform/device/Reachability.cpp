#include "platform/device/Reachability.h"

#include <gio/gio.h>

namespace valdren::platform {
namespace {

/// Watches the machine's own routes and reports a metered one as cellular. Sends nothing to the
/// host.
class NetworkMonitorTarget final : public ReachabilityTarget {
 public:
  ~NetworkMonitorTarget() override {
    if (handler_) g_signal_handler_disconnect(monitor_, handler_);
    if (first_) g_source_remove(first_);
  }

  void scheduleOnMainRunLoop() override {
    if (handler_) return;
    handler_ = g_signal_connect(monitor_, "network-changed",
                                G_CALLBACK(+[](GNetworkMonitor*, gboolean, gpointer self) {
                                  static_cast<NetworkMonitorTarget*>(self)->report();
                                }),
                                this);
    // Not at idle priority, which drawing the first window would delay.
    first_ = g_idle_add_full(
        G_PRIORITY_DEFAULT,
        [](gpointer self) -> gboolean {
          static_cast<NetworkMonitorTarget*>(self)->first_ = 0;
          static_cast<NetworkMonitorTarget*>(self)->report();
          return G_SOURCE_REMOVE;
        },
        this, nullptr);
  }

  void setCallback(Callback callback) override { callback_ = std::move(callback); }

 private:
  void report() {
    if (!callback_) return;
    std::uint32_t flags = 0;
    if (g_network_monitor_get_network_available(monitor_)) flags |= kReachabilityFlagsReachable;
    if (g_network_monitor_get_network_metered(monitor_)) flags |= kReachabilityFlagsIsWWAN;
    const Callback keptAlive = callback_;
    keptAlive(flags);
  }

  GNetworkMonitor* const monitor_ = g_network_monitor_get_default();
  gulong handler_ = 0;
  guint first_ = 0;
  Callback callback_;
};

class SystemReachability final : public Reachability {
 public:
  std::unique_ptr<ReachabilityTarget> createWithName(const std::string& host) override {
    return host.empty() ? nullptr : std::make_unique<NetworkMonitorTarget>();
  }
};

}  // namespace

Reachability& Reachability::standard() {
  static SystemReachability reachability;
  return reachability;
}

}  // namespace valdren::platform
