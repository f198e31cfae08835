#include "platform/storage/PropertyList.h"

#include "platform/storage/PropertyListForms.h"
#include "platform/storage/RegularFile.h"

namespace valdren::platform {
namespace {

constexpr std::size_t kLargestFile = 16 * 1024 * 1024;

}  // namespace

std::optional<Value> parsePropertyList(std::string_view content) {
  if (content.size() > kLargestFile) return std::nullopt;
  return content.starts_with("bplist") ? parseBinaryPropertyList(content)
                                       : parseXMLPropertyList(content);
}

std::optional<Value> readPropertyList(const std::string& path) {
  const Result<std::string> bytes = readRegularFile(path, kLargestFile);
  if (!bytes) return std::nullopt;
  return parsePropertyList(*bytes);
}

}  // namespace valdren::platform
