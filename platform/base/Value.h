// Values for parameters, user info and stored state.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/base/Date.h"
#include "platform/base/Export.h"

namespace valdren::platform {

class VALDREN_EXPORT Value;

using Array = std::vector<Value>;

/// Values by key, in the order in which the keys were first set. Look-up takes constant time on
/// average. Copies are independent.
class VALDREN_EXPORT Dictionary {
 public:
  struct Entry;
  using const_iterator = const Entry*;

  Dictionary();
  Dictionary(std::initializer_list<std::pair<std::string_view, Value>> entries);
  Dictionary(const Dictionary&);
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(const Dictionary&);
  Dictionary& operator=(Dictionary&&) noexcept;
  ~Dictionary();

  /// Sets or replaces; a replaced key keeps its place.
  void set(std::string_view key, Value value);
  /// Sets or replaces unless `value` is absent, which changes nothing.
  void setIfPresent(std::string_view key, std::optional<Value> value);
  void remove(std::string_view key);
  void clear();
  /// Sets every entry of `other` here.
  void merge(const Dictionary& other);

  /// The value, or null when there is none. Valid until the dictionary changes.
  const Value* find(std::string_view key) const;
  bool contains(std::string_view key) const { return find(key) != nullptr; }
  /// The text under the key, or null when there is none or it is not a text.
  const std::string* text(std::string_view key) const;

  std::size_t size() const;
  bool empty() const { return size() == 0; }
  const_iterator begin() const;
  const_iterator end() const;

  /// Equal keys with equal values, in any order.
  VALDREN_EXPORT friend bool operator==(const Dictionary& left, const Dictionary& right);

 private:
  struct Storage;
  std::unique_ptr<Storage> storage_;  // null while empty
};

/// One value: null, boolean, 64-bit integer, double, text (UTF-8), date, array or dictionary.
class VALDREN_EXPORT Value {
 public:
  enum class Kind { Null, Boolean, Integer, Double, Text, Date, Array, Dictionary };

  Value() = default;
  Value(std::nullptr_t) {}
  Value(bool value) : value_(value) {}
  Value(int value) : value_(std::int64_t{value}) {}
  Value(unsigned value) : value_(std::int64_t{value}) {}
  Value(std::int64_t value) : value_(value) {}
  Value(double value) : value_(value) {}
  Value(const char* value) : value_(std::string(value)) {}
  Value(std::string_view value) : value_(std::string(value)) {}
  Value(std::string value) : value_(std::move(value)) {}
  Value(platform::Date value) : value_(value) {}
  Value(platform::Array value) : value_(std::move(value)) {}
  Value(platform::Dictionary value) : value_(std::move(value)) {}

  Kind kind() const { return static_cast<Kind>(value_.index()); }
  bool isNumber() const {
    return kind() == Kind::Boolean || kind() == Kind::Integer || kind() == Kind::Double;
  }

  // Each is null unless the value is of that kind.
  const std::string* text() const { return std::get_if<std::string>(&value_); }
  const platform::Date* date() const { return std::get_if<platform::Date>(&value_); }
  const platform::Array* array() const { return std::get_if<platform::Array>(&value_); }
  const platform::Dictionary* dictionary() const {
    return std::get_if<platform::Dictionary>(&value_);
  }

  /// A number's value, truncated toward zero and saturated, a text's leading integer; else 0.
  std::int64_t integerValue() const;
  /// A number's value, a text's leading number; else 0.
  double doubleValue() const;
  bool booleanValue() const { return doubleValue() != 0; }

  /// The value as readable text: numbers in decimal, true and false as 1 and 0, dates in seconds
  /// since 1970, arrays and dictionaries as JSON.
  std::string description() const;

  /// Numbers compare by value whatever their kind.
  VALDREN_EXPORT friend bool operator==(const Value& left, const Value& right);

 private:
  std::variant<std::monostate, bool, std::int64_t, double, std::string, platform::Date,
               platform::Array, platform::Dictionary>
      value_;
};

struct Dictionary::Entry {
  std::string key;
  Value value;
};

}  // namespace valdren::platform
