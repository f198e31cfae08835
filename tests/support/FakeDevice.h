// A device, screen and sound route whose values a test sets.
#pragma once

#include "platform/base/RunLoop.h"
#include "platform/device/AudioSession.h"
#include "platform/device/Device.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Replaces the device while it exists. Each answer is a member.
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
  platform::Device::Replacement replacement_{*this};
};

/// In force while it lives.
class FakeScreen final : public platform::Screen {
 public:
  std::optional<double> scaleFactor = 2.0;
  platform::Rect frame = {0, 20, 320, 460};

  std::optional<double> scale() const override { return scaleFactor; }
  platform::Rect applicationFrame() const override { return frame; }
  /// The seconds until the window has its final size; below 0 it has it already.
  double settlesIn = -1;
  std::unique_ptr<platform::Timer> whenSettled(std::function<void()> task) override {
    if (settlesIn >= 0)
      return platform::RunLoop::shared().scheduleTimer(platform::Seconds(settlesIn), task);
    task();
    return nullptr;
  }

 private:
  platform::Screen::Replacement replacement_{*this};
};

/// In force while it lives.
class FakeAudioSession final : public platform::AudioSession {
 public:
  platform::Result<> initialized;
  platform::Result<std::optional<std::string>> currentRoute = std::optional<std::string>("Speaker");

  platform::Result<> initialize() override { return initialized; }
  platform::Result<std::optional<std::string>> route() override { return currentRoute; }

 private:
  platform::AudioSession::Replacement replacement_{*this};
};

}  // namespace quorbel_tests
