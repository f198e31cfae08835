// Whether the web engine can show pages on this system. Without this check the engine aborts the
// whole program when one of its processes does not start.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Result.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Shared.h"

namespace valdren::platform {

class Library;

/// The engine's library and the programs that it starts; absolute paths, or names to find in PATH.
struct EnginePrograms {
  /// What is installed. The engine's folder is not known before its library is loaded.
  static EnginePrograms installed();

  /// The folder of the programs that belong to a loaded library; empty when there is none.
  static std::string folderOf(const Library& library);

  Library* library = nullptr;
  std::string sandbox = "bwrap";
  std::string busFilter = "xdg-dbus-proxy";
  /// The folder of the engine's own programs; empty when it is unknown. None: `folderOf` the
  /// library.
  std::optional<std::string> folder = std::nullopt;
  /// Whether the application itself runs in a sandbox. The engine then asks that sandbox for
  /// further ones.
  bool isInSandbox = false;
};

/// Loads the engine once the first window is shown, and tests its programs in separate processes.
/// Pages never run outside the sandbox.
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
  /// On a thread of its own: the engine takes as long to load as a window to open.
  void load();
  void testPrograms();
  /// `library` is a library name that a working program prints.
  void run(const std::vector<std::string>& command, const std::string& program,
           const char* library);
  void finish(const Result<>& checked);

  EnginePrograms programs_;
  std::optional<bool> usable_;
  bool isAsking_ = false;
  std::unique_ptr<Timer> firstFrame_;
  int running_ = 0;
  std::vector<std::function<void()>> waiting_;
};

}  // namespace valdren::platform
