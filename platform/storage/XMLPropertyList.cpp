#include <libxml/xmlreader.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>

#include "platform/base/Text.h"
#include "platform/storage/PropertyListForms.h"

namespace valdren::platform {
namespace {

/// None unless the whole text is a number.
template <class Number, class... Base>
std::optional<Number> numberOf(std::string_view text, Base... base) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::optional<Value> integerOf(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  if (text.starts_with("0x") || text.starts_with("0X")) {
    const auto number = numberOf<std::uint64_t>(text.substr(2), 16);
    return number ? std::optional<Value>(static_cast<std::int64_t>(*number)) : std::nullopt;
  }
  if (const auto number = numberOf<std::int64_t>(text)) return Value(*number);
  const auto large = numberOf<std::uint64_t>(text);
  return large ? std::optional<Value>(static_cast<std::int64_t>(*large)) : std::nullopt;
}

std::optional<Value> realOf(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto number = numberOf<double>(text);
  return number ? std::optional<Value>(*number) : std::nullopt;
}

std::optional<Value> dateOf(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2dZ", &year, &month, &day, &hour, &minute,
                  &second) != 6) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  const auto days = std::chrono::sys_days(date).time_since_epoch().count();
  return Value(Date(days * 86400.0 + hour * 3600.0 + minute * 60.0 + second));
}

std::optional<Value> dataOf(std::string text) {
  std::erase_if(text, [](char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
  });
  constexpr const char* kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
  if (text.find_first_not_of(kAlphabet) != std::string::npos) return std::nullopt;
  return Value(std::move(text));
}

/// Reads one element after another from libxml2's reader, which expands no entities of the document
/// and loads nothing.
class Reader {
 public:
  explicit Reader(std::string_view content)
      : xml_(xmlReaderForMemory(
            content.data(), static_cast<int>(content.size()), nullptr, "UTF-8",
            XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOCDATA)) {}

  std::optional<Value> read() {
    if (!xml_ || !nextElement() || name() != "plist" || isEmpty() || !nextElement()) {
      return std::nullopt;
    }
    auto value = element(0);
    // Reads the rest as well: a truncated document is not a list.
    while (value && advance()) {
    }
    return failed_ ? std::nullopt : value;
  }

 private:
  bool advance() {
    const int result = xmlTextReaderRead(xml_.get());
    failed_ = failed_ || result < 0;
    return result == 1;
  }

  /// Goes to the next start of an element. False at the end of the enclosing element and at the end
  /// of the document.
  bool nextElement() {
    while (advance()) {
      const int type = xmlTextReaderNodeType(xml_.get());
      if (type == XML_READER_TYPE_ELEMENT) return true;
      if (type == XML_READER_TYPE_END_ELEMENT) return false;
    }
    return false;
  }

  std::string name() const {
    const xmlChar* const name = xmlTextReaderConstName(xml_.get());
    return name ? reinterpret_cast<const char*>(name) : "";
  }

  bool isEmpty() const { return xmlTextReaderIsEmptyElement(xml_.get()) == 1; }

  /// The text up to the element's end. None when it contains an element.
  std::optional<std::string> text() {
    std::string result;
    if (isEmpty()) return result;
    while (advance()) {
      const int type = xmlTextReaderNodeType(xml_.get());
      if (type == XML_READER_TYPE_END_ELEMENT) return result;
      if (type == XML_READER_TYPE_ELEMENT || type == XML_READER_TYPE_ENTITY_REFERENCE) break;
      const xmlChar* const piece = xmlTextReaderConstValue(xml_.get());
      if (piece && type != XML_READER_TYPE_COMMENT) {
        result += reinterpret_cast<const char*>(piece);
      }
    }
    return std::nullopt;
  }

  /// The value of the element whose start was just read, up to its end.
  std::optional<Value> element(int depth) {
    if (depth > kDeepestPropertyList || ++values_ > kMostPropertyListValues) return std::nullopt;
    const std::string kind = name();
    if (kind == "array") return array(depth);
    if (kind == "dict") return dictionary(depth);
    auto content = text();
    if (!content || kind == "key") return std::nullopt;
    if (kind == "string") return Value(*std::move(content));
    if (kind == "true" || kind == "false") return Value(kind == "true");
    if (kind == "data") return dataOf(*std::move(content));
    const std::string trimmedContent(trimmed(*content));
    if (kind == "integer") return integerOf(trimmedContent);
    if (kind == "real") return realOf(trimmedContent);
    if (kind == "date") return dateOf(trimmedContent);
    return Value();
  }

  std::optional<Value> array(int depth) {
    Array array;
    if (isEmpty()) return array;
    while (nextElement()) {
      auto value = element(depth + 1);
      if (!value) return std::nullopt;
      array.push_back(*std::move(value));
    }
    return array;
  }

  std::optional<Value> dictionary(int depth) {
    Dictionary dictionary;
    if (isEmpty()) return dictionary;
    while (nextElement()) {
      const std::optional<std::string> key = name() == "key" ? text() : std::nullopt;
      if (!key || !nextElement()) return std::nullopt;
      auto value = element(depth + 1);
      if (!value) return std::nullopt;
      dictionary.set(*key, *std::move(value));
    }
    return dictionary;
  }

  struct Deleter {
    void operator()(xmlTextReader* reader) const { xmlFreeTextReader(reader); }
  };

  std::unique_ptr<xmlTextReader, Deleter> xml_;
  bool failed_ = false;
  int values_ = 0;
};

}  // namespace

std::optional<Value> parseXMLPropertyList(std::string_view content) {
  if (isUTF8(content)) return Reader(content).read();
  return Reader(repairedUTF8(content)).read();  // one invalid byte must not lose the whole list
}

}  // namespace valdren::platform
