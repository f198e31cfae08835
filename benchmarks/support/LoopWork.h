// The main thread's work between the waits of its loop.
#pragma once

namespace benchmarks {

/// Since the last `restart`. In milliseconds.
struct LoopWork {
  double processor = 0;         // the main thread's time on a processor
  double longestStall = 0;      // the longest turn, including waits for the processor
  double longestProcessor = 0;  // the longest turn by the thread's own time
};

/// Watches the default main context from the first call on.
void restartLoopWork();
LoopWork loopWork();

}  // namespace benchmarks
