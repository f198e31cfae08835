// A local copy of one HTTP resource, kept in the caches folder and revalidated with the server.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ads/support/VADCacheFolder.h"
#include "platform/base/Date.h"
#include "platform/base/WeakPtr.h"
#include "platform/net/URLConnection.h"

namespace valdren {

class VADCachedFile;

/// How a fetch's failure reads in the log.
std::string describedFailure(const std::optional<platform::Error>& error);

/// Told how a fetch ends, and asked at each redirect. It may let go of the file in any of these.
class VADCachedFileDelegate : public virtual platform::WeakTarget {
 public:
  /// The local file is good: freshly written, or unchanged on the server.
  virtual void cachedFileDownloadDidEnd(VADCachedFile& file) = 0;
  /// The fetch failed. Without an error the server answered with a status other than 200 and 304,
  /// or the URL cannot be fetched.
  virtual void cachedFileDownloadDidFail(VADCachedFile& file,
                                         const std::optional<platform::Error>& error) = 0;
  /// None follows the redirect; an error refuses it and becomes the fetch's failure.
  virtual std::optional<platform::Error> cachedFileShouldRedirectToURL(
      VADCachedFile& file, const platform::URL& url) = 0;

 protected:
  ~VADCachedFileDelegate() = default;
};

/// At most one fetch is under way at a time; each tells its delegate about its end once. The local
/// file outlives the object. Where it cannot be written, what was fetched is kept in memory in its
/// place, as long as the object lives, and the first such copy of a run logs one line. Main thread
/// only.
class VADCachedFile final : public std::enable_shared_from_this<VADCachedFile>,
                            private platform::URLConnectionDelegate {
 public:
  /// The delegate is not owned. No file is read and nothing is fetched yet.
  static std::shared_ptr<VADCachedFile> initWithDelegate(
      platform::WeakPtr<VADCachedFileDelegate> delegate, const platform::URL& url);
  ~VADCachedFile();
  VADCachedFile(const VADCachedFile&) = delete;
  VADCachedFile& operator=(const VADCachedFile&) = delete;

  VADCachedFileDelegate* delegate() const { return delegate_.get(); }
  void setDelegate(platform::WeakPtr<VADCachedFileDelegate> delegate) { delegate_ = delegate; }

  /// Fetches the resource unless the local copy is still good. Nothing while a fetch is under way.
  void validate();
  /// The same, past every cache on the way: the request's query gets the present time.
  void validateWithCacheBuster();
  /// Stops the fetch under way without a word to the delegate.
  void cancel();
  /// The same, and deletes the local file.
  void invalidate();

  bool hasContent() const;
  /// The local file's text; none when there is no file, or when it is not UTF-8. What is no regular
  /// file or over 16 MiB counts as none here and everywhere.
  std::optional<std::string> content() const;
  /// Where the local file is or will be; none when the user has no caches folder. Stays within the
  /// caches folder whatever the URL's host is, and is another one for each host and URL.
  const std::optional<std::string>& filePath() const;
  /// The local file's time as HTTP writes it, but without a zone; none when there is no file.
  std::optional<std::string> fileModificationDate() const;

  const platform::URL& sourceURL() const { return sourceURL_; }
  /// The URL last asked for: the source, or where redirects have led.
  const platform::URL& httpDestinationURL() const { return httpDestinationURL_; }
  /// Of the last response that was no redirect; 0 before any.
  int httpStatusCode() const { return httpStatusCode_; }
  /// Of the last response, redirects included.
  const platform::Headers& httpHeaders() const { return httpHeaders_; }

  std::string description() const;

 private:
  VADCachedFile(platform::WeakPtr<VADCachedFileDelegate> delegate, const platform::URL& url);

  void beginFetchWithCacheBuster(bool cacheBuster);
  void cleanUpConnection();
  /// The same, unless a delegate has begun another fetch in the meantime.
  void cleanUpFetch(unsigned fetch);
  /// In the local file; in memory where that cannot be written.
  void keepReceivedData();
  /// Of the local file; none when there is none.
  std::optional<platform::Date> modificationTime() const;
  void tellEnd();
  void tellFailure(const std::optional<platform::Error>& error);

  void connectionWillSendRequest(platform::URLConnection&, const platform::URLRequest& request,
                                 const platform::URLResponse* redirectResponse) override;
  void connectionDidReceiveResponse(platform::URLConnection&,
                                    const platform::URLResponse& response) override;
  void connectionDidReceiveData(platform::URLConnection&, std::string_view data) override;
  void connectionDidFinishLoading(platform::URLConnection&) override;
  void connectionDidFail(platform::URLConnection&, const platform::Error& error) override;

  platform::WeakPtr<VADCachedFileDelegate> delegate_;
  platform::URL sourceURL_;
  mutable std::optional<std::string> filePath_;
  std::optional<VADCopyInUse> copyInUse_;
  std::unique_ptr<platform::URLConnection> connection_;
  unsigned fetch_ = 0;  // the number of the latest
  std::string receivedData_;
  /// The resource, when the local file could not be written; it stands for that file until then.
  std::optional<std::string> unwritten_;
  std::string receivedModificationDate_;
  platform::URL httpDestinationURL_;
  int httpStatusCode_ = 0;
  platform::Headers httpHeaders_;
};

}  // namespace valdren
