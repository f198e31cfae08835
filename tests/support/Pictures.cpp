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

struct Pixels {
  std::uint32_t at(int x, int y) const { return all[std::size_t(y) * width + x]; }

  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> all = {};
};

/// One for each point; none when nothing is shown.
Pixels pixelsOf(const platform::Window& window) {
  const Picture texture = pictureOf(widgetOf(window), 1);
  if (!texture) return {};
  Pixels pixels{gdk_texture_get_width(texture.get()), gdk_texture_get_height(texture.get())};
  pixels.all.resize(std::size_t(pixels.width) * pixels.height);
  gdk_texture_download(texture.get(), reinterpret_cast<guchar*>(pixels.all.data()),
                       std::size_t(pixels.width) * sizeof(std::uint32_t));
  return pixels;
}

}  // namespace

bool savePicture(const platform::Window& window, const std::string& path) {
  GtkWidget* const widget = widgetOf(window);
  const Picture texture =
      pictureOf(widget, static_cast<float>(gtk_widget_get_scale_factor(widget)));
  return texture && gdk_texture_save_to_png(texture.get(), path.c_str());
}

bool isBlank(const platform::Window& window, const platform::Rect& area) {
  const Pixels pixels = pixelsOf(window);
  const int left = std::clamp(int(area.x), 0, pixels.width);
  const int right = std::clamp(int(area.x + area.width), left, pixels.width);
  const double start = area.y + window.statusBarHeight();
  const int top = std::clamp(int(start), 0, pixels.height);
  const int bottom = std::clamp(int(start + area.height), top, pixels.height);
  for (int y = top; y < bottom; ++y) {
    for (int x = left; x < right; ++x) {
      if (pixels.at(x, y) != pixels.at(left, top)) return false;
    }
  }
  return true;
}

unsigned colorAt(const platform::Window& window, platform::Point point) {
  const Pixels pixels = pixelsOf(window);
  const bool isInside = point.x < pixels.width && point.y < pixels.height;
  return isInside ? pixels.at(int(point.x), int(point.y)) & 0xFFFFFF : ~0u;
}

}  // namespace quorbel_tests
