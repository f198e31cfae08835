// Putting queries into addresses, taking them out, and the user agent that the client shows.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/URL.h"
#include "platform/base/Value.h"

namespace valdren {

/// Stateless but for the shared user agent. Main thread only.
class VADNetworkUtilities {
 public:
  /// The user agent of the client's own requests; none until it was set.
  static const std::optional<std::string>& userAgentString();
  /// Keeps the text from now on. An empty one changes nothing.
  static void setUserAgentString(std::string_view userAgent);

  /// The text with every byte percent-encoded but letters, digits and "-._~".
  static std::string encodeURL(std::string_view text);

  /// The address with one "key=value" more for each entry, in the dictionary's order; "key" alone
  /// where the value's description is empty. Keys are put in as they stand, values encoded. What is
  /// added goes to the end of the text, also behind a fragment. None when the result is no URL.
  static std::optional<platform::URL> appendQueryParameters(const platform::Dictionary& parameters,
                                                            const platform::URL& toURL);
  /// The same for one entry; an absent value counts as "".
  static std::optional<platform::URL> appendQueryKey(std::string_view key,
                                                     const std::optional<platform::Value>& value,
                                                     const platform::URL& toURL);

  /// The value of the first "key=value" in the query, still percent-encoded and cut at a further
  /// "="; none when there is none. Keys must be equal to the letter.
  static std::optional<std::string> parameterValueForKey(std::string_view key,
                                                         const platform::URL& fromURL);

  /// The texts of a query by key, percent-decoded, keys in lower case. Pieces end at "&" or ";";
  /// one that has not exactly one "=" or does not decode as UTF-8 is skipped, and of equal keys the
  /// last counts. An absent query gives an empty dictionary.
  static platform::Dictionary dictionaryFromQueryString(std::optional<std::string_view> query);
};

}  // namespace valdren
