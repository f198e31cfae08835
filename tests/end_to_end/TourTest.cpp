// The tour: the real application, its real widgets, clips, ad network and web engine.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/support/Process.h"

namespace {

using quorbel_tests::readFile;
using quorbel_tests::run;
using quorbel_tests::TemporaryFolder;

/// The parameter is the options that choose the window's shape.
class Tour : public ::testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Shapes, Tour,
                         ::testing::Values("--idiom phone", "--idiom phone --orientation landscape",
                                           "--idiom tablet"));

TEST_P(Tour, EveryStepIsAsItShouldBeAndHasItsPicture) {
  TemporaryFolder folder;
  const std::string pictures = folder.file("pictures");
  const auto finished = run("env G_DEBUG=fatal-criticals XDG_STATE_HOME=" + folder.file("state") +
                            " XDG_CACHE_HOME=" + folder.file("cache") + " " TOUR_PROGRAM " " +
                            pictures + " " + GetParam());
  ASSERT_EQ(finished.status, 0) << finished.output << finished.errors;

  std::istringstream lines(readFile(pictures + "/tour.txt"));
  std::set<std::string> seen;
  std::size_t steps = 0;
  for (std::string line; std::getline(lines, line) && line.find(".png  ") != std::string::npos;) {
    ++steps;
    const std::string picture = readFile(pictures + "/" + line.substr(0, line.find("  ")));
    EXPECT_EQ(picture.substr(0, 4), "\x89PNG") << line;
    if (line.find("press") != std::string::npos) {
      EXPECT_TRUE(seen.insert(picture).second) << "shows nothing of its own: " << line;
    }
  }
  EXPECT_EQ(steps, 29u);
  const auto files = std::filesystem::directory_iterator(pictures);
  EXPECT_EQ(static_cast<std::size_t>(std::distance(begin(files), end(files))), steps + 1);
}

TEST(FailingTour, ClipsThatAreMissingFailTheirStepsAndTheProgram) {
  TemporaryFolder folder;
  // A copy of the program finds no clips beside it.
  std::filesystem::copy(TOUR_PROGRAM, folder.file("tour"));
  const auto finished = run("env -u QUORBEL_RESOURCES XDG_STATE_HOME=" + folder.file("state") +
                            " " + folder.file("tour") + " " + folder.file("t") + " --idiom phone");
  EXPECT_EQ(finished.status, 1);
  EXPECT_NE(finished.output.find("press Candy: FAILED: no clip plays"), std::string::npos);
  EXPECT_NE(finished.output.find("14 failed\n"), std::string::npos) << finished.output;
  EXPECT_NE(finished.errors.find("The clip \"candy.m4a\" is missing."), std::string::npos);
}

}  // namespace
