#include "ads/support/VADCachedFile.h"

#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <utility>

#include "ads/support/VADCacheFolder.h"
#include "ads/support/VADErrorCode.h"
#include "ads/support/VADNetworkUtilities.h"
#include "platform/base/Date.h"
#include "platform/base/HTTPDate.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/base/Text.h"
#include "platform/storage/AtomicFile.h"
#include "platform/storage/RegularFile.h"

namespace valdren {
namespace {

/// As HTTP writes it, without the zone: "Wed, 09 Jun 2010 10:18:14".
std::string dateText(platform::Date date) {
  const std::string text = platform::httpDateText(date);
  return text.substr(0, text.find(" GMT"));
}

/// None when the text is not what `dateText` writes. White space at its ends and letter case do not
/// count.
std::optional<platform::Date> dateFrom(std::string_view text) {
  const std::string trimmed(platform::trimmed(text));
  const auto date = platform::dateFromHTTPText(trimmed);
  const bool isOurs = date && platform::lowercase(dateText(*date)) == platform::lowercase(trimmed);
  return isOurs ? date : std::nullopt;
}

std::optional<platform::URL> withCacheBuster(const platform::URL& url) {
  char seconds[400];
  std::snprintf(seconds, sizeof seconds, "%.0f", platform::Date::now().secondsSince2001());
  return VADNetworkUtilities::appendQueryKey("unique", platform::Value(seconds), url);
}

/// What earlier runs left behind is cleared away once, before this run looks at any copy.
void trimCacheFolderOnce() {
  static const bool trimmed = (trimCacheFolder(), true);
  static_cast<void>(trimmed);
}

void setTimes(const std::string& path, platform::Date date) {
  const timeval time{static_cast<time_t>(date.secondsSince1970()), 0};
  const timeval accessAndModification[] = {time, time};
  ::utimes(path.c_str(), accessAndModification);
}

std::string modificationTextOf(const platform::Headers& headers) {
  const auto header = headers.find("Last-Modified");
  return header == headers.end() ? "" : header->second.substr(0, header->second.find("GMT"));
}

}  // namespace

std::string describedFailure(const std::optional<platform::Error>& error) {
  return error ? error->domain + " " + std::to_string(error->code) + ": " + error->message
               : "no error below HTTP";
}

std::shared_ptr<VADCachedFile> VADCachedFile::initWithDelegate(
    platform::WeakPtr<VADCachedFileDelegate> delegate, const platform::URL& url) {
  return std::shared_ptr<VADCachedFile>(new VADCachedFile(delegate, url));
}

VADCachedFile::VADCachedFile(platform::WeakPtr<VADCachedFileDelegate> delegate,
                             const platform::URL& url)
    : delegate_(delegate), sourceURL_(url), httpDestinationURL_(url) {
  platform::assertMainThread();
  trimCacheFolderOnce();
  if (const auto& path = filePath()) copyInUse_.emplace(*path);
}

VADCachedFile::~VADCachedFile() {
  platform::assertMainThread();
  invalidateWeakReferences();
  delegate_ = nullptr;
  cleanUpConnection();
}

void VADCachedFile::validate() {
  if (!connection_) beginFetchWithCacheBuster(false);
}

void VADCachedFile::validateWithCacheBuster() {
  if (!connection_) beginFetchWithCacheBuster(true);
}

void VADCachedFile::cancel() {
  platform::assertMainThread();
  cleanUpConnection();
}

void VADCachedFile::invalidate() {
  platform::assertMainThread();
  cleanUpConnection();
  unwritten_.reset();
  const auto& path = filePath();
  if (!path || ::unlink(path->c_str()) != 0) return;
  // The host's folder goes with its last file; hosts may be many.
  ::rmdir(std::filesystem::path(*path).parent_path().c_str());
}

bool VADCachedFile::hasContent() const {
  return unwritten_ || modificationTime();
}

std::optional<std::string> VADCachedFile::content() const {
  if (unwritten_) return platform::isUTF8(*unwritten_) ? unwritten_ : std::nullopt;
  if (!filePath()) return std::nullopt;
  auto bytes = platform::readRegularFile(*filePath(), kVADLargestCopy);
  if (!bytes || !platform::isUTF8(*bytes)) return std::nullopt;
  return std::move(*bytes);
}

const std::optional<std::string>& VADCachedFile::filePath() const {
  if (!filePath_) filePath_ = cachePathForURL(sourceURL_);
  return filePath_;
}

std::optional<platform::Date> VADCachedFile::modificationTime() const {
  struct stat status {};
  if (unwritten_ || !filePath() || ::stat(filePath()->c_str(), &status) != 0) return std::nullopt;
  const bool usable =
      S_ISREG(status.st_mode) && static_cast<std::size_t>(status.st_size) <= kVADLargestCopy;
  if (!usable) return std::nullopt;
  return platform::Date(static_cast<double>(status.st_mtim.tv_sec));
}

std::optional<std::string> VADCachedFile::fileModificationDate() const {
  const auto time = modificationTime();
  return time ? std::optional(dateText(*time)) : std::nullopt;
}

std::string VADCachedFile::description() const {
  char identity[100];
  std::snprintf(identity, sizeof identity, "<VADCachedFile: %p> HTTP code: %i",
                static_cast<const void*>(this), httpStatusCode_);
  return std::string(identity) + "\n\turl: " + sourceURL_.absoluteString() +
         "\n\tfile: " + filePath().value_or("(null)");
}

void VADCachedFile::beginFetchWithCacheBuster(bool cacheBuster) {
  platform::assertMainThread();
  const platform::URL url =
      cacheBuster ? withCacheBuster(sourceURL_).value_or(sourceURL_) : sourceURL_;
  platform::URLRequest request{.url = url,
                               .cachePolicy = platform::CachePolicy::ReloadIgnoringLocalCache,
                               .handlesCookies = true};
  const auto& userAgent = VADNetworkUtilities::userAgentString();
  if (userAgent && !userAgent->empty()) request.headers["User-Agent"] = *userAgent;
  if (const auto date = fileModificationDate()) request.headers["If-Modified-Since"] = *date;

  ++fetch_;
  connection_ = platform::URLLoading::shared().makeConnection(request, this);
  if (!connection_) return tellFailure(std::nullopt);
  receivedData_.clear();
  connection_->start();
}

void VADCachedFile::cleanUpConnection() {
  connection_.reset();
  receivedData_ = {};
  receivedModificationDate_ = {};
}

void VADCachedFile::cleanUpFetch(unsigned fetch) {
  if (fetch_ == fetch) cleanUpConnection();
}

void VADCachedFile::tellEnd() {
  if (auto* delegate = delegate_.get()) delegate->cachedFileDownloadDidEnd(*this);
}

void VADCachedFile::tellFailure(const std::optional<platform::Error>& error) {
  if (auto* delegate = delegate_.get()) delegate->cachedFileDownloadDidFail(*this, error);
}

void VADCachedFile::connectionWillSendRequest(platform::URLConnection&,
                                              const platform::URLRequest& request,
                                              const platform::URLResponse* redirectResponse) {
  const platform::KeptUntilReturn kept(*this);
  httpDestinationURL_ = request.url;
  if (!redirectResponse) return;
  httpHeaders_ = redirectResponse->headers;
  auto* const delegate = delegate_.get();
  if (!delegate) return;
  const platform::URL url = request.url;
  const auto refusal = delegate->cachedFileShouldRedirectToURL(*this, url);
  if (!refusal) return;
  cleanUpConnection();
  tellFailure(refusal);
}

void VADCachedFile::connectionDidReceiveResponse(platform::URLConnection&,
                                                 const platform::URLResponse& response) {
  receivedData_.clear();
  if (!response.isHTTP()) return;
  const platform::KeptUntilReturn kept(*this);
  const unsigned fetch = fetch_;
  httpStatusCode_ = response.statusCode;
  httpHeaders_ = response.headers;
  if (response.statusCode == 200) {
    receivedModificationDate_ = modificationTextOf(response.headers);
    return;
  }
  if (response.statusCode == 304) {
    tellEnd();
  } else {
    tellFailure(std::nullopt);
  }
  cleanUpFetch(fetch);
}

void VADCachedFile::connectionDidReceiveData(platform::URLConnection&, std::string_view data) {
  receivedData_.append(data);
}

void VADCachedFile::connectionDidFinishLoading(platform::URLConnection&) {
  const platform::KeptUntilReturn kept(*this);
  const unsigned fetch = fetch_;
  const std::string modification = std::exchange(receivedModificationDate_, {});
  keepReceivedData();
  tellEnd();
  // Told before the time is set: whoever asks in the meantime sees when the file was written.
  const auto date = dateFrom(modification);
  if (date && !unwritten_ && filePath()) setTimes(*filePath(), *date);
  cleanUpFetch(fetch);
}

void VADCachedFile::connectionDidFail(platform::URLConnection&, const platform::Error& error) {
  const platform::KeptUntilReturn kept(*this);
  const platform::Error copy = error;  // NOLINT: the connection may own it
  cleanUpConnection();
  tellFailure(copy);
}

void VADCachedFile::keepReceivedData() {
  const platform::Result<> written =
      filePath() ? platform::writeFileAtomically(*filePath(), receivedData_, platform::Sync::No)
                 : platform::Error{kVADErrorDomain, 0, "there is no caches folder"};
  unwritten_.reset();
  if (written) return didWriteCopy(receivedData_.size());
  unwritten_ = std::move(receivedData_);
  static bool hasComplained = false;
  if (!std::exchange(hasComplained, true)) {
    platform::logWarning("<Valdren> Copies of ads cannot be kept: " + written.error().message +
                         ". They are fetched anew each time.");
  }
}

}  // namespace valdren
