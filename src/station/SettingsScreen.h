// The settings screen, under the names of its controls. The routines stand in
// settings/SettingsScreen.h (load and save) and settings/SettingsControls.h (what the operator
// does).
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "store/CnfFields.h"

namespace zemo {

// Thread: the logic's. Writers: SettingsLoad and the operator's hand. A slider, box, option or
// combo holds its number; a text box or spinner its text, as it was typed.
struct SettingsScreen {
  static constexpr size_t kFilterRows = 80;

  bool open = false;

  // --- preferences, mix points, levels ---
  int32_t EnchDef = 0, EnchPub = 0, EnchToph = 0, EnchJingles = 0, HsFadeOut = 0;  // ms
  int32_t Volume = 0, VolumeSousImp = 0, VolumeSurImp = 0, VolumePub = 0, VolumeRub = 0;
  std::string MaxPlay;              // ms
  std::string Buffers, NbrBuffers;  // bytes; a number of them
  std::string SpinRequette;         // minutes
  std::string SpinVeille;           // minutes, 0 for never
  std::string TexteV;
  int32_t GraphiqueMini = 0, PictureColor = 0;  // 0xBBGGRR
  int32_t Langue = 0;
  std::vector<std::string> LangueNames;

  // --- sound card ---
  std::vector<std::string> PlayNames;          // of the output devices, in both combos
  std::vector<std::string> PlayKeys;           // what each of them is known again by
  int32_t PlayCombo = -1, PlayPreecoute = -1;  // device, from 0; -1 none chosen

  // --- spots, news and jingles ---
  int32_t CheckPub = 0, CheckRubrique = 0, CheckDelPub = 0;
  std::string FileAvantPub, FileApresPub;  // stored paths
  std::string JingleMn, JingleMnIntro;     // minutes
  int32_t CheckJingleCourt = 0, CheckDepartJingle = 0, JingleExtraitYN = 0, CheckExtraitAuto = 0;
  std::string SpinInExtrait, SpinOutExtrait;  // s

  // --- requests and optimisation ---
  int32_t CheckModel = 0, OptionOptimise = 0;  // option: 0 or 1
  int32_t CheckInstrumental = 0, CheckPubToph = 0, CheckNational = 0;
  std::string SpinEcartArtiste;  // titles
  std::string SpinDecalDiff;     // hour bands
  std::string SpinAvantoph;      // per cent
  std::string SpinOptimise;      // minute of the hour
  std::string SpinOffset;        // second of the last minute

  // --- communication ---
  int32_t PortCom = 0, OptionSat = 0;  // option, 0 to 4
  std::string SpinImpulsion;           // s; may be empty
  int32_t ComboJoystiquePort = 0;
  std::vector<std::string> JoystickPorts;  // numbers, from "0" for none
  std::string Setting;                     // line parameters, as "4800,N,8,1"; not stored
  std::string InfoERR;                     // what became of the port
  std::string LblJoystique;                // "Yes" or "No"

  // --- others ---
  std::string SpinPurge;  // days
  int32_t CheckAutoPlay = 0, RapportSquelette = 0, CheckDoublonYN = 0;
  std::string SpinRapportDiff;  // rows

  // --- lists ---
  std::array<bool, 24> Instru{};  // selected hours
  bool instruFromFile = false;    // there is one, and entries read "00h00" instead of "00"
  std::array<std::pair<std::string, std::string>, kFilterRows> Filtre;  // "de", "à"
  int FiltreRow = 0, FiltreColumn = 0;                            // selected cell, both from 0
  std::string ChFiltre;                                           // typed for it
  std::vector<std::string> JourSemaineNames;                      // Monday first
  int JourSemaine = 0;                                            // chosen weekday, 0 for Monday
  std::vector<std::string> ComboHeure, HeureArretSystem, Topage;  // times of that weekday
  std::array<std::vector<std::string>, 3> timesRead;  // the same as they were read or written last
  // By the list, as timesRead: what was typed for it, and its chosen entry.
  std::array<std::string, 3> timeTyped;
  std::array<std::optional<size_t>, 3> timeChosen;
  std::string ChEdit;                    // typed for Topage
  std::array<std::string, 4> ChDecoupe;  // minutes, for BtnInti; empty for none

  // --- what could be read, and so may be written back. A control that could not be read keeps its
  // place empty, and what is stored stays as it is until the operator gives it a value ---
  std::bitset<Cnf::kFields + 1> fieldHeld;  // by ordinal of Cnf
  // What the fields that are written were loaded or stored as, in their order, and the
  // ForeignCounter as of which the base holds that.
  std::vector<std::string> loadedFields;
  int64_t counter = 0;
  bool audioHeld = false, timesHeld = false, topageHeld = false, instruHeld = false,
       filtreHeld = false;
};

}  // namespace zemo
