// The system's own short sounds, among them the one that is only felt.
#pragma once

#include <cstdint>

#include "platform/base/Shared.h"

namespace valdren::platform {

/// The system sound that shakes a phone and is not heard.
inline constexpr std::uint32_t kSystemSoundVibrate = 4095;

class SystemSound : public Shared<SystemSound> {
 public:
  static SystemSound& standard();
  virtual ~SystemSound() = default;

  /// Begins to play the sound and returns at once. Nothing happens when the system does not know
  /// the sound, has no means to play it, or has not yet taken the one before.
  virtual void play(std::uint32_t sound) = 0;
};

}  // namespace valdren::platform
