// A fake feedback daemon on the session's message bus.
#include "platform/device/SystemSound.h"

#include <gtest/gtest.h>

#include "tests/support/BusService.h"
#include "tests/support/Loop.h"

namespace valdren::platform {
namespace {

constexpr const char* kInterface =
    "<node><interface name='org.sigxcpu.Feedback'><method name='TriggerFeedback'>"
    "<arg direction='in' name='app_id' type='s'/><arg direction='in' name='event' type='s'/>"
    "<arg direction='in' name='hints' type='a{sv}'/><arg direction='in' name='timeout' type='i'/>"
    "<arg direction='out' name='id' type='u'/></method></interface></node>";

TEST(SystemSoundTest, VibratesThroughTheFeedbackDaemonOneAtATime) {
  auto& sound = SystemSound::standard();
  int feedbacks = 0;
  std::string profile;
  quorbel_tests::BusService daemon([&](const std::string&, GVariant* parameters) {
    ++feedbacks;
    GVariant* const hints = g_variant_get_child_value(parameters, 2);
    const char* told = "";
    if (g_variant_lookup(hints, "profile", "&s", &told)) profile = told;
    g_variant_unref(hints);
    return g_variant_new("(u)", 1);
  });
  sound.play(kSystemSoundVibrate);  // there is no daemon yet
  quorbel_tests::runFor(0.3);
  ASSERT_TRUE(daemon.appear("org.sigxcpu.Feedback", "/org/sigxcpu/Feedback", kInterface));
  sound.play(1000);  // unknown: asks nobody
  sound.play(kSystemSoundVibrate);
  sound.play(kSystemSoundVibrate);
  ASSERT_TRUE(quorbel_tests::runUntil([&] { return feedbacks > 0; }));
  EXPECT_EQ(profile, "quiet");
  quorbel_tests::runFor(0.2);
  EXPECT_EQ(feedbacks, 1);
  sound.play(kSystemSoundVibrate);
  EXPECT_TRUE(quorbel_tests::runUntil([&] { return feedbacks == 2; }));
  quorbel_tests::runFor(0.1);
}

}  // namespace
}  // namespace valdren::platform
