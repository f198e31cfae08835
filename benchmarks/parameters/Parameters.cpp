// The time to collect all parameters of an ad request on this machine and to write them as JSON.
#include <string>

#include "ads/request/VADLocation.h"
#include "ads/request/VADRequestPrivate.h"
#include "ads/support/VADMacros.h"
#include "ads/telemetry/VADStatistics.h"
#include "benchmarks/Figures.h"
#include "platform/application/ApplicationMain.h"
#include "platform/storage/FileUserDefaults.h"

namespace platform = valdren::platform;

namespace {

using benchmarks::Figures;
using benchmarks::keep;
using benchmarks::measure;
using valdren::VADMacros;
using valdren::VADRequestPrivate;
using valdren::VADStatistics;

constexpr std::size_t kRounds = 2000;

void print(const char* what, const Figures& seconds) {
  seconds.scaled(1e6).print(what, "us");
}

/// A request with every option set.
std::shared_ptr<VADRequestPrivate> fullRequest() {
  auto request = std::make_shared<VADRequestPrivate>();
  request->setGender(valdren::kVADGenderFemale);
  request->setBirthdayWithMonth(2, 29, 1984);
  request->setLocationWithLatitude(46.948f, 7.4474f, 50);
  request->setTestDevices(std::vector<std::string>{"one", "two"});
  request->setAdditionalParameters(platform::Dictionary{{"color", "red"}, {"size", 12}});
  for (int number = 0; number < 10; ++number) request->addKeyword("word" + std::to_string(number));
  return request;
}

/// Uses the ad between two requests, so that each request has statistics to report.
void useTheAd() {
  VADStatistics& statistics = VADStatistics::sharedStatistics();
  statistics.startTimingNamed("prl");
  statistics.endTimingNamed("prl");
  statistics.urlForClick(*platform::URL::parse("http://ads.example/click"));
  statistics.endTimingNamed("pcl");
}

}  // namespace

int main() {
  platform::FileUserDefaults inMemory(std::nullopt, platform::FileUserDefaults::Access::ReadOnly);
  const platform::UserDefaults::Replacement replacement(inMemory);
  std::printf("display: %s\n", platform::hasDisplay() ? "yes" : "no");

  const auto empty = std::make_shared<VADRequestPrivate>();
  const double began = benchmarks::seconds();
  keep(empty->parameters());
  std::printf("%-44s %10.3f us\n", "the first request, which reads what is kept",
              (benchmarks::seconds() - began) * 1e6);

  const auto full = fullRequest();
  print("parameters, nothing set", measure(kRounds, [&] { keep(empty->parameters()); }));
  print("parameters, everything set", measure(kRounds, [&] {
          useTheAd();
          keep(full->parameters());
        }));
  print("parameters and their JSON, nothing set",
        measure(kRounds, [&] { keep(VADMacros::jsonify(empty->parameters())); }));
  print("parameters and their JSON, everything set", measure(kRounds, [&] {
          useTheAd();
          keep(VADMacros::jsonify(full->parameters()));
        }));
  const platform::Dictionary parameters = full->parameters();
  print("their JSON alone", measure(kRounds, [&] { keep(VADMacros::jsonify(parameters)); }));
  print("the location alone",
        measure(kRounds, [&] { keep(full->location()->oolongRepresentation()); }));
  return 0;
}
