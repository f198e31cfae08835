// Images from valid and invalid PNG files.
#include "platform/ui/Image.h"

#include <gtest/gtest.h>

#include <string>

namespace valdren::platform {
namespace {

/// 2 by 1 pixels, opaque.
const std::string kPicture(
    "\211\120\116\107\015\012\032\012\000\000\000\015\111\110\104\122\000\000\000\002\000\000\000"
    "\001\010\006\000\000\000\364\042\177\212"
    "\000\000\000\013\111\104\101\124\170\332\143\370\017\005\000\043\345\007\371\031\220\017\124"
    "\000\000\000\000\111\105\116\104\256\102\140\202",
    68);

TEST(Image, IsAWholePictureThatIsNotTooLargeOrNone) {
  const auto image = Image::fromPNG(kPicture, 2);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->pixelSize(), (Size{2, 1}));
  EXPECT_EQ(image->size(), (Size{1, 0.5}));
  std::string huge = kPicture;
  huge[16] = 0x7f;  // the width's first byte
  std::string empty = kPicture;
  empty[19] = 0;
  std::string damaged = kPicture;
  damaged[42] ^= 0x55;
  const std::string kCases[] = {
      "",    "PNG",   kPicture.substr(0, 8),    kPicture.substr(0, 40), huge,
      empty, damaged, std::string(5 << 20, 'x')};
  for (const std::string& bytes : kCases) {
    EXPECT_EQ(Image::fromPNG(bytes, 2), nullptr) << bytes.size();
  }
  for (const double scale : {0.0, -1.0, 0.0 / 0.0, 1e308 * 10}) {
    EXPECT_EQ(Image::fromPNG(kPicture, scale), nullptr) << scale;
  }
}

}  // namespace
}  // namespace valdren::platform
