#include "app/quorbelAppDelegate.h"

namespace quorbel {

bool quorbelAppDelegate::applicationDidFinishLaunching() {
  window_->setRootViewController(viewController_);
  window_->makeKeyAndVisible();
  return true;
}

}  // namespace quorbel
