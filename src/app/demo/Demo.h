// The demo station: a library of music made up on the spot, with all that a station needs to go on
// air.
#pragma once

#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>

namespace zemo {

// How large a station to make. The default is an hour of music in about forty titles.
struct DemoSize {
  int titles = 40;            // at most 40
  double lengthFactor = 1.0;  // on the lengths of the catalogue; short elements keep 2 s, pips all
};

// What kept the station from being made; what() is one line.
struct DemoError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Makes the station in the folder `dir`, which is made when it is missing. Overwrites nothing but
// what an interrupted run left; "Triskin.MDB" appears last, when all is there. `progress` hears a
// line of text for each file. Works on several threads; calls `progress` on the caller's. Throws
// DemoError.
void MakeDemoStation(const std::string& dir, const DemoSize& size,
                     const std::function<void(const std::string& line)>& progress);

// The command `zemoradio demo DIR`: exit status 0 or 1, one line on `err` when it fails.
int RunDemo(const std::string& dir, std::ostream& out, std::ostream& err);

}  // namespace zemo
