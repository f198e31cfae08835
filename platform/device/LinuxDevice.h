// The machine, as the Linux system describes it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/device/Device.h"

namespace valdren::platform {

class LinuxDevice final : public Device {
 public:
  /// `root` replaces the file system's root in tests.
  explicit LinuxDevice(std::string root = "") : root_(std::move(root)) {}
  static LinuxDevice& instance();

  std::string model() const override;
  std::string systemVersion() const override;
  std::string uniqueIdentifier() const override;
  std::string machine() const override;
  std::optional<InterfaceIdiom> userInterfaceIdiom() const override;
  std::vector<std::string> preferredLanguages() const override;
  bool hasSuperuserRights() const override;

  /// Decides the idiom instead of the monitor's size.
  void setIdiom(std::optional<InterfaceIdiom> idiom) { idiom_ = idiom; }

 private:
  std::string machineIdentifier() const;

  std::string root_;
  std::optional<InterfaceIdiom> idiom_;
};

/// The languages in the values of LANGUAGE, LC_ALL, LC_MESSAGES and LANG (null when unset), as
/// "pt-PT".
std::vector<std::string> languagesFrom(const char* language, const char* all, const char* messages,
                                       const char* lang);

}  // namespace valdren::platform
