#include "platform/storage/FileUserDefaults.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/base/Json.h"
#include "platform/base/Log.h"
#include "platform/base/PercentEncoding.h"
#include "platform/base/Text.h"
#include "platform/storage/Folders.h"
#include "platform/storage/RegularFile.h"

namespace valdren::platform {
namespace {

// JSON has no dates and does not distinguish 1 from 1.0. These keys mark both in the files.
constexpr const char* kDateKey = "$date";
constexpr const char* kDoubleKey = "$double";

constexpr std::size_t kLargestFile = 4 * 1024 * 1024;

std::string exact(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%a", number);
  return text;
}

Value encoded(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::Date: return Dictionary{{kDateKey, exact(value.date()->secondsSince1970())}};
    case Value::Kind::Double: return Dictionary{{kDoubleKey, exact(value.doubleValue())}};
    case Value::Kind::Array: {
      Array array;
      for (const Value& element : *value.array()) array.push_back(encoded(element));
      return array;
    }
    case Value::Kind::Dictionary: {
      Dictionary dictionary;
      for (const auto& entry : *value.dictionary()) {
        dictionary.set(repairedUTF8(entry.key), encoded(entry.value));
      }
      return dictionary;
    }
    case Value::Kind::Text: return repairedUTF8(*value.text());
    default: return value;
  }
}

Value decoded(const Value& value) {
  if (const Array* const array = value.array()) {
    Array result;
    for (const Value& element : *array) result.push_back(decoded(element));
    return result;
  }
  const Dictionary* const dictionary = value.dictionary();
  if (!dictionary) return value;
  if (dictionary->size() == 1) {
    if (const auto* text = dictionary->text(kDateKey)) {
      return Date(std::strtod(text->c_str(), nullptr));
    }
    if (const auto* text = dictionary->text(kDoubleKey)) {
      return std::strtod(text->c_str(), nullptr);
    }
  }
  Dictionary result;
  for (const auto& entry : *dictionary) result.set(entry.key, decoded(entry.value));
  return result;
}

/// A key as a file name. Other characters than ASCII letters, digits, "_" and "-" become %XX.
std::string fileName(std::string_view key) {
  return percentEncoded(key, "_-") + ".json";
}

}  // namespace

UserDefaults& UserDefaults::standard() {
  // Never destroyed: values may be written while the process ends.
  static auto* const defaults = [] {
    std::atexit([] { standard().flush(); });
    return new FileUserDefaults(FileUserDefaults::standardFolder());
  }();
  return *defaults;
}

FileUserDefaults::FileUserDefaults(std::optional<std::string> folder, Access access)
    : folder_(std::move(folder)), access_(access) {
  if (folder_ && access_ == Access::ReadWrite) writer_.emplace(*folder_);
}

std::optional<std::string> FileUserDefaults::standardFolder() {
  auto folder = stateFolder();
  if (folder) *folder += "/defaults";
  return folder;
}

std::string FileUserDefaults::pathFor(std::string_view key) const {
  return *folder_ + "/" + fileName(key);
}

const std::optional<Value>& FileUserDefaults::kept(std::string_view key) const {
  const auto found = kept_.find(key);
  if (found != kept_.end()) return found->second;
  return kept_.emplace(key, folder_ ? read(pathFor(key)) : std::nullopt).first->second;
}

std::optional<Value> FileUserDefaults::read(const std::string& path) const {
  const Result<std::string> bytes = readRegularFile(path, kLargestFile);
  if (bytes) {
    if (auto value = parseJson(*bytes)) return decoded(*value);
  } else if (bytes.error().code == kFileErrorAbsent) {
    return std::nullopt;
  }
  if (access_ == Access::ReadOnly) return std::nullopt;
  std::error_code error;
  std::filesystem::rename(path, path + ".damaged", error);
  logWarning("The saved state in \"" + path + "\" is damaged; it " +
             (error ? "cannot be set aside." : "was set aside."));
  return std::nullopt;
}

std::optional<Value> FileUserDefaults::objectForKey(std::string_view key) const {
  return kept(key);
}

void FileUserDefaults::setObject(std::string_view key, Value value) {
  if (kept(key) == value && kept(key)->kind() == value.kind()) return;
  kept_.insert_or_assign(std::string(key), std::move(value));
  noteChange(key);
}

void FileUserDefaults::removeObject(std::string_view key) {
  if (!kept(key)) return;
  kept_.insert_or_assign(std::string(key), std::nullopt);
  noteChange(key);
}

void FileUserDefaults::noteChange(std::string_view key) {
  if (std::find(changed_.begin(), changed_.end(), key) == changed_.end()) {
    changed_.emplace_back(key);
  }
}

void FileUserDefaults::synchronize() {
  if (access_ == Access::ReadOnly || changed_.empty()) return;
  if (!writer_) {
    if (!std::exchange(complained_, true)) {
      logWarning("The state cannot be saved: there is no state folder.");
    }
    return;
  }
  for (const std::string& key : std::exchange(changed_, {})) {
    const std::optional<Value>& value = kept(key);
    std::optional<std::string> text = value ? writeJson(encoded(*value)) : std::nullopt;
    // A file over the limit could not be read back, so the value stays in memory only.
    if (text && text->size() > kLargestFile) text = std::nullopt;
    writer_->put(pathFor(key), std::move(text));
  }
}

void FileUserDefaults::hasten() {
  if (writer_) writer_->hasten();
}

bool FileUserDefaults::flush() {
  synchronize();
  return writer_ ? writer_->flush() : changed_.empty() || access_ == Access::ReadOnly;
}

}  // namespace valdren::platform
