#include "benchmarks/support/Environment.h"

#include <gtkmm/init.h>

#include <cstdio>
#include <cstdlib>

#include "ads/request/VADConfiguration.h"
#include "benchmarks/support/HttpClient.h"
#include "platform/base/GObjectPtr.h"
#include "platform/storage/Bundle.h"

namespace platform = valdren::platform;

namespace benchmarks {

Toolkit::Toolkit() {
  if (!gtk_init_check()) {
    std::fputs("There is no display to measure on.\n", stderr);
    std::exit(1);
  }
  Gtk::init_gtkmm_internals();
  platform::Bundle::main().setIdentifier("com.valdren.benchmark");
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
  post(base_ + "/control?" + query);
}

int SandboxProcess::identifier() const {
  return std::atoi(g_subprocess_get_identifier(process_));
}

void useServer(const std::string& base) {
  const auto url = platform::URL::parse(base);
  if (!url) return;
  valdren::VADConfiguration::setAdServerBaseURL(*url);
  valdren::VADConfiguration::setScriptHostBaseURL(*url);
}

}  // namespace benchmarks
