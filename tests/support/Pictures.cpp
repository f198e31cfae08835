#include "tests/support/Pictures.h"

#include <gtk/gtk.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/base/GObjectPtr.h"
#include "platform/ui/NativeWindow.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

using Picture = platform::GObjectPtr<GdkTexture>;

GtkWidget* widgetOf(const platform::Window& window) {
  return GTK_WIDGET(window.native().window().gobj());
}

/// What the window shows now, in so many pixels a point; null when it shows nothing.
Picture pictureOf(GtkWidget* widget, float scale) {
  GskRenderer* const renderer = gtk_native_get_renderer(GTK_NATIVE(widget));
  const int width = gtk_widget_get_width(widget);
  const int height = gtk_widget_get_height(widget);
  if (!renderer || width <= 0 || height <= 0) return nullptr;
  GdkPaintable* const paintable = gtk_widget_paintable_new(widget);
  GtkSnapshot* const snapshot = gtk_snapshot_new();
  // The widget's picture comes with its frame and shadow; what is kept is what lies within.
  const int pictured = std::max(width, gdk_paintable_get_intrinsic_width(paintable));
  const int high = std::max(height, gdk_paintable_get_intrinsic_height(paintable));
  gtk_snapshot_scale(snapshot, scale, scale);
  gdk_paintable_snapshot(paintable, snapshot, pictured, high);
  g_object_unref(paintable);
  GskRenderNode* const node = gtk_snapshot_free_to_node(snapshot);
  if (!node) return nullptr;
  const graphene_rect_t area =
      GRAPHENE_RECT_INIT(float(pictured - width) / 2 * scale, float(high - height) / 2 * scale,
                         float(width) * scale, float(height) * scale);
  Picture texture(gsk_renderer_render_texture(renderer, node, &area));
  gsk_render_node_unref(node);
  return texture;
}

}  // namespace

bool savePicture(const platform::Window& window, const std::string& path) {
  GtkWidget* const widget = widgetOf(window);
  const Picture texture =
      pictureOf(widget, static_cast<float>(gtk_widget_get_scale_factor(widget)));
  return texture && gdk_texture_save_to_png(texture.get(), path.c_str());
}

bool isBlank(const platform::Window& window, const platform::Rect& area) {
  const Picture texture = pictureOf(widgetOf(window), 1);
  if (!texture) return true;
  const int width = gdk_texture_get_width(texture.get());
  const int height = gdk_texture_get_height(texture.get());
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height);
  gdk_texture_download(texture.get(), reinterpret_cast<guchar*>(pixels.data()),
                       static_cast<std::size_t>(width) * sizeof(std::uint32_t));
  const int left = std::clamp(static_cast<int>(area.x), 0, width);
  const double start = area.y + window.statusBarHeight();
  const int top = std::clamp(static_cast<int>(start), 0, height);
  const int right = std::clamp(static_cast<int>(area.x + area.width), left, width);
  const int bottom = std::clamp(static_cast<int>(start + area.height), top, height);
  for (int y = top; y < bottom; ++y) {
    const auto* const row = &pixels[static_cast<std::size_t>(y) * width];
    const std::uint32_t first = pixels[static_cast<std::size_t>(top) * width + left];
    if (std::any_of(row + left, row + right, [first](auto pixel) { return pixel != first; })) {
      return false;
    }
  }
  return true;
}

}  // namespace quorbel_tests
