#include "platform/audio/ClipCache.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace valdren::platform {
namespace {

constexpr std::size_t kMostBytes = 64 * 1024 * 1024;

}  // namespace

ClipCache& ClipCache::shared() {
  static ClipCache cache;
  return cache;
}

ClipCache::~ClipCache() = default;

Result<ClipCache::Version> ClipCache::versionOf(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    return Error{kClipErrorDomain, 0, std::generic_category().message(errno)};
  }
  return Version{
      .size = std::uint64_t(status.st_size),
      .changed = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

Result<std::shared_ptr<const DecodedClip>> ClipCache::clip(const std::string& path) {
  const Result<Version> version = versionOf(path);
  if (!version) return version.error();
  if (auto kept = find(path, *version)) return kept;
  auto clip = decodeClip(path);
  if (clip) keep({path, *version, *clip});
  return clip;
}

std::shared_ptr<const DecodedClip> ClipCache::find(const std::string& path,
                                                   const Version& version) {
  const std::lock_guard lock(mutex_);
  const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& each) {
    return each.path == path && each.version == version;
  });
  if (found == kept_.end()) return nullptr;
  kept_.splice(kept_.begin(), kept_, found);
  return found->clip;
}

void ClipCache::keep(Kept kept) {
  const std::lock_guard lock(mutex_);
  std::erase_if(kept_, [&](const Kept& each) { return each.path == kept.path; });
  kept_.push_front(std::move(kept));
  std::size_t bytes = 0;
  for (auto each = kept_.begin(); each != kept_.end(); ++each) {
    bytes += each->clip->samples.size() * sizeof(float);
    if (bytes > kMostBytes && each != kept_.begin()) {
      kept_.erase(each, kept_.end());
      return;
    }
  }
}

void ClipCache::prepare(std::vector<std::string> paths) {
  preparing_ = std::jthread([this, paths = std::move(paths)](const std::stop_token& stop) {
    for (const std::string& path : paths) {
      if (stop.stop_requested()) return;
      // What is wrong with it is said when it is asked for.
      static_cast<void>(clip(path));
    }
  });
}

}  // namespace valdren::platform
