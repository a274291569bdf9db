// Where a station and a machine stand when the command line does not say it.
#pragma once

#include <string>

namespace zemo {

// The folder of the executable when that holds a Triskin.MDB or a Base.Ini, else the user's data
// folder. Throws std::runtime_error when there is no home to look in.
std::string DefaultStationFolder();

// The user's configuration folder. Throws as above.
std::string DefaultMachineFolder();

// The folder that was named, else the default one. Throws std::runtime_error with one line where
// there is no such folder, or where its base cannot be one (RefuseIrregularBase).
std::string AskedStationFolder(const std::string& named);

// The folder that was named, else the default one. One that was named and is not there yet is told
// on standard error: it costs a question nothing, and going on air makes it.
std::string AskedMachineFolder(const std::string& named);

// Throws the same where there is no such folder, or nothing in it that names a base: a file, or a
// whole Base.Ini. A server is not asked.
void RequireStation(const std::string& folder);

// Throws the same where what is named as the base is a pipe, a device or a folder: to open some of
// these is to wait for them. Nothing where there is none, or a link that leads nowhere.
void RefuseIrregularBase(const std::string& folder);

}  // namespace zemo
