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

  std::optional<platform::Value> objectForKey(std::string_view key) const override {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  void setObject(std::string_view key, platform::Value value) override {
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void removeObject(std::string_view key) override { values_.erase(std::string(key)); }
  void synchronize() override {
    ++synchronizeCount_;
    written_ = values_;
  }
  void hasten() override {}
  bool flush() override {
    synchronize();
    return true;
  }

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
