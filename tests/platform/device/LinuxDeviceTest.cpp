#include "platform/device/LinuxDevice.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/device/Renderer.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/Folders.h"
#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

constexpr const char* kMachineID = "0123456789abcdef0123456789abcdef";

/// A root folder for a machine, filled by the test.
class LinuxDeviceTest : public testing::Test {
 protected:
  LinuxDevice device() const { return LinuxDevice(root_.path()); }
  void put(const std::string& path, std::string_view content) {
    writeFile(root_.path() + path, content);
  }

  TemporaryFolder root_;
};

TEST_F(LinuxDeviceTest, NamesTheModelThatTheFirmwareTells) {
  EXPECT_EQ(device().model(), "Linux");
  put("/sys/class/dmi/id/product_name", "  Board 3\x01\n");
  EXPECT_EQ(device().model(), "Board 3");
  put("/proc/device-tree/model", std::string_view("Phone \xff One\0", 12));
  EXPECT_EQ(device().model(), "Phone \xef\xbf\xbd One");
  put("/proc/device-tree/model", std::string(1'000, 'm'));
  EXPECT_EQ(device().model(), std::string(100, 'm'));
}

TEST_F(LinuxDeviceTest, DrawsWithTheProcessorWhereNoDeviceDoes) {
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"/dev/null", nullptr, "cairo"},
      {"/dev/dri/card0", nullptr, "cairo"},
      {"/dev/dri/card0", "gl", "gl"},
      {"/dev/dri/renderD128", nullptr, ""},
  };
  for (const auto& [node, chosen, expected] : cases) {
    const ScopedVariable renderer("GSK_RENDERER", chosen);
    put(node, "");
    chooseRenderer(root_.path());
    const char* const found = std::getenv("GSK_RENDERER");
    EXPECT_EQ(found ? found : "", expected) << node;
  }
}

TEST_F(LinuxDeviceTest, TellsTheSystemsOwnVersionInDigitsAndDots) {
  const std::string release = run(". /etc/os-release; echo $VERSION_ID").output;
  const std::string kernel = run("uname -r").output;
  const std::string version = device().systemVersion();
  EXPECT_EQ(version.find_first_not_of("0123456789."), std::string::npos) << version;
  EXPECT_TRUE(release == version + "\n" || kernel.starts_with(version)) << version;
  EXPECT_EQ(device().machine() + "\n", run("uname -m").output);
}

TEST_F(LinuxDeviceTest, TheIdentifierIsTheMachinesAndTheApplicationsAndRevealsNeither) {
  put("/etc/machine-id", std::string(kMachineID) + "\n");
  const std::string identifier = device().uniqueIdentifier();
  EXPECT_EQ(identifier, device().uniqueIdentifier());
  EXPECT_EQ(identifier.size(), 64u);
  EXPECT_EQ(identifier.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_EQ(identifier.find(std::string(kMachineID).substr(0, 8)), std::string::npos);

  Bundle& bundle = Bundle::main();
  const std::string own = bundle.identifier();
  bundle.setIdentifier("com.example.other");
  EXPECT_NE(device().uniqueIdentifier(), identifier) << "two applications look the same";
  bundle.setIdentifier(own);
  put("/etc/machine-id", "ffffffffffffffffffffffffffffffff\n");
  EXPECT_NE(device().uniqueIdentifier(), identifier) << "two machines look the same";
}

TEST_F(LinuxDeviceTest, TheIdentifierDiffersBetweenUsers) {
  if (getuid() != 0) GTEST_SKIP() << "only the superuser can become another user";
  put("/etc/machine-id", kMachineID);
  const std::string own = device().uniqueIdentifier();
  ASSERT_EQ(chmod(root_.path().c_str(), 0755), 0);
  const pid_t child = fork();
  if (child == 0) _exit(setuid(54321) != 0 || device().uniqueIdentifier() == own);
  int status = 1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "two users look the same";
}

TEST_F(LinuxDeviceTest, AMachineWithoutAnIdGetsOneThatLasts) {
  const TemporaryFolder state;
  const ScopedVariable variable("XDG_STATE_HOME", state.path().c_str());
  put("/etc/machine-id", "uninitialized\n");
  const std::string identifier = device().uniqueIdentifier();
  const std::string kept = *stateFolder() + "/installation-id";
  EXPECT_EQ(readFile(kept).size(), 64u);
  EXPECT_EQ(device().uniqueIdentifier(), identifier);
  writeFile(kept, "another installation");
  EXPECT_NE(device().uniqueIdentifier(), identifier) << "what was kept is not read";

  const ScopedVariable noState("XDG_STATE_HOME", nullptr);
  const ScopedVariable noHome("HOME", nullptr);
  EXPECT_EQ(device().uniqueIdentifier(), device().uniqueIdentifier())
      << "without a place for it, it must last as long as the process";
}

TEST(Languages, AreWhatTheLocaleNames) {
  using Names = std::vector<std::string>;
  const struct {
    const char* language;
    const char* all;
    const char* messages;
    const char* lang;
    Names expected;
  } cases[] = {
      {nullptr, nullptr, nullptr, nullptr, {}},
      {nullptr, nullptr, nullptr, "C.UTF-8", {}},
      {"de", "POSIX", nullptr, "en_US", {}},
      {nullptr, nullptr, nullptr, "pt_PT.UTF-8", {"pt-PT"}},
      {nullptr, nullptr, "ca@valencia", "en_US", {"ca"}},
      {nullptr, "sr_RS@latin", "ca", "en", {"sr-RS"}},
      {nullptr, "", "", "en_GB", {"en-GB"}},
      {"de:fr_CA::de:C", nullptr, nullptr, "en_US.UTF-8", {"de", "fr-CA", "en-US"}},
      {"\xff:d\"e:fr", nullptr, nullptr, "en", {"fr", "en"}},
      {nullptr, nullptr, nullptr, "\xc3\xa9", {}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(languagesFrom(each.language, each.all, each.messages, each.lang), each.expected)
        << (each.lang ? each.lang : "(none)");
  }
}

}  // namespace
}  // namespace valdren::platform
