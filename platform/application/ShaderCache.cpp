#include "platform/application/ShaderCache.h"

#include <glib.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>

namespace valdren::platform {
namespace {

constexpr const char* kDisable = "MESA_SHADER_CACHE_DISABLE";
/// The driver needs about a tenth of it for the window.
constexpr double kRoom = 16.0 * 1024 * 1024;

/// The folder itself may still have to be made.
std::filesystem::path existingPartOf(std::filesystem::path folder) {
  std::error_code error;
  while (!std::filesystem::exists(folder, error) && folder.has_relative_path()) {
    folder = folder.parent_path();
  }
  return folder;
}

bool hasRoom(const std::filesystem::path& folder) {
  struct statvfs disk {};
  if (access(folder.c_str(), W_OK) != 0 || statvfs(folder.c_str(), &disk) != 0) return false;
  return static_cast<double>(disk.f_bavail) * static_cast<double>(disk.f_frsize) >= kRoom;
}

}  // namespace

void leaveShaderCacheWithoutRoom() {
  if (!hasRoom(existingPartOf(g_get_user_cache_dir()))) g_setenv(kDisable, "true", FALSE);
}

}  // namespace valdren::platform
