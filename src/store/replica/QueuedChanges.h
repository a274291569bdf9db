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

// Of the queue's writes up to the place `last`. Inside a transaction, so that the queue and the
// rows are of one moment. Throws StoreError.
QueuedWrites ChangesUpTo(Connection& replica, int64_t last);

// The row's values in one line, for a person; empty: it is gone.
std::string RowInWords(Connection& replica, std::string_view table, int64_t number);

}  // namespace zemo
