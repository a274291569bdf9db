// The table of the settings, and what a control takes.
#include "settings/SettingsControls.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "settings/SettingsCouplings.h"
#include "station/OutputBuffers.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "store/StationBase.h"

namespace zemo {

namespace {

using S = SettingsScreen;
using K = ControlKind;

constexpr int64_t kMost16 = std::numeric_limits<int16_t>::max();
constexpr int64_t kMost32 = std::numeric_limits<int32_t>::max();
constexpr int64_t kMostColour = 0xFFFFFF;

SettingsControl Field(const char* name, int field, K kind,
                      std::variant<SettingsControl::Number, SettingsControl::Typed> place,
                      int64_t most, const char* unit, const char* meaning) {
  const zemo::Field& stored = FindSchemaTable("Cnf")->Fields[static_cast<size_t>(field) - 1];
  if (kind == K::kText) most = stored.Size;
  return {name, stored.Name.c_str(), StoredIn::kCnf, field, kind, place, most, unit, meaning};
}

SettingsControl Machine(const char* name, const char* value, StoredIn in, K kind,
                        std::variant<SettingsControl::Number, SettingsControl::Typed> place,
                        int64_t most, const char* unit, const char* meaning) {
  return {name, value, in, 0, kind, place, most, unit, meaning};
}

// The length of a text is its field's.
std::vector<SettingsControl> MakeControls() {
  using namespace Cnf;
  return {
      Field("EnchDef", kPmixDef, K::kSlider, &S::EnchDef, kMost16, "ms",
            "mix point of a music title that gives none of its own: how far before the end the "
            "next element starts"),
      Field("EnchPub", kPmixPubs, K::kSlider, &S::EnchPub, kMost16, "ms",
            "mix point of spots and news"),
      Field("EnchToph", kPmixToph, K::kSlider, &S::EnchToph, kMost16, "ms",
            "mix point of hour pips"),
      Field("EnchJingles", kPmixJingles, K::kSlider, &S::EnchJingles, kMost16, "ms",
            "mix point of jingles"),
      Field(
          "MaxPlay", kCycleMaxi, K::kNumber, &S::MaxPlay, kMost32, "ms",
          "maximum cycle: the longest run of the output stream before it is restarted, which costs "
          "up to 2 s of air; this output needs none, and at the highest number one comes in 24 "
          "days"),
      Field("Buffers", kBuffers, K::kNumber, &S::Buffers, kMost16, "bytes",
            "size of one audio buffer; takes effect at the next start"),
      Field("CheckPub", kPrioritePubs, K::kCheck, &S::CheckPub, 1, "", "spots have priority"),
      Field("JingleMn", kJingles, K::kNumber, &S::JingleMn, kMost16, "minutes",
            "time between two jingles"),
      Field("JingleMnIntro", kJinglesIntro, K::kNumber, &S::JingleMnIntro, kMost16, "minutes",
            "time between two voice jingles over an introduction"),
      Field("Volume", kVolumeMusique, K::kSlider, &S::Volume, kMost16, "",
            "music volume, by default; 16384 leaves the sound as it is"),
      Field("VolumeSousImp", kVolumeMusiqueSous, K::kSlider, &S::VolumeSousImp, kMost16, "",
            "music volume under an overlay"),
      Field("VolumeSurImp", kVolumeMusiqueSurImpression, K::kSlider, &S::VolumeSurImp, kMost16, "",
            "volume of what plays over the music"),
      Field("VolumePub", kVolumePubs, K::kSlider, &S::VolumePub, kMost16, "", "spot volume"),
      Field("HsFadeOut", kFadeOut, K::kSlider, &S::HsFadeOut, kMost16, "ms",
            "length of a fade-out"),
      Field("FileAvantPub", kJingleAvantPubs, K::kText, &S::FileAvantPub, 0, "",
            "sound file of the jingle before a set of spots"),
      Field("FileApresPub", kJingleApresPubs, K::kText, &S::FileApresPub, 0, "",
            "sound file of the jingle after a set of spots"),
      Field("Langue", kLangue, K::kOption, &S::Langue, 3, "",
            "interface language: 0 French, 1 English, 2 Portuguese, 3 Spanish"),
      Field("PortCom", kPortCom, K::kOption, &S::PortCom, 4, "",
            "serial port of the automaton; 0 for none"),
      Field("OptionSat", kEntreSat, K::kOption, &S::OptionSat, 4, "",
            "action on the automaton: 0 none, 1 input 1 auto start, 2 input 2 news satellite, 3 "
            "input 3 local programme, 4 input 4 jingles"),
      Field("SpinPurge", kPurgeRapport, K::kNumber, &S::SpinPurge, kMost16, "days",
            "the report is purged of what is older"),
      Field("CheckRubrique", kPrioriteRubriques, K::kCheck, &S::CheckRubrique, 1, "",
            "news has priority"),
      Field("PictureColor", kCouleurdesCompteur, K::kColour, &S::PictureColor, kMostColour, "",
            "colour of the counters: red + 256 x green + 65536 x blue"),
      Field("NbrBuffers", kNbrBuffers, K::kNumber, &S::NbrBuffers, kMost16, "",
            "number of audio buffers, 10 s in all at most; takes effect at the next start"),
      Field("CheckJingleCourt", kJingleCourt, K::kCheck, &S::CheckJingleCourt, 1, "",
            "manage short jingles"),
      Field("GraphiqueMini", kGraphiqueMini, K::kCheck, &S::GraphiqueMini, 1, "",
            "low graphics: no gradients on the main screen"),
      Field("CheckDepartJingle", kJingleEnFinIntro, K::kCheck, &S::CheckDepartJingle, 1, "",
            "insert the jingles at the end of the intro"),
      Field("SpinRequette", kTempRequette, K::kNumber, &S::SpinRequette, kMost16, "minutes",
            "length of a music request"),
      Field("SpinVeille", kVeille, K::kNumber, &S::SpinVeille, kMost16, "minutes",
            "idleness before the screen saver; 0 for none"),
      Field("TexteV", kTextVeille, K::kText, &S::TexteV, 0, "", "text of the screen saver"),
      Field("SpinAvantoph", kMiniFinHeure, K::kNumber, &S::SpinAvantoph, 100, "per cent",
            "least share of a song that must have played before the hour pip"),
      Field("OptionOptimise", kOptimiseToph, K::kOption, &S::OptionOptimise, 1, "",
            "end-of-hour optimisation before the hour pip: 0 off, 1 on"),
      Field("SpinOptimise", kHOptimise, K::kNumber, &S::SpinOptimise, 59, "minute",
            "minute of the hour from which the end-of-hour optimisation works"),
      Field("SpinImpulsion", kTempsMaxiImPulsion, K::kNumber, &S::SpinImpulsion, kMost16, "s",
            "longest automaton impulse; 0 for contacts that are held"),
      Field("CheckDelPub", kSuppressionPub, K::kCheck, &S::CheckDelPub, 1, "",
            "remove spot cards when their campaign ends"),
      Field("SpinOffset", kOffsetTopH, K::kNumber, &S::SpinOffset, 59, "s",
            "second of the last minute at which the hour pip is sent"),
      Field("CheckModel", kSquelette, K::kOption, &S::CheckModel, 1, "",
            "requests follow percentage models (0) or skeleton models (1)"),
      Field("CheckInstrumental", kInstrumental, K::kCheck, &S::CheckInstrumental, 1, "",
            "play instrumentals in the hours of Instru; ticking it clears CheckPubToph"),
      Field("SpinEcartArtiste", kEcartArtiste, K::kNumber, &S::SpinEcartArtiste, kMost16, "titles",
            "titles between two songs of the same artist"),
      Field("CheckPubToph", kPubAvecTopH, K::kCheck, &S::CheckPubToph, 1, "",
            "spots go with the hour pip; ticking it clears CheckInstrumental, and sets "
            "SpinOptimise to 48 from 53 on"),
      Field("VolumeRub", kVolumeRubriques, K::kSlider, &S::VolumeRub, kMost16, "", "news volume"),
      Field("CheckNational", kCheckNational, K::kCheck, &S::CheckNational, 1, "",
            "keep the national share in a skeleton request"),
      Field("JingleExtraitYN", kJingleExtraitYN, K::kCheck, &S::JingleExtraitYN, 1, "",
            "announce excerpts with a jingle"),
      Field("ComboJoystiquePort", kJoystiquePort, K::kOption, &S::ComboJoystiquePort,
            kJoystickPorts, "", "joystick port; 0 for none"),
      Field("SpinDecalDiff", kDecalDiff, K::kNumber, &S::SpinDecalDiff, kMost16, "hours",
            "automatic shift of the last x hour bands in a request"),
      Field("CheckExtraitAuto", kExtraitAuto, K::kCheck, &S::CheckExtraitAuto, 1, "",
            "excerpts of cards without excerpt points are made automatically"),
      Field("SpinInExtrait", kInExtrait, K::kNumber, &S::SpinInExtrait, kMost16, "s",
            "point of entry of an automatic excerpt"),
      Field("SpinOutExtrait", kOutExtrait, K::kNumber, &S::SpinOutExtrait, kMost16, "s",
            "length of an automatic excerpt"),
      Machine("CheckAutoPlay", "AutoPlay", StoredIn::kLocal, K::kCheck, &S::CheckAutoPlay, 1, "",
              "this machine goes on air when the program starts"),
      Machine("RapportSquelette", "RapportSquelette", StoredIn::kLocal, K::kCheck,
              &S::RapportSquelette, 1, "", "skeleton requests write their refusal file"),
      Machine("CheckDoublonYN", "CheckDoublonYN", StoredIn::kLocal, K::kCheck, &S::CheckDoublonYN,
              1, "", "a skeleton request lets doubles of an artist in"),
      Machine("SpinRapportDiff", "XRapport", StoredIn::kLocal, K::kNumber, &S::SpinRapportDiff,
              kMost16, "rows", "newest report rows exported at each element"),
      Machine("PlayCombo", "AudioOutID", StoredIn::kAudio, K::kOption, &S::PlayCombo, kMost16, "",
              "output device of the broadcast, from 0; -1 none chosen"),
      Machine("PlayPréecoute", "AudioOutPFLID", StoredIn::kAudio, K::kOption, &S::PlayPreecoute,
              kMost16, "", "output device of the prelisten, from 0; -1 none chosen"),
  };
}

bool IsTimeSlider(const SettingsControl& control) {
  return control.kind == ControlKind::kSlider && std::string_view(control.unit) == "ms";
}

std::string Refusal(const SettingsControl& control, std::string_view value,
                    const std::string& why) {
  return std::string(control.name) + ": \"" + FirstCharacters(OneLine(value), 40) + "\" " + why;
}

size_t Characters(std::string_view utf8) {
  size_t count = 0;
  for (const char byte : utf8) count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  return count;
}

std::optional<std::string> WhyNoText(const SettingsControl& control, std::string_view value) {
  if (!IsValidUtf8(value) || value.find('\0') != std::string_view::npos)
    return std::string(control.name) + ": that is no text";
  if (Characters(value) > static_cast<size_t>(control.most))
    return Refusal(control, value,
                   "is longer than " + std::to_string(control.most) + " characters");
  return std::nullopt;
}

std::optional<std::string> WhyNoNumber(const SettingsControl& control, std::string_view value) {
  const double number = Val(value);
  const double whole = std::trunc(number);
  if (whole >= static_cast<double>(LowestNumber(control)) &&
      whole <= static_cast<double>(control.most))
    return std::nullopt;
  const std::string unit = *control.unit ? " " + std::string(control.unit) : "";
  return Refusal(control, value,
                 "is outside " + std::to_string(LowestNumber(control)) + " to " +
                     std::to_string(control.most) + unit);
}

void Put(SettingsScreen& screen, const SettingsControl& control, std::string_view value) {
  if (const auto* number = std::get_if<SettingsControl::Number>(&control.place))
    screen.** number = ValInt(value);
  else
    screen.*std::get<SettingsControl::Typed>(control.place) = value;
  if (control.in == StoredIn::kCnf) screen.fieldHeld.set(static_cast<size_t>(control.field));
  if (control.in == StoredIn::kAudio) screen.audioHeld = true;
}

}  // namespace

const std::vector<SettingsControl>& SettingsControls() {
  static const std::vector<SettingsControl> controls = MakeControls();
  return controls;
}

const SettingsControl* FindSettingsControl(std::string_view name) {
  for (const SettingsControl& control : SettingsControls())
    if (EqualNoCase(name, control.name) || EqualNoCase(name, control.store)) return &control;
  return nullptr;
}

const SettingsControl* FindSettingsControl(int field) {
  for (const SettingsControl& control : SettingsControls())
    if (control.in == StoredIn::kCnf && control.field == field) return &control;
  return nullptr;
}

int64_t LowestNumber(const SettingsControl& control) {
  return control.in == StoredIn::kAudio ? -1 : 0;
}

std::string DefaultText(const SettingsControl& control) {
  if (control.in == StoredIn::kCnf)
    return AsText(
        FindSchemaTable("Cnf")->Fields[static_cast<size_t>(control.field) - 1].DefaultValue);
  if (control.in == StoredIn::kAudio) return "-1";
  return std::string_view(control.store) == "XRapport" ? std::to_string(kDefaultXRapport) : "0";
}

std::string ControlText(const SettingsScreen& screen, const SettingsControl& control) {
  if (const auto* number = std::get_if<SettingsControl::Number>(&control.place))
    return std::to_string(screen.**number);
  return screen.*std::get<SettingsControl::Typed>(control.place);
}

int64_t ControlNumber(const SettingsScreen& screen, const SettingsControl& control) {
  return ValInt(ControlText(screen, control));
}

std::string ControlLabel(const SettingsScreen& screen, const SettingsControl& control) {
  const auto number = static_cast<double>(ControlNumber(screen, control));
  char text[32] = "";
  if (IsTimeSlider(control))
    std::snprintf(text, sizeof text, "%g", number / 1000);
  else if (control.kind == ControlKind::kSlider)
    std::snprintf(text, sizeof text, "%.0f %%", number * 100 / static_cast<double>(control.most));
  else if (control.field == Cnf::kHOptimise)
    std::snprintf(text, sizeof text, "%.0f mn", number);
  return text;
}

namespace {

// Both settings of the buffers together say how far these reach.
std::optional<std::string> WhyNoBuffers(const SettingsScreen& screen,
                                        const SettingsControl& control, std::string_view value) {
  const bool size = control.field == Cnf::kBuffers;
  if (!size && control.field != Cnf::kNbrBuffers) return std::nullopt;
  const int64_t bytes = ValInt(size ? value : std::string_view(screen.Buffers));
  const int64_t buffers = ValInt(size ? std::string_view(screen.NbrBuffers) : value);
  const std::string why = WhyTooManyBuffers(bytes, buffers);
  return why.empty() ? std::nullopt : std::optional(std::string(control.name) + ": " + why);
}

}  // namespace

std::optional<std::string> SetControl(Station& station, SettingsDevices& devices,
                                      const SettingsControl& control, std::string_view value) {
  const bool text = control.kind == ControlKind::kText;
  if (auto why = text ? WhyNoText(control, value) : WhyNoNumber(control, value)) return why;
  if (auto why = WhyNoBuffers(station.settings, control, value)) return why;
  Put(station.settings, control, value);
  ControlChanged(station, devices, control);
  return std::nullopt;
}

}  // namespace zemo
