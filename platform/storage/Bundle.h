// The application's resource files, identifier and version.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace valdren::platform {

class Bundle {
 public:
  /// The running application's bundle. Resources are searched in this order: the folder that was
  /// set, QUORBEL_RESOURCES, "resources" beside the executable, and "../share/quorbel" from there.
  static Bundle& main();

  /// The path of the resource, or none when there is no such file. Names with a "/" or ".." find
  /// nothing.
  std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const;

  /// The application's identifier in reverse-domain form; never empty.
  const std::string& identifier() const { return identifier_; }
  void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }
  /// The application's version; none when it has none.
  const std::optional<std::string>& version() const { return version_; }
  void setVersion(std::optional<std::string> version) { version_ = std::move(version); }
  /// A folder that is searched before all others; for an embedding application and for tests.
  void setResourceFolder(std::string folder) { folder_ = std::move(folder); }

 private:
  std::string identifier_ = "com.valdren.host";
  std::optional<std::string> version_;
  std::string folder_;
};

}  // namespace valdren::platform
