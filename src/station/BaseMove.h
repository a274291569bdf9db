// The whole base of a station from its file to a server, and back. What is moved is read twice and
// held against what it was before the station's folder names it.
#pragma once

#include <string>
#include <vector>

#include "store/CarryOver.h"

namespace zemo {

struct Station;

struct MovedBase {
  std::vector<TableSum> tables;
  std::string to;      // path of the file, or URL without a password
  std::string backup;  // name of the file, or of the server's schema, that keeps the base as it was
  std::string notice;  // what could not be done behind the move; empty: nothing
};

// The station's base is closed, and stays so: who goes on with it makes another Station. At every
// instant the folder names one whole base; up to the end it is the old one. Throws StoreError or
// std::runtime_error where it cannot be done: nothing is changed in the folder then. kErrLocked
// where somebody else works on the base. `url` shows in no error. Thread: the logic's.
MovedBase MoveBaseToServer(Station& station, const std::string& url, const TableDone& done);
MovedBase MoveBaseToFile(Station& station, const TableDone& done);

}  // namespace zemo
