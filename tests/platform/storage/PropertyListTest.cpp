#include "platform/storage/PropertyList.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>

#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

std::string xml(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content +
         "</plist>\n";
}

class PropertyList : public testing::Test {
 protected:
  std::optional<Value> read(const std::string& content) {
    writeFile(folder_.file("list.plist"), content);
    return readPropertyList(folder_.file("list.plist"));
  }

  TemporaryFolder folder_;
};

TEST_F(PropertyList, ReadsEveryKindOfValue) {
  const auto value =
      read(xml("<dict><key>text</key><string>a &amp; \xc3\xa9</string>"
               "<key>number</key><integer>-42</integer><key>more</key><integer>+7</integer>"
               "<key>real</key><real>1.5</real>"
               "<key>yes</key><true/><key>data</key><data>AAEC</data>"
               "<key>date</key><date>2001-01-02T00:00:00Z</date>"
               "<key>array</key><array><integer>1</integer><dict/></array></dict>"));
  ASSERT_TRUE(value);
  EXPECT_EQ(*value, Value(Dictionary{
                        {"text", "a & \xc3\xa9"},
                        {"number", -42},
                        {"more", 7},
                        {"real", 1.5},
                        {"yes", true},
                        {"data", "AAEC"},
                        {"date", Date(kSecondsFrom1970To2001 + 86400)},
                        {"array", Array{1, Dictionary{}}},
                    }));
}

std::string bigEndian(std::uint64_t number, int bytes) {
  std::string text;
  while (bytes > 0) text += static_cast<char>(number >> 8 * --bytes);
  return text;
}

/// A binary list of these objects; the first is the outermost. Places and references take so many
/// bytes.
std::string binaryList(const std::vector<std::string>& objects, int bytes = 1) {
  std::string content = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += bigEndian(content.size(), bytes);
    content += object;
  }
  return content + offsets + std::string(6, '\0') + std::string(2, static_cast<char>(bytes)) +
         bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(content.size(), 8);
}

/// A dictionary whose only key is this object.
std::string binaryDictionary(const std::string& key) {
  return binaryList({"\xd1\x01\x02", key, "\x09"});
}

TEST_F(PropertyList, ReadsTheBinaryForm) {
  const std::pair<std::string, Value> cases[] = {
      {std::string("\x10\x2a"), 42},
      {"\x13" + std::string(8, '\xff'), -1},
      {"\x14" + std::string(8, '\0') + std::string(8, '\xff'), -1},
      {std::string("\x22\x3f\xc0\0\0", 5), 1.5},
      {std::string("\x23\x3f\xf8\0\0\0\0\0\0", 9), 1.5},
      {std::string("\x33\x40\xf5\x18\0\0\0\0\0", 9), Date(kSecondsFrom1970To2001 + 86400)},
      {std::string("\x43\0\x01\x02", 4), "AAEC"},
      {"\x51x", "x"},
      {"\x5f\x10\x10" + std::string(16, 'x'), std::string(16, 'x')},
      {std::string("\x63\0a\xd8\x3d\xde\0", 7), "a\xf0\x9f\x98\x80"},
      {std::string(1, '\0'), nullptr},
      {"\x80\x01", nullptr},
  };
  for (const auto& [object, value] : cases) {
    EXPECT_EQ(read(binaryList({"\xd1\x01\x02", "Qk", object})), Value(Dictionary{{"k", value}}))
        << value.description();
  }
  EXPECT_EQ(read(binaryList({"\xa2\x01\x01", "\x09"})), Value(Array{true, true}));
}

TEST_F(PropertyList, IsNoneForAnythingElse) {
  EXPECT_FALSE(readPropertyList(folder_.file("absent.plist")));
  EXPECT_FALSE(readPropertyList(folder_.path()));
  for (const std::string& content :
       {std::string(), std::string("{}"), std::string("<html></html>"), std::string("bplist00"),
        std::string("bplist00") + std::string(40, '\xff'), std::string(1000, '\0'),
        xml("<dict><key>a</key>"), std::string("\x7f\x45\x4c\x46"),
        // Invalid keys and values.
        xml("<dict><integer>1</integer><true/></dict>"), xml("<dict><true/></dict>"),
        xml("<dict><key>a</key><key>b</key></dict>"),
        xml("<dict><key>a<dict/></key><true/></dict>"), xml("<integer>x</integer>"),
        xml("<date>2001-13-02T00:00:00Z</date>"), xml("<data>&lt;</data>"),
        xml("<string>&unknown;</string>"), xml("<array>") + "</dict>", binaryDictionary("\x10\x01"),
        binaryDictionary("\xa0"), binaryDictionary({"\xd1\x00\x00", 3}),
        binaryDictionary("\x5f\x13\xff"), binaryDictionary({"\x61\xd8\x00", 3}),
        binaryDictionary("\x24"), binaryDictionary("\x1f")}) {
    EXPECT_FALSE(read(content)) << content.substr(0, 20);
  }
}

TEST_F(PropertyList, IsNoneWhenItIsNestedTooDeeply) {
  const auto nested = [](std::size_t levels) {
    std::string text;
    for (std::size_t level = 0; level < levels; ++level) text += "<array>";
    for (std::size_t level = 0; level < levels; ++level) text += "</array>";
    return xml(text);
  };
  EXPECT_TRUE(read(nested(100)));
  EXPECT_FALSE(read(nested(1000)));
  EXPECT_FALSE(read(nested(500'000)));
}

/// A binary list of arrays, each of which refers to the next one `references` times.
std::string binaryChain(int arrays, int references) {
  std::vector<std::string> objects;
  for (int array = 1; array <= arrays; ++array) {
    objects.emplace_back(1, static_cast<char>(0xA0 + references));
    for (int time = 0; time < references; ++time) objects.back() += bigEndian(array, 4);
  }
  objects.emplace_back("\x09");  // true
  return binaryList(objects, 4);
}

TEST_F(PropertyList, IsNoneWhenItIsHugeOrFewBytesExpandToHugeContent) {
  writeFile(folder_.file("large.plist"), xml("<dict/>"));
  std::filesystem::resize_file(folder_.file("large.plist"), 17 * 1024 * 1024);
  EXPECT_FALSE(readPropertyList(folder_.file("large.plist")));
  EXPECT_TRUE(read(binaryChain(3, 10)));
  EXPECT_TRUE(read(binaryChain(150, 1)));
  EXPECT_FALSE(read(binaryChain(30, 10)));
  EXPECT_FALSE(read(binaryChain(200'000, 1)));
}

}  // namespace
}  // namespace valdren::platform
