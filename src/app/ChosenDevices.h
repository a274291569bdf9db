// Which sound devices this machine was set to use: by their numbers in "ZemoAudio.Ini", and by what
// each is known again by in its local values, so that a device that is plugged in moves nothing.
#pragma once

#include <string>
#include <vector>

#include "platform/real/sound/SoundDevices.h"

namespace zemo {

class Folder;
class LocalValues;

struct ChosenDevice {
  int number = -1;  // -1: none chosen
  std::string key;  // empty: not known, the number counts
};

struct ChosenDevices {
  ChosenDevice air, prelisten;
};

// A file that cannot be read chooses nothing: the load of the station tells of it.
ChosenDevices ReadChosenDevices(Folder& machine);

// What the prelisten's device of that number is known by; empty where that number was not chosen
// last, or by nothing more.
std::string PrelistenKey(const LocalValues& local, int number);

// The same of the voice tracks' microphone and output.
std::string MicrophoneKey(const LocalValues& local, int number);
std::string VoiceTrackOutputKey(const LocalValues& local, int number);

// The place of the chosen one among the machine's devices, -1 when it is not among them.
int PlaceOf(const ChosenDevice& chosen, const std::vector<SoundDevice>& devices);

// Makes a choice of the air that was only a number known by its device. Values that cannot be
// written are tried again at the next start.
void RememberAirDevice(Folder& machine, int number, const std::string& key);

}  // namespace zemo
