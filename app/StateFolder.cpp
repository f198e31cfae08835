#include "app/StateFolder.h"

#include <unistd.h>

#include <filesystem>

#include "platform/Folders.h"

namespace quorbel {

std::optional<std::string> checkStateFolder() {
  const std::optional<std::string> folder = platform::stateFolder();
  if (!folder) return "there is no place for its state: set HOME or XDG_STATE_HOME";
  std::error_code error;
  std::filesystem::create_directories(*folder, error);
  if (!error && access(folder->c_str(), W_OK | X_OK) != 0) {
    error = std::error_code(errno, std::generic_category());
  }
  if (!error) return std::nullopt;
  return "the state folder \"" + *folder + "\" cannot be written (" + error.message() +
         "): set XDG_STATE_HOME to one that can";
}

}  // namespace quorbel
