// What the phone's and the tablet's screen have in common: fourteen sounds, a stop button, a
// banner.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ads/api/VADBannerView.h"
#include "platform/audio/AudioPlayer.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/ViewController.h"

namespace platform = valdren::platform;

namespace quorbel {

/// One sound button: the action that it triggers and the clip's resource name.
struct Sound {
  const char* action;
  const char* resource;
};

/// The sounds, in the order of the interface files.
const std::vector<Sound>& sounds();
/// The type of every clip.
inline constexpr const char* kClipType = "m4a";

/// The ads that the banner shows.
inline constexpr const char* kAdUnitID = "a19d27c3b40e6f5";

class SoundScreen : public platform::ViewController, public platform::AudioPlayerDelegate {
 public:
  SoundScreen();

  void viewDidLoad() override;

  /// What the banner asks for.
  static std::shared_ptr<valdren::VADRequest> makeRequest();
  /// What is done with the banner once it is in its place; asks for an ad when nothing else is set.
  void setBannerTask(std::function<void(valdren::VADBannerView&)> task) {
    bannerTask_ = std::move(task);
  }

  /// Plays the action's clip from its beginning, cutting off the one before it. Unknown actions are
  /// ignored.
  void play(const std::string& action);
  /// Silences the clip that plays, if any.
  void stop();

  /// The player of the clip started last; null before the first, and when that clip is missing.
  const platform::AudioPlayer* player() const { return theAudio.get(); }
  valdren::VADBannerView& banner() const { return *bannerView_; }
  /// The view with the buttons; null when the interface file could not be read.
  platform::InterfaceView* controls();

  /// A clip that the sound server did not play: says so on the screen until sound is back.
  void audioPlayerDidFinishPlaying(platform::AudioPlayer& player, bool successfully) override;

 private:
  void placeBanner();
  void mark(const std::string& action);
  void followPlayer();
  void setSilent(bool silent);

  std::shared_ptr<valdren::VADBannerView> bannerView_;
  std::function<void(valdren::VADBannerView&)> bannerTask_ = [](valdren::VADBannerView& banner) {
    banner.loadRequest(makeRequest());
  };
  std::unique_ptr<platform::AudioPlayer> theAudio;
  bool silent_ = false;  // whether the screen says that there is no sound
  struct : platform::WeakTarget {
  } silence_;           // whose delayed calls wait for the end of that
  std::string marked_;  // the action whose button shows that its clip plays
};

}  // namespace quorbel
