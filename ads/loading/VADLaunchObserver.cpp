#include "ads/loading/VADLaunchObserver.h"

#include "platform/application/Application.h"
#include "platform/base/NotificationCenter.h"

namespace valdren {
namespace {

[[maybe_unused]] const VADLaunchObserver& madeAtTheStart = VADLaunchObserver::shared();

}  // namespace

VADLaunchObserver& VADLaunchObserver::shared() {
  static VADLaunchObserver observer;
  return observer;
}

void VADLaunchObserver::observe() {
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, platform::kApplicationDidFinishLaunching, [this](const auto&) {
        didAppFinishLaunching_ = true;
        platform::NotificationCenter::defaultCenter().removeObserver(*this);
      });
}

void VADLaunchObserver::reset() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
  didAppFinishLaunching_ = false;
  observe();
}

}  // namespace valdren
