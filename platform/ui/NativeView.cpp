#include "platform/ui/NativeView.h"

#include <gtk/gtk.h>
#include <gtkmm/accessible.h>
#include <gtkmm/init.h>
#include <gtkmm/root.h>
#include <gtkmm/snapshot.h>
#include <gtkmm/widget.h>

#include <algorithm>
#include <cmath>

#include "platform/base/Log.h"
#include "platform/ui/View.h"

namespace valdren::platform {

namespace {

/// Without it the first widget would crash.
void startToolkit() {
  if (gtk_is_initialized()) return;
  logWarning("<Valdren> A view is made before gtk_init, which is called now.");
  if (!gtk_init_check()) logWarning("<Valdren> There is no display to show a view on.");
}

}  // namespace

/// The widget. It requests no size, because the view's frame or the window decides.
class NativeView::Container final : public Gtk::Widget {
 public:
  explicit Container(View& view) : view_(view) {
    set_name("platform-view");
    // By default the toolkit gives it no role, and its class as a name.
    g_object_set(gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_GROUP, nullptr);
  }

  ~Container() override {
    while (Gtk::Widget* child = get_first_child()) child->unparent();
  }

  void setContent(Gtk::Widget* content) {
    if (content_) content_->unparent();
    content_ = content;
    if (content_) content_->insert_at_start(*this);
    queue_allocate();
  }

  Gtk::Widget* content() const { return content_; }

  void changed() {
    if (allocating_) return;
    if (Gtk::Widget* parent = get_parent()) parent->queue_allocate();
    queue_allocate();
  }

 protected:
  Gtk::SizeRequestMode get_request_mode_vfunc() const override {
    return Gtk::SizeRequestMode::CONSTANT_SIZE;
  }

  void measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural, int& minimumBaseline,
                     int& naturalBaseline) const override {
    minimum = natural = 0;
    minimumBaseline = naturalBaseline = -1;
  }

  void size_allocate_vfunc(int width, int height, int) override {
    allocating_ = true;
    if (!view_.superview()) {
      const Rect& frame = view_.frame();
      view_.setFrame({frame.x, frame.y, double(width), double(height)});
    }
    if (content_ && content_->get_visible())
      allocate(*content_, {0, 0, double(width), double(height)});
    for (const auto& subview : view_.subviews()) {
      Gtk::Widget& child = subview->native().widget();
      if (child.get_visible()) allocate(child, subview->frame());
    }
    allocating_ = false;
  }

  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override {
    const Color color = view_.backgroundColor();
    if (color.alpha > 0) {
      Gdk::RGBA paint;
      paint.set_rgba(float(color.red), float(color.green), float(color.blue), float(color.alpha));
      snapshot->append_color(paint, Gdk::Rectangle(0, 0, get_width(), get_height()));
    }
    Gtk::Widget::snapshot_vfunc(snapshot);
  }

 private:
  /// A child gets at least its minimum size; the toolkit warns otherwise.
  static void allocate(Gtk::Widget& child, const Rect& frame) {
    int minimum = 0;
    int natural = 0;
    int ignored = 0;
    child.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, ignored, ignored);
    const int width = std::max(minimum, static_cast<int>(std::lround(frame.width)));
    child.measure(Gtk::Orientation::VERTICAL, width, minimum, natural, ignored, ignored);
    const int height = std::max(minimum, static_cast<int>(std::lround(frame.height)));
    child.size_allocate(Gtk::Allocation(static_cast<int>(std::lround(frame.x)),
                                        static_cast<int>(std::lround(frame.y)), width, height),
                        -1);
  }

  View& view_;
  Gtk::Widget* content_ = nullptr;
  bool allocating_ = false;
};

/// A weak reference to one widget.
class NativeView::FocusMemory final {
 public:
  explicit FocusMemory(GtkWidget* widget) { g_weak_ref_init(&widget_, widget); }
  ~FocusMemory() { g_weak_ref_clear(&widget_); }
  FocusMemory(const FocusMemory&) = delete;
  FocusMemory& operator=(const FocusMemory&) = delete;

  bool restore() {
    auto* const widget = static_cast<GtkWidget*>(g_weak_ref_get(&widget_));
    if (!widget) return false;
    const bool restored = gtk_widget_grab_focus(widget);
    g_object_unref(widget);
    return restored;
  }

 private:
  GWeakRef widget_;
};

NativeView::NativeView(View& view) : view_(view) {
  // An application that uses the toolkit's C interface has not done this.
  static const bool ready = (startToolkit(), Gtk::init_gtkmm_internals(), true);
  static_cast<void>(ready);
  container_ = std::make_unique<Container>(view);
  appearanceChanged();
}

NativeView::~NativeView() {
  if (container_->get_parent()) container_->unparent();
}

Gtk::Widget& NativeView::widget() {
  return *container_;
}

void NativeView::setContent(Gtk::Widget* content) {
  container_->setContent(content);
  appearanceChanged();
}

double NativeView::contentHeight() const {
  if (!container_->content()) return 0;
  int minimum = 0;
  int ignored = 0;
  container_->content()->measure(Gtk::Orientation::VERTICAL, -1, minimum, ignored, ignored,
                                 ignored);
  return minimum;
}

void NativeView::setCovered(bool covered) {
  auto* const widget = GTK_WIDGET(container_->gobj());
  GtkRoot* const root = gtk_widget_get_root(widget);
  GtkWidget* const focused = root ? gtk_root_get_focus(root) : nullptr;
  if (covered && focused && gtk_widget_is_ancestor(focused, widget)) {
    focusMemory_ = std::make_unique<FocusMemory>(focused);
    gtk_root_set_focus(root, nullptr);
  }
  container_->set_child_visible(!covered);
  // The toolkit leaves covered widgets visible to screen readers.
  gtk_accessible_update_state(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_STATE_HIDDEN, int{covered},
                              -1);
}

void NativeView::focus() {
  const std::unique_ptr<FocusMemory> memory = std::move(focusMemory_);
  if (memory && memory->restore()) return;
  if (!container_->child_focus(Gtk::DirectionType::TAB_FORWARD)) container_->grab_focus();
}

bool NativeView::isFocused() const {
  Gtk::Root* const root = container_->get_root();
  Gtk::Widget* const focus = root ? root->get_focus() : nullptr;
  return focus && (focus == container_.get() || focus->is_ancestor(*container_));
}

void NativeView::insertOnTop(NativeView& subview) {
  subview.container_->insert_at_end(*container_);
  container_->changed();
}

void NativeView::remove(NativeView& subview) {
  if (subview.container_->get_parent() == container_.get()) subview.container_->unparent();
}

void NativeView::frameChanged() {
  container_->changed();
}

void NativeView::appearanceChanged() {
  container_->set_visible(!view_.isHidden());
  container_->set_can_target(view_.isUserInteractionEnabled());
  container_->set_can_focus(view_.isUserInteractionEnabled());
  container_->set_overflow(view_.clipsToBounds() ? Gtk::Overflow::HIDDEN : Gtk::Overflow::VISIBLE);
  if (!view_.accessibilityLabel().empty()) {
    Glib::Value<Glib::ustring> label;
    label.init(Glib::Value<Glib::ustring>::value_type());
    label.set(view_.accessibilityLabel());
    // The content gets the label, so that a screen reader stops once.
    Gtk::Widget& named = container_->content() ? *container_->content() : *container_;
    container_->reset_property(Gtk::Accessible::Property::LABEL);
    named.update_property(Gtk::Accessible::Property::LABEL, label);
  }
  container_->queue_draw();
}

}  // namespace valdren::platform
