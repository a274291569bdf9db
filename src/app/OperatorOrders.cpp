// The orders that are an operator's act: they take the station and nothing of a simulation.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "app/ForeignBase.h"
#include "app/Moments.h"
#include "app/OrderHandlers.h"
#include "app/Orders.h"
#include "app/ScriptControls.h"
#include "engine/DayGridControls.h"
#include "engine/OperatorControls.h"
#include "engine/OverlayButton.h"
#include "engine/StoredPlaylists.h"
#include "platform/SettingsDevices.h"
#include "settings/SettingsControls.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/Schema.h"

namespace zemo {

namespace {
constexpr std::string_view kYes[] = {"true", "yes", "on"};
constexpr std::string_view kNo[] = {"false", "no", "off"};

template <size_t Count>
bool IsOneOf(std::string_view text, const std::string_view (&words)[Count]) {
  return std::any_of(std::begin(words), std::end(words),
                     [&](std::string_view word) { return EqualNoCase(text, word); });
}

// A number, or for a yes/no field a word. Whether a number is in the field's range, the base tells.
bool FitsField(const Field& field, std::string_view value) {
  if (field.Type == FieldType::kText || field.Type == FieldType::kMemo) return true;
  if (field.Type == FieldType::kBool && (IsOneOf(value, kYes) || IsOneOf(value, kNo))) return true;
  double number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  return error == std::errc() && end == value.data() + value.size() && std::isfinite(number);
}

// A yes/no field takes the words too, and any number that is not 0 as yes.
std::string StoredForm(const Field& field, const std::string& value) {
  if (field.Type != FieldType::kBool) return value;
  if (IsOneOf(value, kYes)) return "-1";
  if (IsOneOf(value, kNo)) return "0";
  return Val(value) != 0 ? "-1" : "0";
}

BrowseList ListOfKind(const std::string& kind) {
  if (kind == "jingle") return BrowseList::kJingles;
  if (kind == "spot") return BrowseList::kSpots;
  if (kind == "other") return BrowseList::kOthers;
  return BrowseList::kMusic;
}

OrderError NoSuchCard(const GivenOrder& given) {
  return OrderError("the library holds no " + given.arguments[0] + " " + given.arguments[1]);
}
}  // namespace

void SetMode(Station& station, const GivenOrder& given) {
  OnAir::Toolbar_ButtonClick(station,
                             given.arguments[0] == "auto" ? Toolbar::kAutomatic : Toolbar::kLive);
}

void LoadList(Station& station, const GivenOrder& given) {
  if (!OnAir::SelectStoredList(station, given.Number(0)))
    throw OrderError("there is no stored list " + given.arguments[0]);
}

void SaveList(Station& station, const GivenOrder& given) {
  StoredListEditor& editor = station.storedList;
  editor.ComboPLS.text = given.arguments[0];
  editor.LblDate = given.arguments[1];
  editor.ChHeure = given.arguments[2];
  editor.OptPls = given.Number(3);
  OnAir::BtnSauve_Click(station);
}

void InsertCard(Station& station, const GivenOrder& given) {
  const BrowseList list = ListOfKind(given.arguments[0]);
  if (!OnAir::DropFromLibrary(station, list, given.Number(1), given.Number(2)))
    throw NoSuchCard(given);
}

void PlayOverlay(Station& station, const GivenOrder& given) {
  OnAir::RecordActivity(station);
  if (!given.Has(1)) {
    if (!OnAir::PlayShortcut(station, given.Number(0)))
      throw OrderError("no sound is on key " + given.arguments[0]);
    return;
  }
  const auto element =
      OnAir::RowFromLibrary(station, ListOfKind(given.arguments[0]), given.Number(1));
  if (!element) throw NoSuchCard(given);
  OnAir::PlayOverAir(station, element->file);
}

void CopyBreak(Station& station, const GivenOrder& given) {
  if (given.Has(1)) OnAir::OpenGridForInsertion(station);
  if (!OnAir::BtnCopyPub_Click(station, given.Number(0), given.Number(1)))
    throw OrderError("the day's grid has no row " + given.arguments[0]);
}

void PreviewDay(Station& station, const GivenOrder& given) {
  if (OnAir::BtnPubJourX_Click(station))
    OnAir::PickPreviewDay(station, *ParseDay(given.arguments[0]));
}

// A box of the open settings, or of two options the second; none of them asks for a device.
bool CheckInSettings(Station& station, const std::string& name, bool on) {
  const SettingsControl* control = FindSettingsControl(name);
  if (!station.settings.open || !control || !EqualNoCase(control->name, name)) return false;
  NoSettingsDevices devices;
  return !SetControl(station, devices, *control, on ? "1" : "0");
}

void Check(Station& station, const GivenOrder& given) {
  if (CheckInSettings(station, given.arguments[0], given.arguments[1] == "on")) return;
  if (!OnAir::SetCheck(station, given.arguments[0], given.arguments[1] == "on"))
    throw OrderError("the screen has no " + given.arguments[0]);
}

std::string NoSuchCheck(const GivenOrder& given) {
  if (IsCheckControl(given.arguments[0])) return {};
  return "no screen has a check box or check menu '" + given.arguments[0] + "'";
}

void SetCnf(Station& station, const GivenOrder& given) {
  const Field& field = *FindSchemaTable("Cnf")->FindField(given.arguments[0]);
  SetCnfFromOutside(station.base, field, StoredForm(field, given.arguments[1]));
}

std::string NoSuchSetting(const GivenOrder& given) {
  const Field* field = FindSchemaTable("Cnf")->FindField(given.arguments[0]);
  if (!field) return "Cnf has no field '" + given.arguments[0] + "'";
  if (FitsField(*field, given.arguments[1])) return {};
  return "'" + given.arguments[1] + "' is no value of " + field->Name;
}

}  // namespace zemo
