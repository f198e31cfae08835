// The log is correct, decrypted and bounded.
#include <gtest/gtest.h>

#include "ads/request/VADLocation.h"
#include "ads/signals/EncryptedSignals.h"
#include "platform/base/PercentEncoding.h"
#include "tests/sandbox/Network.h"

namespace {

using sandbox_tests::Network;
using sandbox_tests::text;

TEST(Log, ShowsARequestWithItsParametersAndWhatWasSealed) {
  Network network;
  const auto location = valdren::VADLocation::initWithLatitude(47.37F, 8.54F, 65.0F);
  ASSERT_TRUE(location && location->oolongRepresentation());
  const std::string parameters =
      *platform::writeJson(platform::Dictionary{{"preqs", 7},
                                                {"kw", platform::Array{"a&b", "c;d"}},
                                                {"uule", *location->oolongRepresentation()}});
  const auto signals = valdren::encryptSignals({{"viewed", 1234}, {"sdk", "x"}});
  ASSERT_TRUE(signals);
  network.ask("/ad?slotname=unit%201&params=" + platform::percentEncoded(parameters) +
              "&ms=" + *signals);

  const platform::Array seen = network.requests();
  ASSERT_EQ(seen.size(), 1U);
  const platform::Dictionary& entry = *seen.front().dictionary();
  EXPECT_EQ(text(seen.front(), "kind"), "ad");
  EXPECT_EQ(text(*entry.find("query"), "slotname"), "unit 1");
  EXPECT_EQ(text(*entry.find("parameters"), "preqs"), "7");
  EXPECT_EQ(text(*entry.find("parameters"), "kw"), R"(["a&b","c;d"])");
  EXPECT_NE(text(seen.front(), "location").find("latitude_e7: 473699989"), std::string::npos)
      << text(seen.front(), "location");
  EXPECT_EQ(text(*entry.find("signals"), "viewed"), "1234");
}

TEST(Log, ForgetsTheOldestAndCutsWhatIsLong) {
  sandbox::RequestLog log(3);
  for (int each = 0; each < 10; ++each) {
    sandbox::Seen seen;
    seen.kind = "ad";
    seen.request.path = std::string(1 << 20, 'p');
    seen.request.query = "q=" + std::string(1 << 20, 'q');
    seen.request.headers.assign(1000, {"name", std::string(1 << 16, 'h')});
    log.add(seen);
  }
  EXPECT_EQ(log.last(), 10U);
  const auto kept = log.after(0);
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_EQ(text(kept.front(), "number"), "8");
  EXPECT_LT(platform::writeJson(kept)->size(), 1U << 20);
  EXPECT_EQ(text(log.counts(), "ad"), "10");
}

}  // namespace
