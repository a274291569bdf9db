// The orders of a script that work on the screens of the office.
#include <algorithm>
#include <filesystem>

#include "app/OrderHandlers.h"
#include "app/Orders.h"
#include "app/SimStation.h"

namespace zemo {

namespace {

bool Names(const GivenOrder& given, std::string_view word) {
  return std::find(given.arguments.begin() + 1, given.arguments.end(), word) !=
         given.arguments.end();
}

std::vector<std::string> BetweenCommas(std::string_view text) {
  std::vector<std::string> values;
  for (size_t begin = 0; begin <= text.size();) {
    const size_t comma = std::min(text.find(',', begin), text.size());
    values.emplace_back(text.substr(begin, comma - begin));
    begin = comma + 1;
  }
  return values;
}

void QueueSelection(SimStation& sim, OfficeDesk::SelectorAnswer::Kind kind,
                    const std::vector<std::string>& given) {
  OfficeDesk::SelectorAnswer answer{kind, {}};
  for (const std::string& path : given) answer.paths.push_back(AbsolutePath(path));
  sim.desk.files.push_back(std::move(answer));
}

}  // namespace

std::string AbsolutePath(const std::string& path) {
  const bool foreign = path.find('\\') != std::string::npos || (path.size() > 1 && path[1] == ':');
  return foreign ? path : std::filesystem::absolute(path).lexically_normal().string();
}

void PressControl(SimStation& sim, const GivenOrder& given) {
  sim.desk.Press(given.arguments[0], Names(given, "right"));
}

void PressKey(SimStation& sim, const GivenOrder& given) {
  const std::string& word = given.arguments[1];
  ControlKey key = ControlKey::kEnter;
  if (word == "delete") key = ControlKey::kDelete;
  if (word == "insert") key = ControlKey::kInsert;
  sim.desk.Key(given.arguments[0], key);
}

void ClickCell(SimStation& sim, const GivenOrder& given) {
  CellClick click;
  click.row = given.Number(1);
  click.column = given.Number(2);
  click.right = Names(given, "right");
  click.shift = Names(given, "shift");
  click.ctrl = Names(given, "ctrl");
  sim.desk.Click(given.arguments[0], click);
}

void ChooseRows(SimStation& sim, const GivenOrder& given) {
  sim.desk.Choose(given.arguments[0], BetweenCommas(given.arguments[1]));
}

void ChooseFolder(SimStation& sim, const GivenOrder& given) {
  QueueSelection(sim, OfficeDesk::SelectorAnswer::Kind::kAll, given.arguments);
}

void LeaveSelectorOpen(SimStation& sim, const GivenOrder& given) {
  QueueSelection(sim, OfficeDesk::SelectorAnswer::Kind::kStaysOpen, given.arguments);
}

void ChooseFiles(SimStation& sim, const GivenOrder& given) {
  QueueSelection(sim, OfficeDesk::SelectorAnswer::Kind::kFiles, given.arguments);
}

}  // namespace zemo
