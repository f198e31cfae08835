#include "tests/support/FakeUserDefaults.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

std::optional<platform::Value> FakeUserDefaults::objectForKey(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

void FakeUserDefaults::setObject(std::string_view key, platform::Value value) {
  values_.insert_or_assign(std::string(key), std::move(value));
}

void FakeUserDefaults::removeObject(std::string_view key) {
  const auto found = values_.find(key);
  if (found != values_.end()) values_.erase(found);
}

void FakeUserDefaults::synchronize() {
  ++synchronizeCount_;
  written_ = values_;
}

bool FakeUserDefaults::flush() {
  synchronize();
  return true;
}

}  // namespace quorbel_tests
