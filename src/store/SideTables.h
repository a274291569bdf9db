// Tables of the base beside the thirteen of a station: each is made when the first row comes, and a
// base without it is as whole.
#pragma once

#include "store/TableDefs.h"

namespace zemo {

class StationBase;

Field SideField(const char* name, FieldType type);

// The table is there, with its indexes, whoever made it. Where it has to be made it opens the
// others anew: not inside a transaction. Throws StoreError; the others are open then all the same.
void RequireSideTable(StationBase& base, const TableDef& table);

}  // namespace zemo
