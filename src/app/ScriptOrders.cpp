#include "app/ScriptOrders.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

#include "app/Moments.h"
#include "app/SimStation.h"
#include "engine/DayGridControls.h"
#include "engine/OperatorControls.h"
#include "engine/StateDump.h"
#include "engine/StoredPlaylists.h"
#include "platform/real/files/WholeFiles.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {
constexpr int kLockWaitMs = 5000;

// Why an order could not be carried out; the number is SQLite's, 0 for all else.
struct OrderError : std::runtime_error {
  explicit OrderError(const std::string& text, int givenNumber = 0)
      : std::runtime_error(text), number(givenNumber) {}
  int number;
};

void Refuse(const std::string& text) {
  throw OrderError(text);
}

// --- the base, as another program changes it: in SQLite's own dialect, each time by a connection
// of its own ---

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Connection = std::unique_ptr<sqlite3, CloseConnection>;

Connection Connect(const SimStation& sim) {
  sqlite3* opened = nullptr;
  const std::string& path = sim.station.base.Path();
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  Connection connection(opened);
  if (result != SQLITE_OK) throw OrderError(sqlite3_errstr(result), result);
  sqlite3_busy_timeout(connection.get(), kLockWaitMs);
  return connection;
}

void Sql(SimStation& sim, const std::string& statement) {
  const Connection connection = Connect(sim);
  const int result = sqlite3_exec(connection.get(), statement.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) throw OrderError(sqlite3_errmsg(connection.get()), result);
}

// A yes/no field takes the words too, and any number that is not 0 as yes.
std::string StoredForm(const Field& field, const std::string& value) {
  if (field.Type != FieldType::kBool) return value;
  for (const char* yes : {"true", "yes", "on"})
    if (EqualNoCase(value, yes)) return "-1";
  for (const char* no : {"false", "no", "off"})
    if (EqualNoCase(value, no)) return "0";
  return Val(value) != 0 ? "-1" : "0";
}

void SetCnf(SimStation& sim, const std::string& name, const std::string& value) {
  const Field* field = FindSchemaTable("Cnf")->FindField(name);
  if (!field) Refuse("Cnf has no field " + name);
  const Connection connection = Connect(sim);
  const std::string text = StoredForm(*field, value);
  sqlite3_stmt* prepared = nullptr;
  int result =
      sqlite3_prepare_v2(connection.get(), ("UPDATE Cnf SET \"" + field->Name + "\" = ?").c_str(),
                         -1, &prepared, nullptr);
  const std::unique_ptr<sqlite3_stmt, Finalize> statement(prepared);
  if (result == SQLITE_OK) {
    sqlite3_bind_text(statement.get(), 1, text.c_str(), -1, SQLITE_TRANSIENT);
    result = sqlite3_step(statement.get());
  }
  if (result != SQLITE_DONE) throw OrderError(sqlite3_errmsg(connection.get()), result);
}

// --- the operator ---

void SaveList(SimStation& sim, const ScriptOrder& order) {
  Station& station = sim.station;
  StoredListEditor& editor = station.storedList;
  editor.ComboPLS.text = order.arguments[0];
  editor.LblDate = order.arguments[1];
  editor.ChHeure = order.arguments[2];
  editor.OptPls = order.Number(3);
  BtnSauve_Click(station);
}

void Insert(SimStation& sim, const ScriptOrder& order) {
  const std::string& kind = order.arguments[0];
  BrowseList list = BrowseList::kMusic;
  if (kind == "jingle") list = BrowseList::kJingles;
  if (kind == "spot") list = BrowseList::kSpots;
  if (kind == "other") list = BrowseList::kOthers;
  if (!DropFromLibrary(sim.station, list, order.Number(1), order.Number(2)))
    Refuse("the library holds no " + kind + " " + order.arguments[1]);
}

Answer AnswerOf(const std::string& word) {
  if (word == "yes") return Answer::kYes;
  if (word == "no") return Answer::kNo;
  if (word == "ok") return Answer::kOk;
  return Answer::kCancel;
}

// --- wires ---

// A wire that no port listens to is pulled without a word.

void PullContact(SimStation& sim, const ScriptOrder& order) {
  sim.automaton.SetContact(order.Number(0), order.arguments[1] == "on");
}

void PullJoystick(SimStation& sim, const ScriptOrder& order) {
  if (order.arguments[1] == "down")
    sim.joystick.Press(order.Number(0));
  else
    sim.joystick.Release(order.Number(0));
}

void Drop(SimStation& sim, const ScriptOrder& order) {
  const auto bytes = ReadWholeFile(order.arguments[0]);
  if (!bytes) Refuse("there is no file " + order.arguments[0]);
  sim.DropFile(order.arguments[1], *bytes);
}

void Load(SimStation& sim, const ScriptOrder& order) {
  if (!SelectStoredList(sim.station, order.Number(0)))
    Refuse("there is no stored list " + order.arguments[0]);
}

void Check(SimStation& sim, const ScriptOrder& order) {
  if (!SetCheck(sim.station, order.arguments[0], order.arguments[1] == "on"))
    Refuse("the screen has no " + order.arguments[0]);
}

void Break(SimStation& sim, const ScriptOrder& order) {
  if (order.Has(1)) OpenGridForInsertion(sim.station);
  if (!BtnCopyPub_Click(sim.station, order.Number(0), order.Number(1)))
    Refuse("the day's grid has no row " + order.arguments[0]);
}

void Preview(SimStation& sim, const ScriptOrder& order) {
  if (BtnPubJourX_Click(sim.station)) PickPreviewDay(sim.station, *ParseDay(order.arguments[0]));
}

void Mode(SimStation& sim, const ScriptOrder& order) {
  ToolbarButton(sim.station, order.arguments[0] == "auto" ? Toolbar::kAutomatic : Toolbar::kLive);
}

// What each order does; kKill is not among them.
struct Service {
  Order order;
  void (*serve)(SimStation& sim, const ScriptOrder& order);
};
using Sim = SimStation;
using It = ScriptOrder;
// clang-format off
constexpr Service kServices[] = {
    {Order::kStart, [](Sim& s, const It&) { ToolbarButton(s.station, Toolbar::kStart); }},
    {Order::kStop, [](Sim& s, const It&) { ToolbarButton(s.station, Toolbar::kStop); }},
    {Order::kNext, [](Sim& s, const It&) { CmdStop(s.station); }},
    {Order::kKeyDown, [](Sim& s, const It& it) { s.keyboard.Press(it.Number(0)); }},
    {Order::kKeyUp, [](Sim& s, const It& it) { s.keyboard.Release(it.Number(0)); }},
    {Order::kMode, Mode},
    {Order::kRequest, [](Sim& s, const It&) { CmdRequette(s.station); }},
    {Order::kCompose, [](Sim& s, const It&) { MakePubduJour(s.station); }},
    {Order::kLoad, Load},
    {Order::kSave, SaveList},
    {Order::kNew, [](Sim& s, const It&) { BtnNew_Click(s.station); }},
    {Order::kInsert, Insert},
    {Order::kInsertExtract, [](Sim& s, const It& it) { CmdMarqueurExtrait(s.station, it.Number(0)); }},
    {Order::kMove, [](Sim& s, const It& it) { DragInList(s.station, it.Number(0), it.Number(1)); }},
    {Order::kDelete, [](Sim& s, const It& it) { DeleteRow(s.station, it.Number(0)); }},
    {Order::kRightClick, [](Sim& s, const It& it) { RightClickRow(s.station, it.Number(0)); }},
    {Order::kBreak, Break},
    {Order::kPreview, Preview},
    {Order::kLocal, [](Sim& s, const It& it) { s.localValues.Set(it.arguments[0], it.arguments[1]); }},
    {Order::kCheck, Check},
    {Order::kContact, PullContact},
    {Order::kJoystick, PullJoystick},
    {Order::kClipboard, [](Sim& s, const It& it) { s.clipboard.SetText(it.arguments[0]); }},
    {Order::kSql, [](Sim& s, const It& it) { Sql(s, it.arguments[0]); }},
    {Order::kDrop, Drop},
    {Order::kRemove, [](Sim& s, const It& it) { s.RemoveFile(it.arguments[0]); }},
    {Order::kSet, [](Sim& s, const It& it) { SetCnf(s, it.arguments[0], it.arguments[1]); }},
    {Order::kAnswer, [](Sim& s, const It& it) { s.messages.AnswerNext(AnswerOf(it.arguments[0])); }},
    {Order::kDump, [](Sim& s, const It&) { s.station.events.State(DumpState(s.station)); }},
};
// clang-format on

void Serve(SimStation& sim, const ScriptOrder& order) {
  for (const Service& service : kServices)
    if (service.order == order.order) return service.serve(sim, order);
}
}  // namespace

void ServeOrder(SimStation& sim, const ScriptOrder& order) {
  EngineEvents& events = sim.station.events;
  const std::string place(OrderWord(order.order));
  try {
    Serve(sim, order);
  } catch (const OrderError& error) {
    events.Error(place, error.number, error.what());
  } catch (const StoreError& error) {
    events.Error(place, error.Number(), error.what());
  } catch (const std::exception& error) {
    events.Error(place, 0, error.what());
  }
}

}  // namespace zemo
