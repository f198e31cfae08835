#include "platform/application/WindowMemory.h"

#include "platform/storage/UserDefaults.h"
#include "platform/ui/WindowPlace.h"

namespace valdren::platform {
namespace {

constexpr double kSmallest = 200;
constexpr double kLargest = 10'000;

const char* keyOf(InterfaceIdiom idiom) {
  return idiom == InterfaceIdiom::Tablet ? "window_size_tablet" : "window_size_phone";
}

bool isUsable(double length) {
  return length >= kSmallest && length <= kLargest;
}

}  // namespace

std::optional<Size> rememberedSize(InterfaceIdiom idiom) {
  const auto kept = UserDefaults::shared().objectForKey(keyOf(idiom));
  const Dictionary* const sides = kept ? kept->dictionary() : nullptr;
  if (!sides) return std::nullopt;
  const Value* const width = sides->find("width");
  const Value* const height = sides->find("height");
  if (!width || !height) return std::nullopt;
  const Size size{width->doubleValue(), height->doubleValue()};
  return isUsable(size.width) && isUsable(size.height) ? std::optional(size) : std::nullopt;
}

void rememberSize(InterfaceIdiom idiom, GtkWindow* window, Size size) {
  if (!isFree(window) || !isUsable(size.width) || !isUsable(size.height)) return;
  UserDefaults::shared().setObject(keyOf(idiom),
                                   Dictionary{{"width", size.width}, {"height", size.height}});
}

}  // namespace valdren::platform
