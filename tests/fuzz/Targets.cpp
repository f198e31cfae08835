#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "ads/loading/VADResponseHeaders.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "ads/support/VAD_VTMStringEncoding.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/HTTPDate.h"
#include "platform/base/Json.h"
#include "platform/base/PercentEncoding.h"
#include "platform/base/Text.h"
#include "platform/net/RedirectLocation.h"
#include "platform/storage/FileUserDefaults.h"
#include "platform/storage/PropertyList.h"
#include "sandbox/AdNetwork.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

using platform::URL;
using valdren::VADNetworkUtilities;
using valdren::VADNotification;

void promise(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "Broken promise: %s\n", what);
  std::abort();
}

/// Removes the first line from the input and returns it.
std::string_view takeLine(std::string_view& input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view line = input.substr(0, end);
  input.remove_prefix(std::min(end + 1, input.size()));
  return line;
}

/// A folder of this process.
const TemporaryFolder& folder() {
  static const TemporaryFolder shared;
  return shared;
}

void readURL(const URL& url) {
  promise(URL::parse(url.absoluteString()) == url, "a URL's text is that URL");
  promise(url.lowercaseScheme() == platform::lowercase(url.scheme()), "schemes are told alike");
  url.host();
  url.path();
  url.query();
}

void parseURL(std::string_view input) {
  if (const auto url = URL::parse(input)) {
    readURL(*url);
    promise(url->absoluteString() == input, "a URL's text stays as it was given");
  }
  const auto page = URL::fromPage(input);
  if (!page) return;
  readURL(*page);
  try {
    const auto message = VADNotification::notificationFromURL(*page);
    promise(!message || VADNotification::isNotificationURL(*page), "messages have their schemes");
    if (message) message->description();
  } catch (const std::out_of_range&) {
    promise(VADNotification::isGMSGNotificationURL(*page), "one scheme alone refuses");
  }
}

void parseLocation(std::string_view input) {
  const auto base = URL::parse(takeLine(input));
  if (!base) return;
  if (const auto url = platform::resolvedLocation(input, *base)) readURL(*url);
}

void parseQuery(std::string_view input) {
  const auto fields = VADNetworkUtilities::dictionaryFromQueryString(input);
  for (const auto& [key, value] : fields) {
    promise(platform::isUTF8(key) && platform::isUTF8(value.description()), "fields are UTF-8");
  }
  if (const auto url = URL::fromPage("http://host/?" + std::string(input))) {
    VADNetworkUtilities::parameterValueForKey("key", *url);
    const auto longer = VADNetworkUtilities::appendQueryKey(
        "key", platform::Value(platform::repairedUTF8(input)), *url);
    promise(longer.has_value(), "a value can always be put in");
  }
}

void parseJson(std::string_view input) {
  const auto value = platform::parseJson(input);
  if (!value) return;
  const auto text = platform::writeJson(*value);
  promise(text.has_value(), "what was read can be written");
  promise(platform::parseJson(*text).has_value(), "what was written can be read");
}

void parsePropertyList(std::string_view input) {
  if (const auto list = platform::parsePropertyList(input)) list->description();
}

void decodeText(std::string_view input) {
  using Encoding = valdren::VAD_VTMStringEncoding;
  static const Encoding::Pointer encodings[] = {Encoding::rfc4648Base64WebsafeStringEncoding(),
                                                Encoding::rfc4648Base64StringEncoding(),
                                                Encoding::crockfordBase32StringEncoding(),
                                                Encoding::rfc4648Base32HexStringEncoding(),
                                                Encoding::rfc4648Base32StringEncoding(),
                                                Encoding::hexStringEncoding(),
                                                Encoding::binaryStringEncoding()};
  for (const auto& encoding : encodings) {
    promise(encoding->decode(encoding->encode(input)) == input, "data survives its encoding");
    encoding->stringByDecoding(input);
  }
  if (const auto odd = Encoding::initWithString(takeLine(input))) {
    odd->addDecodeSynonyms(takeLine(input));
    odd->decode(input);
  }
}

void parseHeaders(std::string_view input) {
  static platform::FileUserDefaults inMemory(std::nullopt,
                                             platform::FileUserDefaults::Access::ReadOnly);
  const platform::UserDefaults::Replacement replacement(inMemory);
  platform::Headers headers;
  for (const auto name :
       {valdren::kVADHeaderInterstitialTimeout, valdren::kVADHeaderTrackingURLs}) {
    headers[std::string(name)] = takeLine(input);
  }
  valdren::storeInterstitialTimeout(headers);
  if (const auto seconds = inMemory.objectForKey("applicationTimeout")) {
    promise(std::isfinite(seconds->doubleValue()), "time-outs are numbers");
  }
  std::vector<URL> urls;
  valdren::appendURLsFromHeader(urls, headers, valdren::kVADHeaderTrackingURLs);
  promise(urls.size() <= valdren::kVADMostTrackingURLs, "lists of URLs have an end");
  for (const URL& url : urls) readURL(url);
}

void parseDate(std::string_view input) {
  const auto date = platform::dateFromHTTPText(std::string(input));
  // The library writes years of three digits, which it does not read.
  if (!date || date->secondsSince1970() < 0) return;
  const auto again = platform::dateFromHTTPText(platform::httpDateText(*date));
  promise(again == date, "a date's text is that date");
}

void readState(std::string_view input) {
  for (const char* key : {"valdren_timing_shared", "valdren_stats_shared"}) {
    writeFile(folder().file(std::string(key) + ".json"), input);
  }
  platform::FileUserDefaults kept(folder().path(), platform::FileUserDefaults::Access::ReadOnly);
  const platform::UserDefaults::Replacement replacement(kept);
  valdren::VADStatistics statistics;
  statistics.incrementAdRequestCount();
  statistics.parameters();
}

void askTheSandbox(std::string_view input) {
  static sandbox::AdNetwork network;
  sandbox::Request request;
  request.method = "GET";
  request.headers = {{"Host", "localhost"}};  // for others, it reads nothing
  request.path = takeLine(input);
  request.query = takeLine(input);
  while (!input.empty()) {
    const std::string_view line = takeLine(input);
    const std::size_t colon = std::min(line.find(':'), line.size());
    request.headers.emplace_back(line.substr(0, colon),
                                 line.substr(std::min(colon + 1, line.size())));
  }
  promise(platform::percentDecoded(platform::percentEncoded(request.query)) == request.query,
          "texts survive their encoding");
  network.handle(request);
  promise(platform::parseJson(network.log(0))->dictionary(), "the log can be written");
}

}  // namespace

const std::vector<FuzzTarget>& fuzzTargets() {
  static const std::vector<FuzzTarget> targets{
      {"url", parseURL},         {"location", parseLocation},  {"query", parseQuery},
      {"json", parseJson},       {"plist", parsePropertyList}, {"encoding", decodeText},
      {"headers", parseHeaders}, {"date", parseDate},          {"state", readState},
      {"sandbox", askTheSandbox}};
  return targets;
}

}  // namespace quorbel_tests
