// Which files are accepted as clips, and the samples they give.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <limits>

#include "platform/audio/ClipCache.h"
#include "platform/audio/ClipDecoder.h"
#include "platform/audio/Voice.h"
#include "tests/platform/audio/AudioFiles.h"
#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

std::shared_ptr<const DecodedClip> decode(const std::string& path) {
  auto clip = decodeClip(path);
  EXPECT_TRUE(clip || !clip.error().message.empty());
  return std::move(clip).valueOr(nullptr);
}

/// A folder for the files of a test.
struct Folder : TemporaryFolder {
  std::string write(const std::string& name, const std::string& content) const {
    writeFile(file(name), content);
    return file(name);
  }
};

TEST(ClipDecoder, EveryPackagedClipSoundsFromItsFirstMillisecondsAndEndsInSilence) {
  int clips = 0;
  for (const auto& entry : std::filesystem::directory_iterator(CLIP_FOLDER)) {
    if (entry.path().extension() != ".m4a") continue;
    SCOPED_TRACE(entry.path().filename());
    ++clips;
    const auto clip = decode(entry.path());
    ASSERT_TRUE(clip);
    const double seconds = double(clip->frameCount()) / kSampleRate;
    EXPECT_GE(seconds, 1.0);
    EXPECT_LE(seconds, 3.1);
    const auto& samples = clip->samples;
    const auto first = std::find_if(samples.begin(), samples.end(),
                                    [](float sample) { return std::abs(sample) > 0.01F; });
    EXPECT_LT((first - samples.begin()) / 2, kSampleRate * 5 / 1000);
    EXPECT_LT(*std::max_element(samples.begin(), samples.end()), 1.0F);
    EXPECT_GT(*std::max_element(samples.begin(), samples.end()), 0.1F);
    EXPECT_LT(std::abs(samples.back()), 0.001F);
  }
  EXPECT_EQ(clips, 14);
}

TEST(ClipDecoder, KeepsPitchLevelAndLength) {
  const Folder folder;
  const float infinite = std::numeric_limits<float>::infinity();
  const std::string whole = readFile(CLIP_FOLDER "/babies.m4a");
  const auto all = double(decode(CLIP_FOLDER "/babies.m4a")->frameCount());
  const struct {
    const char* name;
    std::string content;
    double seconds, tolerance;
  } rows[] = {
      {"slow.wav", toneFile(1000, 0.5, 24000), 0.5, 0.002},
      {"long.wav", wave(std::vector<float>(4000 * 70, 0.25F), 4000), 60, 0},
      {"wild.wav", wave({std::nanf(""), infinite, -infinite, 1e30F, -1e30F, 0.5F}), 0, 0.001},
      {"half.m4a", whole.substr(0, whole.size() / 2), all / 48000 * 0.625, all / 48000 * 0.374},
      {"tone.wav", toneFile(1000, 0.5), 0.5, 0},
  };
  std::vector<float> tone;
  for (const auto& [name, content, seconds, tolerance] : rows) {
    const auto clip = decode(folder.write(name, content));
    ASSERT_TRUE(clip) << name;
    EXPECT_NEAR(double(clip->frameCount()) / kSampleRate, seconds, tolerance) << name;
    tone = clip->samples;
    for (const float sample : tone) ASSERT_TRUE(sample >= -1 && sample <= 1) << name;
  }
  EXPECT_NEAR(tone[2 * 12], 0.5F, 0.01F);  // a quarter of the tone's period
  EXPECT_EQ(tone[2 * 12], tone[2 * 12 + 1]);
}

TEST(ClipDecoder, RefusesWhatIsNoSound) {
  const Folder folder;
  std::filesystem::create_directory(folder.file("folder.m4a"));
  ASSERT_EQ(mkfifo(folder.file("pipe.m4a").c_str(), 0600), 0);
  const std::string playlist =
      "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\nfile://" CLIP_FOLDER "/candy.m4a\n";
  const std::string list = "ffconcat version 1.0\nfile " CLIP_FOLDER "/candy.m4a\n";
  const std::string large = folder.write("large.wav", toneFile(440, 0.1));
  std::filesystem::resize_file(large, 65 * 1024 * 1024);  // sparse
  std::vector<std::string> paths{
      large,
      folder.file("absent.m4a"),
      folder.file("folder.m4a"),
      folder.file("pipe.m4a"),
      "",
      folder.write("empty.m4a", ""),
      folder.write("text.m4a", "This is no sound at all.\n"),
      folder.write("zeros.m4a", std::string(100000, '\0')),
      folder.write("playlist.m4a", playlist),
      folder.write("playlist.m3u8", playlist),
      folder.write("list.m4a", list),
      folder.write("nothing.wav", wave({})),
      folder.write("header.m4a", readFile(CLIP_FOLDER "/candy.m4a").substr(0, 200)),
  };
  const std::vector<float> samples(4800, 0.25F);
  for (const std::uint32_t rate : {0U, 1U, 3999U, 400000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    paths.push_back(folder.write("rate" + std::to_string(rate) + ".wav", wave(samples, rate)));
  }
  for (const std::uint32_t channels : {0U, 9U, 0xFFFFU}) {
    paths.push_back(folder.write("channels" + std::to_string(channels) + ".wav",
                                 wave(samples, 48000, channels)));
  }
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(decode(path));
  }
}

TEST(ClipDecoder, SurvivesDamageAnywhere) {
  const Folder folder;
  const std::string whole = readFile(CLIP_FOLDER "/candy.m4a");
  std::uint32_t dice = 12345;
  const auto roll = [&dice] { return dice = dice * 1664525U + 1013904223U, dice >> 8; };
  int decoded = 0;
  for (int round = 0; round < 150; ++round) {
    std::string damaged = whole;
    // Most of the damage goes to the tables at the start, which control the reader.
    const std::size_t reach =
        round % 3 == 0 ? damaged.size() : std::min<std::size_t>(1400, whole.size());
    for (int hit = 0; hit < 1 + round % 7; ++hit) damaged[roll() % reach] = char(roll());
    if (decode(folder.write("damaged.m4a", damaged))) ++decoded;
  }
  EXPECT_GT(decoded, 0);
  EXPECT_LT(decoded, 150);
}

TEST(ClipCache, GivesTheSameClipUntilTheFileChanges) {
  const Folder folder;
  ClipCache cache;
  const std::string path = folder.write("clip.wav", toneFile(440, 0.1));
  const auto first = cache.clip(path);
  ASSERT_TRUE(first);
  const auto again = cache.clip(path);
  EXPECT_EQ(*again, *first);
  folder.write("clip.wav", toneFile(440, 0.2));
  const auto second = cache.clip(path);
  ASSERT_TRUE(second);
  EXPECT_EQ((*second)->frameCount(), 9600U);
  std::filesystem::remove(path);
  const auto gone = cache.clip(path);
  ASSERT_FALSE(gone);
  EXPECT_EQ(gone.error().message, "No such file or directory");
}

TEST(ClipCache, DecodesAheadWhatIsWanted) {
  const Folder folder;
  ClipCache cache;
  const std::string sound = toneFile(440, 0.1);
  const std::string path = folder.write("clip.wav", sound);
  const auto changed = std::filesystem::last_write_time(path);
  // A file that looks the same but holds no sound is only heard if it was decoded before.
  EXPECT_TRUE(runUntil([&] {
    folder.write("clip.wav", std::string(sound.size(), '\0'));
    std::filesystem::last_write_time(path, changed);
    if (cache.clip(path)) return true;
    folder.write("clip.wav", sound);
    std::filesystem::last_write_time(path, changed);
    cache.prepare({folder.file("absent.wav"), path});
    return false;
  }));
}

TEST(ClipCache, ForgetsTheOldestOfMoreThanItHolds) {
  const Folder folder;
  ClipCache cache;
  // A minute decoded is 22 MiB; the cache holds 64.
  std::weak_ptr<const DecodedClip> oldest;
  std::weak_ptr<const DecodedClip> used;
  for (int number = 0; number < 4; ++number) {
    const std::string path = folder.write("clip" + std::to_string(number) + ".wav",
                                          wave(std::vector<float>(4000 * 60, 0.25F), 4000));
    const auto clip = cache.clip(path);
    ASSERT_TRUE(clip);
    if (number == 0) used = *clip;
    if (number == 1) oldest = *clip;
    EXPECT_TRUE(cache.clip(folder.file("clip0.wav")));
  }
  EXPECT_TRUE(oldest.expired());
  EXPECT_FALSE(used.expired());
}

TEST(Voice, FadesOutFromWhereItIsToldAndCanBeMixedAgain) {
  auto clip = std::make_shared<DecodedClip>();
  clip->samples.assign(2000, 1.0F);  // 1000 frames
  Voice voice(clip, 100);
  voice.begin = 50;
  EXPECT_EQ(voice.end(), 950);
  std::vector<float> target(2000, 0.0F);
  mix(voice, 0, target.data(), 1000);
  EXPECT_EQ(target[2 * 49], 0.0F);
  EXPECT_EQ(target[2 * 50], 1.0F);
  EXPECT_EQ(target[2 * 949 + 1], 1.0F);
  EXPECT_EQ(target[2 * 950], 0.0F);

  voice.fade = 200;
  std::fill(target.begin(), target.end(), 0.0F);
  mix(voice, 0, target.data(), 1000);
  EXPECT_EQ(target[2 * 199], 1.0F);
  EXPECT_NEAR(target[2 * 272], 0.5F, 0.01F);  // half of three milliseconds on
  EXPECT_EQ(target[2 * 344], 0.0F);
  for (std::size_t frame = 200; frame < 345; ++frame) {
    EXPECT_LE(target[2 * frame] + 0.0001F, target[2 * (frame - 1)] + 0.01F);
  }

  voice.fade = 50;  // before anything was heard
  EXPECT_EQ(voice.end(), 50);
}

}  // namespace
}  // namespace valdren::platform
