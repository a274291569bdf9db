// The least of a platform that a Station can stand on: folders in memory, a clock that stands
// still, and nothing that sounds. For tests of single routines; whole scenarios have the simulated
// platform.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Desktop.h"
#include "platform/EventLoop.h"
#include "platform/Joystick.h"
#include "platform/LocalValues.h"
#include "platform/Platform.h"
#include "platform/SerialPort.h"
#include "platform/SoundChain.h"
#include "platform/SoundLengths.h"
#include "platform/tests/MemoryFolder.h"
#include "station/Station.h"

namespace zemo {

struct FixedClock : Clock {
  LocalDateTime now{2026, 11, 21, 12, 34, 56, 789};
  LocalDateTime LocalNow() const override { return now; }
  int64_t MonotonicMs() const override { return 0; }
};

struct NoLoop : EventLoop {
  struct NoTimer : LoopTimer {
    void SetEnabled(bool) override {}
    bool Enabled() const override { return false; }
  };
  void Yield() override {}
  void WaitYield() override {}
  void PassYield() override {}
  std::unique_ptr<LoopTimer> MakeTimer(int, std::function<void()>) override {
    return std::make_unique<NoTimer>();
  }
  void Post(std::function<void()>) override {}
  uint64_t EventsServed() const override { return 0; }
};

struct NoSound : SoundChain {
  std::string none;
  void SetObserver(SoundObserver*) override {}
  void SetFileName(int, const std::string&, SlotEnd) override {}
  const std::string& FileName(int) const override { return none; }
  int32_t Position(int) const override { return 0; }
  void SetPosition(int, int32_t) override {}
  int32_t Length(int) const override { return 0; }
  int Volume(int) const override { return 0; }
  void SetVolume(int, int) override {}
  double Gain(int) const override { return 1; }
  void SetGain(int, double) override {}
  void FadeOut(int, int) override {}
  bool ChannelDone(int) const override { return true; }
  void SetChannelDone(int, bool, SlotEnd) override {}
  int32_t ChannelPosition(int) const override { return 0; }
  bool Sounds(int) const override { return false; }
  int32_t CycleMax() const override { return 0; }
  void SetCycleMax(int32_t) override {}
  void SetPaused(bool) override {}
  void SetRing(int, int) override {}
  void SetOutputBuffers(int, int) override {}
  int OutputBufferSize() const override { return 0; }
  int OutputNumBuffers() const override { return 0; }
  void Open() override {}
  void Start() override {}
  void Stop() override {}
  void Close() override {}
  OutputState State() const override { return OutputState::kClosed; }
  int32_t OutputPosition() const override { return 0; }
};

struct NoLengths : SoundLengths {
  int32_t LengthMs(std::string_view) override { return 0; }
};

struct NoDesktop : Clipboard, MessageBoxes, Keyboard, System {
  std::vector<std::pair<std::string, std::string>> shown;  // title and text of each message

  std::string Text() const override { return {}; }
  void SetText(const std::string&) override {}
  Answer Show(const std::string& title, const std::string& text, Buttons,
              Icon = Icon::kNone) override {
    shown.emplace_back(title, text);
    return Answer::kOk;
  }
  bool Held(int) const override { return false; }
  bool MainScreenActive() const override { return false; }
  void Shutdown() override {}
  void SetDate(const LocalDateTime&) override {}
  ScreenSize Screen() const override { return {}; }
  bool Run(const std::string&, const std::string&) override { return false; }
  bool RunMixer() override { return false; }
};

// Every port can be opened unless it fails; nothing ever comes in.
struct NoWires : SerialPort, Joystick {
  int serialPort = 0;  // 0 while closed
  std::string setting;
  bool openFails = false;
  void Open(int port, const std::string& given) override {
    if (openFails) throw SerialError(2, "/dev/ttyS0: No such file or directory");
    serialPort = port;
    setting = given;
  }
  void Close() override { serialPort = 0; }
  bool IsOpen() const override { return serialPort > 0; }
  void Write(std::string_view) override {}
  std::string Read() override { return {}; }
  void OnButton(std::function<void(int, bool)>) override {}
  bool Open(int) override { return false; }
};

// A station without an open base, and what a test looks at.
struct FakePlatform : EventSink {
  FixedClock clock;
  NoLoop loop;
  NoSound sound;
  MemoryFolder stationFolder, machineFolder;
  MemorySoundFiles soundFiles;
  NoLengths lengths;
  LocalValues localValues{machineFolder};
  NoDesktop desktop;
  NoWires wires;
  std::vector<std::string> errors;  // "where/number/text" of each error event
  std::function<void()> onError;    // a listener's own doings
  Station station{Platform{clock, loop, sound, stationFolder, machineFolder, soundFiles, lengths,
                           localValues, desktop, desktop, desktop, desktop, wires, wires}};

  FakePlatform() { station.events.SetSink(this); }

  void OnEvent(const Event& event) override {
    if (event.name != "error") return;
    std::string text;
    for (const auto& [name, value] : event.members) {
      if (!text.empty()) text += "/";
      const auto* number = std::get_if<int64_t>(&value);
      text += number != nullptr ? std::to_string(*number) : std::get<std::string>(value);
    }
    errors.push_back(text);
    if (onError) onError();
  }
};

}  // namespace zemo
