// Walks through the real application, looks at each step and takes a picture of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/Seconds.h"
#include "platform/base/WeakPtr.h"
#include "platform/ui/Window.h"

namespace platform = valdren::platform;

namespace sandbox {
class Sandbox;
}

namespace quorbel {

/// One thing to do and to see.
struct TourStep {
  std::string title;
  std::function<void()> act;
  /// Asked until it gives an empty text; what it gives last, when time runs out, is why the step
  /// failed.
  std::function<std::string()> problem;
  /// The time until then.
  platform::Seconds patience{10};
  /// What else there is to say of a step that did not fail.
  std::function<std::string()> remark = nullptr;
};

/// Goes through steps one after another on the run loop and leaves numbered pictures and a report,
/// "tour.txt", in its folder.
class Tour : public platform::WeakTarget {
 public:
  /// `finished` gets the number of steps that failed.
  Tour(std::string folder, std::vector<TourStep> steps, std::function<void(int failed)> finished);

  /// Makes the folder and begins; false, with a line on standard error, when nothing can be written
  /// there.
  bool begin();

 private:
  void beginStep();
  void watchStep();
  void endStep(const std::string& problem);
  std::string pictureName() const;

  std::string folder_;
  std::vector<TourStep> steps_;
  std::function<void(int)> finished_;
  std::size_t current_ = 0;
  platform::Seconds stepBegan_{0};
  int failed_ = 0;
  std::string report_;
};

/// The steps through the soundboard that is shown now.
std::vector<TourStep> soundboardSteps();

/// The steps through the ads of a sandbox: their taps, what these open, and, where `network` is
/// given, what the next ad request tells of them. It outlives the steps.
std::vector<TourStep> adSteps(sandbox::Sandbox* network);

}  // namespace quorbel
