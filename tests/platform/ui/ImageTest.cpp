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
  for (const std::string& bytes : {std::string("PNG"), kPicture.substr(0, 40), huge}) {
    EXPECT_EQ(Image::fromPNG(bytes, 2), nullptr) << bytes.size();
  }
}

}  // namespace
}  // namespace valdren::platform
