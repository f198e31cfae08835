#include "platform/base/MainThread.h"

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace valdren::platform {
namespace {

/// Set during static initialisation, which runs on the main thread. No thread at all before that.
const std::thread::id kMainThread = std::this_thread::get_id();

}  // namespace

bool isMainThread() {
  return kMainThread == std::this_thread::get_id() || kMainThread == std::thread::id();
}

void requireMainThread(const char* caller) {
  if (isMainThread()) return;
  std::fprintf(stderr, "%s was called outside the main thread.\n", caller);
  std::abort();
}

}  // namespace valdren::platform
