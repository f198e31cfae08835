#include "platform/device/Renderer.h"

#include <gio/gio.h>

#include <algorithm>
#include <string>

namespace valdren::platform {
namespace {

constexpr const char* kVariable = "GSK_RENDERER";

bool wasChosen = false;

/// The devices of drivers that draw; others only show pictures.
bool draws(const std::string& device) {
  return device.starts_with("nvidia") || device == "dxg" || device == "kgsl-3d0" ||
         device == "mali0";
}

bool hasGraphicsDevice(const std::filesystem::path& devices) {
  std::error_code error;
  using Each = std::filesystem::directory_iterator;
  const auto isNode = [](const auto& each) {
    return each.path().filename().string().starts_with("renderD");
  };
  return std::any_of(Each(devices / "dri", error), Each(), isNode) ||
         std::any_of(Each(devices, error), Each(),
                     [](const auto& each) { return draws(each.path().filename().string()); });
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
