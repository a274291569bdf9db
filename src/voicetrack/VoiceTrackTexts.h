// The texts of the voice track editor in the four languages, by the names of its controls: the text
// beside a field by "For." and the field's name.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "station/LanguageTexts.h"
#include "station/TrackNeighbours.h"

namespace zemo {

struct TrackJoin;
struct VoiceTrackEditor;

std::span<const Word> VoiceTrackCaptions();

std::string ShownCut(const VoiceTrackEditor& editor, int langue);  // the caption of CheckCut
std::string ShownFault(NeighbourFault fault, int langue);          // empty for none
std::string ShownState(const TrackJoin& join, int langue);         // done, missing, or its fault
std::string ShownFigure(int64_t ms);  // "1:05.3", with a minus ahead below 0

}  // namespace zemo
