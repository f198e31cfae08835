#include "platform/device/Reachability.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "tests/support/Loop.h"

namespace {

gboolean available = TRUE;
gboolean metered = FALSE;

}  // namespace

// They replace the library's functions, since a test cannot change the machine's routes.
extern "C" gboolean g_network_monitor_get_network_available(GNetworkMonitor*) {
  return available;
}
extern "C" gboolean g_network_monitor_get_network_metered(GNetworkMonitor*) {
  return metered;
}

namespace valdren::platform {
namespace {

TEST(Reachability, TellsOfTheRoutesAtFirstAndWheneverTheyChange) {
  EXPECT_EQ(Reachability::standard().createWithName(""), nullptr);
  auto target = Reachability::standard().createWithName("host.example");
  std::vector<std::uint32_t> told;
  target->setCallback([&](std::uint32_t flags) { told.push_back(flags); });
  target->scheduleOnMainRunLoop();
  EXPECT_TRUE(told.empty()) << "told before the call returns";
  EXPECT_TRUE(quorbel_tests::runUntil([&] { return !told.empty(); }));
  const auto change = [](bool hasRoute, bool isMetered) {
    available = hasRoute;
    metered = isMetered;
    g_signal_emit_by_name(g_network_monitor_get_default(), "network-changed", hasRoute);
  };
  change(true, true);
  change(false, false);
  change(true, false);
  EXPECT_EQ(told,
            (std::vector<std::uint32_t>{kReachabilityFlagsReachable,
                                        kReachabilityFlagsReachable | kReachabilityFlagsIsWWAN, 0,
                                        kReachabilityFlagsReachable}));
  target.reset();
  change(true, false);
  EXPECT_EQ(told.size(), 4u);
}

}  // namespace
}  // namespace valdren::platform
