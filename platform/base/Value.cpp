#include "platform/base/Value.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "platform/base/Json.h"

namespace valdren::platform {
namespace {

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>()(text);
  }
};

std::int64_t truncated(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 9223372036854775808.0) return std::numeric_limits<std::int64_t>::max();
  if (value < -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

template <class Number>
Number leadingNumber(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  if (text.front() == '+') text.remove_prefix(1);
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if constexpr (std::is_integral_v<Number>) {
    if (error == std::errc::result_out_of_range) {
      return text.front() == '-' ? std::numeric_limits<Number>::min()
                                 : std::numeric_limits<Number>::max();
    }
  }
  return number;
}

std::string decimal(double number) {
  char text[32];
  const auto [end, error] = std::to_chars(text, text + sizeof text, number);
  return std::string(text, end);
}

}  // namespace

/// Small dictionaries are searched in order; an index is kept from `kIndexedFrom` entries on.
struct Dictionary::Storage {
  static constexpr std::size_t kIndexedFrom = 16;

  std::vector<Entry> entries;
  std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> index;

  std::size_t position(std::string_view key) const {
    if (!index.empty()) {
      const auto found = index.find(key);
      return found == index.end() ? entries.size() : found->second;
    }
    std::size_t place = 0;
    while (place < entries.size() && entries[place].key != key) ++place;
    return place;
  }

  void add(std::string_view key, Value value) {
    entries.push_back({std::string(key), std::move(value)});
    if (!index.empty()) {
      index.emplace(key, entries.size() - 1);
    } else if (entries.size() >= kIndexedFrom) {
      rebuildIndex();
    }
  }

  void rebuildIndex() {
    index.clear();
    if (entries.size() < kIndexedFrom) return;
    for (std::size_t place = 0; place < entries.size(); ++place) {
      index.emplace(entries[place].key, place);
    }
  }
};

Dictionary::Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<std::pair<std::string_view, Value>> entries) {
  for (const auto& [key, value] : entries) set(key, value);
}

Dictionary::Dictionary(const Dictionary& other)
    : storage_(other.storage_ ? std::make_unique<Storage>(*other.storage_) : nullptr) {}

Dictionary& Dictionary::operator=(const Dictionary& other) {
  if (this != &other) *this = Dictionary(other);
  return *this;
}

void Dictionary::set(std::string_view key, Value value) {
  if (!storage_) storage_ = std::make_unique<Storage>();
  const std::size_t place = storage_->position(key);
  if (place < storage_->entries.size()) {
    storage_->entries[place].value = std::move(value);
  } else {
    storage_->add(key, std::move(value));
  }
}

void Dictionary::setIfPresent(std::string_view key, std::optional<Value> value) {
  if (value) set(key, *std::move(value));
}

void Dictionary::remove(std::string_view key) {
  if (!storage_) return;
  const std::size_t place = storage_->position(key);
  if (place == storage_->entries.size()) return;
  storage_->entries.erase(storage_->entries.begin() + static_cast<std::ptrdiff_t>(place));
  storage_->rebuildIndex();
}

void Dictionary::clear() {
  storage_.reset();
}

void Dictionary::merge(const Dictionary& other) {
  for (const Entry& entry : other) set(entry.key, entry.value);
}

const Value* Dictionary::find(std::string_view key) const {
  if (!storage_) return nullptr;
  const std::size_t place = storage_->position(key);
  return place < storage_->entries.size() ? &storage_->entries[place].value : nullptr;
}

const std::string* Dictionary::text(std::string_view key) const {
  const Value* value = find(key);
  return value ? value->text() : nullptr;
}

std::size_t Dictionary::size() const {
  return storage_ ? storage_->entries.size() : 0;
}

Dictionary::const_iterator Dictionary::begin() const {
  return storage_ ? storage_->entries.data() : nullptr;
}

Dictionary::const_iterator Dictionary::end() const {
  return storage_ ? storage_->entries.data() + storage_->entries.size() : nullptr;
}

bool operator==(const Dictionary& left, const Dictionary& right) {
  if (left.size() != right.size()) return false;
  for (const Dictionary::Entry& entry : left) {
    const Value* other = right.find(entry.key);
    if (!other || !(*other == entry.value)) return false;
  }
  return true;
}

std::int64_t Value::integerValue() const {
  switch (kind()) {
    case Kind::Boolean: return std::get<bool>(value_) ? 1 : 0;
    case Kind::Integer: return std::get<std::int64_t>(value_);
    case Kind::Double: return truncated(std::get<double>(value_));
    case Kind::Text: return leadingNumber<std::int64_t>(*text());
    default: return 0;
  }
}

double Value::doubleValue() const {
  switch (kind()) {
    case Kind::Double: return std::get<double>(value_);
    case Kind::Text: return leadingNumber<double>(*text());
    default: return static_cast<double>(integerValue());
  }
}

std::string Value::description() const {
  switch (kind()) {
    case Kind::Null: return "";
    case Kind::Boolean:
    case Kind::Integer: return std::to_string(integerValue());
    case Kind::Double: return decimal(doubleValue());
    case Kind::Text: return *text();
    case Kind::Date: return decimal(date()->secondsSince1970());
    default: return writeJson(*this).value_or("");
  }
}

bool operator==(const Value& left, const Value& right) {
  if (left.isNumber() && right.isNumber()) {
    const bool integers = left.kind() != Value::Kind::Double && right.kind() != Value::Kind::Double;
    return integers ? left.integerValue() == right.integerValue()
                    : left.doubleValue() == right.doubleValue();
  }
  return left.value_ == right.value_;
}

}  // namespace valdren::platform
