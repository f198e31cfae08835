#include "tests/support/Loop.h"

#include <glib.h>

namespace quorbel_tests {

bool runUntil(const std::function<bool()>& done, double seconds) {
  // Changes by other threads do not wake this loop.
  const guint tick = g_timeout_add(
      20, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  const bool finished = runUndisturbedUntil(done, seconds);
  g_source_remove(tick);
  return finished;
}

bool runUndisturbedUntil(const std::function<bool()>& done, double seconds) {
  bool expired = false;
  const guint timeout = g_timeout_add(
      static_cast<guint>(seconds * 1000),
      [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
      },
      &expired);
  bool finished = done();
  while (!finished && !expired) {
    g_main_context_iteration(nullptr, TRUE);
    finished = done();
  }
  if (!expired) g_source_remove(timeout);
  return finished;
}

void runFor(double seconds) {
  runUntil([] { return false; }, seconds);
}

}  // namespace quorbel_tests
