// Keeps a web process ready for the page behind an ad, so that a tap does not have to wait for one.
#pragma once

#include <memory>

#include "platform/base/RunLoop.h"
#include "platform/base/WeakPtr.h"

namespace valdren {

/// There is one process for all ads. It costs about as much memory as an empty page, so it is given
/// back in the background, when memory is short, and when this is destroyed.
class VADReadyPage final : public platform::WeakTarget {
 public:
  VADReadyPage();
  ~VADReadyPage();
  VADReadyPage(const VADReadyPage&) = delete;
  VADReadyPage& operator=(const VADReadyPage&) = delete;

  /// Has a process ready soon, and again whenever the person comes back to the ad.
  void adIsShown();

 private:
  void keepSoon();
  void giveBack();
  void observe(const char* name, void (VADReadyPage::*handler)());

  std::unique_ptr<platform::Timer> soon_;
  bool isShown_ = false;
};

}  // namespace valdren
