// The application of somebody else that shows our views.
#pragma once

#include "platform/application/LinuxApplication.h"

typedef struct _GApplication GApplication;

namespace valdren::platform {

class HostApplication final : public ApplicationAdapter {
 public:
  /// Follows the process's default application from its next turn on, once for all of its windows.
  /// Without one, tells only of the start.
  static void follow();

  void setHeld(bool held) override;
  void setIdleInhibited(bool inhibited) override;

 private:
  explicit HostApplication(GApplication* application);

  GApplication* application_;
  unsigned inhibitCookie_ = 0;
};

}  // namespace valdren::platform
