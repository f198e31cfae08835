// Files that hold either the old or the new content, whenever the process or the machine stops.
#pragma once

#include <string>
#include <string_view>

#include "platform/base/Result.h"

namespace valdren::platform {

/// Whether to wait until the content is on disk. Without it a power cut may leave the file empty,
/// which is enough for content that can be fetched again.
enum class Sync { Yes, No };

/// Replaces a file and creates its folders. Errors name the path.
Result<> writeFileAtomically(const std::string& path, std::string_view content,
                             Sync sync = Sync::Yes);

/// Removes the file if it is the temporary file of a writer that was killed. True if it removed it.
bool removeIfAbandoned(const std::string& path);

/// The same for every file in the folder.
void removeAbandonedFiles(const std::string& folder);

/// Removes a file and waits until the disk has the change. A missing file is not an error.
Result<> removeFileDurably(const std::string& path);

}  // namespace valdren::platform
