// A whole base into another one, of whichever engine: every table with its fields, indexes and rows
// and the numbers that its key has given. Thread: the logic's. Operations throw StoreError.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zemo {

class Database;

// By which a table is known to be the same on both sides.
struct TableSum {
  std::string table;
  int64_t rows = 0;
  uint64_t checksum = 0;   // of every value of every row, in the order of the rows' numbers
  int64_t lastNumber = 0;  // that its key has given

  bool operator==(const TableSum&) const = default;
};

// `done` hears of each table that is carried over.
using TableDone = std::function<void(const TableSum&)>;

// All or nothing: one transaction of `to`, which may hold no table yet. That nobody writes in
// `from` meanwhile is the caller's to see to. What comes back was counted as it was read.
std::vector<TableSum> CarryOver(Database& from, Database& to, const TableDone& done);

// The whole base that `from` has open, as it is at one moment, into a new file; others write
// meanwhile. The file is made without waiting for the disk: the next change that is stored in it
// makes all of it outlive a loss of power.
void ReadOverToFile(Database& from, const std::string& path);

// Reads all of `to` again and holds it against what was read of `from`: throws where a table, a
// field, an index, a row or a number differs.
void VerifyCarried(Database& from, Database& to, const std::vector<TableSum>& carried);

}  // namespace zemo
