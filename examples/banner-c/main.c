/* A GTK application with an ad banner beneath its content: banner_c [AD_NETWORK_URL [AD_UNIT]].
 *
 *     cc main.c $(pkg-config --cflags --libs valdren-gobject-1) -o banner_c
 *
 * It tells on standard output what happens to the ad. */
#include <valdren-gobject/valdren.h>

static const char* ad_unit = "example";

static void failed(ValdrenBanner* banner, GError* error, gpointer data) {
  g_print("%s\n", error->message);
}

static void say(gpointer text) {
  g_print("%s\n", (const char*)text);
}

static void activate(GtkApplication* application, gpointer data) {
  GtkWidget* window = gtk_application_window_new(application);
  gtk_window_set_title(GTK_WINDOW(window), "Banner example");
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 480);
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* label = gtk_label_new("The application's own content");
  gtk_widget_set_vexpand(label, TRUE);
  gtk_box_append(GTK_BOX(box), label);
  gtk_window_set_child(GTK_WINDOW(window), box);

  GtkWidget* banner = valdren_banner_new(ad_unit);
  gtk_box_append(GTK_BOX(box), banner);
  g_signal_connect_swapped(banner, "ad-received", G_CALLBACK(say), "ad received");
  g_signal_connect(banner, "ad-failed", G_CALLBACK(failed), NULL);
  g_signal_connect_swapped(banner, "will-present-screen", G_CALLBACK(say), "screen presented");
  g_signal_connect_swapped(banner, "did-dismiss-screen", G_CALLBACK(say), "screen dismissed");
  valdren_banner_load_request(VALDREN_BANNER(banner), NULL);

  gtk_window_present(GTK_WINDOW(window));
}

int main(int argc, char** argv) {
  if (argc > 1) valdren_set_ad_network(argv[1]);
  if (argc > 2) ad_unit = argv[2];
  GtkApplication* application =
      gtk_application_new("com.valdren.example.c", G_APPLICATION_DEFAULT_FLAGS);
  g_signal_connect(application, "activate", G_CALLBACK(activate), NULL);
  int status = g_application_run(G_APPLICATION(application), 1, argv);
  g_object_unref(application);
  return status;
}
