// Where sound goes at present.
#pragma once

#include <optional>
#include <string>

#include "platform/base/Shared.h"

namespace valdren::platform {

/// Statuses are 0 on success. Callers treat only some of the others as failures, so they are kept.
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
    /// empty when the output has none; absent when it cannot be told.
    std::optional<std::string> name;
  };
  /// The route last reported by the server; never waits for it. Looks for the server anew when it
  /// was lost.
  virtual Route route() = 0;
};

}  // namespace valdren::platform
