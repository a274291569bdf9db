// What was measured of sound files, in a side table of the base (store/SideTables.h).
#pragma once

#include <optional>
#include <string_view>

#include "platform/Folder.h"
#include "platform/SoundMeasures.h"

namespace zemo {

class Database;
class StationBase;
struct TableDef;

// "Mesures", with its fields and indexes.
const TableDef& MeasuresTable();

// Of the file under this path, as cards store it, while size and time of change are those that it
// was measured at; nullopt otherwise, and for values that no sound can have. Without peaks, which
// the base does not hold. Throws StoreError.
std::optional<SoundMeasures> FindMeasures(Database& database, std::string_view storedPath,
                                          const SoundFileStamp& stamp);

// In place of what was kept of that path. `stamp` is of before the file was read. Where it has to
// make the table it opens the others anew: not inside a transaction. Throws StoreError.
void StoreMeasures(StationBase& base, std::string_view storedPath, const SoundFileStamp& stamp,
                   const SoundMeasures& measures);

}  // namespace zemo
