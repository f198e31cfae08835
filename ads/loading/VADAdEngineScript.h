// The ad engine script, as a local copy that the script host is asked about once a day.
#pragma once

#include <memory>
#include <string>

#include "ads/loading/VADScriptFreshness.h"
#include "ads/support/VADCachedFile.h"

namespace valdren {

/// Fetches nothing until it is asked to. Main thread only.
class VADAdEngineScript {
 public:
  ~VADAdEngineScript();

  /// Where the script is fetched from.
  static platform::URL jsBuildAdURL();

  /// Sees to it that there is a file, whose delegate is told how fetches end. True where there was
  /// none yet; the address stays that of the first time.
  bool open(platform::WeakPtr<VADCachedFileDelegate> delegate);
  bool isFile(const VADCachedFile& file) const { return &file == file_.get(); }
  /// The file. Only once it was opened, as all that follows.
  const VADCachedFile& file() const { return *file_; }

  /// Empty when there is no copy, or it is no text.
  std::string content() const { return file_->content().value_or(""); }
  /// Whether the copy can be used without a question to the script host.
  bool isFresh();
  /// Asks the script host for a newer copy.
  void validate();
  /// Ends the fetch under way; the delegate is not told.
  void cancel() { file_->cancel(); }
  /// The same, and deletes the copy, so that the next fetch is answered in full.
  void invalidate() { file_->invalidate(); }
  /// The script has turned a request into an answer, whatever that was.
  void answered() { freshness_.answered(); }

 private:
  std::shared_ptr<VADCachedFile> file_;
  VADScriptFreshness freshness_;
};

}  // namespace valdren
