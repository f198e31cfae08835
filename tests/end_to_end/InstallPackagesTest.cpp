// The script that installs missing packages, with fake commands that only record their arguments.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/Process.h"

namespace {

using quorbel_tests::Finished;
using quorbel_tests::run;

class InstallPackages : public ::testing::Test {
 protected:
  void SetUp() override {
    // The tools that the script itself uses.
    for (const char* tool : {"bash", "dirname", "readlink", "grep", "env"}) {
      const Finished found = run(std::string("command -v ") + tool);
      ASSERT_EQ(found.status, 0) << tool;
      std::filesystem::create_symlink(found.output.substr(0, found.output.find('\n')),
                                      folder.file(tool));
    }
    command("apt-get", "echo apt-get \"$@\"");
    command("id", "echo 0");
  }

  void command(const std::string& name, const std::string& body) {
    quorbel_tests::writeFile(folder.file(name), "#!" + folder.file("bash") + "\n" + body + "\n");
    std::filesystem::permissions(folder.file(name), std::filesystem::perms::owner_all);
  }

  /// Installs all listed build packages except those that match.
  void installAllBut(const std::string& pattern) {
    command("dpkg-query", "grep '^build' " INSTALL_PACKAGES_FOLDER
                          "/packages | while read -r purpose packages; do echo \"ii  "
                          "${packages%%|*}\"; done | grep -vE '" +
                              pattern + "'");
  }

  Finished install() {
    return run("env PATH=" + folder.path() +
               " " INSTALL_PACKAGES_FOLDER "/install_packages build 2>&1");
  }

  quorbel_tests::TemporaryFolder folder;
};

TEST_F(InstallPackages, DoesAndSaysNothingWhenNothingIsMissing) {
  installAllBut("nothing");
  command("apt-get", "echo called; exit 1");
  const Finished finished = install();
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.output, "");
}

TEST_F(InstallPackages, InstallsJustWhatIsMissingOfSeveralWhatTheListsKnowAndNamesItFirst) {
  installAllBut("libxml2-dev|libboost-json");
  command("apt-cache", "[[ $2 != *1.81* ]] && echo known");
  const Finished finished = install();
  EXPECT_EQ(finished.status, 0) << finished.output;
  for (const char* said : {"missing:\n ", "--no-install-recommends"}) {
    EXPECT_NE(finished.output.find(std::string(said) + " libboost-json1.83-dev libxml2-dev\n"),
              std::string::npos)
        << finished.output;
  }
}

TEST_F(InstallPackages, AsksOthersThanRootForRights) {
  installAllBut("libxml2-dev");
  command("id", "echo 1000");
  command("sudo", "echo sudo \"$@\"; exec \"$@\"");
  command("true", "");
  const Finished helped = install();
  EXPECT_EQ(helped.status, 0) << helped.output;
  EXPECT_NE(helped.output.find("sudo may ask for your password"), std::string::npos);
  EXPECT_NE(helped.output.find("sudo env DEBIAN_FRONTEND=noninteractive apt-get"),
            std::string::npos);
}

TEST_F(InstallPackages, EndsWithTheCommandToTypeWhateverFails) {
  installAllBut("libxml2-dev");
  const auto fails = [&](const std::string& why) {
    const Finished finished = install();
    const std::string end =
        why + " As root, run:\n  apt-get update && apt-get install libxml2-dev\n";
    EXPECT_EQ(finished.status, 1);
    EXPECT_TRUE(finished.output.ends_with(end)) << finished.output;
    return finished.output;
  };
  command("apt-get", "echo apt-get \"$@\"; exit 100");
  fails("The packages could not be fetched or installed; what apt-get says of it is above.");

  command("id", "echo 1000");
  for (const char* why : {"Installing them takes root's rights, and there is no sudo here.",
                          "sudo gave no rights, so nothing was installed."}) {
    EXPECT_EQ(fails(why).find("apt-get -y"), std::string::npos) << "nothing may be tried";
    command("sudo", "exit 1");
  }
}

}  // namespace
