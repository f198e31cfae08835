// Where the graphics driver keeps what it has compiled.
#pragma once

namespace valdren::platform {

/// Has the driver keep nothing where the disk of the cache folder is full or cannot be written. It
/// maps a file there into memory, and a full disk ends the program when it is written. Called
/// before the toolkit opens a display; programs that this one starts inherit it.
void leaveShaderCacheWithoutRoom();

}  // namespace valdren::platform
