#include "ads/support/VADCachedFile.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "ads/support/VADNetworkUtilities.h"
#include "platform/storage/Folders.h"
#include "tests/support/FakeURLLoading.h"
#include "tests/support/Fakes.h"
#include "tests/support/LogLines.h"

namespace valdren {
namespace {

namespace fs = std::filesystem;
using platform::URL;
using quorbel_tests::FakeURLLoading;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr const char* kURL = "http://scripts.example/core.js?v=1";
constexpr const char* kModified = "Wed, 09 Jun 2010 10:18:14 GMT";
constexpr double kModifiedSeconds = 1276078694;

/// Records the callbacks and runs `onEvent` in each.
class Owner : public VADCachedFileDelegate {
 public:
  std::vector<std::string> events;
  std::optional<platform::Error> refusal;
  std::function<void(VADCachedFile&)> onEvent;

  void cachedFileDownloadDidEnd(VADCachedFile& file) override { note("end", file); }
  void cachedFileDownloadDidFail(VADCachedFile& file,
                                 const std::optional<platform::Error>& failure) override {
    note(failure ? "failed " + std::to_string(failure->code) : "failed", file);
  }
  std::optional<platform::Error> cachedFileShouldRedirectToURL(VADCachedFile& file,
                                                               const URL& url) override {
    note("redirect to " + url.absoluteString(), file);
    return refusal;
  }

 private:
  void note(const std::string& event, VADCachedFile& file) {
    events.push_back(event);
    if (onEvent) onEvent(file);
  }
};

class VADCachedFileTest : public ::testing::Test {
 protected:
  VADCachedFileTest() {
    fs::remove_all(*platform::cachesFolder());
    file = fileFor(kURL);
  }

  std::shared_ptr<VADCachedFile> fileFor(const char* url) {
    return VADCachedFile::initWithDelegate(&owner, *URL::parse(url));
  }
  void write(const std::string& content) {
    fs::create_directories(fs::path(*file->filePath()).parent_path());
    std::ofstream(*file->filePath()) << content;
  }
  struct stat status() const {
    struct stat status {};
    EXPECT_EQ(stat(file->filePath()->c_str(), &status), 0);
    return status;
  }

  quorbel_tests::FakeClock clock;
  FakeURLLoading network;
  Owner owner;
  std::shared_ptr<VADCachedFile> file;
};

TEST_F(VADCachedFileTest, ADownloadIsKeptAndRevalidatedByTheServersTime) {
  VADNetworkUtilities::setUserAgentString("Agent/1");
  file->validate();
  const platform::URLRequest request = network.last().request();
  EXPECT_EQ(request.cachePolicy, platform::CachePolicy::ReloadIgnoringLocalCache);
  EXPECT_TRUE(request.handlesCookies);
  EXPECT_EQ(request.headers.at("User-Agent"), "Agent/1");
  EXPECT_FALSE(request.headers.contains("If-Modified-Since"));
  network.last().respond(200, {{"Last-Modified", kModified}});
  network.last().data("alert(");
  network.last().data("1)");
  EXPECT_FALSE(file->hasContent());
  network.last().finish();
  EXPECT_THAT(owner.events, ElementsAre("end"));
  EXPECT_EQ(status().st_mtim.tv_sec, kModifiedSeconds);
  EXPECT_EQ(status().st_atim.tv_sec, kModifiedSeconds);
  EXPECT_EQ(file->content(), "alert(1)");

  file->validate();
  EXPECT_EQ(network.last().request().headers.at("If-Modified-Since"), "Wed, 09 Jun 2010 10:18:14");
  network.last().respond(304);
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_THAT(owner.events, ElementsAre("end", "end"));
  EXPECT_EQ(file->content(), "alert(1)");
  EXPECT_EQ(file->httpStatusCode(), 304);

  file->validateWithCacheBuster();
  EXPECT_EQ(network.last().url(), std::string(kURL) + "&unique=599529600");
  network.last().answer(200, {}, "caf\xC3\xA9");
  EXPECT_EQ(fileFor(kURL)->content(), "caf\xC3\xA9") << "not the file of the request's address";
  file->validate();
  network.last().answer(200, {}, "caf\xE9");
  EXPECT_FALSE(file->content()) << "no UTF-8";
  EXPECT_TRUE(file->hasContent());
}

TEST_F(VADCachedFileTest, AnUnreadableLastModifiedLeavesTheTimeOfWriting) {
  for (const char* text : {"", "GMT", "yesterday", "Wed, 31 Jun 2010 10:18:14 GMT",
                           "Wednesday, 09-Jun-10 10:18:14 GMT", "2010-06-09T10:18:14Z",
                           "Wed, 09 Jun 2010 10:18:14 +0200", "Wed, 09 Jun 99999 10:18:14 GMT"}) {
    file->validate();
    network.last().answer(200, {{"Last-Modified", text}}, "x");
    EXPECT_GT(status().st_mtim.tv_sec, time(nullptr) - 1000) << text;
  }
}

TEST_F(VADCachedFileTest, OtherStatusesFailWithoutErrorAndKeepTheCopy) {
  write("old");
  for (const int status : {201, 204, 206, 302, 404, 500}) {
    file->validate();
    file->validateWithCacheBuster();
    network.last().respond(status);
    EXPECT_TRUE(network.last().isCancelled());
    EXPECT_EQ(file->httpStatusCode(), status);
    EXPECT_EQ(file->content(), "old");
  }
  EXPECT_EQ(network.count(), 6u) << "one at a time";
  network.refuses = true;  // the URL cannot be fetched
  file->validate();
  network.refuses = false;
  EXPECT_THAT(owner.events, ::testing::AllOf(SizeIs(7), Each("failed")));
  file->validate();
  EXPECT_EQ(network.count(), 7u);
}

TEST_F(VADCachedFileTest, RedirectsAreAskedAboutAndMayBeRefused) {
  std::vector<std::string> hops;
  owner.onEvent = [&](VADCachedFile& told) { hops.push_back(told.httpHeaders().at("X-Hop")); };
  file->validate();
  network.last().redirect("http://b.example/", {{"X-Hop", "1"}});
  network.last().answer(200, {{"X-Hop", "2"}}, "x");
  EXPECT_THAT(owner.events, ElementsAre("redirect to http://b.example/", "end"));
  EXPECT_THAT(hops, ElementsAre("1", "2"));
  EXPECT_EQ(file->httpDestinationURL(), *URL::parse("http://b.example/"));

  owner = {};
  owner.refusal = platform::Error{"mine", 7, "no thanks"};
  file->validate();
  network.last().redirect("http://b.example/");
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_THAT(owner.events, ElementsAre("redirect to http://b.example/", "failed 7"));
}

TEST_F(VADCachedFileTest, WhatCannotBeWrittenIsKeptInMemoryUntilItCan) {
  const fs::path path = *file->filePath();
  quorbel_tests::LogLines log;
  for (const bool folderInTheWay : {false, true}) {
    fs::remove_all(*platform::cachesFolder());
    fs::create_directories(folderInTheWay ? path : path.parent_path().parent_path());
    if (!folderInTheWay) std::ofstream(path.parent_path()) << "where the host's folder should be";
    for (const char* text : {"first", "second"}) {
      file->validate();
      EXPECT_FALSE(network.last().request().headers.contains("If-Modified-Since"));
      network.last().answer(200, {{"Last-Modified", kModified}}, text);
      EXPECT_TRUE(file->hasContent());
      EXPECT_EQ(file->content(), text);
    }
  }
  EXPECT_THAT(owner.events, ::testing::AllOf(SizeIs(4), Each("end")));
  EXPECT_EQ(log.lines().size(), 1u);
  trimCacheFolder();
  EXPECT_FALSE(fs::exists(path)) << "no copy can ever be written there";
  file->validate();
  network.last().answer(200, {}, "third");
  EXPECT_EQ(fileFor(kURL)->content(), "third");
  file->invalidate();
  EXPECT_FALSE(file->hasContent());
}

TEST_F(VADCachedFileTest, CancelAndInvalidateAreSilent) {
  const auto other = fileFor("http://scripts.example/other");
  other->validate();
  network.last().answer(200, {}, "other");
  owner.events.clear();
  write("old");
  file->validate();
  network.last().respond(200);
  file->cancel();
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_EQ(file->content(), "old");
  file->validate();
  file->invalidate();
  EXPECT_TRUE(network.last().isCancelled());
  EXPECT_FALSE(file->hasContent());
  file->invalidate();
  EXPECT_TRUE(owner.events.empty());
  EXPECT_EQ(other->content(), "other");
  other->invalidate();
  EXPECT_FALSE(fs::exists(fs::path(*file->filePath()).parent_path()));
}

TEST_F(VADCachedFileTest, WhatIsNoCopyIsNotTakenForOne) {
  const std::string path = *file->filePath();
  const std::function<void()> makers[] = {
      [&] { mkfifo(path.c_str(), 0600); },
      [&] { fs::create_symlink("/dev/zero", path); },
      [&] { write("x"), fs::resize_file(path, 1ull << 40); },
  };
  for (const auto& make : makers) {
    write("old");
    fs::remove_all(path);
    make();
    EXPECT_FALSE(file->content());
    EXPECT_FALSE(file->hasContent());
    file->validate();
    EXPECT_FALSE(network.last().request().headers.contains("If-Modified-Since"));
    network.last().answer(200, {}, "new");
    EXPECT_EQ(file->content(), "new");
  }
}

TEST_F(VADCachedFileTest, TheDelegateMayLetGoInAnyCallback) {
  const platform::Error cut{"net", 1, "x"};
  const std::function<void(FakeURLLoading::Fetch&)> ways[] = {
      [](auto& fetch) { fetch.redirect("http://b.example/"); },
      [](auto& fetch) { fetch.respond(304); },
      [](auto& fetch) { fetch.respond(404); },
      [&](auto& fetch) { fetch.fail(cut); },
      [](auto& fetch) { fetch.answer(200, {}, "x"); },
  };
  for (const bool refuses : {false, true}) {
    if (refuses) owner.refusal = platform::Error{"mine", 1, "no"};
    for (const auto& way : ways) {
      file = fileFor(kURL);
      owner.events.clear();
      owner.onEvent = [&](VADCachedFile& told) {
        told.setDelegate(nullptr);
        told.invalidate();
        file.reset();
      };
      file->validate();
      way(network.last());
      EXPECT_EQ(owner.events.size(), 1u);
    }
  }
  file = fileFor(kURL);
  {
    Owner gone;
    file->setDelegate(&gone);
  }
  file->validate();
  network.last().answer(200, {}, "x");
  file->validate();
  file.reset();
  EXPECT_TRUE(network.last().isCancelled());
}

TEST(VADCacheFolderTest, EachURLHasItsFileInsideTheCachesFolder) {
  const std::string longHost(300, 'h');
  std::vector<std::string> texts{"relative", "http://" + longHost + "/",
                                 "http://" + longHost + "x/"};
  for (const char* rest :
       {"a.example/", "a.example/?q=1", "a.example/?q=2", "b.example/", "/", "../etc/passwd", "./x",
        "%2e%2e/x", "%2E%2E%2F%2E%2E/x", "a%00b/x", "[::1]:80/x"}) {
    texts.push_back(std::string("http://") + rest);
  }
  const fs::path caches = *platform::cachesFolder();
  std::set<std::string> paths;
  for (const std::string& text : texts) {
    const auto path = cachePathForURL(*URL::parse(text));
    ASSERT_TRUE(path) << text;
    EXPECT_EQ(path, cachePathForURL(*URL::parse(text)));
    const fs::path relative = fs::path(*path).lexically_normal().lexically_relative(caches);
    EXPECT_EQ(std::distance(relative.begin(), relative.end()), 2) << *path;
    EXPECT_NE(*relative.begin(), "..") << *path;
    for (const fs::path& part : relative) EXPECT_LE(part.string().size(), 255u);
    EXPECT_TRUE(paths.insert(*path).second) << text;
  }
  EXPECT_TRUE(paths.begin()->starts_with(caches.string() + "/"));
  EXPECT_EQ(fs::path(*cachePathForURL(*URL::parse(kURL))).parent_path().filename(),
            "scripts.example");
}

TEST(VADCacheFolderTest, LeftoversOfEarlierRunsAreCleared) {
  const fs::path caches = *platform::cachesFolder();
  fs::remove_all(caches);
  fs::create_directories(caches / "host");
  fs::create_directories(caches / "emptied");
  for (int copy = 0; copy < 230; ++copy) {
    char name[20];
    std::snprintf(name, sizeof name, "abc%x", copy);
    std::ofstream(caches / "host" / name) << "x";
  }
  { const std::ofstream empty(caches / "emptied" / "0123abcd"); }
  std::ofstream(caches / "host" / "not-ours") << "x";
  std::ofstream(caches / "host" / "abc0.new-a1B2c3") << "being written";
  for (const int hours : {-1, 1}) {
    const fs::path left = caches / "emptied" / ("abc0.new-" + std::to_string(hours + 100001));
    std::ofstream(left) << "by a killed writer";
    fs::last_write_time(left, fs::file_time_type::clock::now() + std::chrono::hours(hours));
  }
  trimCacheFolder();
  EXPECT_EQ(std::distance(fs::directory_iterator(caches / "host"), {}), 202);
  EXPECT_FALSE(fs::exists(caches / "emptied"));
  EXPECT_TRUE(fs::exists(caches / "host" / "not-ours"));
  EXPECT_TRUE(fs::exists(caches / "host" / "abc0.new-a1B2c3"));
}

TEST_F(VADCachedFileTest, AllCopiesTogetherAreBoundedButForThoseInUse) {
  const std::string body(10 * 1024 * 1024, 'x');
  const auto fetch = [&](const std::string& url) {
    auto fetched = fileFor(url.c_str());
    fetched->validate();
    network.last().answer(200, {}, body);
    return fetched;
  };
  const auto inUse = fetch("http://h/in-use");
  std::shared_ptr<VADCachedFile> latest;
  for (int number = 0; number < 8; ++number) latest = fetch("http://h/" + std::to_string(number));
  std::uintmax_t bytes = 0;
  for (const auto& copy : fs::directory_iterator(fs::path(*inUse->filePath()).parent_path())) {
    bytes += copy.file_size();
  }
  EXPECT_LE(bytes, 64u * 1024 * 1024);
  EXPECT_GT(bytes, 50u * 1024 * 1024);
  EXPECT_TRUE(inUse->hasContent());
  EXPECT_TRUE(latest->hasContent());
  EXPECT_FALSE(fileFor("http://h/0")->hasContent()) << "the oldest goes first";
}

}  // namespace
}  // namespace valdren
