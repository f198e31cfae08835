// The ad network as a program of its own.
#include <glib-unix.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/CommandLine.h"
#include "sandbox/Sandbox.h"

namespace {

std::optional<std::uint16_t> portFrom(std::string_view text) {
  unsigned number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  const bool good = parsed.ec == std::errc() && parsed.ptr == end && number >= 1 && number <= 65535;
  return good ? std::optional(static_cast<std::uint16_t>(number)) : std::nullopt;
}

gboolean quit(gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_CONTINUE;
}

int serve(std::uint16_t port) {
  const auto sandbox = sandbox::Sandbox::start(port);
  if (!sandbox) return 1;
  const std::string secure = sandbox->secureBaseURL();
  std::printf("Ad server and script host: %s\nInspector: %s/\n", sandbox->baseURL().c_str(),
              sandbox->baseURL().c_str());
  if (!secure.empty()) std::printf("With a bad certificate: %s\n", secure.c_str());
  std::fflush(stdout);

  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  g_unix_signal_add(SIGINT, quit, loop);
  g_unix_signal_add(SIGTERM, quit, loop);
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::uint16_t port = 0;
  bool help = false;
  bool version = false;
  const auto setPort = [&](const std::string& value) {
    const auto parsed = portFrom(value);
    port = parsed.value_or(0);
    return parsed.has_value();
  };
  const auto flag = [](bool& target) {
    return [&target](const std::string&) { return target = true; };
  };
  const valdren::platform::CommandLine commandLine(
      "valdren-sandbox",
      "Runs an ad network on this machine only, until it is interrupted. Open the inspector's\n"
      "address in a browser to watch what clients send and to choose what they get.",
      {{"port", "a port number", "Listen there; without it, on any free one", setPort},
       {"version", "", "Print the version and end", flag(version)},
       {"help", "", "Print this and end", flag(help), 'h'}});
  const auto parsed = commandLine.parse(argc, argv);
  if (help) return std::fputs(commandLine.help().c_str(), stdout) < 0;
  if (version) return std::printf("valdren-sandbox %s\n", QUORBEL_VERSION) < 0;
  if (!parsed) {
    std::fprintf(stderr, "valdren-sandbox: %s. Try \"valdren-sandbox --help\".\n",
                 parsed.error().message.c_str());
    return 2;
  }
  return serve(port);
}
