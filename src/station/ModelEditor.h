// The model editor's tables, under the names of its controls: what the station's week holds, as its
// screen shows and changes it. The routines stand in scheduling/ModelGrids.h and ModelEditor.h.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "station/TextGrid.h"

namespace zemo {

// Thread: the logic's. Writers: the editor; the first request or the editor's screen, whichever
// comes first, loads the lists on offer.
struct ModelEditor {
  bool loaded = false;  // Form_Load ran; the screen stays loaded from then on
  int JourSemaine = 0;  // selected day, 1 Monday to 7 Sunday; 0 none yet
  std::string Caption;  // by Squelette and Langue

  // Row 0 the hours, rows 1 to R-2 the genres, row R-1 the totals; column 0 the genre, h+1 the hour
  // h in whole per cent.
  TextGrid Models;
  GridPlace ModelsPlace;  // selected cell
  // Row 0 the hours, rows from 1 the positions; column h the genre of the hour h, or empty.
  TextGrid ModelSquelette;
  GridPlace ModelSquelettePlace;
  // Row 0 the heading; column 0 POURCENT, column 1 VARIETE.
  TextGrid GVariete;
  GridPlace GVarietePlace;

  struct GenreCount {
    std::string genre;
    std::string count;      // titles of the library, "0000"
    std::string positions;  // of the day's skeleton; empty for the percentage model
  };
  std::vector<GenreCount> Stats;

  std::vector<std::string> PopGenre;     // genres on offer
  std::vector<std::string> PopPourCent;  // "0" to "100" in steps of 5

  std::set<std::string> backupsFailing;  // files that could not be written, and that is logged
};

}  // namespace zemo
