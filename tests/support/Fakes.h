// The machine as a test wants it: clock, run loop, saved state, device, screen, sound route and a
// running application without a window. Each replaces the real one while it exists.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/application/Application.h"
#include "platform/base/Clock.h"
#include "platform/base/RunLoop.h"
#include "platform/device/AudioSession.h"
#include "platform/device/Device.h"
#include "platform/storage/UserDefaults.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// A clock that only moves on request. It starts at 1 January 2020 UTC, 1000 seconds after the
/// machine's start.
class FakeClock final : public platform::Clock {
 public:
  platform::Date now() const override { return platform::Date(seconds_); }
  platform::Seconds monotonicTime() const override { return platform::Seconds(monotonic_); }

  void advance(double seconds) {
    seconds_ += seconds;
    monotonic_ += seconds;
  }
  void setNow(double secondsSince1970) { seconds_ = secondsSince1970; }

 private:
  double seconds_ = 1577836800.0;
  double monotonic_ = 1000.0;
  Replacement replacement_{*this};
};

/// A run loop that only turns on request. It moves the clock along, if there is one.
class FakeRunLoop final : public platform::RunLoop {
 public:
  explicit FakeRunLoop(FakeClock* clock = nullptr) : clock_(clock) {}

  bool isMainThread() const override { return true; }
  /// What the main thread does before the task.
  Task meanwhile = [] {};
  void performOnMainThreadAndWait(const Task& task) override { meanwhile(), task(); }

  /// Lets `seconds` pass and runs what is due, in the order of due times. 0 is one turn: calls that
  /// are added with delay 0 during a turn wait for the next.
  void advance(double seconds);
  /// The number of waiting calls.
  std::size_t pendingCount() const { return sources_.size(); }

 protected:
  SourceID addSource(platform::Seconds delay, Task task) override;
  void removeSource(SourceID source) override { sources_.erase(source); }

 private:
  struct Source {
    double due;
    Task task;
  };

  FakeClock* clock_;
  double now_ = 0;
  SourceID next_ = 1;
  std::map<SourceID, Source> sources_;
  Replacement replacement_{*this};
};

/// User defaults in memory.
class FakeUserDefaults final : public platform::UserDefaults {
 public:
  using Values = std::map<std::string, platform::Value, std::less<>>;

  std::optional<platform::Value> objectForKey(std::string_view key) const override;
  void setObject(std::string_view key, platform::Value value) override {
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void removeObject(std::string_view key) override { values_.erase(std::string(key)); }
  void synchronize() override { written_ = values_; }
  void hasten() override {}
  bool flush() override {
    synchronize();
    return true;
  }

  /// The values of the last `synchronize`, which a new process would find.
  const Values& written() const { return written_; }

 private:
  Values values_;
  Values written_;
  Replacement replacement_{*this};
};

class FakeDevice final : public platform::Device {
 public:
  std::string modelName = "TestPhone";
  std::string version = "12.4.1";
  std::string identifier = "0f7a52a0-test-device";
  std::string machineName = "x86_64";
  std::optional<platform::InterfaceIdiom> idiom = platform::InterfaceIdiom::Phone;
  std::vector<std::string> languages = {"pt-PT", "en"};
  bool superuser = false;

  std::string model() const override { return modelName; }
  std::string systemVersion() const override { return version; }
  std::string uniqueIdentifier() const override { return identifier; }
  std::string machine() const override { return machineName; }
  std::optional<platform::InterfaceIdiom> userInterfaceIdiom() const override { return idiom; }
  std::vector<std::string> preferredLanguages() const override { return languages; }
  bool hasSuperuserRights() const override { return superuser; }

 private:
  Replacement replacement_{*this};
};

class FakeScreen final : public platform::Screen {
 public:
  std::optional<double> scaleFactor = 2.0;
  platform::Rect frame = {0, 20, 320, 460};
  /// The seconds until the window has its final size; below 0 it has it already.
  double settlesIn = -1;

  std::optional<double> scale() const override { return scaleFactor; }
  platform::Rect applicationFrame() const override { return frame; }
  std::unique_ptr<platform::Timer> whenSettled(std::function<void()> task) override;

 private:
  Replacement replacement_{*this};
};

class FakeAudioSession final : public platform::AudioSession {
 public:
  platform::Result<> initialized;
  platform::Result<std::optional<std::string>> currentRoute = std::optional<std::string>("Speaker");

  platform::Result<> initialize() override { return initialized; }
  platform::Result<std::optional<std::string>> route() override { return currentRoute; }

 private:
  Replacement replacement_{*this};
};

class FakeApplication final : public platform::Application {
 public:
  platform::ApplicationState state = platform::ApplicationState::Active;
  platform::InterfaceOrientation orientation = platform::InterfaceOrientation::Portrait;
  /// The schemes, in lower case, for which `canOpenURL` is true.
  std::set<std::string> openableSchemes;
  /// The opened URLs, in order.
  std::vector<std::string> openedURLs;
  /// Whether background tasks are granted.
  bool grantsBackgroundTasks = true;
  /// Every change of the status bar, in order.
  std::vector<bool> statusBarChanges;

  platform::ApplicationState applicationState() const override { return state; }

  bool isStatusBarHidden() const override { return statusBarHidden_; }
  void setStatusBarHidden(bool hidden) override;
  double statusBarHeight() const override { return statusBarHidden_ ? 0 : 20; }
  platform::InterfaceOrientation statusBarOrientation() const override { return orientation; }

  bool isIdleTimerDisabled() const override { return idleTimerDisabled_; }
  void setIdleTimerDisabled(bool disabled) override { idleTimerDisabled_ = disabled; }

  void openURL(const platform::URL& url) override { openedURLs.push_back(url.absoluteString()); }
  bool canOpenURL(const platform::URL& url) const override {
    return openableSchemes.contains(url.lowercaseScheme());
  }

  platform::BackgroundTaskID beginBackgroundTask(std::function<void()> expired) override;
  void endBackgroundTask(platform::BackgroundTaskID task) override { tasks_.erase(task); }

  /// The number of running background tasks.
  std::size_t runningTasks() const { return tasks_.size(); }
  /// Ends all running tasks, as the system does when their time is over.
  void expireBackgroundTasks();

  /// Posts one of the application's notices, with this application as the object.
  void post(const char* notice);
  /// Changes the state and posts the system's notices.
  void enterBackground();
  void enterForeground();

 private:
  bool statusBarHidden_ = false;
  bool idleTimerDisabled_ = false;
  platform::BackgroundTaskID lastTask_ = 0;
  std::map<platform::BackgroundTaskID, std::function<void()>> tasks_;
  Replacement replacement_{*this};
};

}  // namespace quorbel_tests
