// Everything that an ad needs of the machine, faked.
#pragma once

#include "ads/telemetry/VADStatistics.h"
#include "tests/support/FakeURLLoading.h"
#include "tests/support/FakeWebEngine.h"
#include "tests/support/Fakes.h"

namespace quorbel_tests {

/// In force while it lives. The shared statistics end with it.
struct FakeMachine {
  ~FakeMachine() { valdren::VADStatistics::releaseSharedStatistics(); }

  FakeWebEngines engines;  // outlives the views that wait in the loop
  FakeClock clock;
  FakeRunLoop loop{&clock};
  FakeUserDefaults defaults;
  FakeApplication application;
  FakeDevice device;
  FakeScreen display;
  FakeAudioSession audio;
  FakeURLLoading fetches;
};

}  // namespace quorbel_tests
