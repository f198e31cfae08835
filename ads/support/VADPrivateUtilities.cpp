#include "ads/support/VADPrivateUtilities.h"

#include <unordered_map>

#include "platform/base/MainThread.h"

namespace valdren {
namespace {

std::unordered_map<const void*, std::shared_ptr<VADPrivateObject>>& table() {
  // Never destroyed: companions may be looked up while the process ends.
  static auto* const table = new std::unordered_map<const void*, std::shared_ptr<VADPrivateObject>>;
  return *table;
}

}  // namespace

void VADPrivateUtilities::setPrivateObject(std::shared_ptr<VADPrivateObject> object,
                                           const void* forKey) {
  if (!object) {
    removePrivateObjectForKey(forKey);
    return;
  }
  // The former companion goes last: its end may look into the table.
  table()[forKey].swap(object);
}

std::shared_ptr<VADPrivateObject> VADPrivateUtilities::find(const void* key) {
  platform::assertMainThread();
  const auto found = table().find(key);
  return found == table().end() ? nullptr : found->second;
}

void VADPrivateUtilities::removePrivateObjectForKey(const void* key) {
  platform::assertMainThread();
  const auto found = table().find(key);
  if (found == table().end()) return;
  const std::shared_ptr<VADPrivateObject> goesAfterTheEntry = std::move(found->second);
  table().erase(found);
}

}  // namespace valdren
