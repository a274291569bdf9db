// How the air fares, in six figures with their age: what a presenter looks at when something is
// odd. Red is only what a listener could hear.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zemo {

struct Station;

// What the output measures of itself.
struct OutputFigures {
  std::string output;                 // what plays, in words
  bool heard = false;                 // the output reaches a device or a file
  uint64_t underruns = 0;             // since the beginning
  uint64_t lateFrames = 0;            // the same
  float peakLeft = 0, peakRight = 0;  // since the last question; full scale 1.0
  bool device = true;                 // its way is a device, not a file or nowhere
};

enum class HealthSeverity { kGood, kNote, kHeard };

struct HealthFigure {
  const char* name = "";  // a word of the screen
  std::string text;
  HealthSeverity severity = HealthSeverity::kGood;
  int64_t sinceMs = 0;  // monotonic: the state that the text tells began, or the fault came
  std::string state;    // what the age is reckoned by
};

// Thread: the logic's.
struct HealthLine {
  enum Figure { kOutput, kUnderruns, kDevice, kDisk, kBase, kError, kFigures };
  std::array<HealthFigure, kFigures> figures;
  int64_t lastSoundMs = -1;      // monotonic, when the output last measured sound
  int64_t expectedSinceMs = -1;  // monotonic, when the engine was seen to run; -1: it does not
  uint64_t underruns = 0, lateFrames = 0;
  float heldPeak = 0;  // highest since the last update
};

// Notes a peak between two updates (meters ask more often than the line is told).
void NotePeaks(HealthLine& line, const OutputFigures& output, int64_t nowMs);
// Tells the line anew, about once a second. `freeDiskBytes` -1: unknown. Looks only at the state.
void UpdateHealth(HealthLine& line, const Station& station, const OutputFigures& output,
                  int64_t freeDiskBytes, int64_t nowMs, int langue);

std::string AgeText(int64_t ms, int langue);  // "8 s", "3 min", "2 h", "4 d"
// It runs, and no device takes the sound: there is none, it is lost, or a file or nothing was
// chosen.
bool UnheardOnAir(const Station& station, const OutputFigures& output);
// It runs, and nothing that could be heard has left the output for some seconds.
bool SilentOnAir(const HealthLine& line);

}  // namespace zemo
