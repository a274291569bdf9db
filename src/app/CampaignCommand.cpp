// `zemoradio campaign`: lists and shows a station's campaigns, adds one with its grid and removes
// one, through the campaign editor and so by its rules.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/Commands.h"
#include "app/OwnStation.h"
#include "platform/BoundedRead.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignMarking.h"
#include "traffic/CampaignSheet.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

// The editor on a station's own base. What the editor tells its operator last is why it refused.
class Desk : private EventSink {
 public:
  explicit Desk(const StationOptions& asked) : sim(MakeOwnStation(asked, BaseLock::Kind::kGuest)) {
    OpenOwnBase(sim.station);
    LoadMachineState(sim.station);
    sim.station.events.SetSink(this);
  }
  ~Desk() override { sim.station.events.SetSink(nullptr); }

  // Throws what was told of the template of hours and marks, if anything was.
  void RequireTemplate() const {
    if (!templateFault_.empty()) throw std::runtime_error(templateFault_);
  }
  [[noreturn]] void Refuse() const {
    throw std::runtime_error(reason_.empty() ? "the campaign could not be saved" : reason_);
  }

  SimStation sim;
  CampaignEditor editor;

 private:
  void OnEvent(const Event& event) override {
    bool ofTemplate = false;
    for (const auto& [name, value] : event.members) {
      if (name == "where") ofTemplate = std::get<std::string>(value) == "LoadSaveDecoupe";
      if (name == "text") reason_ = OneLine(std::get<std::string>(value));
    }
    if (ofTemplate) templateFault_ = reason_;
  }
  std::string reason_, templateFault_;
};

// Another program has the base open, on air or not.
bool StationIsOpen(SimStation& sim) {
  if (!sim.baseLock) return false;
  const std::string other = sim.baseLock->TakeAlone(sim.station.base.Path());
  sim.baseLock->Share();
  return !other.empty();
}

// By its byte. The campaign is stored already: a file that cannot be read must not look like a
// campaign that could not be, and counts as on air, which costs a composition at most.
bool StationIsOnAir(SimStation& sim) {
  try {
    const auto byte = ReadBounded(sim.stationFolder, sim.station.files.ZemoOnOff);
    return byte && byte->substr(0, 1) == "1";
  } catch (const FileError&) {
    return true;
  }
}

// An open program composes its grid again when it sees the signal. One on air is known by its byte
// as well: on a share without locks.
void TellOpenStation(SimStation& sim) {
  if (StationIsOnAir(sim) || StationIsOpen(sim)) WriteGridSignal(sim.station);
}

const char* KindWord(const CampaignForm& form) {
  return form.OptPub[0] ? "spot" : "news";
}

// The record by the names of its fields.
Json RecordJson(const CampaignForm& form) {
  Json json = {{"CODE", ValInt(form.LblCode)},
               {"CAMPAGNEDEPART", form.LblDepartPub},
               {"CAMPAGNEFIN", form.LblFinPub},
               {"HDEPART", form.HDepPub},
               {"HFIN", form.HFinPub}};
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i)
    json["DECOUPEH" + std::to_string(i + 1)] = form.DecoupagePub[i];
  json.update({{"FILENAMEAUDIO", form.FichierAudio},
               {"DUREE", ValInt(form.Longeur)},
               {"ANNONCEUR", form.ChAnnonceur},
               {"CATEGORIE", form.Categorie},
               {"FILENAMEGRILLE", form.FILENAMEGRILLE},
               {"PRIORITY", ValInt(form.ComboPriority)},
               {"CONTACT", form.ChContact},
               {"PUB", form.OptPub[0]},
               {"GENREASSOCIE", form.GenreAssocie}});
  return json;
}

std::string JsonText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void List(Desk& desk, bool asJson, std::ostream& out) {
  Station& station = desk.sim.station;
  Json array = Json::array();
  const auto table = station.base.Table("GrillePub");
  table->SetIndex("PRIORITY");
  for (; !table->Eof(); table->MoveNext()) {
    CampaignForm form;
    LoadCampaign(station, *table, form);
    if (asJson) {
      array.push_back(RecordJson(form));
      array.back()["messages"] = CountCrosses(form);
      continue;
    }
    out << form.LblCode << "  " << form.ChAnnonceur << "  " << KindWord(form) << "  "
        << form.LblDepartPub << "  " << form.LblFinPub << "  priority " << form.ComboPriority
        << "  " << form.LblTotalMsg << " messages  " << form.FichierAudio << "\n";
  }
  if (asJson) out << JsonText(array) << "\n";
}

void Find(Desk& desk, int32_t code) {
  if (!Campaigns::ShowRecordOfCode(desk.sim.station, desk.editor, code))
    throw std::runtime_error("there is no campaign " + std::to_string(code));
}

void Show(Desk& desk, const CampaignOptions& options, std::ostream& out) {
  Find(desk, options.code);
  const CampaignForm& form = desk.editor;
  if (options.json) {
    Json json = RecordJson(form);
    json["messages"] = CountCrosses(form);
    json["damage"] = form.damage;
    json["grid"] = Json::array();
    for (int row = 0; row < form.GPub.RowCount(); ++row) json["grid"].push_back(form.GPub.At(row));
    out << JsonText(json) << "\n";
    return;
  }
  const Json record = RecordJson(form);
  for (const auto& [name, value] : record.items())
    if (const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        !text.empty())
      out << name << "  " << text << "\n";
  out << "messages  " << form.LblTotalMsg << "\n";
  if (!form.damage.empty()) out << "! " << form.damage << "\n";
  for (const std::string& row : GridLines(form.GPub)) out << row << "\n";
}

// What belongs to the command's columns: 0 Monday to 6 of a grid's column.
int WeekdayOf(const CampaignOptions& options, int column) {
  if (options.Weekly()) return column - 1;
  const std::string key = DateKeyOfText(options.from);
  const int first = CurrentWeekday(
      {ValInt(key.substr(0, 4)), ValInt(key.substr(4, 2)), ValInt(key.substr(6, 2))});
  return (first - 1 + column - 1) % 7;
}

void Mark(Desk& desk, GridPlace place) {
  if (desk.editor.GPub.Cell(place.row, place.column) == kCross) return;
  Campaigns::GPub_MouseUp(desk.sim.station, desk.editor, MouseButton::kLeft, false, false, place);
}

void MarkPattern(Desk& desk, const CampaignOptions& options, const CrossPattern& pattern) {
  const TextGrid& grid = desk.editor.GPub;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row) {
    const auto hour = static_cast<size_t>(ValInt(grid.Cell(row, 0).substr(0, 2)));
    if (hour >= pattern.hours.size() || !pattern.hours[hour]) continue;
    for (int column = kFirstDayColumn; column < GridColumns(grid); ++column)
      if (pattern.weekdays[static_cast<size_t>(WeekdayOf(options, column))])
        Mark(desk, {row, column});
  }
}

int ColumnOf(const CampaignOptions& options, const SingleCross& cross) {
  if (options.Weekly()) return cross.weekday;
  const auto serial = [](const std::string& date) {
    const std::string key = DateKeyOfText(date);
    return DaySerial(ValInt(key.substr(0, 4)), ValInt(key.substr(4, 2)), ValInt(key.substr(6, 2)));
  };
  return static_cast<int>(serial(cross.day) - serial(options.from)) + kFirstDayColumn;
}

void MarkCross(Desk& desk, const CampaignOptions& options, const SingleCross& cross) {
  const TextGrid& grid = desk.editor.GPub;
  const int column = ColumnOf(options, cross);
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row)
    if (grid.Cell(row, 0) == cross.moment && column >= kFirstDayColumn &&
        column < GridColumns(grid))
      return Mark(desk, {row, column});
  throw std::runtime_error("--cross: the campaign has no moment " + cross.moment +
                           (options.Weekly() ? "" : " on " + cross.day));
}

void FillRecord(CampaignEditor& editor, const CampaignOptions& options) {
  if (!options.advertiser.empty()) editor.ChAnnonceur = options.advertiser;
  editor.Categorie = UpperLatin(options.category);
  editor.ChContact = options.contact;
  editor.GenreAssocie = options.genre;
  editor.ComboPriority = std::to_string(options.priority);
  editor.OptPub = {!options.news, options.news};
  if (options.hours) {
    editor.HDepPub = TwoDigits(options.hours->first);
    editor.HFinPub = TwoDigits(options.hours->second);
  }
  if (options.marks) {
    editor.DecoupagePub = {};
    for (size_t i = 0; i < options.marks->size(); ++i)
      editor.DecoupagePub[i] = TwoDigits((*options.marks)[i]);
  }
}

void BuildGrid(Desk& desk, const CampaignOptions& options) {
  Station& station = desk.sim.station;
  if (options.Weekly()) {
    Campaigns::LblDepartPub_RightClick(station, desk.editor);
  } else {
    Campaigns::PickDay(station, desk.editor, 1, options.from);
    Campaigns::PickDay(station, desk.editor, 2, options.to);
  }
  if (desk.editor.GPub.RowCount() <= kFirstMomentRow)
    throw std::runtime_error("the station has no template of hours and marks yet: --marks");
  for (const CrossPattern& pattern : options.patterns) MarkPattern(desk, options, pattern);
  for (const SingleCross& cross : options.crosses) MarkCross(desk, options, cross);
}

// A category that the list lacks joins it.
void KeepCategory(Desk& desk) {
  const auto& list = desk.editor.CategorieList;
  const std::string& category = desk.editor.Categorie;
  if (category.empty() || std::find(list.begin(), list.end(), category) != list.end()) return;
  desk.sim.messages.AnswerNext(Answer::kYes);
  Campaigns::Categorie_KeyEnter(desk.sim.station, desk.editor);
}

// A path of this system becomes absolute; one of another system stays as the path map knows it.
std::string StoredPathOf(const std::string& file) {
  const bool foreign = file.find('\\') != std::string::npos || file.substr(1, 1) == ":";
  if (foreign) return file;
  return std::filesystem::weakly_canonical(std::filesystem::absolute(file)).string();
}

int64_t Newest(Station& station) {
  const auto rows = station.base.Db().OpenRecordset("SELECT MAX(CODE) FROM GrillePub");
  return AsInt(rows->Field(0));
}

void Add(Desk& desk, const CampaignOptions& options, std::ostream& out) {
  Station& station = desk.sim.station;
  const std::string path = StoredPathOf(options.file);
  const auto source = SoundFileOpener().Open(station.platform.soundFiles.Resolve(path));
  Campaigns::MnuHPubs_Click(station, desk.editor);
  Campaigns::BtnNew_Click(station, desk.editor);
  if (!options.hours || !options.marks) desk.RequireTemplate();
  const auto lengthMs = static_cast<int32_t>(FramesToMs(source->LengthFrames()));
  if (!Campaigns::CmdLoadFile_Click(station, desk.editor, path, lengthMs)) desk.Refuse();
  FillRecord(desk.editor, options);
  BuildGrid(desk, options);
  KeepCategory(desk);
  if (!Campaigns::BtnAjouter_Click(station, desk.editor)) desk.Refuse();
  TellOpenStation(desk.sim);
  out << "campaign " << Newest(station) << " added\n";
}

void Remove(Desk& desk, int32_t code, std::ostream& out) {
  Station& station = desk.sim.station;
  Find(desk, code);
  desk.sim.messages.AnswerNext(Answer::kOk);
  if (!Campaigns::BtnDelete_Click(station, desk.editor)) desk.Refuse();
  TellOpenStation(desk.sim);
  out << "campaign " << code << " removed\n";
}

}  // namespace

int RunCampaignCommand(const CampaignOptions& options) {
  Desk desk(options);
  switch (options.action) {
    case CampaignAction::kList:
      List(desk, options.json, std::cout);
      break;
    case CampaignAction::kShow:
      Show(desk, options, std::cout);
      break;
    case CampaignAction::kAdd:
      Add(desk, options, std::cout);
      break;
    case CampaignAction::kRemove:
      Remove(desk, options.code, std::cout);
      break;
  }
  return 0;
}

}  // namespace zemo
