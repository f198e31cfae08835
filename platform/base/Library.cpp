#include "platform/base/Library.h"

#include <dlfcn.h>

#include <cstdlib>

#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

constexpr const char* kErrorDomain = "platform.library";

}  // namespace

Result<> Library::load() {
  const std::lock_guard lock(mutex_);
  return handle_ ? Result<>() : open();
}

Result<> Library::open() {
  void* const handle = dlopen(file_, RTLD_NOW | RTLD_LOCAL);
  if (!handle) return Error{kErrorDomain, 0, dlerror()};
  for (LibraryFunction* each = functions_; each; each = each->next_) {
    void* const address = dlsym(handle, each->name_);
    if (!address) {
      return Error{kErrorDomain, 0, std::string(file_) + " has no function " + each->name_};
    }
    each->address_.store(address, std::memory_order_release);
  }
  handle_ = handle;
  return {};
}

std::string Library::path() const {
  Dl_info found{};
  void* const any = functions_ ? functions_->address_.load() : nullptr;
  return any && dladdr(any, &found) ? found.dli_fname : "";
}

void* LibraryFunction::require() const {
  if (const Result<> loaded = library_.load(); !loaded) {
    logWarning(loaded.error().message);
    std::abort();
  }
  return address_.load(std::memory_order_acquire);
}

}  // namespace valdren::platform
