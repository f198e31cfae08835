// The user's folders, as the desktop's conventions place them.
#pragma once

#include <optional>
#include <string>

namespace valdren::platform {

// Each is absolute and ends without "/"; none when neither its variable nor HOME says where it is.
// Folders are not created.

/// The application's own folder inside XDG_CACHE_HOME.
std::optional<std::string> cachesFolder();
/// The application's own folder inside XDG_STATE_HOME.
std::optional<std::string> stateFolder();
/// XDG_DOCUMENTS_DIR, else the desktop's documents folder.
std::optional<std::string> documentsFolder();

}  // namespace valdren::platform
