#include "app/SoundScreen.h"

#include <algorithm>

#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"
#include "platform/storage/Bundle.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

constexpr double kBannerWidth = 320;
constexpr double kBannerHeight = 50;

/// The notice in the interface files that there is no sound.
constexpr const char* kSilence = "silence";

/// The time between two checks whether the clip still plays, in seconds.
constexpr platform::Seconds kFollowInterval{0.1};

}  // namespace

const std::vector<Sound>& sounds() {
  static const std::vector<Sound> all = {
      {"wikipedia", "wikipedia"},
      {"family", "gresh-family"},
      {"shoot", "shoot-gresh"},
      {"retards", "retards"},
      {"proudest", "proudest-moment"},
      {"presents", "presents"},
      {"dorvan", "i-am-dorvan"},
      {"happy", "happy-bday-ardo"},
      {"friends", "friends-with-everybody"},
      {"fear", "fear-or-love"},
      {"collar", "collar-blind"},
      {"candy", "candy"},
      {"babies", "babies"},
      {"arabs", "arabs"},
  };
  return all;
}

SoundScreen::SoundScreen() {
  for (const Sound& sound : sounds()) {
    setAction(sound.action, [this, action = std::string(sound.action)] { play(action); });
  }
  setAction("stop", [this] { stop(); });
}

void SoundScreen::viewDidLoad() {
  platform::ViewController::viewDidLoad();
  placeBanner();
}

std::shared_ptr<valdren::VADRequest> SoundScreen::makeRequest() {
  auto request = valdren::VADRequest::request();
  request->setTesting(true);
  return request;
}

void SoundScreen::placeBanner() {
  const double top = view()->frame().height - kBannerHeight;
  bannerView_ =
      std::make_shared<valdren::VADBannerView>(platform::Rect{0, top, kBannerWidth, kBannerHeight});
  // Desktop windows are resized; the banner stays at the bottom edge.
  bannerView_->setAutoresizingMask(platform::kFlexibleTopMargin);
  bannerView_->setAdUnitID(kAdUnitID);
  bannerView_->setRootViewController(this);
  view()->addSubview(bannerView_);
  bannerTask_(*bannerView_);
}

void SoundScreen::play(const std::string& action) {
  const auto sound = std::find_if(sounds().begin(), sounds().end(),
                                  [&](const Sound& each) { return each.action == action; });
  if (sound == sounds().end()) return;
  const auto path = platform::Bundle::main().pathForResource(sound->resource, kClipType);
  theAudio.reset();
  if (path) {
    auto player = platform::AudioPlayer::withContentsOfFile(*path);
    if (player) {
      theAudio = std::move(*player);
    } else {
      platform::logWarning("The clip \"" + *path +
                           "\" cannot be played: " + player.error().message + ".");
    }
  } else {
    platform::logWarning(std::string("The clip \"") + sound->resource + "." + kClipType +
                         "\" is missing.");
  }
  if (theAudio) {
    theAudio->setDelegate(this);
    theAudio->play();
  }
  mark(theAudio && theAudio->isPlaying() ? action : "");
}

void SoundScreen::stop() {
  if (theAudio) theAudio->stop();
  mark("");
}

platform::InterfaceView* SoundScreen::controls() {
  return dynamic_cast<platform::InterfaceView*>(view().get());
}

void SoundScreen::audioPlayerDidFinishPlaying(platform::AudioPlayer&, bool successfully) {
  if (successfully || silent_) return;
  setSilent(true);
  platform::AudioPlayer::awaitSound(silence_, [this] { setSilent(false); });
}

void SoundScreen::setSilent(bool silent) {
  silent_ = silent;
  if (platform::InterfaceView* const lines = controls()) lines->setHidden(kSilence, !silent);
}

void SoundScreen::mark(const std::string& action) {
  platform::InterfaceView* const buttons = controls();
  if (!buttons) return;
  if (!marked_.empty()) buttons->setSelected(marked_, false);
  marked_ = action;
  platform::RunLoop::shared().cancelPerformRequests(*this);
  if (marked_.empty()) return;
  buttons->setSelected(marked_, true);
  followPlayer();
}

void SoundScreen::followPlayer() {
  platform::RunLoop::shared().performAfterDelay(*this, kFollowInterval, [this] {
    if (theAudio && theAudio->isPlaying()) {
      followPlayer();
    } else {
      mark("");
    }
  });
}

}  // namespace quorbel
