// The emergency folder: sound files that lie ready in the machine folder for the hour in which
// nothing else can play, and the order in which they come.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

class Folder;

inline constexpr const char* kEmergencyFolder = "Secours";

// Names of the sound files in it by their ending (wav, mp3, flac, ogg in any case), hidden ones
// left out, in the order of their bytes; empty without the folder. Throws FileError where it is
// there and cannot be read. Thread: the logic's.
std::vector<std::string> EmergencyFiles(Folder& machineFolder);

// All of them, each once, shuffled: the moment at which the round begins is all the chance in it,
// so that the same moment gives the same order. `last`, which played before, is not the first
// unless it is the only one.
std::vector<std::string> ShuffledRound(std::vector<std::string> names, const LocalDateTime& begin,
                                       const std::string& last);

}  // namespace zemo
