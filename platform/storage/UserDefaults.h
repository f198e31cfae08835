// State that outlives the process: a few named values.
#pragma once

#include <optional>
#include <string_view>

#include "platform/base/Shared.h"
#include "platform/base/Value.h"

namespace valdren::platform {

class UserDefaults : public Shared<UserDefaults> {
 public:
  /// The store in the user's state folder.
  static UserDefaults& standard();
  virtual ~UserDefaults() = default;

  /// The value for the key; none when there is none.
  virtual std::optional<Value> objectForKey(std::string_view key) const = 0;
  /// Stores the value, in memory until `synchronize`.
  virtual void setObject(std::string_view key, Value value) = 0;
  virtual void removeObject(std::string_view key) = 0;
  /// Starts writing the changed values, without waiting for the disk. A kill at any instant leaves
  /// the old or the new content of each value. Values that cannot be written stay in memory, with
  /// one log line.
  virtual void synchronize() = 0;
  /// Writes the synchronised values without delay, because the application may be stopped from now
  /// on.
  virtual void hasten() = 0;
  /// Synchronises and waits until all is written, for at most a few seconds. False when it is not.
  virtual bool flush() = 0;
};

}  // namespace valdren::platform
