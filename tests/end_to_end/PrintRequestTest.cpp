// The program itself, run like a user does.
#include <gtest/gtest.h>

#include <filesystem>

#include "ads/telemetry/VADStatistics.h"
#include "platform/application/ApplicationMain.h"
#include "platform/base/Json.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/FileUserDefaults.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

using platform::Dictionary;
using platform::Value;
using quorbel_tests::Finished;
using quorbel_tests::run;
using quorbel_tests::ScopedVariable;
using quorbel_tests::writeFile;

namespace fs = std::filesystem;

class PrintRequest : public testing::Test {
 protected:
  PrintRequest() { platform::Bundle::main().setIdentifier("com.valdren.quorbel"); }
  ~PrintRequest() override { platform::Bundle::main().setIdentifier("com.valdren.host"); }

  /// Its output, with this text before the command and these options after it.
  Dictionary printed(const std::string& before = "", const std::string& options = "") {
    last_ = run(before + " '" QUORBEL_PROGRAM "' --print-request " + options);
    EXPECT_EQ(last_.status, 0) << last_.errors;
    const auto value = platform::parseJson(last_.output);
    EXPECT_TRUE(value && value->dictionary()) << last_.output;
    return value && value->dictionary() ? *value->dictionary() : Dictionary();
  }

  /// All files of the state folder with their sums.
  std::string stateFiles() const {
    return run("find '" + home_.path() + "' -type f -exec sha1sum {} + | sort").output;
  }

  quorbel_tests::TemporaryFolder home_;
  ScopedVariable state_{"XDG_STATE_HOME", home_.path().c_str()};
  ScopedVariable documents_{"XDG_DOCUMENTS_DIR", home_.file("Documents").c_str()};
  Finished last_;
};

const std::string kWithoutDisplay = "env -u DISPLAY -u WAYLAND_DISPLAY";

TEST_F(PrintRequest, TellsEverythingThatIsAlwaysThereWithoutADisplay) {
  const Dictionary request = printed(kWithoutDisplay);
  for (const char* key : {"platform", "u_w", "session_id", "ptime", "preqs", "slotname"}) {
    EXPECT_TRUE(request.contains(key)) << key;
  }
  EXPECT_EQ(*request.text("submodel") + "\n", run("uname -m").output);
  EXPECT_EQ(*request.text("app_name"), QUORBEL_VERSION ".iphone.com.valdren.quorbel");
  EXPECT_FALSE(request.contains("ad_frame")) << "without a window there is no place for an ad";
  EXPECT_EQ(last_.output.substr(0, 4), "{\n  ") << "not indented";
  EXPECT_EQ(printed(kWithoutDisplay).text("isu")->size(), 32u);
}

TEST_F(PrintRequest, TellsTheWindowThatTheApplicationWouldOpen) {
  const Dictionary phone = printed("", "--idiom phone");
  EXPECT_EQ(*phone.text("u_w"), "360");
  EXPECT_EQ(*phone.text("u_h"), "640");
  EXPECT_EQ(*phone.text("u_so"), "p");
  const Dictionary& frame = *phone.find("ad_frame")->dictionary();
  EXPECT_GT(frame.find("y")->integerValue(), 400);
  EXPECT_LE(frame.find("y")->integerValue(), 590) << "it hangs over the edge";
  EXPECT_EQ(*printed("", "--idiom phone --orientation landscape").text("u_so"), "l");
}

TEST_F(PrintRequest, CountsAndForgetsNothing) {
  {
    platform::FileUserDefaults files(platform::FileUserDefaults::standardFolder());
    const platform::UserDefaults::Replacement replacement(files);
    valdren::VADStatistics statistics;
    statistics.setAdRequestCount(41);
    statistics.incrementClickCount();
    statistics.setBreakOutToSafari();
    statistics.startTimingNamed("ptime");
    statistics.startTimingNamed("prl");
    statistics.endTimingNamed("prl");
  }
  const fs::path folder = *platform::FileUserDefaults::standardFolder();
  writeFile(folder / "damaged.json", "{");
  const std::string before = stateFiles();
  ASSERT_EQ(std::count(before.begin(), before.end(), '\n'), 3);
  for (const std::string& where : {kWithoutDisplay, kWithoutDisplay, std::string("env")}) {
    const Dictionary request = printed(where);
    EXPECT_EQ(*request.find("preqs"), Value(42)) << "the number of the next request";
    EXPECT_EQ(*request.find("pcc"), Value(1));
    EXPECT_EQ(*request.find("pcbo"), Value(1));
    EXPECT_TRUE(request.contains("prl"));
    EXPECT_EQ(stateFiles(), before);
  }
}

TEST_F(PrintRequest, WorksOnAMachineWithoutAPlaceForItsState) {
  writeFile(home_.file("damaged/com.valdren.quorbel/defaults/valdren_stats_shared.json"), "[[[");
  for (const std::string& state : {std::string(" -u XDG_STATE_HOME -u HOME"),
                                   " XDG_STATE_HOME='" + home_.file("damaged") + "'"}) {
    EXPECT_EQ(*printed(kWithoutDisplay + state).find("preqs"), Value(1));
  }
  const Finished finished =
      run(kWithoutDisplay + " '" QUORBEL_PROGRAM "' --print-request >/dev/full");
  EXPECT_EQ(finished.status, 1);
  EXPECT_NE(finished.errors.find("cannot be written"), std::string::npos) << finished.errors;
}

}  // namespace
