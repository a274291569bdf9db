// Voice tracks in the stored lists: whether each has a sound and stands between the elements that
// it was made for.
#include <map>
#include <utility>
#include <vector>

#include "app/check/CheckParts.h"
#include "station/OnAirElement.h"
#include "station/TextForms.h"

namespace zemo {
namespace {

// One query for each table that a row of a list may point to. They give: CODE, file, length, exit
// point (both ms), intro (s).
constexpr std::pair<const char*, const char*> kSounds[] = {
    {"Discotheque", "SELECT CODE, FILENAME, DUREE, POINTSORTIE, INTRO FROM Discotheque"},
    {"DiscothequeJingle", "SELECT CODE, FILENAME, DUREE, POINTSORTIE, 0 FROM DiscothequeJingle"},
    {"DiscothequeVirgule", "SELECT CODE, FILENAME, DUREE, POINTSORTIE, 0 FROM DiscothequeVirgule"},
    {"GrillePub", "SELECT CODE, FILENAMEAUDIO, DUREE, 0, 0 FROM GrillePub"},
    {"VT",
     "SELECT CODE, FILENAME, DUREE, CASE WHEN CUT <> 0 THEN POINTSORTIE ELSE 0 END, 0 FROM VT"}};

struct ListPlace {
  std::string list;
  int64_t kind = 0, record = 0;
  OnAirElement element;
};

class VoiceTrackCheck {
 public:
  VoiceTrackCheck(const ReadOnlyBase& base, Findings& findings)
      : base_(base), findings_(findings) {}

  void Look() {
    try {
      ReadMadeFor();
    } catch (const BaseError& error) {
      findings_.Warning("voicetrack", "Raccords", error.what());
    }
    ReadSounds();
    const std::vector<ListPlace> places = ReadPlaces();
    for (size_t i = 0; i < places.size(); ++i) {
      if (places[i].kind != Element::kVoiceTrack) continue;
      const bool first = i == 0 || places[i - 1].list != places[i].list;
      const bool last = i + 1 == places.size() || places[i + 1].list != places[i].list;
      LookAt(places[i], first ? nullptr : &places[i - 1].element,
             last ? nullptr : &places[i + 1].element);
    }
  }

 private:
  void ReadMadeFor() {
    if (base_.Rows("SELECT 1 FROM sqlite_master WHERE name = 'Raccords' COLLATE NOCASE").empty())
      return;
    base_.Query(
        "SELECT VT, FICHIERAVANT, DUREEAVANT, PSAVANT, FICHIERAPRES, INTROAPRES FROM "
        "Raccords",
        [&](const ReadOnlyBase::Row& row) {
          TrackNeighbours& made = madeFor_[AsInt(row[0])];
          made.fileBefore = AsText(row[1]);
          made.lengthBeforeMs = AsInt(row[2]);
          made.exitBeforeMs = AsInt(row[3]);
          made.fileAfter = AsText(row[4]);
          made.introAfterSec = AsInt(row[5]);
        });
  }

  void ReadSounds() {
    for (const auto& [table, query] : kSounds)
      base_.Query(query, [&, table = table](const ReadOnlyBase::Row& row) {
        OnAirElement& element = sounds_[{table, AsInt(row[0])}];
        element.file = AsText(row[1]);
        element.lengthMs = AsInt(row[2]);
        element.exitMs = AsInt(row[3]);
        element.introSec = AsInt(row[4]);
      });
  }

  OnAirElement SoundOf(const char* table, int64_t record) const {
    const auto sound = sounds_.find({table, record});
    return sound == sounds_.end() ? OnAirElement() : sound->second;
  }

  std::vector<ListPlace> ReadPlaces() {
    std::vector<ListPlace> places;
    base_.Query(
        "SELECT Playlist.CODE, Playlist.LIBELLE, Pls.DISCOTHEQUE, Pls.FICHE FROM Pls JOIN "
        "Playlist ON Playlist.CODE = Pls.NUMPLS ORDER BY Playlist.CODE, Pls.CODE",
        [&](const ReadOnlyBase::Row& row) {
          ListPlace place{
              AsText(row[0]) + " " + Trim(AsText(row[1])), AsInt(row[2]), AsInt(row[3]), {}};
          if (const char* table = TableOfKind(place.kind))
            place.element = SoundOf(table, place.record);
          places.push_back(std::move(place));
        });
    return places;
  }

  void LookAt(const ListPlace& place, const OnAirElement* before, const OnAirElement* after) {
    if (sounds_.count({"VT", place.record}) == 0) return;  // told with the list's other rows
    const std::string what = std::to_string(place.record) + " in list " + place.list;
    if (Trim(place.element.file).empty()) findings_.Error("voicetrack", what, "was never recorded");
    const auto made = madeFor_.find(place.record);
    if (made == madeFor_.end()) return;
    const TrackNeighbours now = NeighboursOf(before, after);
    const std::string why = WhyOf(FaultOfNeighbours(made->second, now), made->second, now);
    if (!why.empty()) findings_.Warning("voicetrack", what, why);
  }

  // Empty where there is no fault.
  static std::string WhyOf(NeighbourFault fault, const TrackNeighbours& made,
                           const TrackNeighbours& now) {
    const auto named = [](const std::string& file) { return file.empty() ? "nothing" : file; };
    switch (fault) {
      case NeighbourFault::kOtherBefore:
        return "was made to follow " + named(made.fileBefore) + " and follows " +
               named(now.fileBefore);
      case NeighbourFault::kChangedBefore:
        return "was made for another length or exit point of " + now.fileBefore;
      case NeighbourFault::kOtherAfter:
        return "was made to lead into " + named(made.fileAfter) + " and leads into " +
               named(now.fileAfter);
      case NeighbourFault::kChangedAfter:
        return "was made for another intro of " + now.fileAfter;
      case NeighbourFault::kNone:
        break;
    }
    return "";
  }

  const ReadOnlyBase& base_;
  Findings& findings_;
  std::map<int64_t, TrackNeighbours> madeFor_;                      // by CODE of VT
  std::map<std::pair<std::string, int64_t>, OnAirElement> sounds_;  // by table and CODE
};

}  // namespace

void CheckVoiceTracks(const ReadOnlyBase& base, Findings& findings) {
  if (base.Rows("SELECT 1 FROM Pls WHERE DISCOTHEQUE = -30 LIMIT 1").empty()) return;
  VoiceTrackCheck(base, findings).Look();
}

}  // namespace zemo
