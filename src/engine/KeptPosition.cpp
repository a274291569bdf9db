// One file, written whole, so that element, place and list are of one moment: the state in the
// first line, the element that sounds in the second, a row of the list in each other one.
#include "engine/KeptPosition.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include "platform/Folder.h"
#include "platform/SoundChain.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/Value.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "KeepAirPosition";
constexpr const char* kAir = "OnAir.Dat";
constexpr int kForm = 1;
constexpr int64_t kEveryMs = 1000;
constexpr double kOldestSec = 10;
constexpr double kSecondsADay = 86400;
constexpr std::string_view kEnd = ",END\r\n";  // a line without it was cut
constexpr size_t kElementFields = 17;

// --- fields ---

std::string Real(double value) {
  return AsText(Value(value));
}

template <typename Number>
std::string Optional(const std::optional<Number>& value) {
  return value ? Real(static_cast<double>(*value)) : std::string();
}

// Takes the fields of a line one by one; what is no number counts as none.
class Fields {
 public:
  explicit Fields(const FieldRecord& record) : record_(record) {}

  std::string Text() { return next_ < record_.size() ? record_[next_++].text : std::string(); }
  std::optional<double> Number() {
    const std::string text = Text();
    double number = 0;
    const char* end = text.data() + text.size();
    if (text.empty() || std::from_chars(text.data(), end, number).ptr != end) return std::nullopt;
    return number;
  }
  int64_t Whole() { return static_cast<int64_t>(Number().value_or(0)); }
  std::optional<int64_t> OptionalWhole() {
    const auto number = Number();
    if (!number) return std::nullopt;
    return static_cast<int64_t>(*number);
  }
  float Seconds() { return static_cast<float>(Number().value_or(0)); }
  bool Truth() { return Whole() != 0; }

 private:
  const FieldRecord& record_;
  size_t next_ = 0;
};

bool IsWhole(const FieldRecord& record, size_t fields) {
  return record.size() == fields + 1 && record.back().text == "END" && !record.back().quoted;
}

// --- elements ---

std::string ElementLine(const OnAirElement& element) {
  const TrackNeighbours made = element.madeFor.value_or(TrackNeighbours{});
  std::string line = std::to_string(element.code);
  for (const std::string* text :
       {&element.title, &element.secondLine, &element.genre, &element.variety, &element.file})
    line += ',' + QuotedField(*text);
  line += ',' + Optional(element.lengthMs) + ',' + Optional(element.exitMs) + ',' +
          Optional(element.introSec) + ',' + Real(element.lastPlayed) + ',' +
          std::to_string(element.voiceTrack) + ',' + (element.liesOver ? "1" : "0") + ',' +
          Optional(element.startMs) + ',' + QuotedField(made.fileBefore) + ',' +
          QuotedField(made.fileAfter) + ',' + (element.madeFor ? "1" : "0") + ',' +
          QuotedField(std::to_string(made.lengthBeforeMs) + ' ' +
                      std::to_string(made.exitBeforeMs) + ' ' + std::to_string(made.introAfterSec));
  return line += kEnd;
}

TrackNeighbours NeighboursIn(const std::string& before, const std::string& after,
                             const std::string& numbers) {
  TrackNeighbours made{.fileBefore = before, .fileAfter = after};
  const char* at = numbers.data();
  const char* const end = at + numbers.size();
  for (int64_t* number : {&made.lengthBeforeMs, &made.exitBeforeMs, &made.introAfterSec}) {
    at = std::from_chars(at, end, *number).ptr;
    if (at != end) ++at;
  }
  return made;
}

std::optional<OnAirElement> ElementIn(const FieldRecord& record) {
  if (!IsWhole(record, kElementFields)) return std::nullopt;
  Fields fields(record);
  OnAirElement element;
  element.code = static_cast<int32_t>(fields.Whole());
  for (std::string* text :
       {&element.title, &element.secondLine, &element.genre, &element.variety, &element.file})
    *text = fields.Text();
  element.lengthMs = fields.OptionalWhole();
  element.exitMs = fields.OptionalWhole();
  element.introSec = fields.OptionalWhole();
  element.lastPlayed = fields.Number().value_or(0);
  element.voiceTrack = fields.Whole();
  element.liesOver = fields.Truth();
  element.startMs = fields.OptionalWhole();
  const std::string before = fields.Text(), after = fields.Text();
  const bool isMadeFor = fields.Truth();
  const std::string numbers = fields.Text();
  if (isMadeFor) element.madeFor = NeighboursIn(before, after, numbers);
  return element;
}

// --- the engine's state ---

// What a run has done already and must not do again in the same minute or hour; guards are seconds
// since midnight.
template <typename Engine, typename TakeTruth, typename TakeGuard>
void WithGuards(Engine& engine, TakeTruth truth, TakeGuard guard) {
  truth(engine.IsAutomatic);
  truth(engine.OptionDirect);
  truth(engine.PlaylistRunning);
  truth(engine.HourBlockHandled);
  truth(engine.PipSuppressed);
  truth(engine.NoJingleActive);
  guard(engine.LastTopHourTimer);
  guard(engine.LastGridCheckTimer);
  guard(engine.LastPlaylistWatchTimer);
  guard(engine.LastTopageTimer);
  guard(engine.LastIntroJingleTimer);
}
constexpr size_t kAirFields = 4 + 11 + 1;

// `unreportedSince`: the element's begin, as a day serial, while its row of the report is still to
// be written; 0: it is.
std::string AirLine(const Station& station, int32_t positionMs, double unreportedSince) {
  const EngineState& engine = station.engine;
  std::string line = std::to_string(kForm) + ',' + Real(DateSerial(station.Now())) + ',' +
                     std::to_string(positionMs) + ',' + Real(unreportedSince);
  WithGuards(
      engine, [&line](bool flag) { line += flag ? ",1" : ",0"; },
      [&line](float seconds) { line += ',' + Real(static_cast<double>(seconds)); });
  return line += ',' + QuotedField(engine.RunningPlaylistName) + std::string(kEnd);
}

// Where the ears are, which the output's buffers follow.
int32_t HeardMs(const Station& station, int slot) {
  const int32_t mixed = station.platform.sound.Position(slot);
  return std::max(0, mixed - static_cast<int32_t>(station.engine.BufferOffsetSec * 1000));
}

// The element is still in the list while its start is followed up.
std::string ListBehind(const Station& station, const OnAirElement* inList) {
  std::string lines;
  for (const OnAirRow& row : station.PL)
    if (inList && row.AsElement() == *inList)
      inList = nullptr;
    else
      lines += ElementLine(row.AsElement());
  return lines;
}

void WriteAir(Station& station, int slot, double unreportedSince, const OnAirElement* inList) {
  WriteSideFile(station.platform.machineFolder, kAir,
                AirLine(station, HeardMs(station, slot), unreportedSince) +
                    ElementLine(station.engine.keptAir.element) + ListBehind(station, inList));
}

// Of a crash between the report's row and what is kept behind it; a row that waits for the base
// is journalled, and counts.
bool WasReported(Station& station, double begun) {
  constexpr double kSecond = 1 / kSecondsADay;
  for (const AirWrite& write : station.engine.kept.writes)
    if (write.row.DATENUM >= begun - kSecond / 2) return true;
  const auto newest =
      station.base.Db().OpenRecordset("SELECT TOP 1 DATENUM FROM Rapport ORDER BY CODE DESC");
  return !newest->Eof() && AsReal(newest->Field(0)) >= begun - kSecond / 2;
}

bool IsFresh(const Station& station, double moment) {
  const double age = (DateSerial(station.Now()) - moment) * kSecondsADay;
  return age >= 0 && age <= kOldestSec;
}

void TakeUp(Station& station) {
  Folder& folder = station.platform.machineFolder;
  const auto text = ReadSideFile(folder, kAir);
  if (!text) return;
  const std::vector<FieldRecord> records = ReadRecords(*text);
  if (records.size() < 2 || !IsWhole(records[0], kAirFields)) return;
  const auto element = ElementIn(records[1]);
  Fields fields(records[0]);
  if (!element || fields.Whole() != kForm || !IsFresh(station, fields.Number().value_or(0))) return;
  if (!station.platform.soundFiles.Exists(element->file)) return;
  const auto positionMs =
      static_cast<int32_t>(std::clamp<int64_t>(fields.Whole(), 0, element->lengthMs.value_or(0)));
  const double unreportedSince = fields.Number().value_or(0);
  EngineState& engine = station.engine;
  WithGuards(
      engine, [&fields](auto& flag) { flag = fields.Truth(); },
      [&fields](auto& guard) { guard = fields.Seconds(); });
  engine.RunningPlaylistName = fields.Text();
  station.PL.Clear();
  for (size_t row = 1; row < records.size(); ++row)
    if (auto listed = ElementIn(records[row])) station.PL.Add(*std::move(listed));
  // One that had just begun, and is in no report, begins again and is reported.
  if (unreportedSince == 0 || WasReported(station, unreportedSince))
    engine.keptAir.from = positionMs;
}

}  // namespace

void KeepAirPosition(Station& station) {
  KeptAir& kept = station.engine.keptAir;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  if (!kept.wanted || !station.engine.IsRunning || nowMs < kept.nextMs) return;
  kept.nextMs = nowMs + kEveryMs;
  if (station.engine.EmergencyOnAir || kept.element.file.empty()) return;
  WriteAir(station, station.engine.CurrentChannel, 0, nullptr);
}

void KeepAirBegin(Station& station, double begun) {
  KeptAir& kept = station.engine.keptAir;
  kept.nextMs = 0;
  if (!kept.wanted) return;
  try {
    WriteAir(station, station.engine.NextChannel, begun, &kept.element);
  } catch (const FileError&) {
    LogCurrentException(station, kRoutine);
  }
}

void ForgetAirPosition(Station& station) {
  KeptAir& kept = station.engine.keptAir;
  if (!kept.wanted) return;
  kept.element = {};
  try {
    station.platform.machineFolder.Remove(kAir);
  } catch (const FileError&) {
    LogCurrentException(station, kRoutine);
  }
}

void TakeUpAirPosition(Station& station) {
  if (!station.engine.keptAir.wanted) return;
  try {
    TakeUp(station);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
}

}  // namespace zemo
