// The model editor's tables, under the names of its controls: what the station's week holds, as its
// screen shows and changes it. The routines stand in scheduling/ModelScreen.h, ModelEditor.h and
// ModelGrids.h. A request reads a week of its own (scheduling/WeekModel.h).
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "station/TextGrid.h"

namespace zemo {

class GenreSupply;

enum class ModelGrid { kNone, kModels, kSkeleton, kVarieties };

// Thread: the logic's. Writers: the editor's routines alone.
struct ModelEditor {
  bool open = false;
  bool loaded = false;    // Form_Load ran: at each opening, or ahead of a first request
  bool skeleton = false;  // what the grid holds: a skeleton, else percentages
  int JourSemaine = 0;    // selected day, 1 Monday to 7 Sunday; 0 none yet
  std::string Caption;    // by Squelette and langue
  int64_t langue = 0;     // Langue as it was when Form_Load ran

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
  ModelGrid clicked = ModelGrid::kNone;  // whose cell was clicked last

  std::vector<TextGrid::Row> saved;  // of the day, as it would be stored; from its table
  int64_t counter = 0;               // ForeignCounter, as of which `saved` is what the base holds

  struct GenreCount {
    std::string genre;
    std::string count;      // titles of the library, "0000"
    std::string positions;  // of the day's skeleton; empty for the percentage model
  };
  std::vector<GenreCount> Stats;
  std::shared_ptr<const GenreSupply> supply;  // what Stats was made of; none before it was read
  uint64_t readings = 0;  // of the library, begun so far; a new one ends the one at work

  std::vector<std::string> PopGenre;     // genres on offer
  std::vector<std::string> PopPourCent;  // "0" to "100" in steps of 5

  std::set<std::string> backupsFailing;  // files that could not be written, and that is logged
};

}  // namespace zemo
