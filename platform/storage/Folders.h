// The user's folders by the XDG conventions.
#pragma once

#include <optional>
#include <string>

namespace valdren::platform {

// Each path is absolute and ends without "/". None when neither its variable nor HOME is set.
// Folders are not created.

/// The application's own folder inside XDG_CACHE_HOME.
std::optional<std::string> cachesFolder();
/// The application's own folder inside XDG_STATE_HOME.
std::optional<std::string> stateFolder();
/// XDG_DOCUMENTS_DIR, else the desktop's documents folder.
std::optional<std::string> documentsFolder();

}  // namespace valdren::platform
