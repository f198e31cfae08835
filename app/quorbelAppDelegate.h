// Shows the soundboard's screen in the window at launch.
#pragma once

#include <memory>

#include "platform/application/ApplicationMain.h"

namespace platform = valdren::platform;

namespace quorbel {

class quorbelAppDelegate final : public platform::ApplicationDelegate {
 public:
  const std::shared_ptr<platform::Window>& window() const { return window_; }
  void setWindow(std::shared_ptr<platform::Window> window) override { window_ = std::move(window); }
  const std::shared_ptr<platform::ViewController>& viewController() const {
    return viewController_;
  }
  void setViewController(std::shared_ptr<platform::ViewController> viewController) override {
    viewController_ = std::move(viewController);
  }

  bool applicationDidFinishLaunching() override;

 private:
  std::shared_ptr<platform::Window> window_;
  std::shared_ptr<platform::ViewController> viewController_;
};

}  // namespace quorbel
