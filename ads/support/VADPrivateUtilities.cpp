#include "ads/support/VADPrivateUtilities.h"

#include <unordered_map>

namespace valdren {
namespace {

std::unordered_map<const void*, std::shared_ptr<void>>& table() {
  // Never destroyed: companions may be looked up while the process ends.
  static auto* const table = new std::unordered_map<const void*, std::shared_ptr<void>>;
  return *table;
}

}  // namespace

void VADPrivateUtilities::store(std::shared_ptr<void> object, const void* key) {
  if (!object) {
    removePrivateObjectForKey(key);
    return;
  }
  // The former companion goes last: its end may look into the table.
  table()[key].swap(object);
}

std::shared_ptr<void> VADPrivateUtilities::find(const void* key) {
  const auto found = table().find(key);
  return found == table().end() ? nullptr : found->second;
}

void VADPrivateUtilities::removePrivateObjectForKey(const void* key) {
  const auto found = table().find(key);
  if (found == table().end()) return;
  const std::shared_ptr<void> goesAfterTheEntry = std::move(found->second);
  table().erase(found);
}

}  // namespace valdren
