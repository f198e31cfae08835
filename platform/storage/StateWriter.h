// Writes small files on a background thread, so that callers do not wait for the disk.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/base/Result.h"

namespace valdren::platform {

/// Each file is written whole and synced: a kill at any instant leaves the old or the new content.
/// Files are written in the order in which they were first put since the last write; only the
/// newest content of a file is written. After each write the thread rests for half a second, which
/// limits the load on the disk. Without a thread, `put` writes at once. Files that cannot be
/// written wait for the next `put`, with one log line.
class StateWriter {
 public:
  explicit StateWriter(std::string folder) : folder_(std::move(folder)) {}
  /// Writes the remaining files.
  ~StateWriter();
  StateWriter(const StateWriter&) = delete;
  StateWriter& operator=(const StateWriter&) = delete;

  /// Sets the content of a file; none removes the file.
  void put(std::string path, std::optional<std::string> content);
  /// Writes without waiting for the rest to end.
  void hasten();
  /// Waits until all is written, for at most five seconds. False when it is not.
  bool flush();

 private:
  using Clock = std::chrono::steady_clock;

  struct File {
    std::string path;
    std::optional<std::string> content;
  };
  using Files = std::vector<File>;

  static void putInto(Files& files, File file);
  static Result<> write(const File& file);
  void start();
  void run();
  void writeAll(std::unique_lock<std::mutex>& lock);

  const std::string folder_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  Files files_;  // waiting to be written
  Clock::time_point restsUntil_;
  bool wanted_ = false;  // something was put since the last attempt
  bool writing_ = false;
  bool hurried_ = false;
  bool ending_ = false;
  bool complained_ = false;
  std::thread thread_;
};

}  // namespace valdren::platform
