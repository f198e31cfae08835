// The web engine's functions. The engine and what it needs are over a hundred libraries, so they
// are loaded after the first window is shown. Within this namespace its functions are called by
// their own names; one that is missing in this list is an undefined symbol when the program is
// linked.
#pragma once

#include <webkit/webkit.h>

#include "platform/base/Library.h"

namespace valdren::platform {

inline Library webEngineLibrary{WEBKITGTK_6_0_FILE};

#define ENGINE(function) VALDREN_ON_DEMAND(webEngineLibrary, function)
ENGINE(jsc_value_is_array);
ENGINE(jsc_value_is_null);
ENGINE(jsc_value_is_number);
ENGINE(jsc_value_is_undefined);
ENGINE(jsc_value_object_get_property_at_index);
ENGINE(jsc_value_to_double);
ENGINE(jsc_value_to_string);
ENGINE(webkit_authentication_request_authenticate);
ENGINE(webkit_color_chooser_request_cancel);
ENGINE(webkit_context_menu_get_items);
ENGINE(webkit_context_menu_get_n_items);
ENGINE(webkit_context_menu_item_get_stock_action);
ENGINE(webkit_context_menu_remove);
ENGINE(webkit_download_cancel);
ENGINE(webkit_feature_get_identifier);
ENGINE(webkit_feature_list_get);
ENGINE(webkit_feature_list_get_length);
ENGINE(webkit_feature_list_unref);
ENGINE(webkit_file_chooser_request_cancel);
ENGINE(webkit_memory_pressure_settings_free);
ENGINE(webkit_memory_pressure_settings_new);
ENGINE(webkit_memory_pressure_settings_set_kill_threshold);
ENGINE(webkit_memory_pressure_settings_set_memory_limit);
ENGINE(webkit_memory_pressure_settings_set_poll_interval);
ENGINE(webkit_navigation_action_get_navigation_type);
ENGINE(webkit_navigation_action_get_request);
ENGINE(webkit_navigation_policy_decision_get_navigation_action);
ENGINE(webkit_network_error_quark);
ENGINE(webkit_network_session_get_website_data_manager);
ENGINE(webkit_network_session_new_ephemeral);
ENGINE(webkit_network_session_set_itp_enabled);
ENGINE(webkit_network_session_set_memory_pressure_settings);
ENGINE(webkit_network_session_set_persistent_credential_storage_enabled);
ENGINE(webkit_network_session_set_tls_errors_policy);
ENGINE(webkit_permission_request_deny);
ENGINE(webkit_permission_state_query_finish);
ENGINE(webkit_policy_decision_ignore);
ENGINE(webkit_policy_decision_use);
ENGINE(webkit_policy_decision_use_with_policies);
ENGINE(webkit_response_policy_decision_get_response);
ENGINE(webkit_response_policy_decision_is_main_frame_main_resource);
ENGINE(webkit_response_policy_decision_is_mime_type_supported);
ENGINE(webkit_script_dialog_confirm_set_confirmed);
ENGINE(webkit_script_dialog_get_dialog_type);
ENGINE(webkit_settings_get_all_features);
ENGINE(webkit_settings_get_user_agent);
ENGINE(webkit_settings_set_enable_javascript);
ENGINE(webkit_settings_set_feature_enabled);
ENGINE(webkit_settings_set_media_playback_allows_inline);
ENGINE(webkit_settings_set_media_playback_requires_user_gesture);
ENGINE(webkit_uri_request_get_http_headers);
ENGINE(webkit_uri_request_get_uri);
ENGINE(webkit_uri_request_new);
ENGINE(webkit_uri_response_get_http_headers);
ENGINE(webkit_user_content_filter_store_new);
ENGINE(webkit_user_content_filter_store_save);
ENGINE(webkit_user_content_filter_store_save_finish);
ENGINE(webkit_user_content_filter_unref);
ENGINE(webkit_user_content_manager_add_filter);
ENGINE(webkit_user_content_manager_add_script);
ENGINE(webkit_user_content_manager_new);
ENGINE(webkit_user_content_manager_register_script_message_handler);
ENGINE(webkit_user_content_manager_remove_all_scripts);
ENGINE(webkit_user_script_new_for_world);
ENGINE(webkit_user_script_unref);
ENGINE(webkit_web_view_can_execute_editing_command);
ENGINE(webkit_web_view_can_execute_editing_command_finish);
ENGINE(webkit_web_view_can_go_back);
ENGINE(webkit_web_view_can_go_forward);
ENGINE(webkit_web_view_evaluate_javascript);
ENGINE(webkit_web_view_evaluate_javascript_finish);
ENGINE(webkit_web_view_get_settings);
ENGINE(webkit_web_view_get_title);
ENGINE(webkit_web_view_get_tls_info);
ENGINE(webkit_web_view_get_uri);
ENGINE(webkit_web_view_get_zoom_level);
ENGINE(webkit_web_view_go_back);
ENGINE(webkit_web_view_go_forward);
ENGINE(webkit_web_view_is_loading);
ENGINE(webkit_web_view_load_html);
ENGINE(webkit_web_view_load_request);
ENGINE(webkit_web_view_load_uri);
ENGINE(webkit_web_view_reload);
ENGINE(webkit_web_view_set_background_color);
ENGINE(webkit_web_view_set_zoom_level);
ENGINE(webkit_web_view_stop_loading);
ENGINE(webkit_web_view_terminate_web_process);
ENGINE(webkit_website_data_manager_clear);
#if !WEBKIT_CHECK_VERSION(2, 50, 0)  // later engines have no such setting
ENGINE(webkit_settings_set_enable_hyperlink_auditing);
#endif
#undef ENGINE

}  // namespace valdren::platform
