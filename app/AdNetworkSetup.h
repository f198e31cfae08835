// The ad network for the banner.
#pragma once

#include <memory>

#include "app/Options.h"

namespace sandbox {
class Sandbox;
}

namespace quorbel {

/// The network from the command line; by default a small network inside this process, which ends
/// with this object. If only one of the two addresses is given, it is used for both.
class AdNetworkSetup {
 public:
  /// Configures the advertising client. Made before the first banner.
  explicit AdNetworkSetup(const Options& options);
  ~AdNetworkSetup();
  AdNetworkSetup(const AdNetworkSetup&) = delete;
  AdNetworkSetup& operator=(const AdNetworkSetup&) = delete;

 private:
  std::unique_ptr<sandbox::Sandbox> builtIn_;
};

}  // namespace quorbel
