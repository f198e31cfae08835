// The built program, used like from a script.
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/LoopbackServer.h"
#include "tests/support/Process.h"

namespace {

using quorbel_tests::Finished;
using quorbel_tests::run;

const std::string kProgram = QUORBEL_PROGRAM;

class CommandLine : public ::testing::Test {
 protected:
  /// The command with its own state folder.
  std::string program(const std::string& arguments, const std::string& before = "") const {
    return before + " env XDG_STATE_HOME=" + folder.path() + " " + kProgram + " " + arguments;
  }

  /// Starts the program in the background, waits for its window, and runs `then` with the process
  /// id in $first and a "say" whose output is returned. The bus belongs to the command, and the
  /// output of other services is not mixed in.
  std::string whileRunning(const std::string& start, const std::string& then) const {
    return "dbus-run-session -- sh -c 'say() { echo $* >>" + folder.file("said") + "; }; " + start +
           " & first=$!; tries=0; until gdbus call --session --dest com.valdren.quorbel "
           "--object-path /com/valdren/quorbel --method org.freedesktop.DBus.Peer.Ping "
           ">/dev/null 2>&1; do tries=$((tries+1)); test $tries -lt 300 || exit 99; sleep 0.1; "
           "done; sleep 1; " +
           then + "'";
  }
  std::string said() const { return quorbel_tests::readFile(folder.file("said")); }

  quorbel_tests::TemporaryFolder folder;
};

TEST_F(CommandLine, SaysWhatItIsOrWhatIsWrongWithoutADisplay) {
  const std::tuple<const char*, int, std::string> cases[] = {
      {"--help", 0, "--print-request"},
      {"--version", 0, "quorbel " QUORBEL_VERSION "\n"},
      {"--loud", 2, "Unknown option --loud"},
      {"", 1, "there is no display"},
  };
  for (const auto& [arguments, status, said] : cases) {
    const Finished finished = run(program(arguments, "env -u DISPLAY -u WAYLAND_DISPLAY "));
    EXPECT_EQ(finished.status, status) << arguments << "\n" << finished.errors;
    EXPECT_THAT(status ? finished.errors : finished.output, testing::HasSubstr(said));
  }
}

TEST_F(CommandLine, StartsWithoutWhatIsLoadedAfterTheFirstFrame) {
  // The variable makes the dynamic linker name the libraries of the program.
  const Finished named = run("LD_TRACE_LOADED_OBJECTS=1 " + kProgram);
  ASSERT_THAT(named.output, testing::HasSubstr("libgtkmm"));
  for (const char* library :
       {"libwebkitgtk", "libjavascriptcore", "libavformat", "libswresample"}) {
    EXPECT_THAT(named.output, testing::Not(testing::HasSubstr(library)));
  }
}

TEST_F(CommandLine, AMachineThatLacksSomethingGetsItsWindowAndOneLine) {
  // A bus that accepts connections, in the listener's queue, and never answers.
  const int silent = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  folder.file("silent").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(silent, 50), 0);
  quorbel_tests::writeFile(folder.file("no/bwrap"), "#!/bin/sh\necho bwrap: no >&2\nexit 1\n");
  std::filesystem::permissions(folder.file("no/bwrap"), std::filesystem::perms::owner_all);
  const std::pair<std::string, std::string> rows[] = {
      {"DBUS_SESSION_BUS_ADDRESS=unix:path=" + folder.file("silent"), "bus does not answer"},
      {"XDG_STATE_HOME=" + folder.file("no/bwrap"), "state cannot be saved"},
      {"PATH=" + folder.file("no") + ":$PATH", "There are no ads"},
      {"XDG_CACHE_HOME=/proc/none", "Copies of ads cannot be kept"},
  };
  for (const auto& [lack, line] : rows) {
    // The ad request shows that the window is there.
    const std::string told = folder.file("told");
    const Finished finished =
        run("timeout -s KILL 100 dbus-run-session -- sh -c 'env XDG_STATE_HOME=" + folder.path() +
            " " + lack + " " + kProgram + " 2>" + told +
            " >&2 & first=$!; until grep -q deprecated " + told + " && grep -q \"" + line + "\" " +
            told + "; do sleep 0.1; done; kill -TERM $first; wait $first'");
    EXPECT_EQ(finished.status, 0) << line << "\n" << quorbel_tests::readFile(told);
    EXPECT_EQ(run("grep -c \"" + line + "\" " + told).output, "1\n");
    EXPECT_EQ(run("grep -c \"shader cache\" " + told).output, "0\n") << "the driver's own";
  }
  close(silent);
}

TEST_F(CommandLine, ASecondInstanceWakesTheFirstAndEnds) {
  const std::string second = "timeout 30 " + program("--idiom tablet");
  const Finished finished = run(whileRunning(
      program("--idiom phone"), second + "; say second $?; kill -0 $first && say first runs; "
                                         "kill -TERM $first; wait $first; say first $?"));
  EXPECT_EQ(said(), "second 0\nfirst runs\nfirst 0\n") << finished.errors;
  EXPECT_EQ(run("find " + folder.file("com.valdren.quorbel") + " -size +0 | grep -q json").status,
            0)
      << "what is saved at the end: the ads' timings and statistics";
}

TEST_F(CommandLine, AStartWhilePingsOfTheLastOneLeaveIsAStartOfItsOwn) {
  quorbel_tests::LoopbackServer network;
  network.answer("/urvo/sdk-core-v40.js", 200, {},
                 "function URVO_buildAdURL() { location.href = \"gmsg://sdk/loadAdURL?url=" +
                     network.address("/ad") + "\"; }");
  network.answer("/ad", 200, {{"X-Urvo-Tracking-Urls", network.address("/ping")}}, "An ad");
  double delay = 20;  // of the first ping; longer than the wait at the end
  network.answer("/ping", [&](const auto&) {
    quorbel_tests::writeFile(folder.file("pinged"), "");
    return quorbel_tests::LoopbackResponse{.delay = std::exchange(delay, 0)};
  });
  const std::string start = program("--ad-server " + network.address(""));
  const std::string pinged = folder.file("pinged");
  const std::string ping = "tries=0; until test -e " + pinged +
                           " -o $tries = 300; do tries=$((tries+1)); sleep 0.1; done; rm " +
                           pinged + "; ";
  const Finished finished = run(whileRunning(
      start, ping + "kill -TERM $first; " + start + " & second=$!; " + ping +
                 "wait $first; say first $?; kill -TERM $second; wait $second; say second $?"));
  EXPECT_EQ(said(), "first 0\nsecond 0\n") << finished.errors;
  EXPECT_EQ(network.requests("/ping").size(), 2u) << "each shows its ad in its window";
}

}  // namespace
