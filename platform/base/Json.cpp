#include "platform/base/Json.h"

#include <boost/json.hpp>
#include <cmath>

#include "platform/base/Text.h"

namespace valdren::platform {
namespace {

namespace json = boost::json;

constexpr int kDeepest = 512;
constexpr double kLargestWholeDouble = 9007199254740992.0;

/// Sets `isWhole` to false when a number is too large for a double.
Value valueFrom(const json::value& source, bool& isWhole) {
  switch (source.kind()) {
    case json::kind::null: return nullptr;
    case json::kind::bool_: return source.get_bool();
    case json::kind::int64: return source.get_int64();
    case json::kind::uint64: return static_cast<double>(source.get_uint64());
    case json::kind::double_:
      if (!std::isfinite(source.get_double())) isWhole = false;
      return source.get_double();
    case json::kind::string: return std::string_view(source.get_string());
    case json::kind::array: {
      Array array;
      array.reserve(source.get_array().size());
      for (const json::value& element : source.get_array()) {
        array.push_back(valueFrom(element, isWhole));
      }
      return array;
    }
    case json::kind::object: break;
  }
  Dictionary dictionary;
  for (const auto& [key, element] : source.get_object()) {
    dictionary.set(key, valueFrom(element, isWhole));
  }
  return dictionary;
}

/// False when the value cannot be written.
bool convert(const Value& source, json::value& target, int depth);

bool convertNumber(double number, json::value& target) {
  if (!std::isfinite(number)) return false;
  if (std::trunc(number) == number && std::abs(number) < kLargestWholeDouble) {
    target = static_cast<std::int64_t>(number);
  } else {
    target = number;
  }
  return true;
}

bool convertArray(const Array& source, json::value& target, int depth) {
  json::array& array = target.emplace_array();
  array.reserve(source.size());
  for (const Value& element : source) {
    if (!convert(element, array.emplace_back(nullptr), depth)) return false;
  }
  return true;
}

bool convertDictionary(const Dictionary& source, json::value& target, int depth) {
  json::object& object = target.emplace_object();
  object.reserve(source.size());
  for (const Dictionary::Entry& entry : source) {
    if (!isUTF8(entry.key) || !convert(entry.value, object[entry.key], depth)) return false;
  }
  return true;
}

bool convertText(const std::string& source, json::value& target) {
  target = json::string_view(source);
  return isUTF8(source);
}

bool convert(const Value& source, json::value& target, int depth) {
  switch (source.kind()) {
    case Value::Kind::Null: target = nullptr; return true;
    case Value::Kind::Boolean: target = source.booleanValue(); return true;
    case Value::Kind::Integer: target = source.integerValue(); return true;
    case Value::Kind::Double: return convertNumber(source.doubleValue(), target);
    case Value::Kind::Text: return convertText(*source.text(), target);
    case Value::Kind::Date: return convertNumber(source.date()->secondsSince1970(), target);
    case Value::Kind::Array:
      return depth < kDeepest && convertArray(*source.array(), target, depth + 1);
    case Value::Kind::Dictionary:
      return depth < kDeepest && convertDictionary(*source.dictionary(), target, depth + 1);
  }
  return false;
}

void appendIndented(const json::value& value, std::size_t level, std::string& text);

/// Writes the elements between the brackets of an array or object, one per line.
template <class Elements, class AppendElement>
void appendLines(const Elements& elements, std::size_t level, std::string& text,
                 AppendElement appendElement) {
  const char* separator = "\n";
  for (const auto& element : elements) {
    text.append(separator).append((level + 1) * 2, ' ');
    appendElement(element);
    separator = ",\n";
  }
  if (!elements.empty()) text.append("\n").append(level * 2, ' ');
}

void appendIndented(const json::value& value, std::size_t level, std::string& text) {
  if (const json::array* const array = value.if_array()) {
    text += '[';
    appendLines(*array, level, text,
                [&](const auto& element) { appendIndented(element, level + 1, text); });
    text += ']';
  } else if (const json::object* const object = value.if_object()) {
    text += '{';
    appendLines(*object, level, text, [&](const auto& entry) {
      text += json::serialize(json::string(entry.key())) + ": ";
      appendIndented(entry.value(), level + 1, text);
    });
    text += '}';
  } else {
    text += json::serialize(value);
  }
}

}  // namespace

std::optional<Value> parseJson(std::string_view text) {
  json::parse_options options;
  options.max_depth = kDeepest;
  json::error_code error;
  const json::value parsed = json::parse(text, error, {}, options);
  if (error) return std::nullopt;
  bool isWhole = true;
  Value value = valueFrom(parsed, isWhole);
  if (!isWhole) return std::nullopt;
  return value;
}

std::optional<std::string> writeJson(const Value& value) {
  json::value converted;
  if (!convert(value, converted, 0)) return std::nullopt;
  return json::serialize(converted);
}

std::optional<std::string> writeIndentedJson(const Value& value) {
  json::value converted;
  if (!convert(value, converted, 0)) return std::nullopt;
  std::string text;
  appendIndented(converted, 0, text);
  return text + "\n";
}

}  // namespace valdren::platform
