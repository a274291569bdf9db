// Where the base of a station's folder stands: in "Triskin.MDB", or on the server that "Base.Ini"
// names.
#pragma once

#include <string>
#include <string_view>

#include "store/BasePlace.h"

namespace zemo {

class Folder;

// Exactly one of the files names the base at every moment of a move between them: "Base.New" is
// what is to become "Base.Ini", or was it, and counts only where neither other file is there. A
// folder without any is one whose file is still to be made. What cannot be told has the fault of
// the place. Throws nothing.
BasePlace PlaceOfBase(const Folder& folder);

// The folder names a base.
bool NamesBase(const Folder& folder);

// The only line of a file that names a server's base. Throws std::runtime_error with one line,
// which shows nothing of the URL.
std::string ReadBaseUrl(const Folder& folder, std::string_view name);

}  // namespace zemo
