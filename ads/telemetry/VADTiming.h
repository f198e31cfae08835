// One interval, measured on a monotonic clock, and what belongs to it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/base/Value.h"

namespace valdren {

/// Idle (never started), running, or ended. Instants are seconds since the machine's start.
class VADTiming {
 public:
  /// The monotonic clock's present reading.
  static double counter();

  explicit VADTiming(std::string category) : category_(std::move(category)) {}
  /// The timing that a representation describes; what is missing or of another kind reads as 0 or
  /// empty. Null without a category.
  static std::shared_ptr<VADTiming> initWithDictionaryRepresentation(
      const platform::Dictionary& representation);
  std::shared_ptr<VADTiming> copy() const;

  const std::string& category() const { return category_; }
  /// 0 when not started.
  double startSeconds() const { return startSeconds_; }
  /// 0 while running or not started.
  double endSeconds() const { return endSeconds_; }

  /// "category", "start", "end" and, once a value was set, "userData".
  platform::Dictionary dictionaryRepresentation() const;

  /// Starts, or starts anew.
  void start();
  /// Ends, or moves the end to now; nothing before a start.
  void end();
  void reset();
  bool isActive() const { return startSeconds_ > 0 && endSeconds_ == 0; }

  /// From the start to the end, or to now while running; whole milliseconds.
  std::uint32_t elapsedMilliseconds() const;
  std::string elapsedMillisecondsString() const;

  /// Keeps a value; an absent one changes nothing.
  void setValue(std::optional<platform::Value> value, std::string_view forKey);
  /// Null when there is none. Good until the values change.
  const platform::Value* valueForKey(std::string_view key) const;
  void removeValueForKey(std::string_view key);
  platform::Dictionary keysAndValues() const;

  std::string description() const;

 private:
  std::string category_;
  double startSeconds_ = 0;
  double endSeconds_ = 0;
  std::optional<platform::Dictionary> userData_;
};

}  // namespace valdren
