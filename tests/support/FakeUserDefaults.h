// User defaults in memory that a test can read back.
#pragma once

#include <map>
#include <string>

#include "platform/storage/UserDefaults.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Replaces the user defaults while it exists. `written` holds the values of the last
/// `synchronize`, which a new process would find.
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
