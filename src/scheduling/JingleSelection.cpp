// The seven searches, each a query in the order of Lastdiff of which the first row that passes is
// the pick, and what is done with a pick: a row of the list, or an overlay on slot 2.
#include "scheduling/JingleSelection.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

#include "library/OnAirRows.h"
#include "platform/SoundChain.h"
#include "platform/SoundSource.h"
#include "reports/AirWrites.h"
#include "reports/BroadcastReport.h"
#include "scheduling/HourFilter.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

using RowQuery = std::unique_ptr<Recordset>;

// --- common pieces ---

// The flags that stop every automatic jingle; the end-of-hour fitting stops some of them beside.
bool JinglesStopped(const Station& station) {
  const EngineState& engine = station.engine;
  return engine.NoJingleActive || engine.VoiceTrackState != 0 || engine.CheckExtrait;
}

// No jingle goes before a row that is no music.
bool NoMusicNext(const Station& station) {
  return !station.PL.Empty() && station.PL.Row(1).code < 0;
}

// Moves to the first row whose date window is open; false when there is none.
bool MoveToOpenWindow(const Station& station, Recordset& jingles) {
  const std::string today = MonthDay(station.Now());
  while (!jingles.Eof() && !InDateWindow(jingles.Text("MMJJDebut"), jingles.Text("MMJJFin"), today))
    jingles.MoveNext();
  return !jingles.Eof();
}

// A routine of the selection and what it was asked about, for the log.
struct Search {
  const char* routine;
  std::string detail;
};

// The pick is in the list or on slot 2 already: a base that cannot take its mark now gets it later.
void MarkPlayed(Station& station, const Search& search, AirWrite::Kind kind,
                const Recordset& pick) {
  WriteOrKeep(station, {.kind = kind,
                        .code = pick.Int("CODE"),
                        .row = NewReportRow(station),
                        .where = search.routine,
                        .detail = search.detail});
}

void InsertPick(Station& station, const char* routine, int row, OnAirElement element,
                const Recordset& pick) {
  station.PL.Insert(row, std::move(element));
  station.events.Jingle(routine, static_cast<int32_t>(pick.Int("CODE")), pick.Text("FILENAME"),
                        false);
}

OnAirElement PlainRow(const Recordset& pick) {
  OnAirElement element = JingleRow(pick);
  element.genre.clear();
  return element;
}

void StoreLastJingle(Station& station, const Search& search, bool overlay, int64_t code) {
  WriteOrKeep(station,
              {.kind = overlay ? AirWrite::Kind::kLastIntroJingle : AirWrite::Kind::kLastJingle,
               .code = code,
               .row = NewReportRow(station),
               .where = search.routine,
               .detail = search.detail});
}

std::string CodeText(int64_t code) {
  return "Code = " + std::to_string(code);
}

// --- overlays ---

void LoadJingle(Station& station, const std::string& file, int volume) {
  SoundChain& sound = station.Sound();
  sound.SetChannelDone(kOverlaySlot, true);
  sound.SetVolume(kOverlaySlot, volume);
  if (file.empty()) throw SoundError("the jingle names no sound file");
  LoadOverlay(station, file);
}

void StartJingle(Station& station) {
  station.engine.IntroOverlayPending = false;
  StartOverlay(station, "jingle");
}

// The tick starts it when the introduction has only the jingle's length left.
void LeaveOverlayToTick(Station& station, const std::string& label) {
  station.engine.IntroOverlayPending = true;
  station.engine.IntroArmedTimer = station.Timer();
  station.engine.IntroOverlayLabel = label;
}

// False when the file cannot be used, which is logged: the jingle then only gives up its turn, so
// that a lost file does not stay first in the order for good.
bool ArmOverlay(Station& station, const char* routine, const Recordset& pick) {
  const auto code = static_cast<int32_t>(pick.Int("CODE"));
  const std::string file = pick.Text("FILENAME");
  const auto volume = static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSurImpression));
  try {
    LoadJingle(station, file, volume);
  } catch (const SoundError&) {
    station.engine.IntroOverlayPending = false;  // nothing is left on slot 2 to wait for
    LogCurrentException(station, routine, CodeText(code));
    return false;
  }
  station.events.Jingle(routine, code, file, true);
  if (station.base.CnfInt(Cnf::kJingleEnFinIntro) == 1)
    LeaveOverlayToTick(station, pick.Text("LIBELLE"));
  else
    StartJingle(station);
  return true;
}

// --- FindJingle ---

BoundQuery JingleQuery(Station& station, bool overlay, int32_t maxMs) {
  BoundQuery query{
      "SELECT * FROM DiscothequeJingle Where GENREASSOCIE = '' And JingleExtraitYN = 0"};
  query.Add(HourFilterOfNow(station));
  if (overlay) {
    query.Add(" AND SURIMPRESSION = 1 AND CODE <> ?", {station.base.CnfInt(Cnf::kJingleCodeIntro)});
    if (maxMs >= 1) query.Add(" AND DUREE < ?", {maxMs});
  } else {
    query.Add(" AND SURIMPRESSION = 0 AND CODE <> ?", {station.base.CnfInt(Cnf::kJingleCode)});
  }
  return query.Add(" ORDER BY Lastdiff");
}

// --- FindJingleBeforeTitle ---

// The title's plain jingles, else those of the artist as row 1 names it; one that it does not name
// has none.
RowQuery OpenTitleJingles(Station& station, int32_t titleCode) {
  Database& db = station.base.Db();
  RowQuery own = db.OpenRecordset(
      "SELECT * FROM DiscothequeJingle WHERE CODEASSOCIE = ? AND SURIMPRESSION = 0 "
      "ORDER BY LASTDIFF ASC;",
      {titleCode});
  if (!own->Eof() || station.PL.Empty() || Trim(station.PL.Row(1).title).empty()) return own;
  return db.OpenRecordset(
      "SELECT * FROM DiscothequeJingle WHERE ARTISTEASSOCIE = ? ORDER BY LASTDIFF ASC;",
      {station.PL.Row(1).title});
}

// Row 2 as the list stands now: when a jingle went in before the title, that is before the title
// too.
int RowBehindTitle(const Station& station) {
  const bool jingleThere = station.PL.Count() >= 2 && station.PL.Row(2).code == Element::kJingle;
  return jingleThere ? 3 : 2;
}

// --- FindExtractJingle ---

OnAirElement NoAnnouncementRow() {
  OnAirElement element;
  element.title = kExtractAnnouncement;
  element.secondLine = "NO JINGLE";
  element.genre = "Jingle";
  element.code = Element::kJingle;
  element.lengthMs = 0;
  element.exitMs = 0;
  return element;
}

}  // namespace

void FindJingle(Station& station, bool overlay, int32_t maxMs) {
  constexpr const char* kRoutine = "FindJingle";
  if (JinglesStopped(station) || station.engine.FittingActive) return;  // 1
  if (NoMusicNext(station)) return;                                     // 2
  int64_t code = 0;
  try {
    const BoundQuery asked = JingleQuery(station, overlay, maxMs);
    const RowQuery jingles = station.base.Db().OpenRecordset(asked.text, asked.values);  // 3
    if (!MoveToOpenWindow(station, *jingles)) return;                                    // 4
    code = jingles->Int("CODE");
    if (overlay)  // 5
      ArmOverlay(station, kRoutine, *jingles);
    else
      InsertPick(station, kRoutine, 1, PlainRow(*jingles), *jingles);
    const Search search{kRoutine, CodeText(code)};
    StoreLastJingle(station, search, overlay, code);                       // 6
    MarkPlayed(station, search, AirWrite::Kind::kJinglePlayed, *jingles);  // 7
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, CodeText(code));
  }
}

bool FindAssociatedJingle(Station& station, int32_t titleCode) {
  constexpr const char* kRoutine = "FindJingleAssocie";
  if (JinglesStopped(station)) return false;
  bool found = false;
  try {
    const RowQuery jingles = station.base.Db().OpenRecordset(
        "SELECT * FROM DiscothequeJingle WHERE CODEASSOCIE = ? AND SURIMPRESSION = 1 "
        "Order By Lastdiff",
        {titleCode});
    if (jingles->Eof()) return false;
    found = ArmOverlay(station, kRoutine, *jingles);
    MarkPlayed(station, {kRoutine, CodeText(titleCode)}, AirWrite::Kind::kJinglePlayed, *jingles);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, CodeText(titleCode));
  }
  return found;
}

void FindJingleBeforeTitle(Station& station, int32_t titleCode) {
  constexpr const char* kRoutine = "FindJingleAssocieAvantTitre";
  EngineState& engine = station.engine;
  if (engine.CodeEnCours < 0 || JinglesStopped(station)) return;
  try {
    const RowQuery jingles = OpenTitleJingles(station, titleCode);  // 1, 2
    if (jingles->Eof()) return;
    engine.LastJingleTimer = station.Timer();  // 3: it counts as the jingle of the moment
    engine.LastIntroJingleTimer = station.Timer();
    engine.LastAssociationTimer = station.Timer();
    bool before = false;
    bool behind = false;
    for (; !jingles->Eof(); jingles->MoveNext()) {  // 4
      const int64_t end = jingles->Int("ENDOFTITRE");
      bool& placed = end == 1 ? behind : before;
      if (placed || end < 0 || end > 1) continue;
      placed = true;
      const int row = end == 1 ? RowBehindTitle(station) : 1;
      InsertPick(station, kRoutine, row, PlainRow(*jingles), *jingles);
      MarkPlayed(station, {kRoutine, CodeText(titleCode)}, AirWrite::Kind::kJinglePlayed, *jingles);
    }
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, CodeText(titleCode));
  }
}

bool FindGenreJingle(Station& station, const std::string& genre) {
  constexpr const char* kRoutine = "FindJingleAssocieGenre";
  const EngineState& engine = station.engine;
  if (JinglesStopped(station) || engine.FittingActive || NoMusicNext(station)) return false;
  if (engine.CodeEnCours < 0 || genre.empty()) return false;
  bool found = false;
  try {
    BoundQuery asked{"SELECT * FROM DiscothequeJingle WHERE GENREASSOCIE = ?", {genre}};
    asked.Add(HourFilterOfNow(station)).Add(" AND SURIMPRESSION = 0  ORDER BY Lastdiff");
    const RowQuery jingles = station.base.Db().OpenRecordset(asked.text, asked.values);
    if (!MoveToOpenWindow(station, *jingles)) return false;
    InsertPick(station, kRoutine, 1, PlainRow(*jingles), *jingles);
    found = true;
    MarkPlayed(station, {kRoutine, "Genre = " + genre}, AirWrite::Kind::kJinglePlayed, *jingles);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, "Genre = " + genre);
  }
  return found;
}

void FindExtractJingle(Station& station, int16_t row) {
  constexpr const char* kRoutine = "FindJingleExtrait";
  int64_t code = 0;
  try {
    BoundQuery asked{"SELECT * FROM DiscothequeJingle Where JingleExtraitYN = 1"};
    asked.Add(HourFilterOfNow(station)).Add(" ORDER BY Lastdiff");
    const RowQuery jingles = station.base.Db().OpenRecordset(asked.text, asked.values);
    if (jingles->Eof()) {
      station.PL.Insert(row, NoAnnouncementRow());
      return;
    }
    code = jingles->Int("CODE");
    OnAirElement element = JingleRow(*jingles);
    element.secondLine = std::exchange(element.title, kExtractAnnouncement);
    element.genre = "Jingle";
    InsertPick(station, kRoutine, row, std::move(element), *jingles);
    MarkPlayed(station, {kRoutine, CodeText(code)}, AirWrite::Kind::kJinglePlayed, *jingles);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, CodeText(code));
  }
}

bool FindLinkJingle(Station& station) {
  constexpr const char* kRoutine = "FindJingleRacro";
  int64_t code = 0;
  bool done = false;
  try {
    const RowQuery elements = station.base.Db().OpenRecordset(
        "SELECT * FROM DISCOTHEQUEVIRGULE Where JingleRacro = 1 Order By Lastdiff");
    if (elements->Eof()) return false;
    code = elements->Int("CODE");
    OnAirElement element = OtherRow(*elements);
    element.genre.clear();
    InsertPick(station, kRoutine, 1, std::move(element), *elements);
    done = true;
    MarkPlayed(station, {kRoutine, CodeText(code)}, AirWrite::Kind::kOtherPlayed, *elements);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, CodeText(code));
  }
  return done;
}

std::string ComposerOfJingle(Station& station, const std::string& file) {
  try {
    const RowQuery jingles = station.base.Db().OpenRecordset(
        "SELECT * FROM DiscothequeJingle WHERE FILENAME Like ?", {file});
    if (!jingles->Eof()) return jingles->Text("AUTEURCOMPOSITEUR");
  } catch (const std::exception&) {
    LogCurrentException(station, "FindJingleCompositeur", file);
  }
  return {};
}

}  // namespace zemo
