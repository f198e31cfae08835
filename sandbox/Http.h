// The sandbox's requests and answers.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/base/Seconds.h"

namespace platform = valdren::platform;

namespace sandbox {

using Fields = std::vector<std::pair<std::string, std::string>>;

struct Request {
  std::string method;
  /// As sent, still percent-encoded.
  std::string path;
  /// As sent, without the "?".
  std::string query;
  Fields headers;
  bool secure = false;

  /// The decoded value of the query's first field of that name.
  std::optional<std::string> parameter(std::string_view name) const;
  /// The header of that name, in any letter case; empty when there is none.
  std::string header(std::string_view name) const;
};

/// How an answer ends or fails.
enum class Ending {
  Whole,
  /// Nothing is ever sent.
  Hang,
  /// The connection is cut before the first byte.
  CutBeforeHeaders,
  /// The connection is cut within the body.
  CutInBody,
  /// The body is sent in pieces, one every 300 milliseconds.
  Dribble,
  /// The body is repeated while the client reads.
  Endless,
};

struct Answer {
  int status = 200;
  std::string contentType = "text/html; charset=utf-8";
  std::string body = {};
  Fields headers = {};
  Ending ending = Ending::Whole;
  /// The delay before the first byte.
  platform::Seconds delay{0};
};

using Handler = std::function<Answer(const Request&)>;

/// Percent-decoded, "+" kept. A text that is not well encoded stays as it is.
std::string decoded(std::string_view text);
/// The query's fields, decoded.
Fields fieldsOf(std::string_view query);

}  // namespace sandbox
