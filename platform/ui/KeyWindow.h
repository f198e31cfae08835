// A window that counts as the key window for a moment.
#pragma once

#include "platform/ui/Window.h"

namespace valdren::platform {

/// The former key window is back when this is destroyed. A null window changes nothing.
class KeyWindow {
 public:
  explicit KeyWindow(Window* window) : former_(window ? Window::keyWindow() : nullptr) {
    if (window) window->makeKey();
  }
  ~KeyWindow() {
    if (former_) former_->makeKey();
  }
  KeyWindow(const KeyWindow&) = delete;
  KeyWindow& operator=(const KeyWindow&) = delete;

 private:
  const WeakPtr<Window> former_;
};

}  // namespace valdren::platform
