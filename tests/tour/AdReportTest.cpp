// The tour's check of ad requests.
#include "tour/AdReport.h"

#include <gtest/gtest.h>

#include "platform/base/Json.h"
#include "sandbox/Http.h"
#include "sandbox/Sandbox.h"
#include "tests/support/HttpClient.h"

namespace platform = valdren::platform;

namespace {

using namespace quorbel;
using platform::Dictionary;
using quorbel_tests::get;

class AdReport : public ::testing::Test {
 protected:
  void request(const Dictionary& parameters) {
    get(network_->baseURL() +
        "/ad?slotname=ad-link&params=" + sandbox::encoded(*platform::writeJson(parameters)));
  }
  /// The ticket of the only ad so far.
  std::string ticket() {
    const auto log = quorbel_tests::object(get(network_->baseURL() + "/log.json"));
    return *log.find("requests")->array()->back().dictionary()->text("ticket");
  }
  std::string problem(const std::vector<ExpectedParameter>& expected) {
    return adRequestProblem(*network_, expected);
  }

  std::unique_ptr<sandbox::Sandbox> network_ = sandbox::Sandbox::start(0);
};

TEST_F(AdReport, MissesRequestsThatWereNotMade) {
  EXPECT_EQ(problem({}), "the ad network was asked for no ad");
}

TEST_F(AdReport, ComparesTheLatestRequestAlone) {
  request({{"pcc", 7}});
  request({{"pcc", 1}, {"pcl", "0"}, {"plpd", "12"}});
  EXPECT_EQ(problem({{"pcc", "1"}, {"plpd", kAnyPositive}, {"pcbo", kMissing}}), "");
  EXPECT_EQ(problem({{"pcc", "7"}}), "the ad request has 1 for \"pcc\", other than 7");
  EXPECT_EQ(problem({{"pcl", kAnyPositive}}),
            "the ad request has 0 for \"pcl\", other than a number above 0");
  EXPECT_EQ(problem({{"plpl", kAnyPositive}}),
            "the ad request has nothing for \"plpl\", other than a number above 0");
  EXPECT_EQ(problem({{"plpd", kMissing}}),
            "the ad request has 12 for \"plpd\", other than nothing");
}

TEST_F(AdReport, KnowsTheTicketOfTheAdBefore) {
  request({});
  const std::string before = ticket();
  request({{"pai", before}, {"pit", "/" + before}});
  EXPECT_EQ(problem({{"pai", kTicket}, {"pit", kTicketPing}}), "");
  EXPECT_NE(problem({{"pai", kTicketPing}}), "");
  request({{"pai", before}});
  EXPECT_NE(problem({{"pai", kTicket}}), "") << "the ticket of an older ad";
}

}  // namespace
