// A GTK application with an ad banner beneath its content.
//
//     banner_example [AD_NETWORK_URL [AD_UNIT]]
//
// It tells on standard output what happens to the ad.
#include <gtk/gtk.h>
#include <valdren/valdren.h>

#include <cstdio>

namespace {

/// Tells what happens to the ad.
class Listener final : public valdren::VADBannerViewDelegate {
 public:
  void adViewDidReceiveAd(valdren::VADBannerView&) override { say("ad received"); }

  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError& error) override {
    say(error.localizedDescription().c_str());
  }

  void adViewWillPresentScreen(valdren::VADBannerView&) override { say("screen presented"); }
  void adViewDidDismissScreen(valdren::VADBannerView&) override { say("screen dismissed"); }

 private:
  static void say(const char* what) {
    std::puts(what);
    std::fflush(stdout);
  }
};

Listener listener;
const char* adNetwork = nullptr;
const char* adUnit = "example";

void activate(GtkApplication* application) {
  GtkWidget* const window = gtk_application_window_new(application);
  gtk_window_set_title(GTK_WINDOW(window), "Banner example");
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 480);
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* const label = gtk_label_new("The application's own content");
  gtk_widget_set_vexpand(label, TRUE);
  gtk_box_append(GTK_BOX(box), label);
  gtk_window_set_child(GTK_WINDOW(window), box);

  auto banner = std::make_shared<valdren::VADBannerView>(valdren::platform::Rect{0, 0, 320, 50});
  banner->setAdUnitID(adUnit);
  banner->setRootViewController(valdren::platform::hostScreen(GTK_WINDOW(window)));
  gtk_box_append(GTK_BOX(box), valdren::platform::hostWidget(banner));
  banner->setDelegate(&listener);
  banner->loadRequest(valdren::VADRequest::request());

  gtk_window_present(GTK_WINDOW(window));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1) adNetwork = argv[1];
  if (argc > 2) adUnit = argv[2];
  if (adNetwork) valdren::VADConfiguration::setAdNetwork(adNetwork);
  GtkApplication* const application =
      gtk_application_new("com.valdren.example.banner", G_APPLICATION_DEFAULT_FLAGS);
  g_signal_connect(application, "activate", G_CALLBACK(activate), nullptr);
  const int status = g_application_run(G_APPLICATION(application), 1, argv);
  g_object_unref(application);
  return status;
}
