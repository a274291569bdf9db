// Everything outside the logic, in one place: what a Station is given and never asks for elsewhere.
#pragma once

namespace zemo {

class BaseLink;
class BaseUse;
class Clipboard;
class Clock;
class EventLoop;
class Folder;
class Joystick;
class Keyboard;
class LevelTool;
class LocalValues;
class MessageBoxes;
class Prelisten;
class PreviewChain;
class Recorder;
class RoundTrip;
class SerialPort;
class SoundChain;
class SoundDeviceList;
class SoundFiles;
class SoundLengths;
class System;

// References only: the owner (app/, a test) outlives the Station.
struct Platform {
  Clock& clock;
  EventLoop& loop;
  SoundChain& sound;
  Folder& stationFolder;  // the program's folder: Triskin.MDB and the side files
  Folder& machineFolder;  // the C:\ root, the system directory and the registry of this machine
  SoundFiles& soundFiles;
  SoundLengths& lengths;
  LocalValues& localValues;
  Clipboard& clipboard;
  MessageBoxes& messages;
  Keyboard& keyboard;
  System& system;
  SerialPort& serial;  // the automaton's line
  Joystick& joystick;
  BaseUse* baseUse = nullptr;      // null: nobody else works on the station's base
  BaseLink* baseLink = nullptr;    // null: the base is the station's own file
  Prelisten* prelisten = nullptr;  // null: nothing can be heard ahead
  // Of the voice tracks; null: this program records none, hears no join, changes no level.
  Recorder* recorder = nullptr;
  PreviewChain* preview = nullptr;
  LevelTool* levelTool = nullptr;
  RoundTrip* roundTrip = nullptr;
  SoundDeviceList* soundDevices = nullptr;  // null: nobody knows them by name
};

}  // namespace zemo
