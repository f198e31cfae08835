#include "platform/PropertyList.h"

#include <glib.h>
#include <plist/plist.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>

#include "platform/PropertyListLimits.h"

namespace platform {
namespace {

constexpr std::uintmax_t kLargestFile = 16 * 1024 * 1024;
constexpr int kDeepest = 512;

struct NodeDeleter {
  void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

std::string textOf(plist_t node) {
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(node, &length);
  return text ? std::string(text, length) : std::string();
}

std::string dataOf(plist_t node) {
  std::uint64_t length = 0;
  const char* const data = plist_get_data_ptr(node, &length);
  char* const encoded = g_base64_encode(reinterpret_cast<const guchar*>(data), length);
  std::string result(encoded);
  g_free(encoded);
  return result;
}

Value dateOf(plist_t node) {
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(node, &seconds, &microseconds);
  return Date(kSecondsFrom1970To2001 + seconds + microseconds / 1e6);
}

Value integerOf(plist_t node) {
  std::uint64_t number = 0;
  plist_get_uint_val(node, &number);
  return static_cast<std::int64_t>(number);  // negative numbers are kept in two's complement
}

/// None when the list is nested too deeply to be walked.
std::optional<Value> valueOf(plist_t node, int depth);

std::optional<Value> arrayOf(plist_t node, int depth) {
  Array array;
  const std::uint32_t size = plist_array_get_size(node);
  array.reserve(size);
  plist_array_iter iterator = nullptr;
  plist_array_new_iter(node, &iterator);
  const std::unique_ptr<void, decltype(&std::free)> owned(iterator, std::free);
  for (std::uint32_t place = 0; place < size; ++place) {
    plist_t element = nullptr;
    plist_array_next_item(node, iterator, &element);
    auto value = valueOf(element, depth + 1);
    if (!value) return std::nullopt;
    array.push_back(*std::move(value));
  }
  return array;
}

std::optional<Value> dictionaryOf(plist_t node, int depth) {
  Dictionary dictionary;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const std::unique_ptr<void, decltype(&std::free)> owned(iterator, std::free);
  while (true) {
    char* key = nullptr;
    plist_t element = nullptr;
    plist_dict_next_item(node, iterator, &key, &element);
    if (!element) return dictionary;
    const std::unique_ptr<char, decltype(&std::free)> ownedKey(key, std::free);
    auto value = valueOf(element, depth + 1);
    if (!value) return std::nullopt;
    dictionary.set(key, *std::move(value));
  }
}

std::optional<Value> valueOf(plist_t node, int depth) {
  if (depth > kDeepest) return std::nullopt;
  std::uint8_t boolean = 0;
  double real = 0;
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: plist_get_bool_val(node, &boolean); return Value(boolean != 0);
    case PLIST_UINT: return integerOf(node);
    case PLIST_REAL: plist_get_real_val(node, &real); return Value(real);
    case PLIST_STRING: return Value(textOf(node));
    case PLIST_DATA: return Value(dataOf(node));
    case PLIST_DATE: return dateOf(node);
    case PLIST_ARRAY: return arrayOf(node, depth);
    case PLIST_DICT: return dictionaryOf(node, depth);
    default: return Value();
  }
}

}  // namespace

std::optional<Value> readPropertyList(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error || size > kLargestFile) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  if (content.empty() || !isReadablePropertyList(content)) return std::nullopt;
  plist_t parsed = nullptr;
  plist_from_memory(content.data(), static_cast<std::uint32_t>(content.size()), &parsed);
  const Node root(parsed);
  if (!root) return std::nullopt;
  return valueOf(root.get(), 0);
}

}  // namespace platform
