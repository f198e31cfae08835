// Runs the tests of one program with its own folders, so that no test touches the user's state. The
// toolkit is started when there is a display; tests that need one check for it.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <unistd.h>

#include "tests/support/Process.h"

namespace {

/// Aborts the program in a case that hangs, so that the results of the other cases are kept.
class Patience : public ::testing::EmptyTestEventListener {
  void OnTestStart(const ::testing::TestInfo&) override { alarm(kSeconds); }
  void OnTestEnd(const ::testing::TestInfo&) override { alarm(0); }

  static constexpr unsigned kSeconds = 300;
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);

  const quorbel_tests::OwnFolders folders;
  if (gtk_init_check()) Gtk::init_gtkmm_internals();

  ::testing::UnitTest::GetInstance()->listeners().Append(new Patience);
  return RUN_ALL_TESTS();
}
