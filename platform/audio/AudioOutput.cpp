#include "platform/audio/AudioOutput.h"

#include "platform/audio/SoundServer.h"
#include "platform/base/MainThread.h"

namespace valdren::platform {

AudioOutput& AudioOutput::shared() {
  static AudioOutput output;
  return output;
}

AudioOutput::AudioOutput() : server_(std::make_unique<SoundServer>()), thread_([this] { run(); }) {}

AudioOutput::~AudioOutput() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  server_->wake();
  thread_.join();
}

void AudioOutput::prepare() {
  assertMainThread();
  {
    const std::lock_guard lock(mutex_);
    connectWanted_ = true;
  }
  server_->wake();
}

bool AudioOutput::isAudible() const {
  return server_->isAudible();
}

std::shared_ptr<Voice> AudioOutput::start(std::shared_ptr<const DecodedClip> clip,
                                          std::size_t startFrame) {
  assertMainThread();
  auto voice = std::make_shared<Voice>(std::move(clip), startFrame);
  {
    const std::lock_guard lock(mutex_);
    incoming_.push_back(voice);
    connectWanted_ = changed_ = true;
  }
  server_->wake();
  return voice;
}

void AudioOutput::stop(Voice& voice) {
  assertMainThread();
  voice.stopping = true;
  {
    const std::lock_guard lock(mutex_);
    changed_ = true;
  }
  server_->wake();
}

void AudioOutput::run() {
  while (true) {
    std::vector<std::shared_ptr<Voice>> incoming;
    bool connectWanted = false;
    bool changed = false;
    {
      const std::lock_guard lock(mutex_);
      if (ending_) return;
      incoming.swap(incoming_);
      std::swap(connectWanted, connectWanted_);
      std::swap(changed, changed_);
    }
    if (changed) server_->update(std::move(incoming));
    if (connectWanted) server_->connect();
    server_->turn();
  }
}

}  // namespace valdren::platform
