#include <glib.h>

#include <bit>
#include <cstdint>

#include "platform/base/Text.h"
#include "platform/storage/PropertyListForms.h"

namespace valdren::platform {
namespace {

/// Every object starts with a byte that holds its kind and, for most kinds, its size.
enum Kind : std::uint64_t {
  kSimple = 0x0,
  kInteger = 0x1,
  kReal = 0x2,
  kDate = 0x3,
  kData = 0x4,
  kText = 0x5,
  kUTF16 = 0x6,
  kArray = 0xA,
  kDictionary = 0xD,
};

/// In bytes, over all texts; a text counts each time it is referred to.
constexpr std::size_t kMostText = 16 * 1024 * 1024;

double doubleOf(std::uint64_t bits, std::uint64_t size) {
  return size == 4 ? std::bit_cast<float>(static_cast<std::uint32_t>(bits))
                   : std::bit_cast<double>(bits);
}

std::string base64Of(std::string_view bytes) {
  char* const encoded =
      g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
  std::string result(encoded);
  g_free(encoded);
  return result;
}

/// None when a surrogate is unpaired.
std::optional<std::string> fromUTF16(std::string_view bytes) {
  std::u16string units;
  for (std::size_t place = 0; place + 1 < bytes.size(); place += 2) {
    units += static_cast<char16_t>(static_cast<std::uint8_t>(bytes[place]) << 8 |
                                   static_cast<std::uint8_t>(bytes[place + 1]));
  }
  glong length = 0;
  char* const text = g_utf16_to_utf8(reinterpret_cast<const gunichar2*>(units.data()),
                                     static_cast<glong>(units.size()), nullptr, &length, nullptr);
  if (!text) return std::nullopt;
  std::string result(text, static_cast<std::size_t>(length));
  g_free(text);
  return result;
}

/// The format: objects, a table of their offsets, and a trailer with the table's offset. Every
/// number is big-endian and untrusted.
class Reader {
 public:
  explicit Reader(std::string_view content) : content_(content) {}

  std::optional<Value> read() {
    constexpr std::size_t kTrailer = 32;
    if (content_.size() < kTrailer) return std::nullopt;
    const std::size_t trailer = content_.size() - kTrailer;
    offsetSize_ = number(trailer + 6, 1).value_or(0);
    referenceSize_ = number(trailer + 7, 1).value_or(0);
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) {
      return std::nullopt;
    }
    table_ = number(trailer + 24, 8).value_or(0);
    return object(number(trailer + 16, 8).value_or(0), 0);
  }

 private:
  /// None when the range exceeds the content.
  std::optional<std::string_view> bytes(std::uint64_t place, std::uint64_t size) const {
    if (place > content_.size() || size > content_.size() - place) return std::nullopt;
    return content_.substr(place, size);
  }

  std::optional<std::uint64_t> number(std::uint64_t place, std::uint64_t size) const {
    const auto digits = bytes(place, size);
    if (!digits) return std::nullopt;
    std::uint64_t result = 0;
    for (const char digit : *digits) result = result << 8 | static_cast<std::uint8_t>(digit);
    return result;
  }

  std::optional<Value> object(std::uint64_t index, int depth) {
    if (depth > kDeepestPropertyList || ++values_ > kMostPropertyListValues) return std::nullopt;
    if (index > content_.size()) return std::nullopt;
    const auto place = number(table_ + index * offsetSize_, offsetSize_);
    const auto marker = place ? number(*place, 1) : std::nullopt;
    if (!marker) return std::nullopt;
    const std::uint64_t size = *marker & 0xF;
    switch (*marker >> 4) {
      case kSimple: return size == 8 || size == 9 ? Value(size == 9) : Value();
      case kInteger:
      case kReal:
      case kDate: return scalar(*marker >> 4, *place + 1, std::uint64_t{1} << size);
      case kData:
      case kText:
      case kUTF16:
      case kArray:
      case kDictionary: return sized(*marker >> 4, *place + 1, size, depth);
      default: return Value();
    }
  }

  std::optional<Value> scalar(std::uint64_t kind, std::uint64_t place, std::uint64_t size) const {
    const auto bits = number(place, size);  // a 16-byte integer gives its lower half
    if (!bits || size > 16 || (kind != kInteger && size != 4 && size != 8)) return std::nullopt;
    if (kind == kInteger) return Value(static_cast<std::int64_t>(*bits));
    const double real = doubleOf(*bits, size);
    return kind == kReal ? Value(real) : Value(Date(kSecondsFrom1970To2001 + real));
  }

  std::optional<Value> sized(std::uint64_t kind, std::uint64_t place, std::uint64_t count,
                             int depth) {
    if (count == 0xF) {  // the count follows as an integer
      const std::uint64_t size = std::uint64_t{1} << (number(place, 1).value_or(0) & 3);
      const auto written = number(place + 1, size);
      if (!written) return std::nullopt;
      count = *written;
      place += 1 + size;
    }
    if (count > content_.size()) return std::nullopt;
    if (kind == kArray) return arrayAt(place, count, depth);
    if (kind == kDictionary) return dictionaryAt(place, count, depth);
    const auto content = bytes(place, kind == kUTF16 ? count * 2 : count);
    if (!content || (textBytes_ += content->size()) > kMostText) return std::nullopt;
    if (kind == kData) return Value(base64Of(*content));
    if (kind == kText) return Value(repairedUTF8(*content));
    auto text = fromUTF16(*content);
    return text ? std::optional<Value>(*std::move(text)) : std::nullopt;
  }

  std::optional<Value> elementAt(std::uint64_t place, int depth) {
    const auto reference = number(place, referenceSize_);
    return reference ? object(*reference, depth + 1) : std::nullopt;
  }

  std::optional<Value> arrayAt(std::uint64_t place, std::uint64_t count, int depth) {
    Array array;
    for (; count > 0; --count, place += referenceSize_) {
      auto element = elementAt(place, depth);
      if (!element) return std::nullopt;
      array.push_back(*std::move(element));
    }
    return array;
  }

  /// The references to the keys come first, then those to the values.
  std::optional<Value> dictionaryAt(std::uint64_t place, std::uint64_t count, int depth) {
    Dictionary dictionary;
    const std::uint64_t keys = count * referenceSize_;
    for (; count > 0; --count, place += referenceSize_) {
      const auto key = elementAt(place, depth);
      auto value = elementAt(place + keys, depth);
      if (!key || !key->text() || !value) return std::nullopt;
      dictionary.set(*key->text(), *std::move(value));
    }
    return dictionary;
  }

  std::string_view content_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t table_ = 0;
  int values_ = 0;
  std::size_t textBytes_ = 0;
};

}  // namespace

std::optional<Value> parseBinaryPropertyList(std::string_view content) {
  return Reader(content).read();
}

}  // namespace valdren::platform
