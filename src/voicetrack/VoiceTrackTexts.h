// The texts of the voice track editor in the four languages, by the names of its controls: the text
// beside a field by "For." and the field's name.
#pragma once

#include <span>
#include <string>

#include "station/LanguageTexts.h"

namespace zemo {

struct VoiceTrackEditor;

std::span<const Word> VoiceTrackCaptions();

std::string ShownCut(const VoiceTrackEditor& editor, int langue);  // the caption of CheckCut

}  // namespace zemo
