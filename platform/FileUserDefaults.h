// User defaults in a folder, one file a key.
#pragma once

#include <map>
#include <set>
#include <string>

#include "platform/UserDefaults.h"

namespace platform {

/// Each file is written to a temporary one, synced and renamed. A file that cannot be read back is
/// set aside under a name ending in ".damaged", with one log line, and counts as absent.
class FileUserDefaults final : public UserDefaults {
 public:
  enum class Access { ReadWrite, ReadOnly };

  /// The folder is made at the first write. Without one, values are kept in memory only; so is what
  /// is set where the access is read-only.
  explicit FileUserDefaults(std::optional<std::string> folder, Access access = Access::ReadWrite)
      : folder_(std::move(folder)), access_(access) {}

  /// Where the standard store keeps its files; none when there is no state folder.
  static std::optional<std::string> standardFolder();

  std::optional<Value> objectForKey(std::string_view key) const override;
  void setObject(std::string_view key, Value value) override;
  void removeObject(std::string_view key) override;
  bool synchronize() override;

 private:
  using Kept = std::map<std::string, std::optional<Value>, std::less<>>;

  /// The value in memory, read from its file at first.
  const std::optional<Value>& kept(std::string_view key) const;
  std::string pathFor(std::string_view key) const;
  std::optional<Value> read(const std::string& path) const;

  std::optional<std::string> folder_;
  Access access_;
  mutable Kept kept_;
  std::set<std::string, std::less<>> changed_;
  bool complained_ = false;
  bool tidied_ = false;
};

}  // namespace platform
