// Which ad network the banner asks.
#pragma once

#include <memory>

#include "app/Options.h"

namespace sandbox {
class Sandbox;
}

namespace quorbel {

/// The network that the command line names; without one, a small network inside this process, which
/// ends with this object. An option that is missing follows the other one.
class AdNetworkSetup {
 public:
  /// Tells the advertising client. To be made before the first banner.
  explicit AdNetworkSetup(const Options& options);
  ~AdNetworkSetup();
  AdNetworkSetup(const AdNetworkSetup&) = delete;
  AdNetworkSetup& operator=(const AdNetworkSetup&) = delete;

 private:
  std::unique_ptr<sandbox::Sandbox> builtIn_;
};

}  // namespace quorbel
