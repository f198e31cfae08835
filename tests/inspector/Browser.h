// A real web view in a real window, for tests.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace inspector_tests {

class Browser {
 public:
  /// Whether there is a display.
  static bool canBeShown();

  explicit Browser(int width = 1200, int height = 900);
  ~Browser();
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  /// Loads the page and waits; false when it takes too long.
  bool load(const std::string& url);
  bool loadHTML(const std::string& html, const std::string& base);
  /// The expression's value as text; "ERROR ..." when it throws.
  std::string evaluate(const std::string& expression);
  /// Waits until the expression is true.
  bool waitFor(const std::string& expression, double seconds = 30);
  void resize(int width, int height);
  void setDark(bool dark);
  /// Saves a picture of the visible part under this name, in the folder that QUORBEL_PICTURES
  /// names, if it is set.
  void picture(const std::string& name);

  /// The message addresses that the page navigated to. They are refused, as in a client.
  const std::vector<std::string>& messages() const;

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace inspector_tests
