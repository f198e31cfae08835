// The soundboard on a phone.
#pragma once

#include "app/SoundScreen.h"

namespace quorbel {

/// Portrait only, which is the default of screens.
class quorbelViewController final : public SoundScreen {
 public:
  void viewDidUnload() override {}
};

}  // namespace quorbel
