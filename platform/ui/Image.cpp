#include "platform/ui/Image.h"

#include <gdk/gdk.h>

#include <cmath>
#include <cstdint>

#include "platform/base/GObjectPtr.h"
#include "platform/ui/NativeImage.h"

namespace valdren::platform {
namespace {

constexpr std::size_t kMostBytes = 4u << 20;
constexpr std::uint32_t kMostPixels = 2048;
constexpr std::string_view kSignature("\x89PNG\r\n\x1a\n", 8);
constexpr std::string_view kHeaderChunk("\0\0\0\x0dIHDR", 8);

std::uint32_t bigEndian(std::string_view bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i)
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

/// Checked before decoding: a small file can claim a huge picture.
bool hasUsableHeader(std::string_view bytes) {
  if (bytes.size() < 24 || bytes.size() > kMostBytes) return false;
  if (!bytes.starts_with(kSignature) || bytes.substr(8, 8) != kHeaderChunk) return false;
  const std::uint32_t width = bigEndian(bytes, 16);
  const std::uint32_t height = bigEndian(bytes, 20);
  return width > 0 && height > 0 && width <= kMostPixels && height <= kMostPixels;
}

}  // namespace

std::shared_ptr<Image> Image::fromPNG(std::string_view bytes, double scale) {
  if (!(scale > 0) || !std::isfinite(scale) || !hasUsableHeader(bytes)) return nullptr;
  const GBytesPtr data(g_bytes_new(bytes.data(), bytes.size()));
  GdkTexture* const texture = gdk_texture_new_from_bytes(data.get(), nullptr);
  if (!texture) return nullptr;
  auto native = std::make_unique<Native>();
  native->texture = Glib::wrap(texture);
  const Size size{double(native->texture->get_width()), double(native->texture->get_height())};
  return std::shared_ptr<Image>(new Image(std::move(native), size, scale));
}

Image::Image(std::unique_ptr<Native> native, Size pixelSize, double scale)
    : native_(std::move(native)), pixelSize_(pixelSize), scale_(scale) {}

Image::~Image() = default;

}  // namespace valdren::platform
