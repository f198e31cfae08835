#include "app/Options.h"

#include <gmock/gmock.h>

namespace platform = valdren::platform;

namespace {

using quorbel::Command;
using quorbel::Options;
using quorbel::UsageError;

std::variant<Options, UsageError> parse(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "quorbel");
  return quorbel::parseOptions(static_cast<int>(arguments.size()), arguments.data());
}

TEST(Options, EachIsReadWithASpaceOrAnEqualsSign) {
  for (const std::vector<const char*>& arguments :
       {std::vector<const char*>{"--idiom", "tablet", "--orientation", "landscape", "--ad-server",
                                 "http://127.0.0.1:8080", "--script-host",
                                 "https://host.example/x"},
        {"--idiom=tablet", "--orientation=landscape", "--ad-server=http://127.0.0.1:8080",
         "--script-host=https://host.example/x"}}) {
    const auto parsed = parse(arguments);
    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    const auto& options = std::get<Options>(parsed);
    EXPECT_EQ(options.idiom, platform::InterfaceIdiom::Tablet);
    EXPECT_EQ(options.landscape, true);
    EXPECT_EQ(options.adServer->absoluteString(), "http://127.0.0.1:8080");
    EXPECT_EQ(options.scriptHost->absoluteString(), "https://host.example/x");
    EXPECT_EQ(options.command, Command::Run);
  }
}

TEST(Options, HelpAndVersionWinOverWhatFollowsAndNothingIsForcedWithoutArguments) {
  EXPECT_EQ(std::get<Options>(parse({"--help", "--nonsense"})).command, Command::Help);
  EXPECT_EQ(std::get<Options>(parse({"-h"})).command, Command::Help);
  EXPECT_EQ(std::get<Options>(parse({"--idiom", "phone", "--version"})).command, Command::Version);
  const auto options = std::get<Options>(parse({}));
  EXPECT_EQ(options.command, Command::Run);
  EXPECT_FALSE(options.idiom || options.landscape || options.adServer || options.scriptHost);
}

TEST(Options, MistakesAreNamed) {
  const std::pair<std::vector<const char*>, std::string> cases[] = {
      {{"--frobnicate"}, "Unknown option --frobnicate"},
      {{"sound"}, "Unknown argument \"sound\""},
      {{""}, "Unknown argument \"\""},
      {{"--idiom"}, "Missing argument for --idiom"},
      {{"--idiom", "watch"}, "not \"watch\""},
      {{"--idiom="}, "not \"\""},
      {{"--orientation", "sideways"}, "portrait or landscape"},
      {{"--ad-server", "ftp://host/"}, "http or https"},
      {{"--ad-server", "nonsense"}, "http or https"},
      {{"--script-host", "file:///etc/passwd"}, "http or https"},
  };
  for (const auto& [arguments, named] : cases) {
    const auto parsed = parse(arguments);
    ASSERT_TRUE(std::holds_alternative<UsageError>(parsed)) << named;
    EXPECT_THAT(std::get<UsageError>(parsed).message, testing::HasSubstr(named));
  }
}

}  // namespace
