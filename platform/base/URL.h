// A URL, kept as the text it was made from.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Export.h"

namespace valdren::platform {

/// A valid URL (RFC 3986 URI reference). The text stays as it was given: nothing is normalised,
/// scheme and host keep their letter case. A missing URL is an empty optional.
class VALDREN_EXPORT URL {
 public:
  /// Parses the text. None when it is empty, over 2 MiB or not a valid URL.
  static std::optional<URL> parse(std::string_view text);
  /// The same for text from a web page. Characters that are illegal in a URL are first
  /// percent-encoded as UTF-8, and so is a "%" that starts no escape sequence.
  static std::optional<URL> fromPage(std::string_view text);

  const std::string& absoluteString() const { return text_; }
  /// Without the ":"; empty when there is none.
  std::string scheme() const;
  std::string lowercaseScheme() const;
  /// Without user, password and port; empty when there is none. As written.
  std::string host() const;
  /// The origin of an "http" or "https" URL: scheme, host and port, as "https://h.example:443".
  /// None for other schemes.
  std::optional<std::string> origin() const;
  /// As written, with its leading "/".
  std::string path() const;
  /// Without the "?"; none when the URL has no "?".
  std::optional<std::string> query() const;

  bool operator==(const URL&) const = default;

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

}  // namespace valdren::platform
