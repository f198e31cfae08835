#include "platform/storage/Bundle.h"

#include <gtest/gtest.h>

#include "platform/storage/Folders.h"
#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

TEST(Bundle, FindsResourcesInTheFirstFolderThatHasThem) {
  TemporaryFolder preferred;
  TemporaryFolder named;
  writeFile(preferred.file("both.m4a"), "1");
  writeFile(named.file("both.m4a"), "2");
  writeFile(named.file("one.m4a"), "3");
  writeFile(named.file("plain"), "4");
  const ScopedVariable variable("QUORBEL_RESOURCES", named.path().c_str());
  Bundle bundle;
  EXPECT_EQ(bundle.pathForResource("both", "m4a"), named.file("both.m4a"));
  bundle.setResourceFolder(preferred.path());
  EXPECT_EQ(bundle.pathForResource("both", "m4a"), preferred.file("both.m4a"));
  EXPECT_EQ(bundle.pathForResource("one", "m4a"), named.file("one.m4a"));
  EXPECT_EQ(bundle.pathForResource("plain", ""), named.file("plain"));
}

TEST(Bundle, FindsNothingOutsideItsFolders) {
  TemporaryFolder folder;
  writeFile(folder.file("inside/clip.m4a"), "1");
  writeFile(folder.file("clip.m4a"), "1");
  Bundle bundle;
  bundle.setResourceFolder(folder.file("inside"));
  EXPECT_TRUE(bundle.pathForResource("clip", "m4a"));
  for (const char* name : {"../clip", "/etc/passwd", "", ".", "..", "missing", "x/../clip"}) {
    EXPECT_FALSE(bundle.pathForResource(name, "m4a")) << name;
    EXPECT_FALSE(bundle.pathForResource(name, "")) << name;
  }
  EXPECT_FALSE(bundle.pathForResource("clip", "/../../clip.m4a"));
}

TEST(Folders, FollowTheDesktopsVariablesAndIgnoreRelativeOnes) {
  const ScopedVariable home("HOME", "/home/person");
  const std::string own = "/" + Bundle::main().identifier();
  const std::tuple<const char*, std::optional<std::string> (*)(), const char*> cases[] = {
      {"XDG_CACHE_HOME", cachesFolder, "/home/person/.cache"},
      {"XDG_STATE_HOME", stateFolder, "/home/person/.local/state"}};
  for (const auto& [variable, folder, underHome] : cases) {
    const ScopedVariable set(variable, "/else//");
    EXPECT_EQ(folder(), "/else" + own) << variable;
    for (const char* ignored : {"relative/folder", ""}) {
      const ScopedVariable other(variable, ignored);
      EXPECT_EQ(folder(), underHome + own) << variable << "=" << ignored;
    }
    const ScopedVariable none(variable, nullptr);
    const ScopedVariable homeless("HOME", nullptr);
    EXPECT_EQ(folder(), std::nullopt) << variable;
  }
  const ScopedVariable documents("XDG_DOCUMENTS_DIR", "/papers/");
  EXPECT_EQ(documentsFolder(), "/papers");
}

}  // namespace
}  // namespace valdren::platform
