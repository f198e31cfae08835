#include "platform/PropertyListLimits.h"

#include <cstdint>
#include <optional>

namespace platform {
namespace {

constexpr int kDeepest = 512;
constexpr std::size_t kLongestTag = 256;
constexpr int kMostValues = 1'000'000;

bool opensContainer(std::string_view tag) {
  return tag.starts_with("<array") || tag.starts_with("<dict");
}

bool closesContainer(std::string_view tag) {
  return tag.starts_with("</array") || tag.starts_with("</dict");
}

bool isReadableXML(std::string_view content) {
  int depth = 0;
  for (std::size_t place = content.find('<'); place != std::string_view::npos;
       place = content.find('<', place + 1)) {
    const std::string_view beginning = content.substr(place, kLongestTag);
    const std::string_view tag = beginning.substr(0, beginning.find('>'));
    if (opensContainer(tag) && !tag.ends_with('/')) ++depth;
    if (closesContainer(tag)) --depth;
    if (depth > kDeepest) return false;
  }
  return true;
}

/// Walks a binary list as its reader would: a value as often as it is referred to.
class BinaryList {
 public:
  explicit BinaryList(std::string_view content) : content_(content) {}

  bool isReadable() {
    constexpr std::size_t kTrailer = 32;
    if (content_.size() < kTrailer) return true;
    const std::size_t trailer = content_.size() - kTrailer;
    offsetSize_ = static_cast<std::uint8_t>(content_[trailer + 6]);
    referenceSize_ = static_cast<std::uint8_t>(content_[trailer + 7]);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) return true;
    table_ = number(trailer + 24, 8).value_or(0);
    return walk(number(trailer + 16, 8).value_or(0), 0);
  }

 private:
  /// The big-endian number of so many bytes; none beyond the content.
  std::optional<std::uint64_t> number(std::uint64_t place, std::size_t size) const {
    if (place > content_.size() || size > content_.size() - place) return std::nullopt;
    std::uint64_t result = 0;
    for (const char byte : content_.substr(place, size)) {
      result = result << 8 | static_cast<std::uint8_t>(byte);
    }
    return result;
  }

  bool walk(std::uint64_t object, int depth) {
    if (depth > kDeepest || ++values_ > kMostValues) return false;
    if (object > content_.size()) return true;
    std::uint64_t place = number(table_ + object * offsetSize_, offsetSize_).value_or(~0ull);
    const std::optional<std::uint64_t> marker = number(place++, 1);
    if (!marker) return true;
    const std::uint64_t kind = *marker >> 4;
    if (kind != 0xA && kind != 0xC && kind != 0xD) return true;
    std::uint64_t count = *marker & 0xF;
    if (count == 0xF) {  // the count stands behind, in 1, 2, 4 or 8 bytes
      const std::uint64_t sizeMarker = number(place++, 1).value_or(0);
      const std::size_t size = std::size_t{1} << (sizeMarker & 3);
      count = number(place, size).value_or(0);
      place += size;
    }
    if (count > content_.size()) return true;
    if (kind == 0xD) count *= 2;  // keys, then values
    for (; count > 0; --count, place += referenceSize_) {
      const auto element = number(place, referenceSize_);
      if (!element) return true;
      if (!walk(*element, depth + 1)) return false;
    }
    return true;
  }

  std::string_view content_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t table_ = 0;
  int values_ = 0;
};

}  // namespace

bool isReadablePropertyList(std::string_view content) {
  if (content.starts_with("bplist")) return BinaryList(content).isReadable();
  return isReadableXML(content);
}

}  // namespace platform
