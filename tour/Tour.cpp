#include "tour/Tour.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "platform/base/Clock.h"
#include "platform/base/RunLoop.h"
#include "tests/support/Pictures.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

constexpr platform::Seconds kLookInterval{0.02};  // seconds between two looks
constexpr platform::Seconds kPicturePatience{2};  // seconds more until no picture can be taken
constexpr platform::Seconds kSettling{0.15};      // seconds until what was done is also drawn

}  // namespace

Tour::Tour(std::string folder, std::vector<TourStep> steps,
           std::function<void(int failed)> finished)
    : folder_(std::move(folder)), steps_(std::move(steps)), finished_(std::move(finished)) {}

bool Tour::begin() {
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error || !std::ofstream(folder_ + "/tour.txt")) {
    std::fprintf(stderr, "quorbel-tour: the folder \"%s\" cannot be written.\n", folder_.c_str());
    return false;
  }
  beginStep();
  return true;
}

void Tour::beginStep() {
  if (current_ == steps_.size()) {
    report_ += std::to_string(steps_.size()) + " steps, " + std::to_string(failed_) + " failed\n";
    std::ofstream(folder_ + "/tour.txt") << report_;
    std::fputs(report_.c_str(), stdout);
    finished_(failed_);
    return;
  }
  stepBegan_ = platform::Clock::shared().monotonicTime();
  if (steps_[current_].act) steps_[current_].act();
  watchStep();
}

void Tour::watchStep() {
  platform::RunLoop::shared().performAfterDelay(*this, kLookInterval, [this] {
    const std::string problem = steps_[current_].problem();
    const platform::Seconds waited = platform::Clock::shared().monotonicTime() - stepBegan_;
    if (!problem.empty() && waited < steps_[current_].patience) {
      watchStep();
      return;
    }
    platform::RunLoop::shared().performAfterDelay(*this, kSettling,
                                                  [this, problem] { endStep(problem); });
  });
}

void Tour::endStep(const std::string& problem) {
  const std::string picture = pictureName();
  platform::Window* const window = platform::Window::keyWindow();
  const bool taken = window && quorbel_tests::savePicture(*window, folder_ + "/" + picture);
  const platform::Seconds waited = platform::Clock::shared().monotonicTime() - stepBegan_;
  if (!taken && waited < steps_[current_].patience + kPicturePatience) {
    // A window that is about to lay itself out anew has nothing to show until it has.
    platform::RunLoop::shared().performAfterDelay(*this, kLookInterval,
                                                  [this, problem] { endStep(problem); });
    return;
  }
  std::string trouble = problem;
  if (!taken) {
    trouble += std::string(trouble.empty() ? "" : "; ") + "no picture could be taken";
  }
  if (!trouble.empty()) ++failed_;
  report_ += picture + "  " + steps_[current_].title + ": ";
  report_ += trouble.empty() ? "as it should be" : "FAILED: " + trouble;
  const auto& remark = steps_[current_].remark;
  if (const std::string more = remark && trouble.empty() ? remark() : ""; !more.empty()) {
    report_ += ", " + more;
  }
  report_ += "\n";
  ++current_;
  beginStep();
}

std::string Tour::pictureName() const {
  std::string name;
  for (const char character : steps_[current_].title) {
    const bool plain = (character >= 'a' && character <= 'z') ||
                       (character >= 'A' && character <= 'Z') ||
                       (character >= '0' && character <= '9');
    name += plain ? character : '-';
  }
  char number[16];
  std::snprintf(number, sizeof number, "%02zu-", current_ + 1);
  return number + name + ".png";
}

}  // namespace quorbel
