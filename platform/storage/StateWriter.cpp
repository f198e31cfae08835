#include "platform/storage/StateWriter.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/base/Log.h"
#include "platform/storage/AtomicFile.h"

namespace valdren::platform {
namespace {

constexpr auto kRest = std::chrono::milliseconds(500);
/// A slow disk must not keep the application from ending.
constexpr auto kPatience = std::chrono::seconds(5);

}  // namespace

StateWriter::~StateWriter() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void StateWriter::put(std::string path, std::optional<std::string> content) {
  std::unique_lock lock(mutex_);
  putInto(files_, {std::move(path), std::move(content)});
  wanted_ = true;
  if (!thread_.joinable()) start();
  if (!thread_.joinable()) return writeAll(lock);
  lock.unlock();
  wake_.notify_one();
}

void StateWriter::putInto(Files& files, File file) {
  const auto isSame = [&file](const File& other) { return other.path == file.path; };
  const auto place = std::find_if(files.begin(), files.end(), isSame);
  if (place == files.end()) {
    files.push_back(std::move(file));
  } else {
    *place = std::move(file);
  }
}

void StateWriter::hasten() {
  {
    const std::lock_guard lock(mutex_);
    hurried_ = wanted_;
  }
  wake_.notify_one();
}

bool StateWriter::flush() {
  std::unique_lock lock(mutex_);
  if (!thread_.joinable()) return files_.empty();
  if (!files_.empty()) wanted_ = hurried_ = true;
  wake_.notify_one();
  done_.wait_for(lock, kPatience, [this] { return !wanted_ && !writing_; });
  return files_.empty() && !writing_;
}

void StateWriter::start() {
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // No thread is available; the next `put` tries again.
  }
}

void StateWriter::run() {
  removeAbandonedFiles(folder_);
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [this] { return wanted_ || ending_; });
    wake_.wait_until(lock, restsUntil_, [this] { return hurried_ || ending_; });
    hurried_ = false;
    writeAll(lock);
    if (ending_ && !wanted_) return;  // more may have been put during the write
    restsUntil_ = Clock::now() + kRest;
  }
}

Result<> StateWriter::write(const File& file) {
  return file.content ? writeFileAtomically(file.path, *file.content)
                      : removeFileDurably(file.path);
}

void StateWriter::writeAll(std::unique_lock<std::mutex>& lock) {
  Files batch = std::exchange(files_, {});
  wanted_ = false;
  writing_ = true;
  lock.unlock();
  Result<> written;
  auto file = batch.begin();
  while (file != batch.end() && (written = write(*file))) ++file;
  lock.lock();
  // Files that could not be written stay first; newer contents replace them.
  batch.erase(batch.begin(), file);
  for (File& newer : files_) putInto(batch, std::move(newer));
  files_ = std::move(batch);
  writing_ = false;
  if (!written && !complained_) {
    logWarning("The state cannot be saved: " + written.error().message + ".");
  }
  complained_ = !written;
  done_.notify_all();
}

}  // namespace valdren::platform
