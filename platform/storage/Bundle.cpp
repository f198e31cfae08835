#include "platform/storage/Bundle.h"

#include <cstdlib>
#include <filesystem>
#include <utility>
#include <vector>

namespace valdren::platform {
namespace {

constexpr const char* kNobody = "com.valdren.host";

std::vector<std::filesystem::path> resourceFolders(const std::string& preferred) {
  std::vector<std::filesystem::path> folders;
  if (!preferred.empty()) folders.emplace_back(preferred);
  if (const char* variable = std::getenv("QUORBEL_RESOURCES")) folders.emplace_back(variable);
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  if (!error) {
    folders.push_back(executable.parent_path() / "resources");
    folders.push_back(executable.parent_path().parent_path() / "share" / "quorbel");
  }
  return folders;
}

bool isPlainName(std::string_view name) {
  return !name.empty() && name.find('/') == std::string_view::npos && name != "." && name != "..";
}

}  // namespace

struct Bundle::Members {
  std::string identifier = kNobody;
  std::optional<std::string> version;
  std::string folder;
};

Bundle::Bundle() : members_(std::make_unique<Members>()) {}

Bundle::~Bundle() = default;

Bundle& Bundle::main() {
  static Bundle bundle;
  return bundle;
}

std::optional<std::string> Bundle::pathForResource(std::string_view name,
                                                   std::string_view type) const {
  std::string file(name);
  if (!type.empty()) file.append(".").append(type);
  if (!isPlainName(file)) return std::nullopt;
  std::error_code error;
  for (const auto& folder : resourceFolders(members_->folder)) {
    const auto path = folder / file;
    if (std::filesystem::is_regular_file(path, error)) return path.string();
  }
  return std::nullopt;
}

const std::string& Bundle::identifier() const {
  return members_->identifier;
}

bool Bundle::isIdentifierSet() const {
  return members_->identifier != kNobody;
}

void Bundle::setIdentifier(std::string identifier) {
  members_->identifier = std::move(identifier);
}

const std::optional<std::string>& Bundle::version() const {
  return members_->version;
}

void Bundle::setVersion(std::optional<std::string> version) {
  members_->version = std::move(version);
}

void Bundle::setResourceFolder(std::string folder) {
  members_->folder = std::move(folder);
}

}  // namespace valdren::platform
