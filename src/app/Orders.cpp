// The table of the orders. README.md has it too, and a test holds the one against the other.
#include "app/Orders.h"

#include "app/ForeignBase.h"
#include "app/Moments.h"
#include "app/OrderHandlers.h"
#include "app/SimStation.h"
#include "engine/DayGridControls.h"
#include "engine/OperatorControls.h"
#include "engine/StateDump.h"
#include "engine/StoredPlaylists.h"
#include "store/StoreError.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {
using Sim = SimStation;
using It = GivenOrder;

// clang-format off
const Order kOrders[] = {
    // --- the operator's: form, help, what it does, what is wrong with its names ---
    {"start", "the start button",
     [](Station& s, const It&) { OnAir::Toolbar_ButtonClick(s, Toolbar::kStart); }},
    {"stop", "the stop button",
     [](Station& s, const It&) { OnAir::Toolbar_ButtonClick(s, Toolbar::kStop); }},
    {"next", "ends the element on air, and plays the next one",
     [](Station& s, const It&) { OnAir::CmdStop_Click(s); }},
    {"mode auto|live", "automatic or live mode", SetMode},
    {"request", "the request button", [](Station& s, const It&) { OnAir::CmdRequette_Click(s); }},
    {"compose", "composes the day's grid of breaks again", [](Station& s, const It&) { ComposeTodaysGrid(s); }},
    {"load CODE", "loads the stored list of that CODE of `Playlist`", LoadList},
    {"save LABEL DATE TIME OPTION",
     "stores the list under a label, for a date (`dd/mm/yyyy`) and a time (`hh:mm`); the option is 0 to 3, "
     "as on the screen", SaveList},
    {"new", "empties the list for a new one", [](Station& s, const It&) { OnAir::BtnNew_Click(s); }},
    {"insert music|jingle|spot|other CODE [ROW]",
     "drops a card of the library at a row of the list, at its end without one", InsertCard},
    {"insert extract [ROW]", "puts an excerpt marker at a row, at the end without one",
     [](Station& s, const It& it) { OnAir::CmdMarqueurExtrait_Click(s, it.Number(0)); }},
    {"move ROW ROW", "drags a row of the list to another place",
     [](Station& s, const It& it) { OnAir::PL_DragDrop(s, it.Number(0), it.Number(1)); }},
    {"delete ROW", "deletes a row of the list", [](Station& s, const It& it) { OnAir::PL_KeyDelete(s, it.Number(0)); }},
    {"rightclick ROW", "a right click on a row of the list",
     [](Station& s, const It& it) { OnAir::PL_RightClick(s, it.Number(0)); }},
    {"overlay KEY", "plays the sound of a key of the numeric pad, 1 to 9, over what is on air", PlayOverlay},
    {"overlay music|jingle|spot|other CODE", "plays a card of the library over what is on air", PlayOverlay},
    {"break ROW [at ROW]",
     "copies the break in that row of the day's grid to the head of the list, or before a row of it", CopyBreak},
    {"preview DAY", "shows the grid of another day (`YYYY-MM-DD`)", PreviewDay, nullptr, true},
    {"check CONTROL on|off", "ticks or clears a check box or check menu, by its name", Check, NoSuchCheck},
    {"local NAME VALUE", "gives a value of the machine (`Settings.Ini`) another content",
     [](Station& s, const It& it) { s.platform.localValues.Set(it.arguments[0], it.arguments[1]); }},
    {"set FIELD VALUE", "gives a field of `Cnf` a value, as another program does", SetCnf, NoSuchSetting},
    {"dump", "an event `state` with all there is to see",
     [](Station& s, const It&) { s.events.State(DumpState(s)); }},

    // --- of what a simulation has around its station ---
    {"keydown VK", "presses a key, by its virtual key number",
     [](Sim& s, const It& it) { s.keyboard.Press(it.Number(0)); }},
    {"keyup VK", "releases it", [](Sim& s, const It& it) { s.keyboard.Release(it.Number(0)); }},
    {"contact CONTACT on|off", "closes or opens a contact of the controller, 0 to 3", PullContact},
    {"joystick BUTTON down|up", "a button of the joystick, 1 to 4", PullJoystick},
    {"clipboard TEXT...", "another program puts a text on the clipboard",
     [](Sim& s, const It& it) { s.clipboard.SetText(it.arguments[0]); }},
    {"sql STATEMENT...", "another program changes the base, in SQLite's dialect",
     [](Sim& s, const It& it) { ExecuteFromOutside(s.station.base, it.arguments[0]); }},
    {"drop FILE FILENAME", "another program puts a copy of a file into the station's folder, under a name",
     DropFile},
    {"remove FILENAME", "another program removes a file of the station's folder",
     [](Sim& s, const It& it) { s.RemoveFile(it.arguments[0]); }},
    {"answer yes|no|ok|cancel", "the answer to the next message", AnswerNext},

    // --- the screens of the office ---
    {"open voicetrack ROW", "opens the voice track editor on a row of the list",
     [](Sim& s, const It& it) { s.desk.OpenVoiceTrack(it.Number(0)); }},
    {"open campaigns|library|models|report|settings", "opens a screen, as its menu entry does",
     [](Sim& s, const It& it) { s.desk.Open(it.arguments[0]); }},
    {"close campaigns|library|models|report|settings|voicetrack", "closes it, with all that its closing does",
     [](Sim& s, const It& it) { s.desk.Close(it.arguments[0]); }},
    {"show campaigns|library|models|report|settings|selector|voicetrack", "an event `screen` with all that a screen shows",
     [](Sim& s, const It& it) { s.desk.Show(it.arguments[0]); }},
    {"put CONTROL VALUE",
     "gives a control a value, an element of a group (`NAME.1`) or a cell of a grid (`NAME.ROW.COLUMN`)",
     [](Sim& s, const It& it) { s.desk.Put(it.arguments[0], it.arguments[1]); }},
    {"press CONTROL [left|right]", "a click on a button, menu entry, label or heading", PressControl},
    {"key CONTROL enter|delete|insert", "a key in a control", PressKey},
    {"cell GRID NUMBER NUMBER [left|right|shift|ctrl]",
     "a click on a cell of a grid, by row and column from 0; two of one moment are a double click", ClickCell},
    {"cell GRID NUMBER NUMBER left|right shift|ctrl", "the same with a button and a key", ClickCell},
    {"choose LIST VALUE", "selects rows of a list by their numbers from 1, with commas between, or an entry of a pop-up by its text", ChooseRows},
    {"files all FOLDER", "the next sound file selector: everything in a folder", ChooseFolder},
    {"files open FILE", "the next sound file selector opens on a file and stays open, as the screen `selector`",
     LeaveSelectorOpen},
    {"files FILE+", "the next sound file selector gives these files", ChooseFiles},
    {"day DAY", "the next calendar gives that day",
     [](Sim& s, const It& it) { s.desk.days.push_back(*ParseDay(it.arguments[0])); }},
    {"path FILE", "the next dialogue for a file gives that one",
     [](Sim& s, const It& it) { s.desk.paths.push_back(AbsolutePath(it.arguments[0])); }},
    {"colour COLOUR", "the next colour dialogue gives that one (`RRGGBB`)",
     [](Sim& s, const It& it) { s.desk.colours.push_back(*ParseColour(it.arguments[0])); }},
    {"kill", "ends the process on the spot, with status 137", [](Sim& s, const It&) { s.killed(); }},
};
// clang-format on

std::string OnlyInSimulation(const Order& order) {
  return "only a simulation has the order " + std::string(order.Name());
}

void CarryOutOn(Station& station, SimStation* sim, const GivenOrder& given) {
  if (const auto* ofOperator = std::get_if<Order::OfOperator>(&given.order->serve))
    return (*ofOperator)(station, given);
  if (!sim) throw OrderError(OnlyInSimulation(*given.order));
  std::get<Order::OfSimulation>(given.order->serve)(*sim, given);
}
}  // namespace

std::span<const Order> Orders() {
  return kOrders;
}

std::string WhyNotFromElsewhere(const Order& order) {
  if (!std::holds_alternative<Order::OfOperator>(order.serve)) return OnlyInSimulation(order);
  if (order.setsTheClock)
    return "the order " + std::string(order.Name()) +
           " sets the clock of the machine: only who "
           "sits at it can give it";
  return {};
}

void CarryOut(Station& station, const GivenOrder& given) {
  CarryOutOn(station, nullptr, given);
}

void ServeOrder(SimStation& sim, const GivenOrder& given) {
  EngineEvents& events = sim.station.events;
  const std::string place(given.order->Name());
  try {
    CarryOutOn(sim.station, &sim, given);
  } catch (const OrderError& error) {
    events.Error(place, error.number, error.what());
  } catch (const StoreError& error) {
    events.Error(place, error.Number(), error.what());
  } catch (const std::exception& error) {
    events.Error(place, 0, error.what());
  }
}

}  // namespace zemo
