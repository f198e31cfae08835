#include "tests/support/Process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <sstream>

#include "tests/support/Loop.h"

namespace quorbel_tests {
namespace {

constexpr double kLongestRun = 3600;  // in seconds

void setOrRemove(const char* name, const char* value) {
  if (value) {
    setenv(name, value, 1);
  } else {
    unsetenv(name);
  }
}

}  // namespace

Finished run(const std::string& command, std::string_view input) {
  const TemporaryFolder folder;
  writeFile(folder.file("in"), input);
  const std::string whole = "( " + command + "\n) <'" + folder.file("in") + "' >'" +
                            folder.file("out") + "' 2>'" + folder.file("err") + "'";
  auto running = std::async(std::launch::async, [&] { return std::system(whole.c_str()); });
  // What the program asks of servers in this process is answered meanwhile.
  runUntil([&] { return running.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
           kLongestRun);
  const int status = running.get();
  Finished finished;
  if (WIFEXITED(status)) finished.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) finished.status = 128 + WTERMSIG(status);
  finished.output = readFile(folder.file("out"));
  finished.errors = readFile(folder.file("err"));
  return finished;
}

TemporaryFolder::TemporaryFolder() {
  path_ = (std::filesystem::temp_directory_path() / "quorbel-test-XXXXXX").string();
  if (!mkdtemp(path_.data())) std::abort();
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

OwnFolders::OwnFolders() {
  for (const char* variable : {"XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                               "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"}) {
    setenv(variable, folder_.file(variable).c_str(), 1);
  }
  setenv("GTK_A11Y", "none", 0);
  setenv("GSETTINGS_BACKEND", "memory", 0);
}

std::vector<int> processFamily(int oldest) {
  std::vector<int> members{oldest > 0 ? oldest : getpid()};
  for (std::size_t place = 0; place < members.size(); ++place) {
    std::error_code error;
    const std::string tasks = "/proc/" + std::to_string(members[place]) + "/task";
    for (const auto& task : std::filesystem::directory_iterator(tasks, error)) {
      std::ifstream file(task.path() / "children");
      for (int child = 0; file >> child;) members.push_back(child);
    }
  }
  return members;
}

std::string nameOfProcess(int process) {
  std::istringstream status(readFile("/proc/" + std::to_string(process) + "/status"));
  std::string name;
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Name:\t")) name = line.substr(6);
    if (line.starts_with("State:\tZ")) return {};
  }
  return name;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& path, std::string_view content) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary)
      .write(content.data(), static_cast<std::streamsize>(content.size()));
}

ScopedVariable::ScopedVariable(const char* name, const char* value) : name_(name) {
  if (const char* const former = std::getenv(name)) former_ = former;
  setOrRemove(name, value);
}

ScopedVariable::~ScopedVariable() {
  setOrRemove(name_, former_ ? former_->c_str() : nullptr);
}

}  // namespace quorbel_tests
