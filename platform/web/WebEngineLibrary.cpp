#include "platform/web/WebEngineLibrary.h"

// The casts in the engine's headers call these from outside of our namespace.
#define ENGINE_TYPE(function)                                   \
  namespace {                                                   \
  const valdren::platform::OnDemand<GType()> loaded_##function{ \
      valdren::platform::webEngineLibrary, #function};          \
  }                                                             \
  extern "C" GType function() {                                 \
    return loaded_##function();                                 \
  }
ENGINE_TYPE(webkit_context_menu_item_get_type)
ENGINE_TYPE(webkit_navigation_policy_decision_get_type)
ENGINE_TYPE(webkit_policy_decision_get_type)
ENGINE_TYPE(webkit_response_policy_decision_get_type)
ENGINE_TYPE(webkit_settings_get_type)
ENGINE_TYPE(webkit_user_content_filter_store_get_type)
ENGINE_TYPE(webkit_user_content_manager_get_type)
ENGINE_TYPE(webkit_web_context_get_type)
ENGINE_TYPE(webkit_web_view_get_type)
ENGINE_TYPE(webkit_website_policies_get_type)
