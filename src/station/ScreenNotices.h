// What the logic has to say on the main on-air screen in words of its own, and what that screen
// keeps of the settings, since it never asks the base while it draws. Thread: the logic's.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zemo {

struct ScreenNotices {
  struct {
    std::string text = "ZEMO RADIO";
    bool visible = false;
  } progress;              // of requests, fittings and compositions
  bool hourglass = false;  // the pointer, while one of them works
  std::string lastError;   // the error log's newest line
  std::string ticker;      // what runs through it; empty: it rests
  bool noReport = false;   // "NoRapport.txt" is there
  std::string titleOnAir;
  std::string day;  // of the clock; in live mode the next break

  uint32_t counterColour = 33023;  // 0xBBGGRR
  std::string modelCaption;        // of the menu
  std::optional<int64_t> cycleMs;  // how long the output runs
};

}  // namespace zemo
