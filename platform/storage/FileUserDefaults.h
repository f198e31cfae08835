// User defaults in a folder, one file per key.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/storage/StateWriter.h"
#include "platform/storage/UserDefaults.h"

namespace valdren::platform {

/// Each file is written to a temporary one, synced and renamed, on a background thread. A file that
/// cannot be read back (damaged, not a regular file, over 4 MiB) is renamed to a name ending in
/// ".damaged", with one log line, and counts as absent. Destroying the object writes what is left.
class FileUserDefaults final : public UserDefaults {
 public:
  enum class Access { ReadWrite, ReadOnly };

  /// The folder is created at the first write. Without a folder, or with read-only access, values
  /// are kept in memory only.
  explicit FileUserDefaults(std::optional<std::string> folder, Access access = Access::ReadWrite);

  /// Where the standard store keeps its files; none when there is no state folder.
  static std::optional<std::string> standardFolder();

  std::optional<Value> objectForKey(std::string_view key) const override;
  void setObject(std::string_view key, Value value) override;
  void removeObject(std::string_view key) override;
  void synchronize() override;
  void hasten() override;
  bool flush() override;

 private:
  using Kept = std::map<std::string, std::optional<Value>, std::less<>>;

  /// The value in memory. The first call reads it from its file.
  const std::optional<Value>& kept(std::string_view key) const;
  std::string pathFor(std::string_view key) const;
  std::optional<Value> read(const std::string& path) const;
  void noteChange(std::string_view key);

  std::optional<std::string> folder_;
  Access access_;
  mutable Kept kept_;
  std::vector<std::string> changed_;  // in the order of their first change
  std::optional<StateWriter> writer_;
  bool complained_ = false;
};

}  // namespace valdren::platform
