#include "app/Soundboard.h"

#include <memory>

#include "app/AdNetworkSetup.h"
#include "app/quorbelAppDelegate.h"
#include "app/quorbelViewController.h"
#include "app/quorbeliPad.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Translation.h"
#include "platform/device/Device.h"
#include "platform/storage/Bundle.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

constexpr const char* kIdentifier = "com.valdren.quorbel";

/// Has the clips decoded and the way to the sound server opened before the first press.
void prepareSounds() {
  std::vector<std::string> paths;
  for (const Sound& sound : sounds()) {
    if (auto path = platform::Bundle::main().pathForResource(sound.resource, kClipType)) {
      paths.push_back(*std::move(path));
    }
  }
  platform::AudioPlayer::prepare(std::move(paths));
}

}  // namespace

platform::ApplicationDescription describe(const Options& options) {
  using platform::translated;
  platform::ApplicationDescription description;
  description.identifier = kIdentifier;
  description.name = "Quorbel";
  description.version = QUORBEL_VERSION;
  description.about =
      translated("Fourteen buttons, fourteen sounds, and an ad.") + "\n\n" +
      translated(
          "The ad's request tells the ad server what kind of device and window this is, the "
          "language, how earlier ads did, and a number that stands for this application on this "
          "machine. It tells no name and no place. \"quorbel --print-request\" prints all of it.");
  description.storedLabel = translated("What is stored on this device");
  description.resourceBase = "/com/valdren/quorbel";
  description.makeDelegate = [] { return std::make_unique<quorbelAppDelegate>(); };
  description.screens = {
      {"quorbelViewController", [] { return std::make_shared<quorbelViewController>(); }},
      {"quorbeliPad", [] { return std::make_shared<quorbeliPad>(); }},
  };
  description.idiom = options.idiom;
  description.landscape = options.landscape;
  return description;
}

int runSoundboard(platform::ApplicationDescription description, const Options& options) {
  std::unique_ptr<AdNetworkSetup> network;
  std::unique_ptr<platform::Timer> firstFrame;
  description.starting = [&] {
    // The window comes first; nobody can press before it is there.
    firstFrame = platform::Screen::shared().whenSettled(prepareSounds);
    network = std::make_unique<AdNetworkSetup>(options);
  };
  platform::Bundle::main().setIdentifier(description.identifier);
  return platform::applicationMain(description);
}

}  // namespace quorbel
