// Web pages when the engine's sandbox or its processes cannot start.
#include "platform/web/EngineCheck.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/base/Library.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/Process.h"
#include "tests/support/WebPage.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

/// Writes an executable shell script.
std::string script(const std::string& path, const std::string& commands) {
  writeFile(path, "#!/bin/sh\n" + commands + "\n");
  chmod(path.c_str(), 0755);
  return path;
}

std::string refusingSandbox(const TemporaryFolder& folder) {
  return script(folder.file("bwrap"),
                "echo 'bwrap: No permissions to create a namespace' >&2\n"
                "echo again >> " +
                    folder.file("asked") + "\nexit 1");
}

TEST(EngineCheckTest, SaysOnceWhyNoPageCanBeShown) {
  const TemporaryFolder folder;
  const EnginePrograms installed = EnginePrograms::installed();
  ASSERT_TRUE(installed.library->load());
  const std::string programFolder = EnginePrograms::folderOf(*installed.library);
  ASSERT_NE(programFolder, "");
  Library missing("libnowhere.so.1");
  const auto withFolder = [&](const std::string& name, bool isInSandbox) {
    EnginePrograms programs = installed;
    const std::string made = folder.file(name);
    programs.folder = made;
    programs.isInSandbox = isInSandbox;
    std::filesystem::create_directories(made);
    for (const char* program : {"/WebKitWebProcess", "/WebKitNetworkProcess"}) {
      std::error_code ignored;
      std::filesystem::create_symlink(programFolder + program, made + program, ignored);
    }
    return programs;
  };
  std::vector<std::pair<EnginePrograms, std::string>> rows;
  const auto failsWith = [&](const std::string& reason, const EnginePrograms& programs) {
    return &rows.emplace_back(programs, reason).first;
  };
  failsWith("", installed);
  failsWith("No permissions", installed)->sandbox = refusingSandbox(folder);
  failsWith("/nowhere/bwrap", installed)->sandbox = "/nowhere/bwrap";
  failsWith("no-such-proxy", installed)->busFilter = "no-such-proxy";
  failsWith("signal 9", installed)->sandbox = script(folder.file("dies"), "kill -9 $$");
  failsWith("WebKitNetworkProcess", withFolder("network", false));
  std::filesystem::remove(folder.file("network/WebKitNetworkProcess"));
  failsWith("WebKitWebProcess", withFolder("web", false));
  std::filesystem::remove(folder.file("web/WebKitWebProcess"));
  script(folder.file("web/WebKitWebProcess"), "exit 1");
  failsWith("", withFolder("confined", true))->sandbox = "/nowhere/bwrap";
  failsWith("", installed)->folder = "";
  failsWith("libnowhere.so.1", installed)->library = &missing;
  for (const auto& [programs, reason] : rows) {
    LogLines log;
    EngineCheck check(programs);
    int answers = 0;
    for (int i = 0; i < 3; ++i) check.ask([&] { ++answers; });
    EXPECT_FALSE(check.isUsable()) << "the answer does not come at once";
    ASSERT_TRUE(runUntil([&] { return answers == 3; }, 40)) << reason;
    EXPECT_EQ(check.isUsable(), reason.empty()) << reason;
    ASSERT_EQ(log.lines().size(), reason.empty() ? 0u : 1u) << reason;
    if (!reason.empty()) {
      EXPECT_NE(log.lines()[0].find(reason), std::string::npos) << log.lines()[0];
    }
  }
}

TEST(EngineCheckTest, WithoutASandboxEveryLoadFailsAndNothingRunsOutsideIt) {
  const TemporaryFolder folder;
  const ScopedVariable asked("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1");
  EnginePrograms programs = EnginePrograms::installed();
  programs.sandbox = refusingSandbox(folder);
  EngineCheck check(programs);
  const EngineCheck::Replacement replacement(check);
  LogLines log;
  const auto before = webProcesses();
  WebView::prepareNext();
  for (int i = 0; i < 2; ++i) {
    Page page;
    EXPECT_FALSE(page.load("<p>Hello", "http://ads.example/"));
    EXPECT_EQ(page.delegate.lines.size(), 2u);
    EXPECT_FALSE(page.view->isLoading());
    EXPECT_FALSE(page.go("http://ads.example/again"));
    EXPECT_EQ(page.evaluate("1 + 1"), "");
  }
  EXPECT_EQ(webProcesses(), before);
  EXPECT_EQ(log.lines().size(), 1u);
  EXPECT_EQ(readFile(folder.file("asked")), "again\n");
  EXPECT_EQ(getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"), nullptr);
}

TEST(EngineCheckTest, WhatIsAskedOfAPageBeforeTheAnswerHappensAfterIt) {
  EngineCheck check(EnginePrograms::installed());
  const EngineCheck::Replacement replacement(check);
  Page page;
  Page related({0, 0, 320, 50}, page.view.get());
  Page stopped;
  auto dropped = std::make_unique<Page>();
  EXPECT_EQ(page.view->engine().userAgent(), "");
  related.view->loadHTMLString("<p>Two", {});
  stopped.view->loadHTMLString("<p>Three", {});
  stopped.view->stopLoading();
  EXPECT_FALSE(stopped.view->isLoading());
  dropped.reset();
  EXPECT_FALSE(check.isUsable());
  EXPECT_TRUE(page.load("<p>One", "http://ads.example/"));
  EXPECT_EQ(page.evaluate("document.body.textContent"), "One");
  EXPECT_TRUE(related.becomes("document.body.textContent", "Two"));
  EXPECT_TRUE(stopped.delegate.lines.empty());
  EXPECT_TRUE(check.isUsable());
}

}  // namespace
}  // namespace valdren::platform
