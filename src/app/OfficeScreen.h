// A screen of the office as a script drives and shows it: its controls, lists and grids by their
// names, each bound to the editor that its window shows as well. Which a screen has stands in its
// table (LibraryControls.cpp and its like).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "station/EngineEvents.h"

namespace zemo {

class TextGrid;

using ControlValue =
    std::variant<bool, double, std::string, std::vector<bool>, std::vector<std::string>>;

enum class ControlKey { kEnter, kDelete, kInsert };

// An event that a control does not know is left empty. `element` is the number of a group's
// element, 0 for a control that is no group. What cannot be done throws OrderError.
struct OfficeControl {
  std::string name;
  int first = -1, last = -1;  // numbers of a group's elements; -1: it is none
  std::function<ControlValue()> value;
  std::function<bool()> on;  // empty: always
  std::function<void(int element, const std::string& text)> put;
  std::function<void(int element, bool right)> press;
  std::function<void(ControlKey key)> key;
};

struct OfficeList {
  std::string name;
  std::function<Rows()> rows;
  std::function<bool()> on;  // empty: always
  std::function<void(const std::vector<std::string>& values)> choose;
};

struct CellClick {
  int row = 0, column = 0;  // from 0
  bool right = false, shift = false, ctrl = false, twice = false;
};

struct OfficeGrid {
  std::string name;
  std::function<Rows()> rows;
  std::function<bool()> on;  // empty: always
  std::function<void(const CellClick& click)> click;
  std::function<void(ControlKey key)> key;
  std::function<void(int row, int column, const std::string& text)> put;
};

struct OfficeScreen {
  std::string name;
  std::function<std::string()> title;
  std::function<void()> open;  // may leave it closed, as a barred entry of the menu does
  std::function<bool()> isOpen;
  std::function<void()> close;
  std::vector<OfficeControl> controls;
  std::vector<OfficeList> lists;
  std::vector<OfficeGrid> grids;
  // Langue at the opening: a language set while the screen is open shows from the next one on.
  std::shared_ptr<int> langue = std::make_shared<int>(0);
};

// --- kinds of controls, for the tables ---
OfficeControl TextBox(std::string name, std::string& text);
OfficeControl Slider(std::string name, int32_t& number, int32_t least, int32_t most);
OfficeControl CheckBox(std::string name, bool& ticked);
OfficeControl Label(std::string name, std::function<std::string()> text);
// Or a menu entry: its value is its caption.
OfficeControl Button(std::string name, std::function<std::string()> caption,
                     std::function<void()> pressed);

Rows GridRows(const TextGrid& grid);  // all of them

// --- what was typed for a control; all throw OrderError ---
bool OnOrOff(const std::string& text);
int32_t NumberBetween(const std::string& text, int32_t least, int32_t most);

// The event `screen`.
Event ScreenEvent(const OfficeScreen& screen);

}  // namespace zemo
