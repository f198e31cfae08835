// How failed comparisons show values.
#pragma once

#include <ostream>

#include "platform/base/Value.h"

namespace valdren::platform {

inline void PrintTo(const Dictionary& dictionary, std::ostream* out) {
  *out << '{';
  for (const auto& [key, value] : dictionary) *out << key << ": " << value.description() << ", ";
  *out << '}';
}

inline void PrintTo(const Value& value, std::ostream* out) {
  *out << value.description() << " (kind " << static_cast<int>(value.kind()) << ')';
}

}  // namespace valdren::platform
