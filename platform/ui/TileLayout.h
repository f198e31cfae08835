// Layouts for interface files: tiles that fill an area, and a control beside or above a corner.
#pragma once

#include <gtk/gtk.h>

namespace valdren::platform {

/// Registers the types for interface files:
///
/// "PlatformTileLayout" places all children in rows. The number of columns is the one that comes
/// closest to the preferred shape of a tile and shows all tiles at once; rows with one tile less
/// share the width. When not all fit, rows are as long as possible and the whole gets higher.
/// Properties, in points: "margin", "spacing", and the minimum "tile-width" and "tile-height".
///
/// "PlatformFootLayout" keeps the lower left corner free: "corner-width" by "corner-height" points.
/// The last child is placed beside it, or above it when there is too little room. The first child
/// gets the area above both. "margin" is the space around the last child.
void registerTileLayouts();

}  // namespace valdren::platform
