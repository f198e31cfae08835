#include "tour/TourViews.h"

#include "ads/loading/VADObjectPrivate.h"
#include "ads/support/VADPrivateUtilities.h"
#include "tests/support/Pictures.h"
#include "tests/support/Taps.h"

namespace platform = valdren::platform;

namespace quorbel {

SoundScreen* soundScreen() {
  platform::Window* const window = platform::Window::keyWindow();
  return window ? dynamic_cast<SoundScreen*>(window->rootViewController().get()) : nullptr;
}

std::string bannerProblem() {
  SoundScreen* const shown = soundScreen();
  if (!shown) return "the sound screen is not shown";
  const auto loader = valdren::VADPrivateUtilities::privateObjectForKey<valdren::VADObjectPrivate>(
      &shown->banner());
  if (!loader || loader->state() != valdren::kVADStateShowingAd) return "the banner has no ad";
  // The web engine draws it a moment later.
  if (quorbel_tests::isBlank(*shown->window(), shown->banner().frame()))
    return "the banner's ad is not drawn";
  return "";
}

void tap(const platform::View& view) {
  platform::Window* const window = view.window();
  if (!window) return;
  platform::Point point{view.frame().width / 2, view.frame().height / 2};
  // The outermost view fills the window.
  for (const platform::View* each = &view; each->superview(); each = each->superview()) {
    point = {point.x + each->frame().x, point.y + each->frame().y};
  }
  quorbel_tests::tap(*window, point);
}

}  // namespace quorbel
