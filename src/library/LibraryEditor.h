// The library screen without its window: what it shows, under the names of its controls. What its
// controls do: library/LibraryScreen.h, CardSound.h and HourPips.h.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "library/CardList.h"
#include "library/CardSound.h"
#include "library/HourMasks.h"
#include "library/JingleCard.h"
#include "library/MusicCard.h"

namespace zemo {

enum class LibraryTab { kMusic = 1, kJingles = 2, kShortElements = 3, kHourPips = 4 };
inline constexpr size_t kCardTabs = 3;  // all but the hour pips

// The codes of a tab's cards in the order in which the slider goes through them, as of a state of
// the base.
struct CardOrder {
  std::vector<int32_t> codes;
  int64_t changeCounter = -1;
  LibraryTab tab = LibraryTab::kMusic;
  int32_t option = 0;  // OptionTri, of the music
};

// The hour pips: a row an hour.
struct HourPipRow {
  std::string file;  // stored path, empty for none
  bool overlay = false;
  std::string days = "XXXXXXX";  // seven characters, Monday first, "X" where the pip is on
};

// Thread: the logic's. Owner: the window, a script or a test; it outlives every routine that works
// on it, the yields inside of them included. Writers: its owner (what was typed) and the routines.
struct LibraryEditor {
  bool open = false;
  LibraryTab TabStrip1 = LibraryTab::kMusic;

  // --- frame ---
  int32_t Slider1 = 0, Slider1Max = 0;  // position of the card shown, from 1; both 0 without cards
  int32_t OptionTri = 0;  // order of the music: CODE, AUTEUR, TITRE, GENRE, VARIETE, LABEL
  bool ReplacerEnabled = false, MnuDeleteEnabled = false;
  HourMasks masks;  // of the music card or the jingle shown
  int working = 0;  // routines at work that yield: this must not be destroyed meanwhile

  // --- tabs ---
  MusicCard music;
  JingleCard jingle;
  ShortElementCard other;
  std::array<HourPipRow, HourMasks::kHours> GTopH;
  int32_t pipHour = 0;  // the selected row
  CardList PLDisco, PLJingles, PLAutre;

  CardSound sound;  // of the music card shown

  std::vector<std::string> ChGenreList, ChLabelList, ChCDList, ChVarieteList;  // on offer

  // --- files that were picked and wait for Ajouter ---
  std::vector<std::string> ListLot;  // stored paths
  bool lotMode = false;
  std::vector<std::string> List1Tmp;  // files of the tab's table when Nouveau was chosen

  // --- what was loaded: what the controls showed of the card's row, with what was taken over since
  MusicCard loadedMusic;
  JingleCard loadedJingle;
  ShortElementCard loadedOther;
  HourMasks loadedMasks;
  std::array<HourPipRow, HourMasks::kHours> loadedPips;
  int64_t pipsCounter = 0;  // ForeignCounter, as of which they are what the base holds
  // What the last order stored, until another card is shown; the code is the last one's.
  struct Stored {
    int32_t cards = 0, code = 0;
  } stored;
  bool gone = false;  // the card shown was deleted elsewhere: Ajouter makes a new one of it
  std::array<int32_t, kCardTabs> cardPosition{};  // of each tab, from 1; 0 without cards
  std::array<int32_t, kCardTabs> cardCount{};     // as last looked at
  CardOrder order;

  size_t Tab() const { return static_cast<size_t>(TabStrip1) - 1; }
  bool OnCards() const { return TabStrip1 != LibraryTab::kHourPips; }
  int32_t& Position() { return cardPosition[Tab()]; }
  int32_t Code() const;  // of the card shown, 0 for a new one
  // As a new one, but that work goes on, and that who follows a list sees that it has gone.
  void Empty();
};

// Holds `working` over a routine that yields.
class LibraryWork {
 public:
  explicit LibraryWork(LibraryEditor& editor) : editor_(editor) { ++editor_.working; }
  ~LibraryWork() { --editor_.working; }
  LibraryWork(const LibraryWork&) = delete;

 private:
  LibraryEditor& editor_;
};

}  // namespace zemo
