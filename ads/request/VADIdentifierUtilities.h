// What ad requests tell about the device and the application.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/base/Shared.h"
#include "platform/base/Value.h"
#include "platform/ui/Geometry.h"

namespace valdren {

/// What cannot change while the process runs is read once, at creation or on first use, and kept;
/// everything else is read at each call. Main thread only.
class VADIdentifierUtilities : public platform::Shared<VADIdentifierUtilities> {
 public:
  static VADIdentifierUtilities& sharedInstance() { return shared(); }
  /// What `sharedInstance` gives unless it is replaced.
  static VADIdentifierUtilities& standard();
  VADIdentifierUtilities();

  /// Also true when the device cannot tell its idiom.
  bool isPhoneIdiom() const { return isPhoneIdiom_; }
  /// Whether the protection that applications rely on is off; docs/identity.md says when.
  bool isJailbroken() const { return isJailbroken_; }
  /// Runs the check afresh.
  static bool checkIsJailbroken();

  /// Pixels a point; 1 when it cannot be told.
  double screenDensity() const;
  bool isOrientationLandscape() const;
  /// The application's part of the screen with the status bar, in points.
  platform::Size screenSize() const;

  std::string deviceModel() const;
  std::string osVersion() const;
  /// The first three numbers of the system's version, 0 for a missing one; null arguments are left
  /// out. Beyond 32 bits they saturate.
  static void getOSMajor(int* major, int* minor, int* bugFix);
  static bool isOSAtLeastMajor(int major, int minor, int bug);

  /// The dictionary in the property list file; empty when there is none. Without what JSON cannot
  /// hold.
  static platform::Dictionary readITunesMetadataFileAt(const std::string& path);
  const platform::Dictionary& iTunesMetadata();

  /// The person's first language in lower case, as pt-pt; none when no language is set.
  const std::optional<std::string>& locale();
  /// 32 upper-case hexadecimal digits: the digest of the device's identifier.
  const std::string& deviceIdentifier();
  const std::string& deviceSubmodel();

  /// 1 speaker or unknown, 2 headphones, 3 nowhere, 5 anything else.
  int audioRoute() const;

  /// Each text with whether the system can open it as a URL.
  platform::Dictionary canOpenURLs(const std::vector<std::string>& urls) const;

  /// The request's keys. Those without a value are left out.
  platform::Dictionary parameters();

 private:
  bool isPhoneIdiom_;
  std::optional<platform::Dictionary> iTunesMetadata_;
  bool isJailbroken_;
  std::optional<std::string> deviceIdentifier_;
  std::optional<std::string> deviceSubmodel_;
  std::optional<std::string> locale_;
};

}  // namespace valdren
