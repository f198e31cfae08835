// The present output route of sound.
#pragma once

#include <optional>
#include <string>

#include "platform/base/Result.h"
#include "platform/base/Shared.h"

namespace valdren::platform {

class AudioSession : public Shared<AudioSession> {
 public:
  /// The domain of its errors; their codes follow.
  static constexpr const char* kErrorDomain = "platform.audiosession";
  static constexpr int kNoServer = -1;
  static constexpr int kAlreadyInitialized = 0x696e6974;

  static AudioSession& standard();
  virtual ~AudioSession() = default;

  /// Connects to the sound server, without waiting for it. `kAlreadyInitialized` from the second
  /// call on; `kNoServer` when there is no server.
  virtual Result<> initialize() = 0;

  /// The route that the server reported last: "Headphone", "Headset", "Speaker" or another name for
  /// the default output's active port; empty when the output has none; absent when it is unknown.
  /// Never waits for the server. Connects again when the server was lost.
  virtual Result<std::optional<std::string>> route() = 0;
};

}  // namespace valdren::platform
