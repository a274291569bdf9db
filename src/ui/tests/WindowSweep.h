// What a window must hold to in each language and size: no text is cut, no control overlaps another
// or leaves the window, every control names itself.
#pragma once

#include <string>
#include <vector>

class QWidget;

namespace zemo::test {

struct WindowSize {
  int width, height;
};
inline constexpr WindowSize kWindowSizes[] = {{1024, 768}, {1280, 800}, {1920, 1080}};
inline constexpr const char* kLanguageNames[] = {"fr", "en", "pt", "es"};

// The texts of controls, heads, menus and tabs that have too little room, each behind its control.
std::vector<std::string> CutTexts(const QWidget& whole);

// `where` begins what is told of a fault.
void CheckWindow(QWidget& whole, const std::string& where);

}  // namespace zemo::test
