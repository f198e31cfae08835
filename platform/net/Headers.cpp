#include <algorithm>

#include "platform/net/URLConnection.h"

namespace valdren::platform {
namespace {

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                              : character;
}

}  // namespace

bool HeaderNameLess::operator()(std::string_view left, std::string_view right) const {
  return std::lexicographical_compare(
      left.begin(), left.end(), right.begin(), right.end(),
      [](char first, char second) { return lower(first) < lower(second); });
}

}  // namespace valdren::platform
