#include "platform/ui/TileLayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace valdren::platform {
namespace {

constexpr int kMostColumns = 7;
/// The preferred width of a tile per height, and the cost of each missing tile in a row.
constexpr double kPreferredShape = 1.44;
constexpr double kCostOfGap = 0.15;
/// A control that would be narrower than this beside the corner is placed above it.
constexpr int kLeastBeside = 120;
constexpr int kLeastFootHeight = 44;

int least(GtkWidget* widget, GtkOrientation orientation, int forSize) {
  int minimum = 0;
  gtk_widget_measure(widget, orientation, forSize, &minimum, nullptr, nullptr, nullptr);
  return minimum;
}

void place(GtkWidget* child, GtkAllocation area) {
  area.width = std::max(area.width, least(child, GTK_ORIENTATION_HORIZONTAL, -1));
  gtk_widget_size_allocate(child, &area, -1);
}

std::vector<GtkWidget*> childrenOf(GtkWidget* widget) {
  std::vector<GtkWidget*> children;
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child)) {
    if (gtk_widget_should_layout(child)) children.push_back(child);
  }
  return children;
}

// Both layouts store four numbers, which are their properties.

struct Layout {
  GtkLayoutManager parent;
  std::array<int, 4> numbers;
};

struct LayoutClass {
  GtkLayoutManagerClass parent;
};

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec*) {
  reinterpret_cast<Layout*>(object)->numbers[id - 1] = g_value_get_int(value);
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec*) {
  g_value_set_int(value, reinterpret_cast<Layout*>(object)->numbers[id - 1]);
}

void addProperties(gpointer type, const std::array<const char*, 4>& names) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->set_property = setProperty;
  object->get_property = getProperty;
  for (guint i = 0; i < names.size() && names[i]; ++i) {
    g_object_class_install_property(
        object, i + 1,
        g_param_spec_int(names[i], nullptr, nullptr, 0, G_MAXINT16, 0,
                         static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS)));
  }
}

GtkSizeRequestMode heightForWidth(GtkLayoutManager*, GtkWidget*) {
  return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
}

/// The tiles of one area and the space for them.
class Tiles {
 public:
  Tiles(GtkLayoutManager* layout, GtkWidget* area) : area_(area), children_(childrenOf(area)) {
    const auto& numbers = reinterpret_cast<Layout*>(layout)->numbers;
    margin_ = numbers[0];
    spacing_ = numbers[1];
    leastWidth_ = numbers[2];
    leastHeight_ = numbers[3];
    for (GtkWidget* child : children_) {
      leastWidth_ = std::max(leastWidth_, least(child, GTK_ORIENTATION_HORIZONTAL, -1));
    }
  }

  int widthOf(int columns) const {
    return 2 * margin_ + columns * leastWidth_ + (columns - 1) * spacing_;
  }

  int mostColumns(int width) const {
    const int fitting = (width - 2 * margin_ + spacing_) / (leastWidth_ + spacing_);
    return std::clamp(fitting, 1, kMostColumns);
  }

  int heightOf(int columns, int width) const {
    const int tile = tileHeight(tileWidth(columns, width));
    return 2 * margin_ + rows(columns) * tile + (rows(columns) - 1) * spacing_;
  }

  void arrange(int width, int height) {
    const int lines = rows(bestColumns(width, height));
    const int count = static_cast<int>(children_.size());
    const int down = height - 2 * margin_ + spacing_;
    const int across = width - 2 * margin_ + spacing_;
    const bool mirrored = gtk_widget_get_direction(area_) == GTK_TEXT_DIR_RTL;
    auto child = children_.begin();
    for (int line = 0; line < lines; ++line) {
      const int top = margin_ + line * down / lines;
      const int bottom = margin_ + (line + 1) * down / lines - spacing_;
      const int inLine = count / lines + (line < count % lines);
      for (int i = 0; i < inLine; ++i) {
        const int left = margin_ + i * across / inLine;
        const int right = margin_ + (i + 1) * across / inLine - spacing_;
        place(*child++, {mirrored ? width - right : left, top, right - left, bottom - top});
      }
    }
  }

 private:
  int rows(int columns) const {
    return std::max(1, (static_cast<int>(children_.size()) + columns - 1) / columns);
  }

  int tileWidth(int columns, int width) const {
    return std::max(leastWidth_, (width - 2 * margin_ - (columns - 1) * spacing_) / columns);
  }

  int tileHeight(int width) const {
    int height = leastHeight_;
    for (GtkWidget* child : children_) {
      height = std::max(height, least(child, GTK_ORIENTATION_VERTICAL, width));
    }
    return height;
  }

  int bestColumns(int width, int height) const {
    const int most = mostColumns(width);
    int best = most;
    double leastCost = 1e9;
    for (int columns = 1; columns <= most; ++columns) {
      if (heightOf(columns, width) > height) continue;
      const double tall = (height - 2.0 * margin_ + spacing_) / rows(columns) - spacing_;
      const int gaps = rows(columns) * columns - static_cast<int>(children_.size());
      const double cost = std::abs(std::log(tileWidth(columns, width) / tall / kPreferredShape)) +
                          kCostOfGap * gaps;
      if (cost >= leastCost) continue;
      leastCost = cost;
      best = columns;
    }
    return best;
  }

  GtkWidget* area_;
  std::vector<GtkWidget*> children_;
  int margin_;
  int spacing_;
  int leastWidth_;
  int leastHeight_;
};

void measureTiles(GtkLayoutManager* layout, GtkWidget* area, GtkOrientation orientation,
                  int forSize, int* minimum, int* natural, int*, int*) {
  const Tiles tiles(layout, area);
  if (orientation == GTK_ORIENTATION_HORIZONTAL) {
    *minimum = tiles.widthOf(1);
    *natural = tiles.widthOf(kMostColumns);
    return;
  }
  const int width = std::max(forSize < 0 ? tiles.widthOf(kMostColumns) : forSize, tiles.widthOf(1));
  *minimum = *natural = tiles.heightOf(tiles.mostColumns(width), width);
}

void arrangeTiles(GtkLayoutManager* layout, GtkWidget* area, int width, int height, int) {
  Tiles(layout, area).arrange(width, height);
}

void beTileLayout(gpointer type, gpointer) {
  addProperties(type, {"margin", "spacing", "tile-width", "tile-height"});
  auto* const layout = static_cast<GtkLayoutManagerClass*>(type);
  layout->get_request_mode = heightForWidth;
  layout->measure = measureTiles;
  layout->allocate = arrangeTiles;
}

/// The area of the control at the bottom, and the bottom edge of the area above it.
struct Foot {
  GtkAllocation place;
  int top;
};

Foot footOf(GtkLayoutManager* layout, GtkWidget* foot, int width, int height) {
  const auto [margin, cornerWidth, cornerHeight, unused] =
      reinterpret_cast<Layout*>(layout)->numbers;
  const int needed = std::max(kLeastBeside, least(foot, GTK_ORIENTATION_HORIZONTAL, -1));
  const int beside = width - cornerWidth - 2 * margin;
  const int across = beside >= needed ? beside : width - 2 * margin;
  const int tall = std::max(kLeastFootHeight, least(foot, GTK_ORIENTATION_VERTICAL, across));
  if (beside < needed) {
    const int y = height - cornerHeight - margin - tall;
    return {{margin, y, across, tall}, y};
  }
  const int strip = std::max(cornerHeight, tall);
  return {{cornerWidth + margin, height - strip + (strip - tall) / 2, beside, tall},
          height - strip};
}

void measureFoot(GtkLayoutManager* layout, GtkWidget* widget, GtkOrientation orientation,
                 int forSize, int* minimum, int* natural, int*, int*) {
  *minimum = *natural = 0;
  const std::vector<GtkWidget*> children = childrenOf(widget);
  if (children.size() != 2) return;
  if (orientation == GTK_ORIENTATION_HORIZONTAL) {
    const int margin = reinterpret_cast<Layout*>(layout)->numbers[0];
    *minimum = *natural = std::max(least(children[0], orientation, -1),
                                   least(children[1], orientation, -1) + 2 * margin);
    return;
  }
  const int width = forSize < 0 ? least(widget, GTK_ORIENTATION_HORIZONTAL, -1) : forSize;
  const Foot foot = footOf(layout, children[1], width, 0);
  *minimum = *natural = least(children[0], orientation, width) - foot.top;
}

void arrangeFoot(GtkLayoutManager* layout, GtkWidget* widget, int width, int height, int) {
  const std::vector<GtkWidget*> children = childrenOf(widget);
  if (children.size() != 2) return;
  const Foot foot = footOf(layout, children[1], width, height);
  place(children[0], {0, 0, width, foot.top});
  place(children[1], foot.place);
}

void beFootLayout(gpointer type, gpointer) {
  addProperties(type, {"margin", "corner-width", "corner-height", nullptr});
  auto* const layout = static_cast<GtkLayoutManagerClass*>(type);
  layout->get_request_mode = heightForWidth;
  layout->measure = measureFoot;
  layout->allocate = arrangeFoot;
}

void registerLayout(const char* name, GClassInitFunc be) {
  g_type_register_static_simple(GTK_TYPE_LAYOUT_MANAGER, name, sizeof(LayoutClass), be,
                                sizeof(Layout), nullptr, GTypeFlags{});
}

}  // namespace

void registerTileLayouts() {
  if (g_type_from_name("PlatformTileLayout") != 0) return;
  registerLayout("PlatformTileLayout", beTileLayout);
  registerLayout("PlatformFootLayout", beFootLayout);
}

}  // namespace valdren::platform
