// The peak memory of a program and its children.
#pragma once

#include <mutex>
#include <thread>

namespace benchmarks {

/// Samples ten times a second, on its own thread.
class Peaks {
 public:
  Peaks();
  ~Peaks();
  Peaks(const Peaks&) = delete;
  Peaks& operator=(const Peaks&) = delete;

  /// In MiB, since the last `restart`.
  struct Memory {
    double own = 0;
    double web = 0;  // of all web processes together
    double network = 0;
  };
  void restart();
  Memory peak() const;

 private:
  void look();

  mutable std::mutex mutex_;
  Memory peak_;
  std::jthread thread_;
};

}  // namespace benchmarks
