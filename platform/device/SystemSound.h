// Short sounds of the system, and vibration.
#pragma once

#include <cstdint>

#include "platform/base/Shared.h"

namespace valdren::platform {

/// The system sound that only vibrates.
inline constexpr std::uint32_t kSystemSoundVibrate = 4095;

class SystemSound : public Shared<SystemSound> {
 public:
  static SystemSound& standard();
  virtual ~SystemSound() = default;

  /// Starts the sound and returns at once. Nothing happens when the system does not know the sound,
  /// cannot play it, or has not yet accepted the previous one.
  virtual void play(std::uint32_t sound) = 0;
};

}  // namespace valdren::platform
