// What the main on-air screen shows, under the names of its controls: texts, visibility and colours
// as the engine sets them. A screen draws from here; nothing here draws.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

class LibrarySearch;

struct Label {
  std::string text;
  bool visible = true;
  uint32_t colour = 0;  // 0xBBGGRR

  Label& operator=(std::string newText) {
    text = std::move(newText);
    return *this;
  }
};

inline constexpr const char* kOverlayAtRest = "Sur Impression";
inline constexpr uint32_t kLedOn = 65280;        // bright green
inline constexpr uint32_t kLedOff = 32768;       // dark green
inline constexpr uint32_t kFeuArmed = 0x80C0FF;  // LblFeu: extract, voice track armed
inline constexpr uint32_t kFeuOnAir = 255;       // LblFeu: voice track on air

// Thread: the logic's. Writers: the engine's handlers.
struct MainScreen {
  std::string Caption = "Zemo Radio Pro";
  Label LblArtiste, Temp{"--:--"}, PSortie, LblEncours, LblLongueur, LblMode, InfoDate,
      LblOffsetBuffers, LblMaxPlayInfo, LblTopage{"", false}, LblFeu{"", false},
      LblIntro{"", false}, LblInfo{"ZEMO RADIO PRO"}, LblErreur, LblDateTitre;
  bool LblInfoScrolling = false;
  uint32_t CounterColour = 33023;             // of the counters, 0xBBGGRR
  Label LblProgression{"ZEMO RADIO", false};  // progress line of requests and fittings
  bool hourglass = false;                     // the pointer, while one of them works
  int32_t Tmn = 0;                            // whole minutes remaining
  int32_t Tss = 0;                            // seconds of it
  int VuMettrePercent = 0;                    // progress bar
  struct {
    bool visible = false;
    int32_t elapsedSec = 0;
    int32_t lengthSec = 0;
  } VueIntro;                               // countdown of the introduction
  int32_t HHTot = 0, MnTot = 0, SSTot = 0;  // total of the list
  std::string CmdStopCaption = "Stop";
  std::string BtnSurImpressionCaption = kOverlayAtRest;
  std::string MnuModelCaption;
  std::string BtnCopyPubCaption;
  bool MnuPlaylistEnabled = true, MnuImprimeEnabled = true, BtnPubJourXEnabled = true;
  // The lock: what it bars, its mark, and its dialogue.
  bool MnuParametrageEnabled = true, MnuEditEnabled = true, MnuPasseWordChecked = false;
  struct {
    bool open = false;
    bool asksNew = false;  // the new password; else the one that opens
    std::string Title, Label;
  } PasseWord;
  bool BtnCopyPubEnabled = false;
  bool ToolbarStartPressed = false;
  bool CadreRechVisible = false;          // search and browse frame of the live mode
  bool CadrePLVisible = false;            // stored-list editor
  BrowseRows ListRech;                    // browse list of the live mode
  std::string Rech;                       // the text that is searched for
  std::shared_ptr<LibrarySearch> search;  // what works for ListRech, from the first search on
  bool SearchVisible = true;  // Rech, LblRech, RechGenre, CheckExtrait, CmdMarqueurExtrait
  bool PictureNoJingleVisible = false;
  bool GPubJourVisible = false;
  bool GPubJourForInsertion = false;  // it came in place of the list to put a break in there
  bool Visible = false;
  bool SaverVisible = false;  // the screen saver covers the screen
  std::string TextVeille;     // its text as the settings had it when it opened
  uint32_t LedSat[4] = {kLedOff, kLedOff, kLedOff,
                        kLedOff};  // the indicator is the contact's state
  Label LedJoystique{"", false, kLedOff};

  // --- stored-list editor ---
  struct ListItem {
    std::string text;
    int32_t data = 0;
  };
  struct {
    std::vector<ListItem> items;
    int index = -1;
    std::string text;
  } ComboPLS;  // stored lists; data is the CODE
  std::string LblDate = "JJ/MM/ANNE";
  std::string ChHeure = "hh:mn";
  int32_t LblCodePL = 0;  // 0 for a new list
  int OptPls = 0;         // "ON", "ON-P", "OFF", "OFF-P"
  bool BntVoiceTrackVisible = false;
  bool BtnSauveEnabled = true;
};

}  // namespace zemo
