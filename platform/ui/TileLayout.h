// Layouts for interface files: tiles that fill an area, and a control beside or above a corner.
#pragma once

#include <gtk/gtk.h>

namespace valdren::platform {

/// Makes the types that interface files may name:
///
/// "PlatformTileLayout" lays all children out in rows of as many as make the tiles' shape
/// the pleasantest and let all be seen at once; rows with one tile less share the width. Where not
/// all can be seen, as many stand side by side as there is room for, and the whole is higher.
/// Properties: "margin" and "spacing" in points, and "tile-width", "tile-height", the least of
/// both.
///
/// "PlatformFootLayout" keeps the lower left corner free: "corner-width" by
/// "corner-height" points. The last child lies beside it where there is room, above it elsewhere,
/// and the first child gets all that is above both. "margin" is the room around the last child.
void registerTileLayouts();

}  // namespace valdren::platform
