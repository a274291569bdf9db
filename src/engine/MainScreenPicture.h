// The picture of the main on-air screen, under the names of its controls: texts, visibility and
// colours as they follow from the station's state at that moment. One direction: nothing is read
// back from here.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

struct Station;

inline constexpr uint32_t kLedOn = 65280;     // bright green
inline constexpr uint32_t kLedOff = 32768;    // dark green
inline constexpr uint32_t kLightOnAir = 255;  // of LblFeu: the voice track is heard

struct MainScreen {
  struct Lamp {
    std::string text;
    bool visible = false;
    uint32_t colour = 0;  // 0xBBGGRR
  };

  // --- the head ---
  std::string LblMode, InfoDate, LblDateTitre, LblArtiste;
  std::string Temp;        // "--:--" before the first tick
  int32_t Tmn = 0;         // whole minutes remaining
  int32_t Tss = 0;         // seconds of it
  std::string LblEncours;  // how long the output has run
  std::string LblLongueur, PSortie;
  int VuMettrePercent = 0;  // progress bar
  Lamp LblTopage, LblFeu, LblIntro;
  bool voiceTrackHeard = false;  // LblFeu tells of it
  struct {
    bool visible = false;
    int32_t elapsedSec = 0;
    int32_t lengthSec = 0;
  } VueIntro;  // countdown of the introduction

  // --- controls and menus ---
  std::string CmdStopCaption, BtnSurImpressionCaption, BtnCopyPubCaption;
  bool ToolbarStartPressed = false;
  bool MnuPlaylistEnabled = true, MnuImprimeEnabled = true;
  bool MnuParametrageEnabled = true, MnuEditEnabled = true;  // barred by the lock
  bool BtnCopyPubEnabled = false;
  bool SearchVisible = true;  // Rech, LblRech, RechGenre, CheckExtrait, CmdMarqueurExtrait
  bool PictureNoJingleVisible = false;

  // --- the foot ---
  int32_t HHTot = 0, MnTot = 0, SSTot = 0;  // total of the list
  std::string LblOffsetBuffers, LblMaxPlayInfo;
  std::string LblInfo;
  bool LblInfoScrolling = false;
  uint32_t LedSat[4] = {kLedOff, kLedOff, kLedOff, kLedOff};
  Lamp LedJoystique;
};

MainScreen PictureOf(const Station& station);

// The overlay button while no key is heard.
inline constexpr const char* kOverlayAtRest = "Sur Impression";
inline constexpr const char* kNextCaption = "Next";
inline constexpr const char* kStopCaption = "Stop";

}  // namespace zemo
