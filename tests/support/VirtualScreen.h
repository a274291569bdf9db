// A display without a screen, for tests of the desktop: an Xvfb of the test's own.
#pragma once

#include <stdlib.h>

#include <string>

#include "support/Child.h"

namespace zemo::test {

class VirtualScreen {
 public:
  // Its display is DISPLAY from here on. Throws when it does not come up.
  explicit VirtualScreen(const std::string& size = "640x480x24")
      : server_({"Xvfb", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp"}) {
    const auto number = server_.Line();
    if (!number) throw std::runtime_error("Xvfb does not answer");
    display_ = ":" + *number;
    setenv("DISPLAY", display_.c_str(), 1);
  }
  ~VirtualScreen() { unsetenv("DISPLAY"); }
  VirtualScreen(const VirtualScreen&) = delete;
  const std::string& Display() const { return display_; }

 private:
  Child server_;
  std::string display_;
};

// The clipboard as another process sees it, "" when nobody holds a text; `meanwhile` as in Child.
inline std::string OthersClipboard(const std::function<void()>& meanwhile = nullptr) {
  return Child({"sh", "-c", "xclip -o -selection clipboard 2>/dev/null"}).All(meanwhile);
}

// Another process that holds this text on the clipboard until it is killed or another takes over.
inline std::unique_ptr<Child> OtherHolds(const std::string& text) {
  auto other = std::make_unique<Child>(std::vector<std::string>{
      "sh", "-c", "exec xclip -i -quiet -selection clipboard 2>/dev/null"});
  other->Tell(text);
  other->CloseInput();
  return other;
}

}  // namespace zemo::test
