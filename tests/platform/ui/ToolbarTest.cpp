// Toolbars and their items: frames, states, presses.
#include "platform/ui/Toolbar.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "platform/ui/ActivityIndicator.h"
#include "platform/ui/Label.h"
#include "platform/ui/NativeView.h"
#include "tests/support/Taps.h"

namespace valdren::platform {
namespace {

std::shared_ptr<BarButtonItem> itemOfWidth(double width, BarButtonItem::Action action = {}) {
  auto item = BarButtonItem::withSystemItem(BarSystemItem::Refresh, std::move(action));
  item->setWidth(width);
  return item;
}

const auto kSpace = BarButtonItem::withSystemItem(BarSystemItem::FlexibleSpace);

TEST(Toolbar, NarrowButtonsAreTouchedBesideTheirPictureButNeverTwoAtOnce) {
  for (const double width : {600.0, 320.0, 200.0, 90.0}) {
    Toolbar bar({0, 0, width, 44});
    std::vector<std::shared_ptr<BarButtonItem>> items;
    for (int i = 0; i < 5; ++i) {
      if (i) items.push_back(kSpace);
      items.push_back(itemOfWidth(27));
    }
    bar.setItems(items);
    double end = 0;
    for (const auto& item : items) {
      if (!item->view()) continue;
      const Rect& frame = item->view()->frame();
      EXPECT_GE(frame.x, end) << width;
      EXPECT_GE(frame.width, 27) << width;
      EXPECT_LE(frame.width, 44) << width;
      end = frame.x + frame.width;
    }
  }
}

TEST(Toolbar, ExchangingAnItemTakesTheFormerAwayAndLeavesTheOthers) {
  Toolbar bar({0, 0, 320, 44});
  const auto spinner =
      std::make_shared<ActivityIndicator>(ActivityIndicatorStyle::White, Rect{0, 0, 20, 20});
  const auto stays = BarButtonItem::withCustomView(spinner);
  const auto goes = itemOfWidth(27);
  const auto comes = itemOfWidth(27);
  bar.setItems({stays, goes});
  bar.setItems({stays, nullptr, comes});
  EXPECT_EQ(spinner->frame(), (Rect{8, 12, 20, 20})) << "in its size in the middle of the bar";
  EXPECT_EQ(goes->view()->superview(), nullptr);
  EXPECT_EQ(comes->view()->superview(), &bar);
  EXPECT_EQ(bar.subviews().size(), 2u);
}

TEST(Toolbar, APromptAboveTheItemsOrBetweenThemCoversNoneInEveryTextSize) {
  for (const int times : {1, 2}) {
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", 96 * 1024 * times, nullptr);
    for (const double usual : {44.0, 30.0}) {
      SCOPED_TRACE(testing::Message() << usual << " points, text times " << times);
      Toolbar bar;
      const auto prompt = std::make_shared<Label>();
      prompt->setText("shop.example");
      const auto first = itemOfWidth(27);
      const auto done = BarButtonItem::withSystemItem(BarSystemItem::Done);
      bar.setItems({first, kSpace, done});
      bar.setPrompt(prompt);
      const double height = bar.heightFrom(usual);
      EXPECT_EQ(height > usual, times == 2);
      bar.setFrame({0, 0, 360, height});
      const Rect& button = done->view()->frame();
      EXPECT_GE(button.height, done->view()->native().contentHeight());
      EXPECT_GE(prompt->frame().height, prompt->native().contentHeight());
      if (usual == 44) {
        EXPECT_LE(prompt->frame().y + prompt->frame().height, button.y + 1);
      } else {
        EXPECT_GT(prompt->frame().x, 8 + 27);
        EXPECT_LT(prompt->frame().x + prompt->frame().width, button.x);
      }
    }
  }
  gtk_settings_reset_property(gtk_settings_get_default(), "gtk-xft-dpi");
}

TEST(Button, MayBeLetGoOfByItsOwnAction) {
  const auto screen = std::make_shared<View>(Rect{0, 0, 100, 100});
  auto button = std::make_shared<Button>();
  screen->addSubview(button);
  button->setAction([&] {
    screen->subviews().front()->removeFromSuperview();
    button.reset();
  });
  Button* const pressed = button.get();
  EXPECT_TRUE(quorbel_tests::press(*pressed));
  EXPECT_TRUE(screen->subviews().empty());
}

TEST(Label, ATextOfAPageStaysOnItsLineAndInItsDirection) {
  const struct {
    const char* text;
    const char* shown;
  } kCases[] = {
      {"Summer sale", "Summer sale"},
      {"  two\n\tlines ", "two lines "},
      {"a\xE2\x80\xAEmoc.knab", "amoc.knab"},
      {"a\xE2\x81\xA6z\xE2\x81\xA9", "az"},
      {"bell\x07", "bell"},
      {"broken \xff", "broken \xEF\xBF\xBD"},
  };
  Label label;
  for (const auto& each : kCases) {
    label.setText(each.text);
    EXPECT_EQ(label.text(), each.shown);
  }
  label.setText(std::string(100000, 'x'));
  EXPECT_LE(label.text().size(), 300u);
}

}  // namespace
}  // namespace valdren::platform
