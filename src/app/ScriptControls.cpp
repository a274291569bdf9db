#include "app/ScriptControls.h"

#include <algorithm>
#include <iterator>

#include "station/TextForms.h"

namespace zemo {

namespace {
// By screen. Those of the main screen have their effect in OnAir::SetCheck, those of the settings
// while these are open; the others have it by `put`, and ticking one fails.
constexpr std::string_view kCheckControls[] = {
    // main screen
    "OptionDirect",
    "CheckNoJingle",
    "CheckExtrait",
    "MnuStartStop",
    "MnuPCProduction",
    "MnuPasseWord",
    // settings
    "CheckPub",
    "CheckRubrique",
    "CheckJingleCourt",
    "GraphiqueMini",
    "CheckDepartJingle",
    "OptionOptimise",
    "CheckDelPub",
    "CheckModel",
    "CheckInstrumental",
    "CheckPubToph",
    "CheckNational",
    "JingleExtraitYN",
    "CheckExtraitAuto",
    "CheckAutoPlay",
    "RapportSquelette",
    "CheckDoublonYN",
    // library
    "CheckSurimpression",
    "CheckJingleRacro",
    // sound file selector
    "SelectAll",
    // skeleton dialogue
    "Redondance",
    // voice tracks
    "CheckCut",
    "CheckTest",
};
}  // namespace

bool IsCheckControl(std::string_view name) {
  return std::any_of(std::begin(kCheckControls), std::end(kCheckControls),
                     [&](std::string_view control) { return EqualNoCase(name, control); });
}

}  // namespace zemo
