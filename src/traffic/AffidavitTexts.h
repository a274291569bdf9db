// The words of the affidavit's window and paper in the four languages, by the names of its
// controls: a head of the list by its column ("ListDiff.0"), the text beside a field by "For." and
// its name.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "station/LanguageTexts.h"

namespace zemo {

std::span<const Word> AffidavitCaptions();
std::string AffidavitWord(std::string_view name, int langue);

// Why a cross did not air, as MakeAffidavit has it.
std::string ShownReason(const std::string& missed, int langue);

}  // namespace zemo
