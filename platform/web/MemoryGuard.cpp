#include "platform/web/MemoryGuard.h"

#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"

namespace valdren::platform {
namespace {

/// A page can store hundreds of megabytes per second.
constexpr Seconds kSeconds{1};
/// The system shortens process names to 15 characters.
constexpr const char* kName = "WebKitNetworkPr";

std::string folderOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

bool isNetworkProcess(pid_t process) {
  std::string name;
  std::getline(std::ifstream(folderOf(process) + "/comm"), name);
  return name == kName;
}

/// The process id; 0 when this process has no such child.
pid_t findNetworkProcess() {
  std::error_code error;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task", error)) {
    std::ifstream children(thread.path() / "children");
    for (pid_t child = 0; children >> child;) {
      if (isNetworkProcess(child)) return child;
    }
  }
  return 0;
}

/// In bytes; 0 when the process has ended.
double residentMemory(pid_t process) {
  double all = 0;
  double resident = 0;
  std::ifstream(folderOf(process) + "/statm") >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

class MemoryGuard {
 public:
  explicit MemoryGuard(double mebibytes) : most_(mebibytes * 1024 * 1024) { schedule(); }

 private:
  void schedule() {
    next_ = loop_.scheduleTimer(kSeconds, [this] { look(); });
  }

  void look() {
    schedule();
    // The id of an ended child is not reused before the engine has waited for it.
    if (process_ == 0 || !isNetworkProcess(process_)) process_ = findNetworkProcess();
    if (process_ == 0 || residentMemory(process_) <= most_) return;
    logWarning("Web pages store too much; the engine's network process is ended.");
    kill(process_, SIGKILL);
    process_ = 0;
  }

  double most_;
  // A loop that stands in for it for a while must not take the next look along.
  RunLoop& loop_ = RunLoop::shared();
  pid_t process_ = 0;
  std::unique_ptr<Timer> next_;
};

}  // namespace

void guardNetworkProcess(double mebibytes) {
  // Never destroyed: the run loop may not exist any more when the process ends.
  static const auto* const guard = findNetworkProcess() == 0 ? new MemoryGuard(mebibytes) : nullptr;
  static_cast<void>(guard);
}

}  // namespace valdren::platform
