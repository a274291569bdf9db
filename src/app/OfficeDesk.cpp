#include "app/OfficeDesk.h"

#include <algorithm>
#include <utility>

#include "app/Orders.h"
#include "library/LibraryTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

template <typename Value>
std::optional<Value> TakeNext(std::deque<Value>& queue) {
  if (queue.empty()) return std::nullopt;
  Value next = std::move(queue.front());
  queue.pop_front();
  return next;
}

// The places between the points of "NAME.1.2"; empty where they are no whole numbers.
std::vector<int> Places(std::string_view text) {
  std::vector<int> places;
  while (!text.empty()) {
    const std::string place(text.substr(0, text.find('.')));
    if (place.empty() || place.find_first_not_of("0123456789") != std::string::npos) return {};
    places.push_back(ValInt(place));
    text.remove_prefix(std::min(place.size() + 1, text.size()));
  }
  return places;
}

template <typename Item>
void RequireOn(const Item& item) {
  if (item.on && !item.on()) throw OrderError(item.name + " is off");
}

template <typename Event>
void RequireKnown(const Event& event, const std::string& name, const char* what) {
  if (!event) throw OrderError(name + " takes no " + what);
}

}  // namespace

OfficeDesk::OfficeDesk(Station& givenStation)
    : station(givenStation), devices(givenStation.platform.prelisten) {
  screens_.push_back(LibraryScreenOf(*this));
  screens_.push_back(ReportScreenOf(*this));
  screens_.push_back(CampaignScreenOf(*this));
  screens_.push_back(ModelsScreenOf(*this));
  screens_.push_back(SettingsScreenOf(*this));
  screens_.push_back(VoiceTrackScreenOf(*this));
  screens_.push_back(SelectorScreenOf(*this));
}

OfficeScreen& OfficeDesk::Named(const std::string& screen) {
  for (OfficeScreen& known : screens_)
    if (known.name == screen) return known;
  throw OrderError("there is no screen " + screen);
}

void OfficeDesk::Settle() {
  std::erase_if(openOrder_, [&](const std::string& name) { return !Named(name).isOpen(); });
  for (const OfficeScreen& screen : screens_) {
    const auto known = std::find(openOrder_.begin(), openOrder_.end(), screen.name);
    if (!screen.isOpen() || known != openOrder_.end()) continue;
    openOrder_.push_back(screen.name);
    *screen.langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  }
}

template <typename Item>
Item* OfficeDesk::Look(std::vector<Item> OfficeScreen::*items, const std::string& name) {
  Settle();
  for (auto screen = openOrder_.rbegin(); screen != openOrder_.rend(); ++screen)
    for (Item& item : Named(*screen).*items)
      if (EqualNoCase(item.name, name)) return &item;
  return nullptr;
}

template <typename Item>
Item& OfficeDesk::Find(std::vector<Item> OfficeScreen::*items, const std::string& name) {
  if (Item* found = Look(items, name)) return *found;
  throw OrderError("no open screen has " + name);
}

OfficeDesk::Target OfficeDesk::FindControl(const std::string& name) {
  const size_t point = name.find('.');
  OfficeControl& control = Find(&OfficeScreen::controls, name.substr(0, point));
  const bool grouped = control.first >= 0;
  if (!grouped && point == std::string::npos) return {control, 0};
  const std::vector<int> places =
      point == std::string::npos ? std::vector<int>() : Places(name.substr(point + 1));
  if (!grouped || places.size() != 1 || places[0] < control.first || places[0] > control.last)
    throw OrderError("no open screen has " + name);
  return {control, places[0]};
}

void OfficeDesk::Open(const std::string& screen) {
  Settle();
  Named(screen).open();
  Settle();
}

void OfficeDesk::Close(const std::string& screen) {
  OfficeScreen& closed = Named(screen);
  if (!closed.isOpen()) throw OrderError(screen + " is not open");
  if (selector.open) EndSelection(false);
  closed.close();
  Settle();
}

void OfficeDesk::Show(const std::string& screen) {
  Settle();
  const OfficeScreen& shown = Named(screen);
  if (!shown.isOpen()) throw OrderError(screen + " is not open");
  station.events.Screen(ScreenEvent(shown));
}

void OfficeDesk::Put(const std::string& control, const std::string& value) {
  const size_t point = control.find('.');
  const std::vector<int> places =
      point == std::string::npos ? std::vector<int>() : Places(control.substr(point + 1));
  if (places.size() == 2) {
    OfficeGrid& grid = Find(&OfficeScreen::grids, control.substr(0, point));
    RequireOn(grid);
    RequireKnown(grid.put, grid.name, "text");
    return grid.put(places[0], places[1], value);
  }
  const Target target = FindControl(control);
  RequireOn(target.control);
  RequireKnown(target.control.put, control, "value");
  target.control.put(target.element, value);
}

void OfficeDesk::Press(const std::string& control, bool right) {
  const Target target = FindControl(control);
  RequireOn(target.control);
  RequireKnown(target.control.press, control, "click");
  target.control.press(target.element, right);
}

void OfficeDesk::Key(const std::string& control, ControlKey key) {
  if (const OfficeGrid* grid = Look(&OfficeScreen::grids, control); grid && grid->key) {
    RequireOn(*grid);
    return grid->key(key);
  }
  const Target target = FindControl(control);
  RequireOn(target.control);
  RequireKnown(target.control.key, control, "key");
  target.control.key(key);
}

void OfficeDesk::Click(const std::string& name, CellClick click) {
  OfficeGrid& grid = Find(&OfficeScreen::grids, name);
  RequireOn(grid);
  RequireKnown(grid.click, name, "click");
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  const bool same = clickedMs_ == nowMs && EqualNoCase(clickedGrid_, name) &&
                    clicked_.row == click.row && clicked_.column == click.column &&
                    clicked_.right == click.right && clicked_.shift == click.shift &&
                    clicked_.ctrl == click.ctrl;
  click.twice = same && !clicked_.twice;
  clickedGrid_ = name;
  clicked_ = click;
  clickedMs_ = nowMs;
  grid.click(click);
}

void OfficeDesk::Choose(const std::string& list, const std::vector<std::string>& values) {
  OfficeList& chosen = Find(&OfficeScreen::lists, list);
  RequireOn(chosen);
  RequireKnown(chosen.choose, list, "choice");
  chosen.choose(values);
}

void OfficeDesk::ChooseFiles(const std::string& currentFile, const std::vector<std::string>& known,
                             TakeFiles take) {
  const auto answer = TakeNext(files);
  take_ = std::move(take);
  const bool given = answer && answer->kind == SelectorAnswer::Kind::kStaysOpen;
  Selector::Open(station, selector, given ? answer->paths.front() : currentFile, known);
  Settle();
  if (given) return;
  if (!answer) return EndSelection(false);
  if (answer->kind == SelectorAnswer::Kind::kAll) {
    if (!Selector::Dir1_Change(station, selector, answer->paths.front())) {
      EndSelection(false);
      throw OrderError("there is no folder " + answer->paths.front());
    }
    Selector::SelectAll_Click(station, selector, true);
    return EndSelection(true);
  }
  End(true, Select(answer->paths));
}

std::vector<std::string> OfficeDesk::Select(const std::vector<std::string>& wanted) {
  Selector::Dir1_Change(station, selector, Selector::FolderOf(wanted.front()));
  std::vector<size_t> rows;
  for (size_t row = 0; row < selector.File1.size(); ++row) {
    const std::string path = Selector::PathIn(selector.Dir1, selector.File1[row].name);
    if (std::find(wanted.begin(), wanted.end(), path) != wanted.end()) rows.push_back(row);
  }
  Selector::File1_Click(station, selector, rows);
  return wanted;
}

void OfficeDesk::EndSelection(bool ok) {
  End(ok, Selector::ChosenFiles(station, selector));
}

void OfficeDesk::End(bool ok, const std::vector<std::string>& chosen) {
  if (ok)
    Selector::BtnOk_Click(station, selector);
  else
    Selector::BtnCancel_Click(station, selector);
  const TakeFiles take = std::exchange(take_, nullptr);
  if (ok && take) take(chosen);
}

std::optional<LocalDateTime> OfficeDesk::PickDay() {
  return TakeNext(days);
}

std::optional<std::string> OfficeDesk::PickPath() {
  return TakeNext(paths);
}

std::optional<int32_t> OfficeDesk::PickColour() {
  return TakeNext(colours);
}

std::function<std::string()> CaptionIn(const OfficeScreen& screen, std::span<const Word> captions,
                                       std::string name) {
  return [langue = screen.langue, captions, name = std::move(name)] {
    return Caption(captions, name, *langue);
  };
}

OfficeControl CaptionGroup(const OfficeScreen& screen, std::span<const Word> captions,
                           std::string name, int count) {
  OfficeControl group;
  group.name = std::move(name);
  group.first = 0;
  group.last = count - 1;
  group.value = [langue = screen.langue, captions, name = group.name, count] {
    std::vector<std::string> texts;
    for (int element = 0; element < count; ++element)
      texts.push_back(Caption(captions, name + "." + std::to_string(element), *langue));
    return texts;
  };
  return group;
}

}  // namespace zemo
