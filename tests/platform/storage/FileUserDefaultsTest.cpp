#include "platform/storage/FileUserDefaults.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <functional>
#include <limits>

#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace {

std::atomic<int> syncsHere = 0;
std::atomic<int> syncsElsewhere = 0;
std::atomic<bool> diskIsFull = false;

}  // namespace

/// Replaces the system's function to see which threads call it, and to fail.
extern "C" int fsync(int descriptor) {
  ++(getpid() == static_cast<pid_t>(syscall(SYS_gettid)) ? syncsHere : syncsElsewhere);
  if (!diskIsFull) return static_cast<int>(syscall(SYS_fsync, descriptor));
  errno = ENOSPC;
  return -1;
}

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

namespace fs = std::filesystem;

std::vector<std::string> filesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

void makeOld(const fs::path& path) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
}

/// The value that a new process reads.
std::optional<Value> readAnew(const std::string& folder, const char* key) {
  return FileUserDefaults(folder).objectForKey(key);
}

TEST(FileUserDefaults, KeepsEveryKindOfValueExactly) {
  const TemporaryFolder folder;
  const double awkward[] = {0.1, 1.0, -0.0, 1e300, 5e-324, 1234567890.123456};
  Array doubles;
  for (const double number : awkward) doubles.push_back(number);
  const Dictionary value{{"text", "\xc3\xa9\n"},
                         {"integer", std::numeric_limits<std::int64_t>::max()},
                         {"yes", true},
                         {"null", nullptr},
                         {"doubles", doubles},
                         {"infinite", std::numeric_limits<double>::infinity()},
                         {"date", Date(1577836800.123456)},
                         {"empty", Dictionary{}}};
  {
    FileUserDefaults defaults(folder.path());
    defaults.setObject("a key/../%", value);
    EXPECT_TRUE(defaults.flush());
  }
  const auto read = readAnew(folder.path(), "a key/../%");
  ASSERT_TRUE(read);
  EXPECT_EQ(*read, Value(value));
  const Array& numbers = *read->dictionary()->find("doubles")->array();
  for (std::size_t place = 0; place < numbers.size(); ++place) {
    EXPECT_EQ(numbers[place].kind(), Value::Kind::Double);
    EXPECT_EQ(std::signbit(numbers[place].doubleValue()), std::signbit(awkward[place]));
  }
  EXPECT_EQ(filesIn(folder.path()).size(), 1u) << "a key led out of the folder";
}

TEST(FileUserDefaults, WritesWhenToldToForItsOwnerAlone) {
  const TemporaryFolder folder;
  FileUserDefaults defaults(folder.file("new/folder"));
  const auto written = [&] { return readAnew(folder.file("new/folder"), "k"); };
  EXPECT_FALSE(defaults.objectForKey("k"));
  EXPECT_TRUE(defaults.flush()) << "there is nothing to write";
  EXPECT_FALSE(fs::exists(folder.file("new")));
  defaults.setObject("k", Dictionary{{"bad", "\xff"}, {"count", 7}});
  EXPECT_FALSE(written());
  defaults.flush();
  ASSERT_TRUE(written() && written()->dictionary());
  EXPECT_EQ(written()->dictionary()->find("count")->integerValue(), 7)
      << "a bad text costs the rest";
  EXPECT_EQ(fs::status(folder.file("new/folder/k.json")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  defaults.removeObject("k");
  EXPECT_FALSE(defaults.objectForKey("k"));
  EXPECT_TRUE(written());
  defaults.flush();
  EXPECT_FALSE(written());
}

TEST(FileUserDefaults, SetsAsideWithOneLineWhatItCannotReadBack) {
  using Maker = std::function<void(const std::string& path)>;
  const auto holding = [](const std::string& content) -> Maker {
    return [content](const std::string& path) { writeFile(path, content); };
  };
  const Maker makers[] = {
      holding(""),
      holding("{\"a\":"),
      holding(std::string(100, '\0')),
      holding("\xff\xfe"),
      [](const std::string& path) { fs::create_directory(path); },
      [](const std::string& path) { mkfifo(path.c_str(), 0600); },
      [](const std::string& path) { fs::create_symlink("/dev/zero", path); },
      [&](const std::string& path) { holding("1")(path), fs::resize_file(path, 1ull << 40); },
  };
  for (const Maker& make : makers) {
    SCOPED_TRACE(&make - makers);
    const TemporaryFolder folder;
    make(folder.file("k.json"));
    FileUserDefaults defaults(folder.path());
    LogLines log;
    EXPECT_FALSE(defaults.objectForKey("k"));
    EXPECT_FALSE(defaults.objectForKey("k"));
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"k.json.damaged"}));
    defaults.setObject("k", "new");
    EXPECT_TRUE(defaults.flush());
    EXPECT_EQ(readAnew(folder.path(), "k"), Value("new"));
  }
}

TEST(FileUserDefaults, KeepsValuesInMemoryWhereNothingCanBeWritten) {
  const TemporaryFolder folder;
  writeFile(folder.file("a file"), "");
  FileUserDefaults blocked(folder.file("a file/inside"));
  FileUserDefaults nowhere(std::nullopt);
  FileUserDefaults full(folder.file("full"));
  full.setObject("k", "old");
  ASSERT_TRUE(full.flush());
  diskIsFull = true;
  for (FileUserDefaults* const defaults : {&blocked, &nowhere, &full}) {
    defaults->setObject("k", 1);
    LogLines log;
    EXPECT_FALSE(defaults->flush());
    EXPECT_FALSE(defaults->flush());
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(defaults->objectForKey("k"), Value(1));
  }
  EXPECT_EQ(readAnew(folder.file("full"), "k"), Value("old"));
  EXPECT_EQ(filesIn(folder.file("full")).size(), 1u) << "a part of the new content stays";
  diskIsFull = false;
  EXPECT_TRUE(full.flush());
  EXPECT_EQ(readAnew(folder.file("full"), "k"), Value(1));
}

TEST(FileUserDefaults, ReadOnlyAccessChangesNoFile) {
  const TemporaryFolder folder;
  writeFile(folder.file("good.json"), "1");
  writeFile(folder.file("bad.json"), "{");
  writeFile(folder.file("old.json.new-abcdef"), "{");
  makeOld(folder.file("old.json.new-abcdef"));
  const auto before = filesIn(folder.path());
  FileUserDefaults defaults(folder.path(), FileUserDefaults::Access::ReadOnly);
  EXPECT_EQ(defaults.objectForKey("good"), Value(1));
  EXPECT_FALSE(defaults.objectForKey("bad"));
  defaults.setObject("good", 2);
  defaults.removeObject("bad");
  EXPECT_TRUE(defaults.flush());
  EXPECT_EQ(defaults.objectForKey("good"), Value(2));
  EXPECT_EQ(filesIn(folder.path()), before);
  EXPECT_EQ(readAnew(folder.path(), "good"), Value(1));
}

TEST(FileUserDefaults, NeverBlocksOnTheDiskAndSyncsRarely) {
  const TemporaryFolder folder;
  FileUserDefaults defaults(folder.path());
  syncsHere = syncsElsewhere = 0;
  for (int count = 0; count <= 5000; ++count) {
    defaults.setObject("k", count);
    defaults.synchronize();
  }
  EXPECT_TRUE(defaults.flush());
  EXPECT_EQ(readAnew(folder.path(), "k"), Value(5000));
  EXPECT_EQ(syncsHere, 0);
  EXPECT_GT(syncsElsewhere, 0);
  EXPECT_LT(syncsElsewhere, 500) << "each change was synced";
}

TEST(FileUserDefaults, AKillAtAnyInstantLeavesTheOldOrTheNewContent) {
  const TemporaryFolder folder;
  const auto content = [](int generation) {
    Array array;
    for (int place = 0; place < 20'000; ++place) array.push_back(generation);
    return Dictionary{{"generation", generation}, {"all", array}};
  };
  const auto written = [&] {
    const auto read = readAnew(folder.path(), "k");
    return read && read->dictionary() ? read->dictionary()->find("generation")->integerValue() : 0;
  };
  int last = 0;
  for (int round = 0; round < 12; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      FileUserDefaults defaults(folder.path());
      for (int generation = last + 1;; ++generation) {
        defaults.setObject("k", content(generation));
        defaults.synchronize();
        defaults.hasten();
      }
    }
    EXPECT_TRUE(runUntil([&] { return written() > last; }));
    usleep(static_cast<useconds_t>(round) * 7'001);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const int generation = static_cast<int>(written());
    ASSERT_GT(generation, last) << "neither the old nor the new content";
    ASSERT_EQ(readAnew(folder.path(), "k"), Value(content(generation))) << "two contents mixed";
    last = generation;
  }

  // Files of killed writers are removed once they are old.
  for (const auto& entry : fs::directory_iterator(folder.path())) {
    makeOld(entry.path());
  }
  FileUserDefaults defaults(folder.path());
  defaults.setObject("k", 1);
  defaults.flush();
  EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"k.json"}));
}

}  // namespace
}  // namespace valdren::platform
