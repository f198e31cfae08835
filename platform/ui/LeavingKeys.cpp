#include "platform/ui/LeavingKeys.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/window.h>

#include <utility>

namespace valdren::platform {
namespace {

constexpr unsigned kBackMouseButton = 8;

const Gdk::ModifierType kModifiers = Gdk::ModifierType::SHIFT_MASK |
                                     Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK |
                                     Gdk::ModifierType::SUPER_MASK;

bool isBack(guint key, Gdk::ModifierType state) {
  if (key == GDK_KEY_Back) return true;
  return (key == GDK_KEY_Left || key == GDK_KEY_KP_Left) && state == Gdk::ModifierType::ALT_MASK;
}

}  // namespace

void watchLeavingKeys(Gtk::Window& window, std::function<bool(LeavingKey)> handler) {
  auto keys = Gtk::EventControllerKey::create();
  keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  keys->signal_key_pressed().connect(
      [handler](guint key, guint, Gdk::ModifierType state) {
        state = state & kModifiers;
        if (key == GDK_KEY_Escape && state == Gdk::ModifierType(0)) {
          return handler(LeavingKey::Cancel);
        }
        return isBack(key, state) && handler(LeavingKey::Back);
      },
      false);
  window.add_controller(keys);

  auto button = Gtk::GestureClick::create();
  button->set_button(kBackMouseButton);
  button->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  button->signal_pressed().connect(
      [handler = std::move(handler), gesture = button.get()](int, double, double) {
        if (handler(LeavingKey::Back)) gesture->set_state(Gtk::EventSequenceState::CLAIMED);
      });
  window.add_controller(button);
}

}  // namespace valdren::platform
