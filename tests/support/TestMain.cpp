// Runs the tests of one program with its own folders, so that no test touches the user's state. The
// toolkit is started when there is a display; tests that need one check for it.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

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

  std::string folder = (std::filesystem::temp_directory_path() / "quorbel-tests-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  for (const char* variable : {"XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                               "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"}) {
    setenv(variable, (folder + "/" + variable).c_str(), 1);
  }
  setenv("GTK_A11Y", "none", 0);
  setenv("GSETTINGS_BACKEND", "memory", 0);
  if (gtk_init_check()) Gtk::init_gtkmm_internals();

  ::testing::UnitTest::GetInstance()->listeners().Append(new Patience);
  const int result = RUN_ALL_TESTS();
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  return result;
}
