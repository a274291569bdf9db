// Where the three sounds of the join stand on one time line, which is that of the element before:
// what is drawn of them, what the presenter has to fill, and from where it is heard.
#pragma once

#include <cstdint>
#include <optional>

namespace zemo {

struct Station;
struct VoiceTrackEditor;

// ms of the element before; each span ends where it is 0 long for a sound that is not there.
struct JoinPlan {
  int32_t exitMs = 0;      // the exit point of the element before
  int32_t beforeToMs = 0;  // where its fade ends
  int32_t trackFromMs = 0, trackToMs = 0;
  int32_t afterFromMs = 0;  // where the element after begins
  int32_t introToMs = 0;    // and where its intro ends
  bool hasTrack = false, hasAfter = false;
  bool ducks = false;  // the track lies over the others
  bool operator==(const JoinPlan&) const = default;
};

// `fadeMs`: the station's fade of an element at its exit point.
JoinPlan PlanOf(const VoiceTrackEditor& editor, int32_t fadeMs);

// Up to the end of the intro: from the track's place, before there is one from the exit point on.
// Nothing where the track is an element of its own, or no element follows.
std::optional<int32_t> TimeToFillMs(const VoiceTrackEditor& editor);

namespace VoiceTracks {

int32_t FadeMs(Station& station);

// What of the join is heard now; nothing while it is not.
std::optional<int32_t> HeardAtMs(const Station& station, const VoiceTrackEditor& editor);
// What is left up to the end of the intro, below 0 behind it: of the join that is heard, else of
// the recording that runs. Nothing where there is neither, and where TimeToFillMs has nothing.
std::optional<int32_t> CountdownMs(const Station& station, const VoiceTrackEditor& editor);

}  // namespace VoiceTracks

}  // namespace zemo
