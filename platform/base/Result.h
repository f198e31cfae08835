// What an operation gives, or why it failed.
#pragma once

#include <utility>
#include <variant>

#include "platform/base/Error.h"

namespace valdren::platform {

/// A value or an error. Used where a caller may want to know why; what is merely not there is a
/// `std::optional`.
template <class T = void>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}

  /// Whether there is a value.
  explicit operator bool() const { return content_.index() == 0; }
  // The value; ends the program when there is none.
  T& operator*() { return std::get<0>(content_); }
  const T& operator*() const { return std::get<0>(content_); }
  T* operator->() { return &std::get<0>(content_); }
  const T* operator->() const { return &std::get<0>(content_); }
  /// The value, or `other` in the place of an error.
  T valueOr(T other) && { return *this ? std::move(**this) : std::move(other); }
  /// The error; ends the program when there is none.
  const Error& error() const { return std::get<1>(content_); }

 private:
  std::variant<T, Error> content_;
};

/// Success or an error.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : content_(std::move(error)) {}

  explicit operator bool() const { return content_.index() == 0; }
  const Error& error() const { return std::get<1>(content_); }

 private:
  std::variant<std::monostate, Error> content_;
};

}  // namespace valdren::platform
