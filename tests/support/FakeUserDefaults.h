// User defaults that live in memory, for tests that read back what was kept.
#pragma once

#include <map>
#include <string>

#include "platform/storage/UserDefaults.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// In force from its construction to its destruction. `written` holds what a process that is
/// started now would find: the values as they were at the last `synchronize`.
class FakeUserDefaults final : public platform::UserDefaults {
 public:
  using Values = std::map<std::string, platform::Value, std::less<>>;

  std::optional<platform::Value> objectForKey(std::string_view key) const override;
  void setObject(std::string_view key, platform::Value value) override;
  void removeObject(std::string_view key) override;
  void synchronize() override;
  void hasten() override {}
  bool flush() override;

  const Values& values() const { return values_; }
  const Values& written() const { return written_; }
  int synchronizeCount() const { return synchronizeCount_; }

 private:
  Values values_;
  Values written_;
  int synchronizeCount_ = 0;
  platform::UserDefaults::Replacement replacement_{*this};
};

}  // namespace quorbel_tests
