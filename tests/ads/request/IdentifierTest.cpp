#include <gtest/gtest.h>

#include <climits>
#include <tuple>

#include "ads/request/VADIdentifierUtilities.h"
#include "platform/base/Json.h"
#include "platform/storage/Bundle.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

using platform::Dictionary;
using platform::InterfaceIdiom;
using platform::InterfaceOrientation;
using quorbel_tests::ScopedVariable;
using quorbel_tests::TemporaryFolder;
using quorbel_tests::writeFile;
using valdren::VADIdentifierUtilities;

class Identifier : public testing::Test {
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

  TemporaryFolder home_;
  ScopedVariable documents_{"XDG_DOCUMENTS_DIR", home_.file("Documents").c_str()};
  quorbel_tests::FakeDevice device_;
  quorbel_tests::FakeScreen screen_;
  quorbel_tests::FakeAudioSession audio_;
  quorbel_tests::FakeApplication application_;
};

TEST_F(Identifier, TellsEverythingInTheRightForm) {
  platform::Bundle::main().setVersion("1.0");
  const std::string digest =
      quorbel_tests::run("md5sum | tr a-f A-F", device_.identifier).output.substr(0, 32);
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

TEST_F(Identifier, LeavesOutWhatHasNoValue) {
  device_.languages.clear();
  screen_.scaleFactor.reset();
  EXPECT_EQ(value("hl"), "(none)");
  EXPECT_EQ(value("u_sd"), "1");
  EXPECT_EQ(value("app_name"), "iphone.com.example.app");
  EXPECT_EQ(value("ios_ipadc"), "(none)");
  EXPECT_EQ(value("ios_jb"), "(none)");
  EXPECT_EQ(value("cap_bs"), "(none)");
}

TEST_F(Identifier, APhoneApplicationOnATabletSaysSo) {
  const struct {
    const char* model;
    std::optional<InterfaceIdiom> idiom;
    const char* sent;
  } cases[] = {{"iPad", InterfaceIdiom::Phone, "1"},
               {"iPad", std::nullopt, "1"},
               {"iPad", InterfaceIdiom::Tablet, "(none)"},
               {"iPad2", InterfaceIdiom::Phone, "(none)"}};
  for (const auto& each : cases) {
    device_.modelName = each.model;
    device_.idiom = each.idiom;
    EXPECT_EQ(value("ios_ipadc"), each.sent) << each.model;
  }
}

TEST_F(Identifier, ReadsWhatMayChangeAfreshAndKeepsTheRest) {
  VADIdentifierUtilities utilities;
  Dictionary former = utilities.parameters();
  device_.identifier = "another";
  device_.machineName = "riscv64";
  device_.languages = {"de"};
  device_.superuser = true;
  writeFile(home_.file("iTunesMetadata.plist"), "<plist><dict><key>k</key><true/></dict></plist>");
  EXPECT_EQ(utilities.parameters(), former) << "what was kept was read again";

  screen_.scaleFactor = 1.5;
  screen_.frame = {0, 0, 1024.5, 700};
  application_.orientation = InterfaceOrientation::LandscapeLeft;
  application_.setStatusBarHidden(true);
  audio_.currentRoute = std::optional<std::string>("Headphone");
  application_.openableSchemes = {"kindle"};
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
  application_.openableSchemes = {"itms-books"};
  EXPECT_EQ(value("cap_bs"), "1");
  application_.openableURLs = {"kindle://home"};
  EXPECT_EQ(value("cap_bs"), "3");
  const std::vector<std::string> asked = {"kindle://home", "kindle://x", "not a url",
                                          "itms-books:", std::string("kindle://home\0", 14)};
  EXPECT_EQ(VADIdentifierUtilities().canOpenURLs(asked), (Dictionary{{asked[0], true},
                                                                     {asked[1], false},
                                                                     {asked[2], false},
                                                                     {asked[3], true},
                                                                     {asked[4], false}}));
}

TEST_F(Identifier, TellsWhereSoundGoes) {
  using Name = std::optional<std::string>;
  using platform::AudioSession;
  using platform::Error;
  const platform::Result<> done;
  const Error already{AudioSession::kErrorDomain, AudioSession::kAlreadyInitialized, ""};
  const Error noServer{AudioSession::kErrorDomain, AudioSession::kNoServer, ""};
  const struct {
    const char* what;
    platform::Result<> initialized;
    platform::Result<Name> route;
    int code;
  } cases[] = {
      {"speaker", done, Name("Speaker"), 1},
      {"headphone", done, Name("Headphone"), 2},
      {"headset", done, Name("Headset"), 2},
      {"small letters", done, Name("headset"), 5},
      {"longer", done, Name("HeadphonesAndMicrophone"), 5},
      {"line", done, Name("LineOut"), 5},
      {"empty", done, Name(""), 3},
      {"none", done, Name(), 1},
      {"no route", done, noServer, 1},
      {"initialized before", already, Name("Headset"), 2},
      {"no server", noServer, Name("Headset"), 1},
  };
  for (const auto& each : cases) {
    audio_.initialized = each.initialized;
    audio_.currentRoute = each.route;
    EXPECT_EQ(VADIdentifierUtilities().audioRoute(), each.code) << each.what;
  }
}

TEST_F(Identifier, TakesTheSystemsVersionApart) {
  const struct {
    const char* version;
    int major, minor, bugFix;
  } cases[] = {
      {"4.3", 4, 3, 0},     {"12", 12, 0, 0},
      {"2.2.1", 2, 2, 1},   {"", 0, 0, 0},
      {"6.1.2.9", 6, 1, 2}, {"x.5b.", 0, 5, 0},
      {"..7", 0, 0, 7},     {"99999999999.1", INT_MAX, 1, 0},
  };
  for (const auto& each : cases) {
    device_.version = each.version;
    int major = -1, minor = -1, bugFix = -1;
    VADIdentifierUtilities::getOSMajor(&major, &minor, &bugFix);
    EXPECT_EQ(std::tie(major, minor, bugFix), std::tie(each.major, each.minor, each.bugFix))
        << each.version;
    EXPECT_TRUE(VADIdentifierUtilities::isOSAtLeastMajor(each.major, each.minor, each.bugFix));
    EXPECT_FALSE(VADIdentifierUtilities::isOSAtLeastMajor(each.major, each.minor, each.bugFix + 1));
    EXPECT_FALSE(VADIdentifierUtilities::isOSAtLeastMajor(each.major, each.minor + 1, 0));
    EXPECT_TRUE(VADIdentifierUtilities::isOSAtLeastMajor(each.major - 1, 99, 99));
  }
  int minor = -1;
  device_.version = "4.3";
  VADIdentifierUtilities::getOSMajor(nullptr, &minor, nullptr);
  EXPECT_EQ(minor, 3);
}

TEST_F(Identifier, StoreMetadataIsADictionaryWhateverTheFileHolds) {
  const std::string file = home_.file("iTunesMetadata.plist");
  const auto metadata = [] { return VADIdentifierUtilities().iTunesMetadata(); };
  EXPECT_TRUE(metadata().empty()) << "there is no file";
  writeFile(file, "<plist><array><true/></array></plist>");
  EXPECT_TRUE(metadata().empty()) << "an array";
  writeFile(file, "damaged");
  EXPECT_TRUE(metadata().empty());
  writeFile(file,
            "<plist><dict><key>itemId</key><integer>7</integer><key>x</key><real>nan</real>"
            "<key>bad</key><string>\xff</string></dict></plist>");
  const Dictionary read = metadata();
  EXPECT_EQ(read.find("itemId")->integerValue(), 7);
  EXPECT_TRUE(platform::writeJson(read)) << "the file costs the whole request";
  const ScopedVariable nowhere("XDG_DOCUMENTS_DIR", "relative");
  const ScopedVariable noHome("HOME", nullptr);
  metadata();
}

}  // namespace
