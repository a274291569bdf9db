// The texts of the report screen in the four languages, by the names of its controls: a head of a
// list by its column ("ListRap.0"), the text beside a field by "For." and the field's name. What
// the routines put into a label is French in the editor; a window shows it in the operator's words.
#pragma once

#include <span>
#include <string>

#include "station/LanguageTexts.h"

namespace zemo {

struct ReportEditor;

std::span<const Word> ReportCaptions();

std::string ShownCount(const ReportEditor& editor, int langue);  // LblCompteur

}  // namespace zemo
