// The ad network as a program of its own.
#include <glib-unix.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

#include "sandbox/Sandbox.h"

namespace {

constexpr const char* kHelp =
    "Usage: valdren-sandbox [--port N]\n"
    "\n"
    "Runs an ad network on this machine only, until it is interrupted. Open the inspector's\n"
    "address in a browser to watch what clients send and to choose what they get.\n"
    "\n"
    "  --port N    listen on port N (1 to 65535); without it, on any free one\n"
    "  --help      print this and end\n"
    "  --version   print the version and end\n";

std::optional<std::uint16_t> portFrom(std::string_view text) {
  unsigned number = 0;
  const char* end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, number);
  const bool good = parsed.ec == std::errc() && parsed.ptr == end && number >= 1 && number <= 65535;
  return good ? std::optional(static_cast<std::uint16_t>(number)) : std::nullopt;
}

int wrongUsage(const char* what, std::string_view which) {
  std::fprintf(stderr, "valdren-sandbox: %s \"%.*s\"; see --help\n", what,
               static_cast<int>(which.size()), which.data());
  return 2;
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
  for (int at = 1; at < argc; ++at) {
    const std::string_view argument = argv[at];
    if (argument == "--help") return std::fputs(kHelp, stdout) < 0;
    if (argument == "--version") return std::printf("valdren-sandbox %s\n", QUORBEL_VERSION) < 0;
    std::string_view value;
    if (argument == "--port" && at + 1 < argc) {
      value = argv[++at];
    } else if (argument.starts_with("--port=")) {
      value = argument.substr(7);
    } else {
      return wrongUsage(argument == "--port" ? "a number is missing after" : "unknown argument",
                        argument);
    }
    const auto parsed = portFrom(value);
    if (!parsed) return wrongUsage("not a port number:", value);
    port = *parsed;
  }
  return serve(port);
}
