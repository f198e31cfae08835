// State that outlives the process: a few named values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Shared.h"
#include "platform/Value.h"

namespace platform {

class UserDefaults : public Shared<UserDefaults> {
 public:
  /// The store in the user's state folder.
  static UserDefaults& standard();
  virtual ~UserDefaults() = default;

  /// The value kept under the key; none when there is none.
  virtual std::optional<Value> objectForKey(std::string_view key) const = 0;
  /// Keeps the value, in memory until `synchronize`.
  virtual void setObject(std::string_view key, Value value) = 0;
  virtual void removeObject(std::string_view key) = 0;
  /// Writes what has changed so that a kill at any instant leaves the old or the new content.
  /// False, with one log line, when it cannot be written; the values stay in memory.
  virtual bool synchronize() = 0;
};

}  // namespace platform
