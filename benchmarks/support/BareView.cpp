#include "benchmarks/support/BareView.h"

#include "benchmarks/Figures.h"

namespace platform = valdren::platform;

namespace benchmarks {
namespace {

std::string textOf(GBytes* body) {
  if (!body) return {};
  gsize length = 0;
  const auto* const bytes = static_cast<const char*>(g_bytes_get_data(body, &length));
  const std::string text(bytes, length);
  g_bytes_unref(body);
  return text;
}

}  // namespace

BareView::BareView(GtkWidget* box, int width, int height)
    : box_(box), view_(WEBKIT_WEB_VIEW(webkit_web_view_new())) {
  gtk_widget_set_size_request(widget(), width, height);
  gtk_widget_set_halign(widget(), GTK_ALIGN_CENTER);
  gtk_box_append(GTK_BOX(box_), widget());
  g_signal_connect(view_, "load-changed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     if (event == WEBKIT_LOAD_FINISHED) {
                       static_cast<BareView*>(self)->finishedAt_ = seconds();
                     }
                   }),
                   this);
}

BareView::~BareView() {
  g_signal_handlers_disconnect_by_data(view_, this);
  gtk_box_remove(GTK_BOX(box_), widget());
}

void BareView::fetchAndShow(const std::string& address) {
  forget();
  address_ = address;
  const platform::GObjectPtr<SoupMessage> message(soup_message_new("GET", address.c_str()));
  soup_session_send_and_read_async(
      session_.get(), message.get(), G_PRIORITY_DEFAULT, nullptr,
      [](GObject* session, GAsyncResult* result, gpointer self) {
        const std::string html =
            textOf(soup_session_send_and_read_finish(SOUP_SESSION(session), result, nullptr));
        if (html.empty()) return;
        const auto& bare = *static_cast<BareView*>(self);
        webkit_web_view_load_html(bare.view_, html.c_str(), bare.address_.c_str());
      },
      this);
}

}  // namespace benchmarks
