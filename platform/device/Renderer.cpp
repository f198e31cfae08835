#include "platform/device/Renderer.h"

#include <gio/gio.h>
#include <glob.h>

#include <algorithm>
#include <iterator>

namespace valdren::platform {
namespace {

constexpr const char* kVariable = "GSK_RENDERER";

bool wasChosen = false;

/// The devices of drivers that draw; others only show pictures.
constexpr const char* kDevices[] = {"dri/renderD*", "nvidia[0-9]*", "dxg", "kgsl-3d0", "mali0"};

bool hasGraphicsDevice(const std::filesystem::path& devices) {
  return std::any_of(std::begin(kDevices), std::end(kDevices), [&](const char* pattern) {
    glob_t found{};
    const bool isThere = glob((devices / pattern).c_str(), GLOB_NOSORT, nullptr, &found) == 0;
    globfree(&found);
    return isThere;
  });
}

}  // namespace

void chooseRenderer(const std::filesystem::path& root) {
  if (g_getenv(kVariable) || hasGraphicsDevice(root / "dev")) return;
  wasChosen = g_setenv(kVariable, "cairo", FALSE);
}

void leaveRendererToOthers(GAppLaunchContext* context) {
  if (wasChosen) g_app_launch_context_unsetenv(context, kVariable);
}

}  // namespace valdren::platform
