#include "platform/web/EngineCheck.h"

#include <gio/gio.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Log.h"
#include "platform/device/Launches.h"
#include "platform/ui/Settling.h"
#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {
namespace {

constexpr const char* kErrorDomain = "platform.engine";

constexpr const char* kWebProcess = "WebKitWebProcess";
constexpr const char* kNetworkProcess = "WebKitNetworkProcess";
/// The library that the engine's programs need, and the prefix of any library.
constexpr const char* kEngineLibrary = "libwebkitgtk";
constexpr const char* kAnyLibrary = "lib";
/// This variable would make the engine run without its sandbox.
constexpr const char* kNoSandbox = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";
/// Makes the dynamic linker print a program's libraries instead of starting it.
constexpr const char* kNameLibraries = "LD_TRACE_LOADED_OBJECTS";
/// A program that does not answer within this time, in seconds, does not work.
constexpr Seconds kPatienceSeconds{30};

/// The options with which the engine confines its pages: own namespaces, and the file system
/// read-only.
std::vector<std::string> inSandbox(const std::string& sandbox, const std::string& program) {
  return {sandbox,
          "--die-with-parent",
          "--unshare-uts",
          "--unshare-ipc",
          "--unshare-pid",
          "--unshare-net",
          "--ro-bind",
          "/",
          "/",
          "--proc",
          "/proc",
          "--dev",
          "/dev",
          "--setenv",
          kNameLibraries,
          "1",
          "--",
          program};
}

std::string withoutEnd(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

Error problem(std::string message) {
  return {kErrorDomain, 0, std::move(message)};
}

/// Whether a program that was asked for its libraries works.
Result<> checkEnd(const std::string& program, const char* library, GSubprocess* process,
                  const std::string& output) {
  if (g_subprocess_get_if_signaled(process)) {
    return problem("\"" + program + "\" was ended by signal " +
                   std::to_string(g_subprocess_get_term_sig(process)));
  }
  if (output.find("bwrap: ") != std::string::npos) return problem(withoutEnd(output));
  const std::size_t missing = output.find("not found");
  if (missing != std::string::npos) {
    const std::size_t line = output.rfind('\n', missing);
    return problem(withoutEnd(output.substr(line == std::string::npos ? 0 : line + 1)));
  }
#ifdef __GLIBC__
  const bool named = output.find(library) != std::string::npos;
#else
  const bool named = library;  // this linker prints nothing; the program has started and ended
#endif
  const int status = g_subprocess_get_exit_status(process);
  if (named && status < 126) return {};
  return problem("\"" + program + "\" does not start (status " + std::to_string(status) + ")");
}

}  // namespace

/// One program under test.
struct EngineCheck::Run {
  WeakPtr<EngineCheck> check;
  std::string program;
  const char* library;
  GObjectPtr<GSubprocess> process;
  std::unique_ptr<Timer> overdue;

  static void ended(GObject* process, GAsyncResult* result, gpointer run);
};

EnginePrograms EnginePrograms::installed() {
  return {.library = &webEngineLibrary, .isInSandbox = platform::isInSandbox()};
}

std::string EnginePrograms::folderOf(const Library& library) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path path = fs::canonical(library.path(), error);
  if (error) return {};
  for (fs::path above = path.parent_path(); above.has_relative_path();
       above = above.parent_path()) {
    for (const char* below : {"webkitgtk-6.0", "libexec/webkitgtk-6.0"}) {
      for (const char* program : {kWebProcess, kNetworkProcess}) {
        if (fs::exists(above / below / program, error)) return above / below;
      }
    }
  }
  return {};
}

EngineCheck& EngineCheck::standard() {
  // Never destroyed: an answer may arrive while the process ends.
  static auto* const check = new EngineCheck(EnginePrograms::installed());
  return *check;
}

void EngineCheck::ask(std::function<void()> known) {
  if (usable_) {
    RunLoop::shared().performAfterDelay(kNextTurn, std::move(known));
    return;
  }
  waiting_.push_back(std::move(known));
  if (!std::exchange(isAsking_, true)) {
    RunLoop::shared().performAfterDelay(*this, kNextTurn, [this] { begin(); });
  }
}

void EngineCheck::begin() {
  g_unsetenv(kNoSandbox);
  auto firstFrame = whenKeyWindowHasSettled(whileAlive(*this, [this] { load(); }));
  firstFrame_ = std::move(firstFrame);
}

void EngineCheck::load() {
  struct Load {
    WeakPtr<EngineCheck> check;
    Library& library;
    Result<> result;
  };
  auto* const load = new Load{WeakPtr<EngineCheck>(this), *programs_.library, {}};
  const GObjectPtr<GTask> task(g_task_new(
      nullptr, nullptr,
      [](GObject*, GAsyncResult*, gpointer data) {
        const std::unique_ptr<Load> load(static_cast<Load*>(data));
        EngineCheck* const check = load->check.get();
        if (!check) return;
        if (load->result) return check->testPrograms();
        check->finish(load->result);
      },
      load));
  g_task_set_task_data(task.get(), load, nullptr);
  g_task_run_in_thread(task.get(), [](GTask* task, gpointer, gpointer data, GCancellable*) {
    auto& load = *static_cast<Load*>(data);
    load.result = load.library.load();
    g_task_return_boolean(task, TRUE);
  });
}

void EngineCheck::testPrograms() {
  const std::string folder =
      programs_.folder.value_or(EnginePrograms::folderOf(*programs_.library));
  const bool isFolderKnown = !folder.empty();
  const std::string web = folder + "/" + kWebProcess;
  const std::string network = folder + "/" + kNetworkProcess;
  std::vector<std::string> needed;
  if (isFolderKnown) needed = {web, network};
  if (!programs_.isInSandbox) {
    needed.insert(needed.end(), {programs_.sandbox, programs_.busFilter});
  }
  for (const std::string& program : needed) {
    char* const found = g_find_program_in_path(program.c_str());
    if (!found) return finish(problem("the program \"" + program + "\" is missing"));
    g_free(found);
  }
  // Starts at 1, so that an immediate failure does not finish the check early.
  running_ = 1;
  if (isFolderKnown) run({network}, network, kEngineLibrary);
  if (programs_.isInSandbox) {
    if (isFolderKnown) run({web}, web, kEngineLibrary);
  } else if (isFolderKnown) {
    run(inSandbox(programs_.sandbox, web), web, kEngineLibrary);
  } else {
    run(inSandbox(programs_.sandbox, programs_.sandbox), programs_.sandbox, kAnyLibrary);
  }
  if (--running_ == 0) finish({});
}

void EngineCheck::run(const std::vector<std::string>& command, const std::string& program,
                      const char* library) {
  const GObjectPtr<GSubprocessLauncher> launcher(g_subprocess_launcher_new(
      GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_MERGE)));
  if (command.size() == 1) g_subprocess_launcher_setenv(launcher.get(), kNameLibraries, "1", TRUE);
  std::vector<const char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command) arguments.push_back(argument.c_str());
  arguments.push_back(nullptr);
  GError* error = nullptr;
  GObjectPtr<GSubprocess> process(
      g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), &error));
  if (!process) {
    finish(problem(error->message));
    g_error_free(error);
    return;
  }
  ++running_;
  GSubprocess* const asked = process.get();
  auto overdue = RunLoop::shared().scheduleTimer(kPatienceSeconds,
                                                 [asked] { g_subprocess_force_exit(asked); });
  g_subprocess_communicate_async(asked, nullptr, nullptr, Run::ended,
                                 new Run{WeakPtr<EngineCheck>(this), program, library,
                                         std::move(process), std::move(overdue)});
}

void EngineCheck::Run::ended(GObject* process, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Run> run(static_cast<Run*>(data));
  GBytes* bytes = nullptr;
  GError* error = nullptr;
  g_subprocess_communicate_finish(G_SUBPROCESS(process), result, &bytes, nullptr, &error);
  Result<> checked;
  if (error) checked = problem(error->message);
  g_clear_error(&error);
  gsize length = 0;
  const void* const text = bytes ? g_bytes_get_data(bytes, &length) : nullptr;
  const std::string output(static_cast<const char*>(text), text ? length : 0);
  if (bytes) g_bytes_unref(bytes);
  if (checked) checked = checkEnd(run->program, run->library, G_SUBPROCESS(process), output);
  EngineCheck* const check = run->check.get();
  if (!check) return;
  if (!checked) return check->finish(checked);
  if (--check->running_ == 0) check->finish({});
}

void EngineCheck::finish(const Result<>& checked) {
  if (usable_) return;
  usable_ = bool(checked);
  if (!*usable_) {
    logWarning("<Valdren> There are no ads, because web pages cannot be shown in a sandbox: " +
               checked.error().message + ".");
  }
  for (const auto& known : std::exchange(waiting_, {})) known();
}

}  // namespace valdren::platform
