// Decoded clips, kept in memory so that a press does not wait for decoding.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/ClipDecoder.h"

namespace valdren::platform {

/// Keeps the clips used last, up to 64 MiB. A file that has changed is decoded again. May be used
/// on any thread.
class ClipCache {
 public:
  static ClipCache& shared();
  ~ClipCache();

  /// The clip of the file, decoded now unless it is cached. Never null.
  Result<std::shared_ptr<const DecodedClip>> clip(const std::string& path);

  /// Decodes the files in advance, on a background thread.
  void prepare(std::vector<std::string> paths);

 private:
  struct Version {
    std::uint64_t size = 0;
    std::int64_t changed = 0;
    bool operator==(const Version&) const = default;
  };
  struct Kept {
    std::string path;
    Version version;
    std::shared_ptr<const DecodedClip> clip;
  };

  static Result<Version> versionOf(const std::string& path);
  std::shared_ptr<const DecodedClip> find(const std::string& path, const Version& version);
  void keep(Kept kept);

  std::mutex mutex_;
  std::list<Kept> kept_;  // most recently used first; guarded by mutex_
  std::jthread preparing_;
};

}  // namespace valdren::platform
