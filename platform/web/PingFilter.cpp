#include "platform/web/PingFilter.h"

#include <glib/gstdio.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

constexpr const char* kName = "pings";
constexpr const char* kRule =
    R"([{"trigger": {"url-filter": ".*", "resource-type": ["ping"]}, "action": {"type": "block"}}])";

struct FreeFilter {
  void operator()(WebKitUserContentFilter* filter) const {
    webkit_user_content_filter_unref(filter);
  }
};

class PingFilter {
 public:
  PingFilter();
  void addTo(WebKitUserContentManager* manager);

 private:
  static void saved(GObject* store, GAsyncResult* result, gpointer self);
  void removeFolder();

  std::string folder_;
  std::unique_ptr<WebKitUserContentFilter, FreeFilter> filter_;
  std::vector<GObjectPtr<WebKitUserContentManager>> waiting_;
  bool failed_ = false;
};

PingFilter::PingFilter() {
  GError* error = nullptr;
  char* const folder = g_dir_make_tmp("pings-XXXXXX", &error);
  if (!folder) {
    logWarning(std::string("Pings of links cannot be refused: ") + error->message);
    g_clear_error(&error);
    failed_ = true;
    return;
  }
  folder_ = folder;
  g_free(folder);
  const GObjectPtr<WebKitUserContentFilterStore> store(
      webkit_user_content_filter_store_new(folder_.c_str()));
  const GBytesPtr rule(g_bytes_new_static(kRule, std::char_traits<char>::length(kRule)));
  webkit_user_content_filter_store_save(store.get(), kName, rule.get(), nullptr, saved, this);
}

void PingFilter::addTo(WebKitUserContentManager* manager) {
  if (filter_) return webkit_user_content_manager_add_filter(manager, filter_.get());
  if (failed_) return;
  waiting_.emplace_back(WEBKIT_USER_CONTENT_MANAGER(g_object_ref(manager)));
}

void PingFilter::saved(GObject* store, GAsyncResult* result, gpointer self) {
  auto& filter = *static_cast<PingFilter*>(self);
  GError* error = nullptr;
  filter.filter_.reset(webkit_user_content_filter_store_save_finish(
      WEBKIT_USER_CONTENT_FILTER_STORE(store), result, &error));
  if (error) logWarning(std::string("Pings of links cannot be refused: ") + error->message);
  g_clear_error(&error);
  filter.failed_ = !filter.filter_;
  for (const auto& manager : std::exchange(filter.waiting_, {})) filter.addTo(manager.get());
  filter.removeFolder();
}

void PingFilter::removeFolder() {
  // The engine has read the rule by now.
  GDir* const listing = g_dir_open(folder_.c_str(), 0, nullptr);
  while (const char* const name = listing ? g_dir_read_name(listing) : nullptr) {
    g_unlink((folder_ + "/" + name).c_str());
  }
  if (listing) g_dir_close(listing);
  g_rmdir(folder_.c_str());
}

}  // namespace

void refusePings(WebKitUserContentManager* manager) {
  // Never destroyed: the engine's own objects may not exist any more when the process ends.
  static auto* const filter = new PingFilter;
  filter->addTo(manager);
}

}  // namespace valdren::platform
