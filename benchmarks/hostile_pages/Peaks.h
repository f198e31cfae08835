// The most memory that a program and what it has started took in a while.
#pragma once

#include <mutex>
#include <thread>

namespace benchmarks {

/// Looks ten times a second, on a thread of its own.
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
