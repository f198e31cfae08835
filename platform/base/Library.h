// Shared libraries that are loaded when they are needed for the first time. A program that links a
// large library waits for it before it can open its window.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

#include "platform/base/Result.h"

namespace valdren::platform {

class LibraryFunction;

/// One library, which is never unloaded. Lives as long as the process.
class Library {
 public:
  /// `file` is what the dynamic linker knows the library by, such as "libexample.so.1".
  explicit Library(const char* file) : file_(file) {}

  /// Loads the library and finds its functions, unless that is done. The error names the library or
  /// the function that is missing. May be called on any thread; others wait meanwhile.
  Result<> load();
  /// The path of the file that was loaded; empty when none is.
  std::string path() const;

 private:
  friend class LibraryFunction;
  Result<> open();

  const char* file_;
  void* handle_ = nullptr;
  LibraryFunction* functions_ = nullptr;
  std::mutex mutex_;
};

/// A function of a library, by name.
class LibraryFunction {
 public:
  LibraryFunction(Library& library, const char* name)
      : library_(library), name_(name), next_(std::exchange(library.functions_, this)) {}

 protected:
  /// Loads the library when nobody has. Ends the program when it cannot be loaded, so whoever can
  /// do without it asks `Library::load` first.
  void* address() const {
    void* const found = address_.load(std::memory_order_acquire);
    return found ? found : require();
  }

 private:
  friend class Library;
  void* require() const;

  Library& library_;
  const char* name_;
  LibraryFunction* next_;
  std::atomic<void*> address_ = nullptr;
};

template <class Signature>
class OnDemand;

/// Is called like the function of that name, which it stands for.
template <class Returned, class... Arguments>
class OnDemand<Returned(Arguments...)> : private LibraryFunction {
 public:
  using LibraryFunction::LibraryFunction;
  Returned operator()(Arguments... arguments) const {
    return reinterpret_cast<Returned (*)(Arguments...)>(address())(arguments...);
  }
};

}  // namespace valdren::platform

// Names take no parentheses. NOLINTBEGIN(bugprone-macro-parentheses)
/// Declares a variable that stands for a function of a library's header and hides it from all code
/// in the same namespace.
#define VALDREN_ON_DEMAND(library, function)                                  \
  inline const ::valdren::platform::OnDemand<decltype(::function)> function { \
    library, #function                                                        \
  }
// NOLINTEND(bugprone-macro-parentheses)
