#include "platform/FileUserDefaults.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <limits>

#include "tests/support/Process.h"

namespace {

using platform::Array;
using platform::Dictionary;
using platform::FileUserDefaults;
using platform::Value;
using quorbel_tests::TemporaryFolder;
using quorbel_tests::writeFile;

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

/// What a process that starts now reads.
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
                         {"date", platform::Date(1577836800.123456)},
                         {"empty", Dictionary{}}};
  {
    FileUserDefaults defaults(folder.path());
    defaults.setObject("a key/../%", value);
    EXPECT_TRUE(defaults.synchronize());
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

TEST(FileUserDefaults, WritesWhenToldTo) {
  const TemporaryFolder folder;
  FileUserDefaults defaults(folder.file("new/folder"));
  EXPECT_FALSE(defaults.objectForKey("k"));
  EXPECT_TRUE(defaults.synchronize()) << "there is nothing to write";
  EXPECT_FALSE(fs::exists(folder.file("new")));
  defaults.setObject("k", 1);
  EXPECT_FALSE(readAnew(folder.file("new/folder"), "k"));
  defaults.synchronize();
  EXPECT_EQ(readAnew(folder.file("new/folder"), "k"), Value(1));
  defaults.removeObject("k");
  EXPECT_FALSE(defaults.objectForKey("k"));
  EXPECT_EQ(readAnew(folder.file("new/folder"), "k"), Value(1));
  defaults.synchronize();
  EXPECT_FALSE(readAnew(folder.file("new/folder"), "k"));
}

TEST(FileUserDefaults, ABadTextDoesNotCostTheRest) {
  const TemporaryFolder folder;
  FileUserDefaults defaults(folder.path());
  defaults.setObject("k", Dictionary{{"bad", "\xff"}, {"count", 7}});
  EXPECT_TRUE(defaults.synchronize());
  const auto read = readAnew(folder.path(), "k");
  ASSERT_TRUE(read && read->dictionary());
  EXPECT_EQ(read->dictionary()->find("count")->integerValue(), 7);
}

TEST(FileUserDefaults, SetsADamagedFileAsideWithOneLine) {
  for (const std::string& damaged :
       {std::string(), std::string("{\"a\":"), std::string(100, '\0'), std::string("\xff\xfe")}) {
    const TemporaryFolder folder;
    FileUserDefaults(folder.path()).synchronize();
    writeFile(folder.file("k.json"), damaged);
    FileUserDefaults defaults(folder.path());
    testing::internal::CaptureStderr();
    EXPECT_FALSE(defaults.objectForKey("k"));
    EXPECT_FALSE(defaults.objectForKey("k"));
    const std::string errors = testing::internal::GetCapturedStderr();
    const auto first = errors.find("damaged");
    EXPECT_NE(first, std::string::npos);
    EXPECT_EQ(errors.find("is damaged", first + 1), std::string::npos) << errors;
    EXPECT_EQ(quorbel_tests::readFile(folder.file("k.json.damaged")), damaged);
    defaults.setObject("k", "new");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(readAnew(folder.path(), "k"), Value("new"));
  }
}

TEST(FileUserDefaults, KeepsValuesInMemoryWhereNothingCanBeWritten) {
  const TemporaryFolder folder;
  writeFile(folder.file("a file"), "");
  FileUserDefaults blocked(folder.file("a file/inside"));
  FileUserDefaults nowhere(std::nullopt);
  for (FileUserDefaults* const defaults : {&blocked, &nowhere}) {
    defaults->setObject("k", 1);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(defaults->synchronize());
    EXPECT_FALSE(defaults->synchronize());
    const std::string errors = testing::internal::GetCapturedStderr();
    const auto first = errors.find("cannot be kept");
    EXPECT_NE(first, std::string::npos);
    EXPECT_EQ(errors.find("cannot be kept", first + 1), std::string::npos) << errors;
    EXPECT_EQ(defaults->objectForKey("k"), Value(1));
  }
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
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(defaults.objectForKey("good"), Value(2));
  EXPECT_EQ(filesIn(folder.path()), before);
  EXPECT_EQ(readAnew(folder.path(), "good"), Value(1));
}

TEST(FileUserDefaults, ItsFilesAreTheOwnersAlone) {
  const TemporaryFolder folder;
  FileUserDefaults defaults(folder.path());
  defaults.setObject("k", 1);
  defaults.synchronize();
  struct stat status {};
  ASSERT_EQ(stat(folder.file("k.json").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(FileUserDefaults, AKillAtAnyInstantLeavesTheOldOrTheNewContent) {
  const TemporaryFolder folder;
  const auto content = [](int generation) {
    Array array;
    for (int place = 0; place < 20'000; ++place) array.push_back(generation);
    return Dictionary{{"generation", generation}, {"all", array}};
  };
  {
    FileUserDefaults defaults(folder.path());
    defaults.setObject("k", content(0));
    defaults.synchronize();
  }
  int last = 0;
  int advanced = 0;
  for (int round = 0; round < 25; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      FileUserDefaults defaults(folder.path());
      for (int generation = last + 1;; ++generation) {
        defaults.setObject("k", content(generation));
        defaults.synchronize();
      }
    }
    usleep(10'000 + static_cast<useconds_t>(round) * 7'001);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);

    const auto read = readAnew(folder.path(), "k");
    ASSERT_TRUE(read && read->dictionary()) << "neither the old nor the new content";
    const int generation = static_cast<int>(read->dictionary()->find("generation")->integerValue());
    ASSERT_EQ(*read, Value(content(generation))) << "a mixture of two contents";
    ASSERT_GE(generation, last);
    if (generation > last) ++advanced;
    last = generation;
  }
  EXPECT_GT(advanced, 0) << "no child lived long enough to write";

  // What the killed writers left is removed once it is old.
  for (const auto& entry : fs::directory_iterator(folder.path())) {
    makeOld(entry.path());
  }
  FileUserDefaults defaults(folder.path());
  defaults.setObject("k", 1);
  defaults.synchronize();
  EXPECT_EQ(filesIn(folder.path()), (std::vector<std::string>{"k.json"}));
}

}  // namespace
