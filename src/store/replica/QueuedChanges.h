// What stands in a replica's queue, as the server is to be told it: of each row that was written
// its state now, whatever it went through.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/replica/Replica.h"

namespace zemo {

class Connection;

// Of the queue's writes up to the place `last`. Some rows at a time, so that no writer waits for
// all of it: a row that is written meanwhile is told as it is by then, and again with the write's
// own place. Not inside a transaction. Throws StoreError.
QueuedWrites ChangesUpTo(Connection& replica, int64_t last);

// The row's values in one line, for a person; empty: it is gone.
std::string RowInWords(Connection& replica, std::string_view table, int64_t number);

}  // namespace zemo
