// The present output route of sound.
#pragma once

#include <optional>
#include <string>

#include "platform/base/Shared.h"

namespace valdren::platform {

/// A status of 0 means success. Callers treat only some other values as failures, so the values are
/// kept.
class AudioSession : public Shared<AudioSession> {
 public:
  static constexpr int kAlreadyInitialized = 0x696e6974;

  static AudioSession& standard();
  virtual ~AudioSession() = default;

  /// Connects to the sound server, without waiting for it. `kAlreadyInitialized` from the second
  /// call on; another status when there is no server.
  virtual int initialize() = 0;

  struct Route {
    int status = 0;
    /// "Headphone", "Headset", "Speaker" or another name for the default output's active port;
    /// empty when the output has none; absent when it is unknown.
    std::optional<std::string> name;
  };
  /// The route that the server reported last; never waits for it. Connects again when the server
  /// was lost.
  virtual Route route() = 0;
};

}  // namespace valdren::platform
