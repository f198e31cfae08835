// Files that hold their old or their new content, whenever the process or the machine stops.
#pragma once

#include <string>
#include <string_view>

namespace valdren::platform {

/// Whether to wait until the disk has the content. Without it a power cut may leave the file empty:
/// enough for what can be had again, and the caller waits for no disk.
enum class Sync { Yes, No };

/// Writes a file in place of a former one, making its folders. Gives what went wrong, or an empty
/// text.
std::string writeFileAtomically(const std::string& path, std::string_view content,
                                Sync sync = Sync::Yes);

/// Removes the file when it is one that a writer began and, killed, never finished. True when it is
/// gone by that.
bool removeIfAbandoned(const std::string& path);

/// The same for every file in the folder.
void removeAbandonedFiles(const std::string& folder);

/// Removes a file for good; one that is not there is no error.
std::string removeFileDurably(const std::string& path);

}  // namespace valdren::platform
