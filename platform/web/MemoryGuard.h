// Limits the memory of the engine's network process.
#pragma once

namespace valdren::platform {

/// Looks once a second at the network process, which keeps what pages store, and ends it when it
/// has more than `mebibytes` resident. The engine starts a new one: loads under way fail, and what
/// the pages had stored is gone. Lives to the end; a second call does nothing.
///
/// A process that is there already was started by a host for its own pages, and is left alone. So
/// is one that is no child of this process, as where a portal starts the engine's processes.
void guardNetworkProcess(double mebibytes);

}  // namespace valdren::platform
