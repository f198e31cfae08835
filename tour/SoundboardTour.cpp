// The tour's way through the soundboard: the ad, every button, then stop.
#include "tests/support/Taps.h"
#include "tour/Tour.h"
#include "tour/TourViews.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

using quorbel_tests::frameOf;

/// A clip that is not heard within this many seconds will not be heard.
constexpr platform::Seconds kPressPatience{2};
/// An ad takes two pages of the web engine, whose first process may be slow to start.
constexpr platform::Seconds kAdPatience{30};

bool overlap(const platform::Rect& first, const platform::Rect& second) {
  return first.x < second.x + second.width && second.x < first.x + first.width &&
         first.y < second.y + second.height && second.y < first.y + first.height;
}

std::string screenProblem() {
  SoundScreen* const shown = soundScreen();
  if (!shown || !shown->controls()) return "the sound screen is not shown";
  platform::InterfaceView& controls = *shown->controls();
  if (controls.controls().size() != sounds().size() + 1) return "buttons are missing";
  for (const std::string& control : controls.controls()) {
    const platform::Rect frame = frameOf(controls, control);
    if (frame.width < 44 || frame.height < 44) {
      return "the button \"" + controls.titleOfControl(control) + "\" is too small to be pressed";
    }
  }
  if (overlap(frameOf(controls, "stop"), shown->banner().frame())) {
    return "the banner covers the stop button";
  }
  return "";
}

/// What people read on the button.
std::string titleOf(const std::string& control) {
  SoundScreen* const shown = soundScreen();
  return shown && shown->controls() ? shown->controls()->titleOfControl(control) : control;
}

std::string playingProblem(const std::string& action) {
  SoundScreen* const shown = soundScreen();
  if (!shown || !shown->controls()) return "the sound screen is not shown";
  if (!shown->player() || !shown->player()->isPlaying()) return "no clip plays";
  for (const Sound& sound : sounds()) {
    const bool selected = shown->controls()->isSelected(sound.action);
    if (selected == (sound.action == action)) continue;
    return "the button \"" + titleOf(sound.action) + "\" shows the wrong state";
  }
  return "";
}

std::string silenceProblem() {
  SoundScreen* const shown = soundScreen();
  if (!shown || !shown->controls()) return "the sound screen is not shown";
  if (shown->player() && shown->player()->isPlaying()) return "a clip still plays";
  for (const Sound& sound : sounds()) {
    if (shown->controls()->isSelected(sound.action)) return "a button still shows a playing clip";
  }
  return "";
}

void press(const std::string& control) {
  if (SoundScreen* const shown = soundScreen(); shown && shown->controls()) {
    quorbel_tests::press(*shown->controls(), control);
  }
}

}  // namespace

std::vector<TourStep> soundboardSteps() {
  std::vector<TourStep> steps;
  steps.push_back({"the screen", {}, screenProblem});
  steps.push_back({"an ad in the banner", {}, bannerProblem, kAdPatience});
  for (const Sound& sound : sounds()) {
    const std::string action = sound.action;
    steps.push_back({"press " + titleOf(action), [action] { press(action); },
                     [action] { return playingProblem(action); }, kPressPatience});
  }
  steps.push_back({"stop", [] { press("stop"); }, silenceProblem});
  return steps;
}

}  // namespace quorbel
