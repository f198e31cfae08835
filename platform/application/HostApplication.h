// The application of somebody else that shows our views.
#pragma once

#include "platform/application/LinuxApplication.h"

typedef struct _GApplication GApplication;

namespace valdren::platform {

class HostApplication final : public ApplicationAdapter {
 public:
  /// Tells of the start in the next turn, and follows the process's default application as soon as
  /// there is one. Called for each window, does so once.
  static void follow();

  void setHeld(bool held) override;
  void setIdleInhibited(bool inhibited) override;

 private:
  explicit HostApplication(GApplication* application);

  GApplication* application_;
  unsigned inhibitCookie_ = 0;
};

}  // namespace valdren::platform
