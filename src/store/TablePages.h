// The pages of the file on which a table's rows stand, with a mark of what each holds: who keeps
// the table in memory reads only the rows of those pages again whose mark is another one, which
// costs a twentieth of reading all rows.
//
// The file's form is SQLite's, described at sqlite.org/fileformat2.html and fixed for good: a tree
// of pages by the row's key; its leaves hold the rows, and what does not fit there stands on a
// chain of further pages. They are read as bytes while a read lock is held, so that nobody writes
// to the file meanwhile and no journal is waiting to be played back.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "store/Database.h"

namespace zemo {

class Connection;

// Two numbers made of all bytes in the order in which they stand. That different pages have the
// same ones comes to pass no sooner than that memory gives back what was never written to it.
using PageMark = std::array<uint64_t, 2>;

// Further bytes go into a mark, multiples of kMarkedBytes.
inline constexpr size_t kMarkedBytes = 32;
void AddToMark(PageMark& mark, std::string_view bytes);

struct TablePage {
  int64_t lastKey;  // the page holds all rows above the last key of the page before, up to this
  int rows;
  PageMark mark;      // of the page and of what belongs to its rows elsewhere
  int filePages = 1;  // that were read for it: with those on which its rows go on
};

// As Database::ReadPages. Thread: the logic's. Throws StoreError.
bool ReadTablePages(Connection& connection, std::string_view table, int64_t afterKey,
                    const Database::TakePage& take);

}  // namespace zemo
