#include "voicetrack/TrackJoins.h"

#include <algorithm>

#include "station/Station.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

bool IsTrack(const OnAirElement& element) {
  return element.code == Element::kVoiceTrack;
}

// Of the list's rows around the place behind `row`, which is 0 ahead of the first.
struct JoinRows {
  const OnAirRow *before = nullptr, *track = nullptr, *after = nullptr;
};

TrackJoin JoinOf(const OnAirList& list, const JoinRows& rows, const VoiceTrackEditor& editor) {
  TrackJoin join;
  if (rows.before) {
    join.before = rows.before->key;
    join.titleBefore = TitleOf(*rows.before);
  }
  if (rows.after) join.titleAfter = TitleOf(*rows.after);
  if (rows.track) {
    join.track = rows.track->key;
    join.fault = FaultOfRow(list, list.RowOfKey(join.track));
  }
  if (editor.open)
    join.open = editor.rowKey != 0
                    ? join.track == editor.rowKey
                    : join.track == 0 && join.before != 0 && join.before == editor.beforeKey;
  return join;
}

void OpenBeside(Station& station, VoiceTrackEditor& editor, int step) {
  const std::vector<TrackJoin> joins = JoinsOf(station.PL, editor);
  if (joins.empty()) return;
  const auto open =
      std::find_if(joins.begin(), joins.end(), [](const TrackJoin& join) { return join.open; });
  if (open == joins.end()) return VoiceTracks::OpenJoin(station, editor, joins.front());
  const auto next = open - joins.begin() + step;
  if (next < 0 || next >= static_cast<std::ptrdiff_t>(joins.size())) return;
  VoiceTracks::OpenJoin(station, editor, joins[static_cast<size_t>(next)]);
}

}  // namespace

std::vector<TrackJoin> JoinsOf(const OnAirList& list, const VoiceTrackEditor& editor) {
  std::vector<TrackJoin> joins;
  const auto rowAt = [&](int row) {
    return row >= 1 && row <= list.Count() ? &list.Row(row) : nullptr;
  };
  for (int row = 1; row <= list.Count(); ++row) {
    const OnAirRow& here = list.Row(row);
    const OnAirRow* next = rowAt(row + 1);
    if (IsTrack(here)) {
      joins.push_back(JoinOf(list, {rowAt(row - 1), &here, next}, editor));
      continue;
    }
    const TrackJoin join = JoinOf(list, {&here, nullptr, next}, editor);
    const bool ofTrack = next && IsTrack(*next);
    if (join.open || (next && !ofTrack && here.code > 0)) joins.push_back(join);
  }
  return joins;
}

size_t MissingTracks(const std::vector<TrackJoin>& joins) {
  return static_cast<size_t>(std::count_if(joins.begin(), joins.end(),
                                           [](const TrackJoin& join) { return join.track == 0; }));
}

void VoiceTracks::OpenJoin(Station& station, VoiceTrackEditor& editor, const TrackJoin& join) {
  if (IsUnsaved(editor)) BtnSave_Click(station, editor);
  if (IsUnsaved(editor)) return;
  const int row = station.PL.RowOfKey(join.track != 0 ? join.track : join.before);
  if (row > 0) Open(station, editor, row);
}

void VoiceTracks::BtnSuivant_Click(Station& station, VoiceTrackEditor& editor) {
  OpenBeside(station, editor, 1);
}

void VoiceTracks::BtnPrecedent_Click(Station& station, VoiceTrackEditor& editor) {
  OpenBeside(station, editor, -1);
}

}  // namespace zemo
