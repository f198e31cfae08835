// Which thread is the main one, and a check for code that runs only there.
#pragma once

namespace valdren::platform {

/// Whether this is the thread that initialised the program's statics. Callable on any thread.
bool isMainThread();

/// Ends the program when this is not the main thread. `caller` is for the message; the default is
/// the calling function's name.
void requireMainThread(const char* caller);

/// The check for everything that is documented as "main thread only". Active in this project's
/// debug builds, which the tests use, and never in an embedder's code.
inline void assertMainThread([[maybe_unused]] const char* caller = __builtin_FUNCTION()) {
#ifdef VALDREN_THREAD_CHECKS
  requireMainThread(caller);
#endif
}

}  // namespace valdren::platform
