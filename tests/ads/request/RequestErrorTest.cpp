#include "ads/request/VADRequestError.h"

#include <gtest/gtest.h>

#include "ads/request/VADRequestPrivate.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/Printing.h"

namespace platform = valdren::platform;

namespace {

using namespace valdren;

TEST(RequestError, SaysWhatItsCodeMeans) {
  quorbel_tests::FakeDevice device;
  device.version = "2.2.1";
  const std::string invalid =
      "Request Error: Invalid ad request parameter(s).  Check the Xcode console for details.";
  const struct {
    std::int32_t code;
    std::string message;
  } cases[] = {
      {0, invalid},
      {4, "Request Error: This device's OS is 2.2.1.  It is below the minimum of 3.0."},
      {7, invalid},
      {-1, invalid},
  };
  for (const auto& each : cases) {
    const auto error = VADRequestError::errorWithCode(each.code, nullptr);
    EXPECT_EQ(error.domain(), "com.valdren.ads");
    EXPECT_EQ(error.code(), each.code);
    EXPECT_EQ(error.localizedDescription(), each.message);
    EXPECT_EQ(error.userInfo(),
              (platform::Dictionary{{kVADLocalizedDescriptionKey, each.message},
                                    {kVADLocalizedFailureReasonErrorKey, each.message}}));
  }
}

TEST(RequestError, OnlyAnInvalidRequestShowsWhatWasSent) {
  quorbel_tests::FakeUserDefaults defaults;
  const auto request = VADRequest::request();
  request->addKeyword("k");
  const auto invalid = VADRequestError::errorWithCode(0, request.get());
  EXPECT_TRUE(invalid.userInfo().contains("kw"));
  EXPECT_TRUE(invalid.userInfo().contains("isu"));
  EXPECT_EQ(invalid.localizedDescription(), VADRequestError::localizedStringForErrorCode(0));
  EXPECT_EQ(VADRequestError::errorWithCode(2, request.get()).userInfo().size(), 2u);
}

}  // namespace
