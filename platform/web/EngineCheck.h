// Whether the web engine can show pages on this system. Without this check the engine aborts the
// whole program when one of its processes does not start.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Result.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Shared.h"

namespace valdren::platform {

/// The programs that the engine starts; absolute paths, or names to find in PATH.
struct EnginePrograms {
  /// The programs of the linked engine.
  static EnginePrograms installed();

  std::string sandbox = "bwrap";
  std::string busFilter = "xdg-dbus-proxy";
  /// The folder of the engine's own programs; empty when it is unknown.
  std::string folder;
  /// Whether the application itself runs in a sandbox. The engine then asks that sandbox for
  /// further ones.
  bool isInSandbox = false;
};

/// Tests the programs once, in separate processes. Pages never run outside the sandbox.
class EngineCheck : public Shared<EngineCheck>, public WeakTarget {
 public:
  static EngineCheck& standard();
  explicit EngineCheck(EnginePrograms programs) : programs_(std::move(programs)) {}

  /// None until the result is known.
  std::optional<bool> isUsable() const { return usable_; }
  /// Calls `known` on a later turn of the run loop, once `isUsable` has a value. The first call
  /// starts the test. If pages cannot run, one log line says why.
  void ask(std::function<void()> known);

 private:
  struct Run;
  void begin();
  /// `library` is a library name that a working program prints.
  void run(const std::vector<std::string>& command, const std::string& program,
           const char* library);
  void finish(const Result<>& checked);

  EnginePrograms programs_;
  std::optional<bool> usable_;
  bool isAsking_ = false;
  int running_ = 0;
  std::vector<std::function<void()>> waiting_;
};

}  // namespace valdren::platform
