#include "ads/gobject/VariantValue.h"

#include <limits>

namespace {

using valdren::platform::Array;
using valdren::platform::Dictionary;
using valdren::platform::Value;

Value arrayOf(GVariant* variant) {
  Array array;
  for (gsize place = 0; place < g_variant_n_children(variant); ++place) {
    GVariant* const child = g_variant_get_child_value(variant, place);
    if (auto value = valueOfVariant(child)) array.push_back(std::move(*value));
    g_variant_unref(child);
  }
  return Value(std::move(array));
}

Value dictionaryOf(GVariant* variant) {
  Dictionary dictionary;
  for (gsize place = 0; place < g_variant_n_children(variant); ++place) {
    GVariant* const entry = g_variant_get_child_value(variant, place);
    GVariant* const key = g_variant_get_child_value(entry, 0);
    GVariant* const child = g_variant_get_child_value(entry, 1);
    if (g_variant_is_of_type(key, G_VARIANT_TYPE_STRING)) {
      dictionary.setIfPresent(g_variant_get_string(key, nullptr), valueOfVariant(child));
    }
    g_variant_unref(child);
    g_variant_unref(key);
    g_variant_unref(entry);
  }
  return Value(std::move(dictionary));
}

Value unsignedOf(std::uint64_t number) {
  if (number > std::uint64_t(std::numeric_limits<std::int64_t>::max())) return double(number);
  return std::int64_t(number);
}

std::optional<Value> boxedOf(GVariant* variant) {
  GVariant* const inner = g_variant_get_variant(variant);
  auto value = valueOfVariant(inner);
  g_variant_unref(inner);
  return value;
}

}  // namespace

std::optional<Value> valueOfVariant(GVariant* variant) {
  switch (g_variant_classify(variant)) {
    case G_VARIANT_CLASS_BOOLEAN: return Value(bool(g_variant_get_boolean(variant)));
    case G_VARIANT_CLASS_BYTE: return Value(int(g_variant_get_byte(variant)));
    case G_VARIANT_CLASS_INT16: return Value(int(g_variant_get_int16(variant)));
    case G_VARIANT_CLASS_UINT16: return Value(int(g_variant_get_uint16(variant)));
    case G_VARIANT_CLASS_INT32: return Value(int(g_variant_get_int32(variant)));
    case G_VARIANT_CLASS_UINT32: return Value(unsigned(g_variant_get_uint32(variant)));
    case G_VARIANT_CLASS_INT64: return Value(std::int64_t{g_variant_get_int64(variant)});
    case G_VARIANT_CLASS_UINT64: return unsignedOf(g_variant_get_uint64(variant));
    case G_VARIANT_CLASS_DOUBLE: return Value(g_variant_get_double(variant));
    case G_VARIANT_CLASS_STRING: return Value(g_variant_get_string(variant, nullptr));
    case G_VARIANT_CLASS_VARIANT: return boxedOf(variant);
    case G_VARIANT_CLASS_ARRAY:
      return g_variant_type_is_subtype_of(g_variant_get_type(variant), G_VARIANT_TYPE_DICTIONARY)
                 ? dictionaryOf(variant)
                 : arrayOf(variant);
    default: return std::nullopt;
  }
}
