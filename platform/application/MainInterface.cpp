#include "platform/application/MainInterface.h"

#include <giomm/resource.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "platform/application/WindowMemory.h"
#include "platform/device/Monitor.h"

namespace valdren::platform {
namespace {

constexpr Size kPhoneSize{360, 640};
constexpr Size kTabletSize{1024, 768};

}  // namespace

InterfaceIdiom idiomOf(const ApplicationDescription& description) {
  return description.idiom.value_or(
      Device::shared().userInterfaceIdiom().value_or(InterfaceIdiom::Phone));
}

Size firstSizeOf(const ApplicationDescription& description) {
  Size size = idiomOf(description) == InterfaceIdiom::Tablet ? kTabletSize : kPhoneSize;
  if (description.landscape && *description.landscape != (size.width > size.height)) {
    size = {size.height, size.width};
  }
  if (!description.landscape) size = rememberedSize(idiomOf(description)).value_or(size);
  if (const auto monitor = primaryMonitor()) {
    size.width = std::min(size.width, monitor->room.width);
    size.height = std::min(size.height, monitor->room.height);
  }
  return size;
}

std::shared_ptr<ViewController> firstScreenOf(const ApplicationDescription& description) {
  const std::string file = idiomOf(description) == InterfaceIdiom::Tablet ? "tablet" : "phone";
  const std::string resource = description.resourceBase + "/" + file + ".ui";
  try {
    const auto text = Gio::Resource::lookup_data_global(resource);
    gsize length = 0;
    const auto* const bytes = static_cast<const char*>(text->get_data(length));
    const std::string_view content(bytes, length);
    for (const auto& [name, make] : description.screens) {
      if (content.find("id=\"" + name + "\"") == std::string_view::npos) continue;
      std::shared_ptr<ViewController> screen = make();
      screen->setInterface(file, name);
      return screen;
    }
  } catch (const Glib::Error& error) {
    std::fprintf(stderr, "%s: the interface file cannot be read: %s\n", description.name.c_str(),
                 error.what());
    return nullptr;
  }
  std::fprintf(stderr, "%s: the interface file \"%s.ui\" names no screen.\n",
               description.name.c_str(), file.c_str());
  return nullptr;
}

}  // namespace valdren::platform
