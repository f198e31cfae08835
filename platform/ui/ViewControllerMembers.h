// What a screen holds, for itself and the window that moves it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/ui/ViewController.h"

namespace valdren::platform {

struct ViewController::Members {
  std::shared_ptr<View> view;
  Rect initialFrame{0, 0, 320, 480};
  std::string interfaceName;
  std::string interfaceObject;
  std::map<std::string, std::function<void()>> actions;
  ModalTransitionStyle transitionStyle = ModalTransitionStyle::CoverVertical;
  ModalPresentationStyle presentationStyle = ModalPresentationStyle::FullScreen;
  std::shared_ptr<ViewController> modal;
  WeakPtr<ViewController> presenting;
  WeakPtr<Window> window;
};

}  // namespace valdren::platform
