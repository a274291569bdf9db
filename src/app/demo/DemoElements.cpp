// The short elements: jingles around one signature of five notes, stings, spots and news over a bed
// of their own, and the six pips of the hour.
#include <cmath>

#include "app/demo/DemoCatalogue.h"

namespace zemo {
namespace {

constexpr int kSignature[] = {67, 72, 74, 79, 84};
constexpr float kLoudness = 0.16F;  // rms, a little above the music's

void AddSignature(StereoBuffer& to, double atSec, double stepSec, int transpose, Voice voice) {
  for (int i = 0; i < 5; ++i) {
    AddNote(
        to, voice,
        {atSec + i * stepSec, i == 4 ? stepSec * 4 : stepSec,
         static_cast<double>(kSignature[i] + transpose), 0.3F, static_cast<float>(i - 2) * 0.2F});
  }
}

void AddFanfareChord(StereoBuffer& to, double atSec, double lengthSec, int transpose) {
  for (const int pitch : {48, 55, 60, 64, 67}) {
    AddNote(to, Voice::kPad, {atSec, lengthSec, static_cast<double>(pitch + transpose), 0.16F, 0});
  }
}

StereoBuffer MakeJingle(const DemoShort& element, DemoRandom& random) {
  StereoBuffer sound;
  const int transpose = random.Below(5) - 2;
  const double step = element.lengthSec < 3.5 ? 0.11 : 0.2;
  if (!element.overlay) {
    AddDrum(sound, Drum::kKick, 0, 0.5F, random);
    AddFanfareChord(sound, 0, element.lengthSec - 1.2, transpose);
  }
  AddSignature(sound, 0.05, step, transpose, Voice::kBell);
  AddEcho(sound, step * 1.5, 0.2F, 0.3F);
  return sound;
}

StereoBuffer MakeSting(const DemoShort& element, uint64_t seed) {
  StereoBuffer sound;
  const int notes = static_cast<int>(element.lengthSec * 7);
  for (int i = 0; i < notes; ++i) {
    const int place = seed % 2 == 0 ? i : notes - 1 - i;
    const double pitch = 55 + 12 * (place / 4) % 48 + (place % 4) * 3;
    AddNote(sound, Voice::kPluck, {i * 0.1, 0.2, pitch, 0.3F, i % 2 == 0 ? -0.5F : 0.5F});
  }
  AddEcho(sound, 0.15, 0.25F, 0.4F);
  return sound;
}

// Ticks of a newsroom under a chord that changes every two seconds, framed by the signature.
StereoBuffer MakeNews(const DemoShort& element, DemoRandom& random) {
  StereoBuffer sound;
  AddSignature(sound, 0.05, 0.14, -12, Voice::kLead);
  const int pairs = static_cast<int>(element.lengthSec / 2) - 1;
  for (int i = 0; i < pairs; ++i) {
    AddFanfareChord(sound, 1 + i * 2, 1.8, random.Below(3) * 2 - 2);
    for (int tick = 0; tick < 16; ++tick) {
      AddDrum(sound, Drum::kTick, 1 + i * 2 + tick * 0.125, tick % 4 == 0 ? 0.4F : 0.2F, random);
    }
  }
  AddSignature(sound, element.lengthSec - 2, 0.14, -12, Voice::kLead);
  return sound;
}

StereoBuffer MakeSpot(const DemoShort& element, uint64_t seed) {
  const Manner manner{118, 132, false, 2, true, false};
  return Compose(seed, manner, element.lengthSec).sound;
}

// Five short pips and a long one, a second apart. The row starts at second 52 (OffsetTopH), is
// heard 2.32 s later (100 buffers of 4096 bytes), and so brings the long one to the full hour.
StereoBuffer MakePips() {
  constexpr double kFirstSec = 0.68;
  StereoBuffer sound;
  for (int i = 0; i < 5; ++i) AddTone(sound, kFirstSec + i, 0.1, 1000, 0.4F);
  AddTone(sound, kFirstSec + 5, 0.5, 1000, 0.4F);
  return sound;
}

}  // namespace

StereoBuffer MakeShort(const DemoShort& element, uint64_t seed) {
  DemoRandom random(seed);
  StereoBuffer sound;
  switch (element.kind) {
    case ShortKind::kJingle:
    case ShortKind::kBreakJingle:
      sound = MakeJingle(element, random);
      break;
    case ShortKind::kOther:
      sound = MakeSting(element, seed);
      break;
    case ShortKind::kSpot:
      sound = MakeSpot(element, seed);
      break;
    case ShortKind::kNews:
      sound = MakeNews(element, random);
      break;
    case ShortKind::kPip:
      sound = MakePips();
      break;
  }
  sound.Need(std::llround(element.lengthSec * kDemoRate));
  sound.Cut(std::llround(element.lengthSec * kDemoRate));
  if (element.kind != ShortKind::kPip) {
    Level(sound, kLoudness);
    FadeEnd(sound, 0.4);
  }
  return sound;
}

}  // namespace zemo
