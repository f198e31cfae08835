#include "benchmarks/support/LoopWork.h"

#include <glib.h>
#include <time.h>

#include <algorithm>

namespace benchmarks {
namespace {

double milliseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

struct Watch {
  LoopWork work;
  double turnBegan = milliseconds(CLOCK_MONOTONIC);
  double turnProcessor = milliseconds(CLOCK_THREAD_CPUTIME_ID);

  void endTurn() {
    const double processor = milliseconds(CLOCK_THREAD_CPUTIME_ID) - turnProcessor;
    work.processor += processor;
    work.longestProcessor = std::max(work.longestProcessor, processor);
    work.longestStall = std::max(work.longestStall, milliseconds(CLOCK_MONOTONIC) - turnBegan);
    beginTurn();
  }
  void beginTurn() {
    turnBegan = milliseconds(CLOCK_MONOTONIC);
    turnProcessor = milliseconds(CLOCK_THREAD_CPUTIME_ID);
  }
};

Watch& watch() {
  static Watch watch;
  return watch;
}

gint wait(GPollFD* descriptors, guint count, gint patience) {
  watch().endTurn();
  const gint ready = g_poll(descriptors, count, patience);
  watch().beginTurn();
  return ready;
}

}  // namespace

void restartLoopWork() {
  static const bool watching = (g_main_context_set_poll_func(nullptr, wait), true);
  static_cast<void>(watching);
  watch() = {};
}

LoopWork loopWork() {
  watch().endTurn();
  return watch().work;
}

}  // namespace benchmarks
