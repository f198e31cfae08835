// The soundboard on a phone.
#pragma once

#include "app/SoundScreen.h"

namespace quorbel {

/// Upright only, as every screen that does not say otherwise.
class quorbelViewController final : public SoundScreen {
 public:
  void viewDidUnload() override {}
};

}  // namespace quorbel
