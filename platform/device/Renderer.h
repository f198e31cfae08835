// What draws the application's windows: the graphics card or the processor.
#pragma once

#include <filesystem>

typedef struct _GAppLaunchContext GAppLaunchContext;

namespace valdren::platform {

/// Chooses the toolkit's renderer without OpenGL when the machine whose files are below `root` has
/// no graphics device. OpenGL without one takes more than half of the time until the first window,
/// and draws the whole window for each change. A renderer that the environment names stays. Called
/// before the first window.
void chooseRenderer(const std::filesystem::path& root = "/");

/// Keeps the choice from the programs that this context launches.
void leaveRendererToOthers(GAppLaunchContext* context);

}  // namespace valdren::platform
