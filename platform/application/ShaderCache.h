// The graphics driver's cache of compiled shaders.
#pragma once

namespace valdren::platform {

/// Disables the cache when the disk of the cache folder is full or cannot be written. The driver
/// maps a file there into memory, and writing to it on a full disk crashes the program. Called
/// before the toolkit opens a display; child processes inherit the setting.
void leaveShaderCacheWithoutRoom();

}  // namespace valdren::platform
