// The frames of the main on-air screen that the operator opens, and what is chosen and typed there.
// Widgets and scripts write it, and so do the operator's procedures; the logic reads it. What the
// screen shows of the engine is made elsewhere (engine/MainScreenPicture.h), and never read back.
// Thread: the logic's.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

class LibrarySearch;

// CadreRech, the search and browse frame of the live mode.
struct BrowseFrame {
  bool open = false;
  BrowseRows ListRech;
  std::string Rech;                       // the text that is searched for
  int charactersWanted = 0;               // the least, where Rech was too short; 0: it was not
  std::shared_ptr<LibrarySearch> search;  // what works for ListRech, from the first search on
};

// CadrePL, the editor of stored lists. While it is open PL is a list of its own date and hour.
struct StoredListEditor {
  struct Item {
    std::string text;
    int32_t data = 0;
  };
  struct Combo {
    std::vector<Item> items;
    int index = -1;
    std::string text;
  };

  // The list as it was loaded or stored, with what was taken over since.
  struct Loaded {
    std::string label, date, hour;
    int32_t option = 0;
    std::string rows;       // of the base, a line each
    std::string shownRows;  // what PL was then
    int64_t counter = 0;    // ForeignCounter, as of which this is what the base holds
  };

  bool open = false;
  Combo ComboPLS;  // stored lists; data is the CODE
  std::string LblDate = "JJ/MM/ANNE";
  std::string ChHeure = "hh:mn";
  int32_t LblCodePL = 0;  // 0 for a new list
  int OptPls = 0;         // "ON", "ON-P", "OFF", "OFF-P"
  bool saving = false;
  Loaded loaded;
};

// GPubJour on the screen.
struct GridFrame {
  bool open = false;
  bool forInsertion = false;  // it came in place of the list to put a break in there
  bool previewOffered =
      true;  // the preview of another day: while stopped, and on the toolbar's order
  std::string chosenMoment;   // of the row that was clicked last
  bool chosenIsSpots = true;  // the same: spots, else news
};

// The screen saver covers the screen.
struct Saver {
  bool open = false;
  std::string TextVeille;  // its text as the settings had it when it opened
};

// The password's dialogue.
struct LockDialogue {
  bool open = false;
  bool asksNew = false;  // the new password; else the one that opens
  std::string Title, Label;
};

}  // namespace zemo
