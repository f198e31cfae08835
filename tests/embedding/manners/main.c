/* An application that is clumsy or demanding in one way, and lives on: manners CASE
 * [AD_NETWORK_URL].
 *
 * It ends with 0 when the case has come to its end. */
#include <string.h>
#include <valdren-gobject/valdren.h>
#include <webkit/webkit.h>

static GtkWidget* windows[2];
static ValdrenBanner* banners[2];
static int ads;

static void run(guint milliseconds) {
  gint64 end = g_get_monotonic_time() + milliseconds * 1000;
  while (g_get_monotonic_time() < end) {
    if (!g_main_context_iteration(NULL, FALSE)) g_usleep(2000);
  }
}

static void received(void) {
  ++ads;
}

static void expect_ads(int count) {
  for (int i = 0; ads < count && i < 300; ++i) run(100);
  if (ads < count) g_error("%d of %d ads were received", ads, count);
}

static GtkWidget* open_window(int width) {
  GtkWidget* window = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(window), width, 300);
  gtk_window_present(GTK_WINDOW(window));
  return window;
}

static ValdrenBanner* new_banner(void) {
  GtkWidget* banner = valdren_banner_new("example");
  g_signal_connect(banner, "ad-received", G_CALLBACK(received), NULL);
  return VALDREN_BANNER(banner);
}

static void open_banners(int count) {
  for (int i = 0; i < count; ++i) {
    windows[i] = open_window(400 + 100 * i);
    banners[i] = new_banner();
    gtk_window_set_child(GTK_WINDOW(windows[i]), GTK_WIDGET(banners[i]));
    valdren_banner_load_request(banners[i], NULL);
  }
}

static gpointer misuse(gpointer banner) {
  valdren_banner_new("example");
  valdren_banner_load_request(banner, NULL);
  valdren_banner_set_ad_unit_id(banner, "other");
  return NULL;
}

static void off_thread(void) {
  open_banners(1);
  g_thread_join(g_thread_new("other", misuse, banners[0]));
  expect_ads(1);
}

static void without_network(void) {
  open_banners(1);
  run(500);
}

static void without_window(void) {
  valdren_banner_load_request(g_object_ref_sink(new_banner()), NULL);
}

/* The banner of one window does not depend on the other window. */
static void two_windows(void) {
  open_banners(2);
  expect_ads(2);
  gtk_window_minimize(GTK_WINDOW(windows[1]));
  run(2500);
  valdren_banner_load_request(banners[0], NULL);
  expect_ads(3);
  gtk_window_destroy(GTK_WINDOW(windows[1]));
  run(500);
  valdren_banner_load_request(banners[0], NULL);
  expect_ads(4);
}

static void add_again(void) {
  open_banners(1);
  expect_ads(1);
  g_object_ref(banners[0]);
  gtk_window_set_child(GTK_WINDOW(windows[0]), NULL);
  run(300);
  windows[1] = open_window(400);
  gtk_window_set_child(GTK_WINDOW(windows[1]), GTK_WIDGET(banners[0]));
  gtk_window_destroy(GTK_WINDOW(windows[0]));
  valdren_banner_load_request(banners[0], NULL);
  expect_ads(2);
}

/* At each moment of a request. */
static void close_while_loading(void) {
  for (guint moment = 0; moment < 600; moment += 40) {
    open_banners(1);
    run(moment);
    gtk_window_destroy(GTK_WINDOW(windows[0]));
  }
  run(500);
}

static void own_pages(void) {
  WebKitWebContext* context = webkit_web_context_get_default();
  WebKitCacheModel model = webkit_web_context_get_cache_model(context);
  GtkWidget* window = open_window(400);
  WebKitWebView* page = WEBKIT_WEB_VIEW(webkit_web_view_new());
  gtk_window_set_child(GTK_WINDOW(window), GTK_WIDGET(page));
  open_banners(1);
  expect_ads(1);
  webkit_web_view_load_html(page, "<title>own</title>", NULL);
  for (int i = 0; g_strcmp0(webkit_web_view_get_title(page), "own") && i < 100; ++i) run(100);
  gtk_window_destroy(GTK_WINDOW(windows[0]));
  run(500);
  if (g_strcmp0(webkit_web_view_get_title(page), "own")) g_error("the host's page is gone");
  if (webkit_web_context_get_cache_model(context) != model) g_error("the cache model has changed");
  if (!webkit_web_view_get_settings(page) ||
      webkit_web_view_get_is_web_process_responsive(page) != TRUE)
    g_error("the host's page has ended");
}

static void show_ad(void) {
  open_banners(1);
  expect_ads(1);
}

static const struct {
  const char* name;
  void (*run)(void);
} cases[] = {
    {"off-thread", off_thread},         {"without-network", without_network},
    {"without-window", without_window}, {"two-windows", two_windows},
    {"add-again", add_again},           {"close-while-loading", close_while_loading},
    {"own-pages", own_pages},           {"show-ad", show_ad},
};

int main(int argc, char** argv) {
  const char* name = argc > 1 ? argv[1] : "";
  if (!strcmp(name, "before-gtk")) {
    valdren_banner_new("example");
    g_object_new(VALDREN_TYPE_REQUEST, NULL);
    return 0;
  }
  if (argc > 2 && !valdren_set_ad_network(argv[2])) return 0;
  gtk_init();
  for (size_t i = 0; i < G_N_ELEMENTS(cases); ++i) {
    if (strcmp(cases[i].name, name)) continue;
    cases[i].run();
    return 0;
  }
  return 2;
}
