// What the station's voice tracks were recorded between, in a side table of the base
// (store/SideTables.h).
#pragma once

#include <cstdint>
#include <optional>

#include "station/TrackNeighbours.h"

namespace zemo {

class Database;
class StationBase;
struct TableDef;

// "Raccords", with its fields and index.
const TableDef& NeighboursTable();

// Of the track with that CODE of VT; nullopt where nothing was kept, or what holds it is damaged:
// the track airs without. Throws StoreError for what may pass.
std::optional<TrackNeighbours> FindNeighbours(Database& database, int64_t code);

// In place of what was kept of that track. Where the table has to be made the others are opened
// anew: not inside a transaction. Throws StoreError.
void StoreNeighbours(StationBase& base, int64_t code, const TrackNeighbours& neighbours);

}  // namespace zemo
