// Whether the web engine can show pages here: it ends the whole program when it finds out itself
// that a process of its does not start.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/RunLoop.h"
#include "platform/base/Shared.h"

namespace valdren::platform {

/// What the engine starts; absolute paths or names to be found in PATH.
struct EnginePrograms {
  /// Those of the engine that is linked here.
  static EnginePrograms installed();

  std::string sandbox = "bwrap";
  std::string busFilter = "xdg-dbus-proxy";
  /// Where the engine has its own programs; empty when that is not known.
  std::string folder;
  /// The application is in a sandbox already, and the engine asks that one for others.
  bool isInSandbox = false;
};

/// Asks once, in processes of its own, and never lets a page run outside the sandbox.
class EngineCheck : public Shared<EngineCheck>, public Trackable {
 public:
  static EngineCheck& standard();
  explicit EngineCheck(EnginePrograms programs) : programs_(std::move(programs)) {}

  /// None until it is known.
  std::optional<bool> isUsable() const { return usable_; }
  /// Calls `known` once `isUsable` is, on a later turn of the run loop. The first call begins to
  /// ask. Where pages cannot run, one line says why.
  void ask(std::function<void()> known);

 private:
  struct Run;
  void begin();
  /// `library` is what the program names when it is in order.
  void run(const std::vector<std::string>& command, const std::string& program,
           const char* library);
  void finish(const std::string& problem);

  EnginePrograms programs_;
  std::optional<bool> usable_;
  bool isAsking_ = false;
  int running_ = 0;
  std::vector<std::function<void()>> waiting_;
};

}  // namespace valdren::platform
