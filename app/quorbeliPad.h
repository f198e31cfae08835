// The soundboard on a tablet.
#pragma once

#include "app/SoundScreen.h"

namespace platform = valdren::platform;

namespace quorbel {

class quorbeliPad final : public SoundScreen {
 public:
  void viewDidUnload() override { platform::ViewController::viewDidUnload(); }
  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation) override {
    return true;
  }
};

}  // namespace quorbel
