#include <gtest/gtest.h>

#include <climits>
#include <tuple>

#include "ads/request/VADIdentifierUtilities.h"
#include "platform/base/Json.h"
#include "platform/storage/Bundle.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace {

using platform::Dictionary;
using platform::InterfaceIdiom;
using quorbel_tests::writeFile;
using valdren::VADIdentifierUtilities;

class Identifier : public testing::Test, protected quorbel_tests::FakeMachine {
 protected:
  Identifier() { platform::Bundle::main().setIdentifier("com.example.app"); }
  ~Identifier() override {
    platform::Bundle::main().setIdentifier("com.valdren.host");
    platform::Bundle::main().setVersion(std::nullopt);
  }

  std::string value(const char* key) {
    const Dictionary parameters = VADIdentifierUtilities().parameters();
    const platform::Value* const found = parameters.find(key);
    return found ? found->description() : "(none)";
  }

  quorbel_tests::TemporaryFolder home_;
  quorbel_tests::ScopedVariable documents_{"XDG_DOCUMENTS_DIR", home_.file("Documents").c_str()};
};

TEST_F(Identifier, TellsEverythingInTheRightForm) {
  platform::Bundle::main().setVersion("1.0");
  const std::string digest =
      quorbel_tests::run("md5sum | tr a-f A-F", device.identifier).output.substr(0, 32);
  EXPECT_EQ(VADIdentifierUtilities().parameters(),
            (Dictionary{{"ios_metadata", Dictionary{}},
                        {"app_name", "1.0.iphone.com.example.app"},
                        {"isu", digest},
                        {"platform", "TestPhone"},
                        {"submodel", "x86_64"},
                        {"hl", "pt-pt"},
                        {"u_audio", "1"},
                        {"u_so", "p"},
                        {"u_sd", "2"},
                        {"u_w", "320"},
                        {"u_h", "480"}}));
}

TEST_F(Identifier, LeavesOutWhatHasNoValueAndSaysWhenAPhoneApplicationRunsOnATablet) {
  device.languages.clear();
  display.scaleFactor.reset();
  EXPECT_EQ(value("hl"), "(none)");
  EXPECT_EQ(value("u_sd"), "1");
  EXPECT_EQ(value("app_name"), "iphone.com.example.app");
  const std::tuple<const char*, std::optional<InterfaceIdiom>, const char*> cases[] = {
      {"iPad", InterfaceIdiom::Phone, "1"},
      {"iPad", std::nullopt, "1"},
      {"iPad", InterfaceIdiom::Tablet, "(none)"},
      {"iPad2", InterfaceIdiom::Phone, "(none)"}};
  for (const auto& [model, idiom, sent] : cases) {
    device.modelName = model;
    device.idiom = idiom;
    EXPECT_EQ(value("ios_ipadc"), sent) << model;
  }
}

TEST_F(Identifier, ReadsWhatMayChangeAfreshAndKeepsTheRest) {
  VADIdentifierUtilities utilities;
  Dictionary former = utilities.parameters();
  device.identifier = "another";
  device.machineName = "riscv64";
  device.languages = {"de"};
  device.superuser = true;
  writeFile(home_.file("iTunesMetadata.plist"), "<plist><dict><key>k</key><true/></dict></plist>");
  EXPECT_EQ(utilities.parameters(), former) << "what was kept was read again";

  display.scaleFactor = 1.5;
  display.frame = {0, 0, 1024.5, 700};
  application.orientation = platform::InterfaceOrientation::LandscapeLeft;
  application.setStatusBarHidden(true);
  audio.currentRoute = std::optional<std::string>("Headphone");
  application.openableSchemes = {"kindle"};
  former.set("u_sd", "1.5");
  former.set("u_w", "1024.5");
  former.set("u_h", "700");
  former.set("u_so", "l");
  former.set("u_audio", "2");
  former.set("cap_bs", 2);
  EXPECT_EQ(utilities.parameters(), former);
  EXPECT_TRUE(VADIdentifierUtilities().isJailbroken());
}

TEST_F(Identifier, KnowsWhichBookReadersAreThere) {
  application.openableSchemes = {"itms-books"};
  EXPECT_EQ(value("cap_bs"), "1");
  application.openableSchemes.insert("kindle");
  EXPECT_EQ(value("cap_bs"), "3");
}

TEST_F(Identifier, TellsWhereSoundGoes) {
  using Name = std::optional<std::string>;
  using platform::AudioSession;
  using platform::Error;
  const platform::Result<> done;
  const Error already{AudioSession::kErrorDomain, AudioSession::kAlreadyInitialized, ""};
  const Error noServer{AudioSession::kErrorDomain, AudioSession::kNoServer, ""};
  const std::tuple<platform::Result<>, platform::Result<Name>, int> cases[] = {
      {done, Name("Speaker"), 1},
      {done, Name("Headphone"), 2},
      {done, Name("Headset"), 2},
      {done, Name("HeadphonesAndMicrophone"), 5},
      {done, Name("headset"), 5},
      {done, Name(""), 3},
      {done, Name(), 1},
      {done, noServer, 1},
      {already, Name("Headset"), 2},
      {noServer, Name("Headset"), 1},
  };
  for (const auto& [initialized, route, code] : cases) {
    audio.initialized = initialized;
    audio.currentRoute = route;
    EXPECT_EQ(VADIdentifierUtilities().audioRoute(), code)
        << (route ? route->value_or("none") : "no server");
  }
}

TEST_F(Identifier, TakesTheSystemsVersionApart) {
  const std::tuple<const char*, int, int, int> cases[] = {{"12", 12, 0, 0},
                                                          {"2.2.1", 2, 2, 1},
                                                          {"", 0, 0, 0},
                                                          {"6.1.2.9", 6, 1, 2},
                                                          {"x.5b.", 0, 5, 0},
                                                          {"..7", 0, 0, 7},
                                                          {"99999999999.1", INT_MAX, 1, 0}};
  for (const auto& [version, wantedMajor, wantedMinor, wantedBug] : cases) {
    device.version = version;
    int major = -1, minor = -1, bug = -1;
    VADIdentifierUtilities::getOSMajor(&major, &minor, &bug);
    EXPECT_EQ(std::tie(major, minor, bug), std::tie(wantedMajor, wantedMinor, wantedBug))
        << version;
    const auto isAtLeast = VADIdentifierUtilities::isOSAtLeastMajor;
    EXPECT_TRUE(isAtLeast(major, minor, bug));
    EXPECT_FALSE(isAtLeast(major, minor, bug + 1));
    EXPECT_FALSE(isAtLeast(major, minor + 1, 0));
    EXPECT_TRUE(isAtLeast(major - 1, 99, 99));
  }
}

TEST_F(Identifier, StoreMetadataIsADictionaryWhateverTheFileHolds) {
  const std::string file = home_.file("iTunesMetadata.plist");
  const auto metadata = [] { return VADIdentifierUtilities().iTunesMetadata(); };
  EXPECT_TRUE(metadata().empty()) << "there is no file";
  for (const char* content : {"<plist><array><true/></array></plist>", "damaged"}) {
    writeFile(file, content);
    EXPECT_TRUE(metadata().empty()) << content;
  }
  writeFile(file,
            "<plist><dict><key>itemId</key><integer>7</integer><key>x</key><real>nan</real>"
            "<key>bad</key><string>\xff</string></dict></plist>");
  const Dictionary read = metadata();
  EXPECT_EQ(read.find("itemId")->integerValue(), 7);
  EXPECT_TRUE(platform::writeJson(read)) << "the file costs the whole request";
}

}  // namespace
