// User defaults in a folder, one file a key.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/storage/StateWriter.h"
#include "platform/storage/UserDefaults.h"

namespace valdren::platform {

/// Each file is written to a temporary one, synced and renamed, on a thread of its own. A file that
/// cannot be read back (damaged, no regular file, over 4 MiB) is set aside under a name ending in
/// ".damaged", with one log line, and counts as absent. Written to the end when it is destroyed.
class FileUserDefaults final : public UserDefaults {
 public:
  enum class Access { ReadWrite, ReadOnly };

  /// The folder is made at the first write. Without one, values are kept in memory only; so is what
  /// is set where the access is read-only.
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

  /// The value in memory, read from its file at first.
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
