#include "benchmarks/support/Stage.h"

#include <gtkmm/init.h>
#include <libsoup/soup.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "ads/request/VADConfiguration.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/GObjectPtr.h"
#include "platform/storage/Bundle.h"

namespace platform = valdren::platform;

namespace benchmarks {

Folders::Folders() {
  folder_ = (std::filesystem::temp_directory_path() / "quorbel-benchmark-XXXXXX").string();
  if (!mkdtemp(folder_.data())) std::exit(1);
  for (const char* variable : {"XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                               "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"}) {
    const std::string folder = folder_ + "/" + variable;
    std::filesystem::create_directory(folder);
    setenv(variable, folder.c_str(), 1);
  }
  setenv("GTK_A11Y", "none", 0);
  setenv("GSETTINGS_BACKEND", "memory", 0);
}

Folders::~Folders() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Stage::Stage() {
  if (!gtk_init_check()) {
    std::fputs("There is no display to measure on.\n", stderr);
    std::exit(1);
  }
  Gtk::init_gtkmm_internals();
  platform::Bundle::main().setIdentifier("com.valdren.benchmark");
}

bool runUntil(const std::function<bool()>& done, double seconds) {
  bool expired = false;
  const guint timeout = g_timeout_add(
      static_cast<guint>(seconds * 1000),
      [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
      },
      &expired);
  bool finished = done();
  while (!finished && !expired) {
    g_main_context_iteration(nullptr, TRUE);
    finished = done();
  }
  if (!expired) g_source_remove(timeout);
  return finished;
}

void runFor(double seconds) {
  runUntil([] { return false; }, seconds);
}

SandboxProcess::SandboxProcess() {
  GError* error = nullptr;
  process_ = g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, &error, SANDBOX_PROGRAM, nullptr);
  if (!process_) {
    std::fprintf(stderr, "The ad network cannot be started: %s\n", error->message);
    std::exit(1);
  }
  const platform::GObjectPtr<GDataInputStream> output(
      g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_)));
  char* const line = g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr);
  const std::string text = line ? line : "";
  g_free(line);
  base_ = text.substr(std::min(text.size(), text.find("http")));
}

SandboxProcess::~SandboxProcess() {
  g_subprocess_send_signal(process_, SIGTERM);
  g_subprocess_wait(process_, nullptr, nullptr);
  g_object_unref(process_);
}

void SandboxProcess::control(const std::string& query) const {
  const platform::GObjectPtr<SoupSession> session(soup_session_new());
  const platform::GObjectPtr<SoupMessage> message(
      soup_message_new("POST", (base_ + "/control?" + query).c_str()));
  GBytes* const answer = soup_session_send_and_read(session.get(), message.get(), nullptr, nullptr);
  if (answer) g_bytes_unref(answer);
}

int SandboxProcess::identifier() const {
  return std::atoi(g_subprocess_get_identifier(process_));
}

void useServer(const std::string& base) {
  const auto url = platform::URL::parse(base);
  if (!url) return;
  valdren::VADConfiguration::setAdServerBaseURL(*url);
  valdren::VADConfiguration::setScriptHostBaseURL(*url);
  valdren::VADStatistics::setAdNetworkDomain(url->host());
}

std::string outputOf(const std::vector<std::string>& command) {
  std::vector<const char*> arguments;
  for (const std::string& each : command) arguments.push_back(each.c_str());
  arguments.push_back(nullptr);
  const platform::GObjectPtr<GSubprocess> process(
      g_subprocess_newv(arguments.data(), G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr));
  char* output = nullptr;
  if (process) {
    g_subprocess_communicate_utf8(process.get(), nullptr, nullptr, &output, nullptr, nullptr);
  }
  const std::string text = output ? output : "";
  g_free(output);
  return text;
}

}  // namespace benchmarks
