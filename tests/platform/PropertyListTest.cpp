#include "platform/PropertyList.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>

#include "tests/support/Process.h"

namespace {

using platform::Dictionary;
using platform::readPropertyList;
using platform::Value;
using quorbel_tests::TemporaryFolder;
using quorbel_tests::writeFile;

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
               "<key>number</key><integer>-42</integer><key>real</key><real>1.5</real>"
               "<key>yes</key><true/><key>data</key><data>AAEC</data>"
               "<key>date</key><date>2001-01-02T00:00:00Z</date>"
               "<key>array</key><array><integer>1</integer><dict/></array></dict>"));
  ASSERT_TRUE(value);
  EXPECT_EQ(*value, Value(Dictionary{
                        {"text", "a & \xc3\xa9"},
                        {"number", -42},
                        {"real", 1.5},
                        {"yes", true},
                        {"data", "AAEC"},
                        {"date", platform::Date(platform::kSecondsFrom1970To2001 + 86400)},
                        {"array", platform::Array{1, Dictionary{}}},
                    }));
}

TEST_F(PropertyList, ReadsTheBinaryForm) {
  // {"a": 1, "b": "x"}, an object table of five and its offsets.
  const std::string binary =
      std::string("bplist00") + "\xd2\x01\x02\x03\x04" + "Qa" + "Qb" + "\x10\x01" + "Qx" +
      std::string("\x08\x0d\x0f\x11\x13", 5) + std::string(6, '\0') + "\x01\x01" +
      std::string("\0\0\0\0\0\0\0\x05\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x15", 24);
  EXPECT_EQ(read(binary), Value(Dictionary{{"a", 1}, {"b", "x"}}));
}

TEST_F(PropertyList, IsNoneForAnythingElse) {
  EXPECT_FALSE(readPropertyList(folder_.file("absent.plist")));
  EXPECT_FALSE(readPropertyList(folder_.path()));
  for (const std::string& content :
       {std::string(), std::string("{}"), std::string("<html></html>"), std::string("bplist00"),
        std::string("bplist00") + std::string(40, '\xff'), std::string(1000, '\0'),
        xml("<dict><key>a</key>"), std::string("\x7f\x45\x4c\x46")}) {
    EXPECT_FALSE(read(content)) << content.substr(0, 20);
  }
}

TEST_F(PropertyList, IsNoneWhenItIsNestedToBreakItsReader) {
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

/// A binary list of arrays, each of which refers to the next so many times.
std::string binaryChain(int arrays, int references) {
  std::string content = "bplist00";
  std::string offsets;
  const auto put = [](std::string& text, std::uint64_t number, int size) {
    while (size > 0) text += static_cast<char>(number >> 8 * --size);
  };
  for (int array = 0; array < arrays; ++array) {
    put(offsets, content.size(), 4);
    content += static_cast<char>(0xA0 + references);
    for (int time = 0; time < references; ++time) put(content, array + 1, 4);
  }
  put(offsets, content.size(), 4);
  content += '\x09';  // true
  const std::uint64_t table = content.size();
  content += offsets + std::string(6, '\0') + "\x04\x04";
  put(content, arrays + 1, 8);
  put(content, 0, 8);
  put(content, table, 8);
  return content;
}

TEST_F(PropertyList, IsNoneWhenFewBytesStandForEndlessContent) {
  EXPECT_TRUE(read(binaryChain(3, 10)));
  EXPECT_TRUE(read(binaryChain(500, 1)));
  EXPECT_FALSE(read(binaryChain(30, 10)));
  EXPECT_FALSE(read(binaryChain(200'000, 1)));
}

TEST_F(PropertyList, IsNoneBeyondItsLargestSize) {
  writeFile(folder_.file("large.plist"), xml("<dict/>"));
  std::filesystem::resize_file(folder_.file("large.plist"), 17 * 1024 * 1024);
  EXPECT_FALSE(readPropertyList(folder_.file("large.plist")));
}

}  // namespace
