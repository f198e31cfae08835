#include "sandbox/RequestLog.h"

#include "ads/protocol/Parameters.h"
#include "platform/base/Json.h"
#include "platform/base/Text.h"
#include "sandbox/Decryption.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr std::size_t kLongestQuery = 64 * 1024;
constexpr std::size_t kLongestText = 4096;
constexpr std::size_t kMostHeaders = 40;

void cut(std::string& text, std::size_t longest) {
  if (text.size() > longest) text.resize(longest);
}

platform::Dictionary textsOf(const Fields& fields) {
  platform::Dictionary result;
  for (const auto& [key, value] : fields) {
    result.set(platform::repairedUTF8(key), platform::repairedUTF8(value));
  }
  return result;
}

/// The client's parameters in the request, decrypted if they were encrypted.
platform::Dictionary told(const Request& request) {
  platform::Dictionary result;
  if (const auto text = request.parameter("params")) {
    const auto parameters = platform::parseJson(*text);
    if (parameters) result.set("parameters", *parameters);
    const auto* table = parameters ? parameters->dictionary() : nullptr;
    if (const std::string* location =
            table ? table->text(valdren::kVADParameterLocation) : nullptr) {
      result.setIfPresent("location", decodedLocation(*location));
    }
  }
  for (const char* key : {valdren::kVADQueryRequestSignals, valdren::kVADQueryClickSignals}) {
    const auto encrypted = request.parameter(key);
    if (encrypted) result.setIfPresent("signals", decryptedSignals(*encrypted));
  }
  return result;
}

platform::Value described(const Seen& seen) {
  platform::Dictionary entry{
      {"number", static_cast<std::int64_t>(seen.number)},
      {"time", seen.time},
      {"kind", seen.kind},
      {"method", platform::repairedUTF8(seen.request.method)},
      {"path", platform::repairedUTF8(seen.request.path)},
      {"query", textsOf(fieldsOf(seen.request.query))},
      {"headers", textsOf(seen.request.headers)},
      {"status", seen.status},
      {"scenario", seen.scenario},
      {"ad", seen.ad},
      {"ticket", seen.ticket},
  };
  entry.merge(told(seen.request));
  return entry;
}

}  // namespace

void RequestLog::add(Seen seen) {
  cut(seen.request.path, kLongestText);
  cut(seen.request.query, kLongestQuery);
  if (seen.request.headers.size() > kMostHeaders) seen.request.headers.resize(kMostHeaders);
  for (auto& [name, value] : seen.request.headers) {
    cut(name, kLongestText);
    cut(value, kLongestText);
  }
  seen.number = ++last_;
  ++counts_[seen.kind];
  kept_.push_back(std::move(seen));
  if (kept_.size() > most_) kept_.pop_front();
}

platform::Array RequestLog::after(std::uint64_t since) const {
  platform::Array result;
  for (const Seen& seen : kept_) {
    if (seen.number > since) result.push_back(described(seen));
  }
  return result;
}

platform::Dictionary RequestLog::counts() const {
  platform::Dictionary result;
  for (const auto& [kind, count] : counts_) result.set(kind, count);
  return result;
}

}  // namespace sandbox
