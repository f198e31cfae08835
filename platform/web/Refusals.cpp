#include "platform/web/Refusals.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform {
namespace {

gboolean answerScriptDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer) {
  // "alert" needs no answer; "prompt" gets none, "confirm" a no, and leaving a page is allowed.
  switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      webkit_script_dialog_confirm_set_confirmed(dialog, FALSE);
      break;
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
      webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
      break;
    default: break;
  }
  return TRUE;
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
  webkit_permission_request_deny(request);
  return TRUE;
}

gboolean denyPermissionState(WebKitWebView*, WebKitPermissionStateQuery* query, gpointer) {
  webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
  return TRUE;
}

gboolean cancelAuthentication(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
  webkit_authentication_request_cancel(request);
  return TRUE;
}

gboolean cancelFileChooser(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
  webkit_file_chooser_request_cancel(request);
  return TRUE;
}

gboolean cancelColorChooser(WebKitWebView*, WebKitColorChooserRequest* request, gpointer) {
  webkit_color_chooser_request_cancel(request);
  return TRUE;
}

gboolean refuse(WebKitWebView*) {
  return TRUE;
}

gboolean refuseObject(WebKitWebView*, gpointer, gpointer) {
  return TRUE;
}

/// Leaves the items that work on the page's own text.
gboolean trimContextMenu(WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer) {
  constexpr WebKitContextMenuAction kKept[] = {
      WEBKIT_CONTEXT_MENU_ACTION_COPY, WEBKIT_CONTEXT_MENU_ACTION_CUT,
      WEBKIT_CONTEXT_MENU_ACTION_PASTE, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL,
      WEBKIT_CONTEXT_MENU_ACTION_DELETE};
  GList* const items = g_list_copy(webkit_context_menu_get_items(menu));
  for (GList* item = items; item; item = item->next) {
    auto* const each = WEBKIT_CONTEXT_MENU_ITEM(item->data);
    const WebKitContextMenuAction action = webkit_context_menu_item_get_stock_action(each);
    if (std::find(std::begin(kKept), std::end(kKept), action) == std::end(kKept)) {
      webkit_context_menu_remove(menu, each);
    }
  }
  g_list_free(items);
  return webkit_context_menu_get_n_items(menu) == 0;
}

/// Content that is dropped on a page would hand it the dropped files.
void refuseDrops(WebKitWebView* view) {
  GListModel* const controllers = gtk_widget_observe_controllers(GTK_WIDGET(view));
  for (guint index = 0; index < g_list_model_get_n_items(controllers); ++index) {
    auto* const controller = GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers, index));
    if (GTK_IS_DROP_TARGET_ASYNC(controller) || GTK_IS_DROP_TARGET(controller)) {
      gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_NONE);
    }
    g_object_unref(controller);
  }
  g_object_unref(controllers);
}

}  // namespace

void refuseWhatReachesBeyondThePage(WebKitWebView* view) {
  const std::pair<const char*, GCallback> refusals[] = {
      {"script-dialog", G_CALLBACK(answerScriptDialog)},
      {"permission-request", G_CALLBACK(denyPermission)},
      {"query-permission-state", G_CALLBACK(denyPermissionState)},
      {"authenticate", G_CALLBACK(cancelAuthentication)},
      {"run-file-chooser", G_CALLBACK(cancelFileChooser)},
      {"run-color-chooser", G_CALLBACK(cancelColorChooser)},
      {"print", G_CALLBACK(refuseObject)},
      {"show-notification", G_CALLBACK(refuseObject)},
      {"enter-fullscreen", G_CALLBACK(refuse)},
      {"context-menu", G_CALLBACK(trimContextMenu)},
  };
  for (const auto& [signal, callback] : refusals) {
    g_signal_connect(view, signal, callback, nullptr);
  }
  refuseDrops(view);
}

WebKitSettings* makeStrangersSettings() {
  return WEBKIT_SETTINGS(g_object_new(
      WEBKIT_TYPE_SETTINGS, "enable-developer-extras", FALSE, "enable-fullscreen", FALSE,
      "enable-hyperlink-auditing", FALSE, "enable-media-stream", FALSE, "enable-webrtc", FALSE,
      "javascript-can-access-clipboard", FALSE, "allow-modal-dialogs", FALSE,
      "allow-file-access-from-file-urls", FALSE, "allow-universal-access-from-file-urls", FALSE,
      "allow-top-navigation-to-data-urls", FALSE, "enable-write-console-messages-to-stdout", FALSE,
      // Asks us about each window; none is ever opened.
      "javascript-can-open-windows-automatically", TRUE, nullptr));
}

}  // namespace platform
