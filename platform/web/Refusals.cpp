#include "platform/web/Refusals.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/base/Log.h"
#include "platform/web/PageBudget.h"

namespace valdren::platform {
namespace {

/// A script that opens dialogs in a loop never lets its page do anything else.
void endWhenFlooding(WebKitWebView* view) {
  constexpr const char* kBudget = "platform-dialog-budget";
  auto* budget = static_cast<PageBudget*>(g_object_get_data(G_OBJECT(view), kBudget));
  if (!budget) {
    budget = new PageBudget;
    g_object_set_data_full(G_OBJECT(view), kBudget, budget,
                           [](gpointer owned) { delete static_cast<PageBudget*>(owned); });
  }
  if (budget->take(0) || budget->refused() != 1) return;
  logWarning("A page that floods the application with dialogs is ended.");
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer page) -> gboolean {
        webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(page));
        return G_SOURCE_REMOVE;
      },
      g_object_ref(view), g_object_unref);
}

gboolean answerScriptDialog(WebKitWebView* view, WebKitScriptDialog* dialog, gpointer) {
  endWhenFlooding(view);
  // "alert" needs no answer, "prompt" gets none, "confirm" gets no, and leaving a page is allowed.
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

/// Shows the server's page for clients without a password.
gboolean goOnWithoutPassword(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
  webkit_authentication_request_authenticate(request, nullptr);
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

/// Keeps the items that work on the page's own text.
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

/// A page would get the files that are dropped on it.
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

void turnFeaturesOff(WebKitSettings* settings) {
  constexpr std::array<std::string_view, 8> kOff{
      // Starts one more web process, which stays, for each site that a page visits.
      "ProcessSwapOnCrossSiteNavigation",
      "CrossOriginOpenerPolicy",
      // Ads are prepared while they are hidden; this would delay their timers to whole seconds.
      "HiddenPageDOMTimerThrottling",
      "PageVisibilityBasedProcessSuppression",
      // Can speak without a user action.
      "SpeechSynthesisAPI",
      "Gamepads",
      "WebShare",
      // Continue to run after their page is closed.
      "ServiceWorkers",
  };
  WebKitFeatureList* const features = webkit_settings_get_all_features();
  for (gsize index = 0; index < webkit_feature_list_get_length(features); ++index) {
    WebKitFeature* const feature = webkit_feature_list_get(features, index);
    const std::string_view identifier = webkit_feature_get_identifier(feature);
    if (std::find(kOff.begin(), kOff.end(), identifier) != kOff.end()) {
      webkit_settings_set_feature_enabled(settings, feature, FALSE);
    }
  }
  webkit_feature_list_unref(features);
}

}  // namespace

void refuseWhatReachesBeyondThePage(WebKitWebView* view) {
  const std::pair<const char*, GCallback> refusals[] = {
      {"script-dialog", G_CALLBACK(answerScriptDialog)},
      {"permission-request", G_CALLBACK(denyPermission)},
      {"query-permission-state", G_CALLBACK(denyPermissionState)},
      {"authenticate", G_CALLBACK(goOnWithoutPassword)},
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
  // Features about processes only take effect once a view exists.
  turnFeaturesOff(webkit_web_view_get_settings(view));
}

WebKitSettings* makeStrangersSettings() {
  auto* const settings = WEBKIT_SETTINGS(g_object_new(
      WEBKIT_TYPE_SETTINGS, "enable-developer-extras", FALSE, "enable-fullscreen", FALSE,
      "enable-media-stream", FALSE, "enable-webrtc", FALSE, "javascript-can-access-clipboard",
      FALSE, "allow-modal-dialogs", FALSE, "allow-file-access-from-file-urls", FALSE,
      "allow-universal-access-from-file-urls", FALSE, "allow-top-navigation-to-data-urls", FALSE,
      "enable-write-console-messages-to-stdout", FALSE, "enable-page-cache", FALSE,
      // Ads do not need the graphics driver.
      "enable-webgl", FALSE,
      // Makes the engine ask us about each window; none is ever opened.
      "javascript-can-open-windows-automatically", TRUE, nullptr));
#if !WEBKIT_CHECK_VERSION(2, 50, 0)  // later engines have no such setting
  webkit_settings_set_enable_hyperlink_auditing(settings, FALSE);
#endif
  return settings;
}

}  // namespace valdren::platform
