// The look-up by number that most of the logic makes.
#pragma once

#include <cstdint>

#include "store/Recordset.h"

namespace zemo {

// Positions a table cursor on the row of that CODE; false when there is none. Throws StoreError.
inline bool SeekCode(Recordset& table, int64_t code) {
  table.SetIndex("CODE");
  table.Seek("=", code);
  return !table.NoMatch();
}

}  // namespace zemo
