// Whether the application has finished launching.
#pragma once

#include "platform/base/WeakPtr.h"

namespace valdren {

/// Watches from its construction on, until it has seen the launch finish.
class VADLaunchObserver : public platform::WeakTarget {
 public:
  /// The process's own, which watches from the process's start on: a first banner may well be made
  /// after the launch.
  static VADLaunchObserver& shared();

  VADLaunchObserver() { observe(); }
  VADLaunchObserver(const VADLaunchObserver&) = delete;
  VADLaunchObserver& operator=(const VADLaunchObserver&) = delete;

  bool didAppFinishLaunching() const { return didAppFinishLaunching_; }
  /// Forgets what it saw and watches anew, as in a new process.
  void reset();

 private:
  void observe();

  bool didAppFinishLaunching_ = false;
};

}  // namespace valdren
