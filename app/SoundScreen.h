// The common part of the phone's and the tablet's screen: fourteen sounds, a stop button, a banner.
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

/// One sound button: its action and its clip's resource name.
struct Sound {
  const char* action;
  const char* resource;
};

/// The sounds, in the order of the interface files.
const std::vector<Sound>& sounds();
/// The type of every clip.
inline constexpr const char* kClipType = "m4a";

/// The banner's ad unit.
inline constexpr const char* kAdUnitID = "a19d27c3b40e6f5";

class SoundScreen : public platform::ViewController, public platform::AudioPlayerDelegate {
 public:
  SoundScreen();

  void viewDidLoad() override;

  /// The request for the banner.
  static std::shared_ptr<valdren::VADRequest> makeRequest();
  /// Sets what to do with the banner once it is placed; the default requests an ad.
  void setBannerTask(std::function<void(valdren::VADBannerView&)> task) {
    bannerTask_ = std::move(task);
  }

  /// Plays the action's clip from its start and stops the previous one. Unknown actions are
  /// ignored.
  void play(const std::string& action);
  /// Stops the playing clip, if any.
  void stop();

  /// The player of the latest clip; null before the first one and when the clip is missing.
  const platform::AudioPlayer* player() const { return theAudio.get(); }
  valdren::VADBannerView& banner() const { return *bannerView_; }
  /// The view with the buttons; null when the interface file could not be read.
  platform::InterfaceView* controls();

  /// Shows the notice when the sound server did not play a clip, until sound is back.
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
  bool silent_ = false;  // whether the notice is shown
  struct : platform::WeakTarget {
  } silence_;           // the target of the delayed calls that wait for sound
  std::string marked_;  // the action whose button is marked as playing
};

}  // namespace quorbel
