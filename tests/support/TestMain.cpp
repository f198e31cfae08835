// Runs the tests of one program with folders of its own, so that no test reads or writes the
// person's state. The toolkit is started when there is a display; tests that need one say so.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/init.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

/// Ends the program in the middle of a case that hangs, so that the others' outcome is not lost
/// too.
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
