// The time to parse queries of 64 KB of several shapes, and to build one.
#include <string>

#include "ads/support/VADNetworkUtilities.h"
#include "benchmarks/Figures.h"

namespace platform = valdren::platform;

namespace {

using benchmarks::Figures;
using benchmarks::keep;
using benchmarks::measure;
using valdren::VADNetworkUtilities;

constexpr std::size_t kBytes = 64 * 1024;
constexpr std::size_t kRounds = 500;

/// Joins pieces made from a counter until the query is long enough.
template <class Piece>
std::string query(Piece piece) {
  std::string text;
  for (int number = 0; text.size() < kBytes; ++number) text += piece(std::to_string(number));
  return text;
}

void print(const char* what, const Figures& seconds) {
  seconds.scaled(1e6).print(what, "us");
}

void measureParsing(const char* what, const std::string& text) {
  print(what,
        measure(kRounds, [&] { keep(VADNetworkUtilities::dictionaryFromQueryString(text)); }));
}

}  // namespace

int main() {
  measureParsing("64 KB of short pairs",
                 query([](const auto& n) { return "k" + n + "=" + n + "&"; }));
  measureParsing("64 KB of the same key", query([](const auto& n) { return "k=" + n + "&"; }));
  measureParsing("64 KB in one escaped value",
                 "k=" + query([](const auto&) { return std::string("%C3%A9"); }));
  measureParsing("64 KB of escaped keys",
                 query([](const auto& n) { return "%C3%89" + n + "=%20;"; }));
  measureParsing("64 KB of separators", query([](const auto&) { return std::string("&"); }));
  measureParsing("64 KB of \"=\"", query([](const auto&) { return std::string("="); }));

  const auto parameters = VADNetworkUtilities::dictionaryFromQueryString(
      query([](const auto& n) { return "k" + n + "=%20x" + n + "&"; }));
  const auto url = *platform::URL::parse("http://ads.example/request?a=b");
  print("64 KB put together", measure(kRounds, [&] {
          keep(VADNetworkUtilities::appendQueryParameters(parameters, url));
        }));
  return 0;
}
