// Writes small files on a thread of its own, so that nobody waits for the disk.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace valdren::platform {

/// What is put is written soon, each file whole and synced: a kill at any instant leaves its old or
/// its new content. Files are written in the order in which they were first put since they were
/// last written, and of several contents put meanwhile only the newest. After that it rests for
/// half a second, so that whoever puts without end does not keep the disk busy. Where no thread can
/// be had, it writes at once. What cannot be written waits for the next put, with one log line.
class StateWriter {
 public:
  explicit StateWriter(std::string folder) : folder_(std::move(folder)) {}
  /// Writes what is left.
  ~StateWriter();
  StateWriter(const StateWriter&) = delete;
  StateWriter& operator=(const StateWriter&) = delete;

  /// The content that the file gets; none removes it.
  void put(std::string path, std::optional<std::string> content);
  /// Ends the rest.
  void hasten();
  /// Waits until all is written, for five seconds at most. False when it is not.
  bool flush();

 private:
  using Clock = std::chrono::steady_clock;

  struct File {
    std::string path;
    std::optional<std::string> content;
  };
  using Files = std::vector<File>;

  static void putInto(Files& files, File file);
  static std::string write(const File& file);
  void start();
  void run();
  void writeAll(std::unique_lock<std::mutex>& lock);

  const std::string folder_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  Files files_;  // those to be written
  Clock::time_point restsUntil_;
  bool wanted_ = false;  // something was put since the last attempt
  bool writing_ = false;
  bool hurried_ = false;
  bool ending_ = false;
  bool complained_ = false;
  std::thread thread_;
};

}  // namespace valdren::platform
