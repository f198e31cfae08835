// The application's resource files, identifier and version.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Export.h"

namespace valdren::platform {

class VALDREN_EXPORT Bundle {
 public:
  Bundle();
  ~Bundle();

  /// The running application's bundle. Resources are searched in this order: the folder that was
  /// set, QUORBEL_RESOURCES, "resources" beside the executable, and "../share/quorbel" from there.
  static Bundle& main();

  /// The path of the resource, or none when there is no such file. Names with a "/" or ".." find
  /// nothing.
  std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const;

  /// The application's identifier in reverse-domain form; never empty.
  const std::string& identifier() const;
  bool isIdentifierSet() const;
  void setIdentifier(std::string identifier);
  /// The application's version; none when it has none.
  const std::optional<std::string>& version() const;
  void setVersion(std::optional<std::string> version);
  /// A folder that is searched before all others; for an embedding application and for tests.
  void setResourceFolder(std::string folder);

 private:
  struct Members;
  const std::unique_ptr<Members> members_;
};

}  // namespace valdren::platform
