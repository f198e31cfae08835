#include "platform/storage/Folders.h"

#include <glib.h>

#include <cstdlib>

#include "platform/storage/Bundle.h"

namespace valdren::platform {
namespace {

std::string withoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

/// The XDG base directory rules ignore relative paths.
std::optional<std::string> absolute(const char* path) {
  if (!path || path[0] != '/') return std::nullopt;
  return withoutTrailingSlash(path);
}

std::optional<std::string> ownFolder(const char* variable, const char* underHome) {
  std::optional<std::string> base = absolute(std::getenv(variable));
  if (!base) {
    base = absolute(std::getenv("HOME"));
    if (!base) return std::nullopt;
    *base += underHome;
  }
  return *base + "/" + Bundle::main().identifier();
}

}  // namespace

std::optional<std::string> cachesFolder() {
  return ownFolder("XDG_CACHE_HOME", "/.cache");
}

std::optional<std::string> stateFolder() {
  return ownFolder("XDG_STATE_HOME", "/.local/state");
}

std::optional<std::string> documentsFolder() {
  if (auto folder = absolute(std::getenv("XDG_DOCUMENTS_DIR"))) return folder;
  if (auto folder = absolute(g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS))) return folder;
  auto home = absolute(std::getenv("HOME"));
  if (home) *home += "/Documents";
  return home;
}

}  // namespace valdren::platform
