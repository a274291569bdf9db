#include "app/OfficeScreen.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "app/Orders.h"
#include "station/TextGrid.h"

namespace zemo {

namespace {

template <typename Item>
bool IsOn(const Item& item) {
  return !item.on || item.on();
}

template <typename Items>
NamedRows RowsOf(const Items& items) {
  NamedRows rows;
  for (const auto& item : items) rows.emplace_back(item.name, item.rows());
  return rows;
}

template <typename Items>
void AddOff(std::vector<std::string>& off, const Items& items) {
  // A list and its heads have one name.
  for (const auto& item : items)
    if (!IsOn(item) && std::find(off.begin(), off.end(), item.name) == off.end())
      off.push_back(item.name);
}

}  // namespace

OfficeControl TextBox(std::string name, std::string& text) {
  OfficeControl box;
  box.name = std::move(name);
  box.value = [&text] { return text; };
  box.put = [&text](int, const std::string& typed) { text = typed; };
  return box;
}

OfficeControl Slider(std::string name, int32_t& number, int32_t least, int32_t most) {
  OfficeControl slider;
  slider.name = std::move(name);
  slider.value = [&number] { return static_cast<double>(number); };
  slider.put = [&number, least, most](int, const std::string& text) {
    number = NumberBetween(text, least, most);
  };
  return slider;
}

OfficeControl CheckBox(std::string name, bool& ticked) {
  OfficeControl box;
  box.name = std::move(name);
  box.value = [&ticked] { return ticked; };
  box.put = [&ticked](int, const std::string& text) { ticked = OnOrOff(text); };
  box.press = [&ticked](int, bool) { ticked = !ticked; };
  return box;
}

OfficeControl Label(std::string name, std::function<std::string()> text) {
  OfficeControl label;
  label.name = std::move(name);
  label.value = [text = std::move(text)] { return text(); };
  return label;
}

OfficeControl Button(std::string name, std::function<std::string()> caption,
                     std::function<void()> pressed) {
  OfficeControl button = Label(std::move(name), std::move(caption));
  button.press = [pressed = std::move(pressed)](int, bool) { pressed(); };
  return button;
}

Rows GridRows(const TextGrid& grid) {
  Rows rows;
  for (int row = 0; row < grid.RowCount(); ++row) rows.push_back(grid.At(row));
  return rows;
}

bool OnOrOff(const std::string& text) {
  if (text != "on" && text != "off") throw OrderError("'" + text + "' is neither on nor off");
  return text == "on";
}

int32_t NumberBetween(const std::string& text, int32_t least, int32_t most) {
  int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > most)
    throw OrderError("'" + text + "' is no number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  return number;
}

Event ScreenEvent(const OfficeScreen& screen) {
  NamedValues controls;
  std::vector<std::string> off;
  for (const OfficeControl& control : screen.controls)
    std::visit([&](auto&& value) { controls.emplace_back(control.name, std::move(value)); },
               control.value());
  AddOff(off, screen.controls);
  AddOff(off, screen.lists);
  AddOff(off, screen.grids);
  Event event{"screen", {}};
  event.members.emplace_back("name", screen.name);
  event.members.emplace_back("title", screen.title());
  event.members.emplace_back("controls", std::move(controls));
  event.members.emplace_back("lists", RowsOf(screen.lists));
  event.members.emplace_back("grids", RowsOf(screen.grids));
  event.members.emplace_back("off", std::move(off));
  return event;
}

}  // namespace zemo
