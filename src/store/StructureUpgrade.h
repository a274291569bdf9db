// A base of an older version gets the present structure: its tables are made anew where the count
// of their fields differs, and their rows carried over.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace zemo {

class StationBase;

inline constexpr char kTempTable[] = "TBTEMP";  // name of an old table while it is made anew

// The tables that are compared, in their order, and the order of the rows in the new table.
struct CheckedTable {
  const char* name;
  const char* sortField;
  const char* message;  // told the operator when it was made anew
};
extern const std::array<CheckedTable, 6> kCheckedTables;

// Whether its count of fields differs from the schema's. False for a table that the base lacks.
bool NeedsRebuild(StationBase& base, const CheckedTable& table);

// The old field "JingleExtrait" of the settings goes, where it stands at position 44 counted from
// 0. True when it did. Throws StoreError.
bool DropOldSetting(StationBase& base);

// The table under the present structure, with its rows, its numbers and what the old structure
// could not hold; all of it stored at one blow, so that a failure leaves the old table as it was.
// The tables are open again afterwards, in either case. Throws StoreError: kErrTableExists
// when a TBTEMP is there already; kErrFieldTooSmall and kErrOverflow when a value has no room in
// its field, with the field, how many rows have such a value and the first of them.
void RebuildTable(StationBase& base, const CheckedTable& table);

// After a change of the structure, or a failed one: the tables are open again, with their
// stand-ins.
void OpenTablesThatAreThere(StationBase& base);

// Every row of `source` into `target`, sorted; fields are matched by name, new ones get their
// defaults. Inside the caller's transaction. Throws StoreError.
void CopyTable(StationBase& base, std::string_view sortField, std::string_view target,
               std::string_view source);

}  // namespace zemo
