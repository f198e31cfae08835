// A view whose controls come from an interface file.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Result.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Controls are named by their ids in the file.
class InterfaceView : public View {
 public:
  using Actions = std::map<std::string, std::function<void()>>;

  /// The resource path of the interface files, as "/com/example/app".
  static void setResourceBase(std::string base);
  static const std::string& resourceBase();

  /// The domain of the errors of `load`; their code is 0.
  static constexpr const char* kErrorDomain = "platform.interface";

  /// The view of the file "NAME.ui", never null. An error when there is no such file or it is
  /// broken or has no object with that id. The actions of its controls are "screen.ACTION".
  static Result<std::shared_ptr<InterfaceView>> load(const std::string& name,
                                                     const std::string& object, const Rect& frame,
                                                     const Actions& actions);
  ~InterfaceView() override;

  /// The ids of the buttons, in the order of the file.
  const std::vector<std::string>& controls() const;
  /// Marks a control as playing, visibly and for screen readers.
  void setSelected(std::string_view control, bool selected);
  bool isSelected(std::string_view control) const;
  /// Shows or hides the object with that id; a hidden one takes no room. Showing scrolls to the
  /// start of the surrounding scroll area. Unknown ids are ignored.
  void setHidden(const std::string& object, bool hidden);
  /// True also when there is no such object.
  bool isHidden(const std::string& object) const;
  /// The control's own label, or the first label inside it; empty when there is none.
  std::string titleOfControl(std::string_view control) const;

 private:
  struct Widgets;
  InterfaceView(const Rect& frame, std::unique_ptr<Widgets> widgets);
  std::unique_ptr<Widgets> widgets_;
};

}  // namespace valdren::platform
