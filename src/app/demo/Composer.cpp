// The composer: a song of intro, alternating verses and refrains of eight bars, and an ending, over
// one of a few chord progressions, with a motif that comes back.
#include "app/demo/Composer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace zemo {
namespace {

constexpr int kMajor[] = {0, 2, 4, 5, 7, 9, 11};
constexpr int kMinor[] = {0, 2, 3, 5, 7, 8, 10};
// Degrees of the scale, a chord a bar.
constexpr std::array<std::array<int, 4>, 8> kProgressions = {{{0, 4, 5, 3},
                                                              {0, 5, 3, 4},
                                                              {5, 3, 0, 4},
                                                              {0, 3, 5, 4},
                                                              {0, 2, 3, 4},
                                                              {3, 4, 2, 5},
                                                              {0, 5, 1, 4},
                                                              {0, 3, 0, 4}}};
constexpr int kEighths = 8;       // a bar
constexpr double kRingSec = 4.5;  // of the last chord

// What a piece is made of, drawn once from its seed.
struct Score {
  const Manner& manner;
  DemoRandom random;
  double barSec = 2;
  int key = 57;  // MIDI number of the tonic
  std::array<int, 4> verse{}, refrain{};
  std::array<int, kEighths> arpeggio{};     // chord tone of each eighth
  std::array<bool, kEighths * 2> rhythm{};  // which eighths of two bars the tune strikes
  std::array<int, kEighths * 2> contour{};  // its steps of the scale from note to note
  Voice tuneVoice = Voice::kLead;
  Voice arpeggioVoice = Voice::kPluck;
};

Score DrawScore(uint64_t seed, const Manner& manner) {
  Score score{manner, DemoRandom(seed)};
  DemoRandom& random = score.random;
  const int tempo = manner.tempoFrom + random.Below(manner.tempoTo - manner.tempoFrom + 1);
  score.barSec = 240.0 / tempo;
  score.key = 52 + random.Below(12);
  const auto chords = static_cast<int>(kProgressions.size());
  const int verse = random.Below(chords);
  score.verse = kProgressions[static_cast<size_t>(verse)];
  score.refrain =
      kProgressions[static_cast<size_t>((verse + 1 + random.Below(chords - 1)) % chords)];
  const bool rising = random.Chance(0.6F);
  for (int i = 0; i < kEighths; ++i) {
    const int wave[] = {0, 1, 2, 3, 2, 1, 2, 1};
    score.arpeggio[static_cast<size_t>(i)] = rising ? wave[i] : random.Below(4);
  }
  for (size_t i = 0; i < score.rhythm.size(); ++i) {
    score.rhythm[i] = i % kEighths == 0 || random.Chance(i % 2 == 0 ? 0.6F : 0.28F);
    score.contour[i] = random.Below(5) - 2;
  }
  score.tuneVoice = random.Chance(0.5F) ? Voice::kLead : Voice::kBell;
  score.arpeggioVoice = random.Chance(0.7F) ? Voice::kPluck : Voice::kBell;
  return score;
}

// MIDI number of a step of the scale; step 7 is the octave.
int PitchOf(const Score& score, int step) {
  const auto& scale = score.manner.minor ? kMinor : kMajor;
  const int octave = step >= 0 ? step / 7 : -((6 - step) / 7);
  return score.key + 12 * octave + scale[step - 7 * octave];
}

// Chord tones from the root on a degree, kept within an octave and a half of the tonic.
int ChordPitch(const Score& score, int degree, int tone) {
  const int root = degree > 4 ? degree - 7 : degree;
  return PitchOf(score, root + (tone % 3) * 2 + (tone / 3) * 7);
}

void AddChord(const Score& score, StereoBuffer& to, int degree, double atSec, double lengthSec,
              float level) {
  for (int tone = 0; tone < 4; ++tone) {
    const auto pan = static_cast<float>(tone) * 0.4F - 0.6F;
    AddNote(to, Voice::kPad,
            {atSec, lengthSec, static_cast<double>(ChordPitch(score, degree, tone)), level, pan});
  }
}

void AddArpeggio(const Score& score, StereoBuffer& to, int degree, double atSec, float level) {
  const double eighth = score.barSec / kEighths;
  for (int i = 0; i < kEighths; ++i) {
    const int pitch = ChordPitch(score, degree, score.arpeggio[static_cast<size_t>(i)]) + 12;
    const float pan = i % 2 == 0 ? -0.35F : 0.35F;
    AddNote(to, score.arpeggioVoice,
            {atSec + i * eighth, eighth * 1.5, static_cast<double>(pitch),
             i % 4 == 0 ? level * 1.25F : level, pan});
  }
}

void AddBass(const Score& score, StereoBuffer& to, int degree, double atSec, bool lively) {
  const double beat = score.barSec / 4;
  const int root = ChordPitch(score, degree, 0) - 12;
  const double strikes[] = {0, 1.5, 2, 3.5};
  for (int i = 0; i < 4; ++i) {
    if (!lively && i % 2 == 1) continue;
    const int pitch = i == 3 ? root + 7 : root;
    AddNote(to, Voice::kBass,
            {atSec + strikes[i] * beat, beat * (lively ? 0.9 : 1.7),
             static_cast<double>(pitch > 52 ? pitch - 12 : pitch), 0.3F, 0});
  }
}

void AddDrums(Score& score, StereoBuffer& to, double atSec, bool fill) {
  const double eighth = score.barSec / kEighths;
  const bool full = score.manner.drums == 2;
  for (int i = 0; i < kEighths; ++i) {
    const double at = atSec + i * eighth;
    if (i == 0 || i == 4 || (full && i == 5)) AddDrum(to, Drum::kKick, at, 0.5F, score.random);
    if (full && (i == 2 || i == 6 || (fill && i == 7))) {
      AddDrum(to, Drum::kSnare, at, 0.3F, score.random);
    }
    AddDrum(to, Drum::kHat, at, i % 2 == 0 ? 0.18F : 0.1F, score.random);
  }
}

// Two bars of the tune; the answer comes back to the tonic at its end.
void AddTune(Score& score, StereoBuffer& to, const int* degrees, double atSec, bool answer) {
  const double eighth = score.barSec / kEighths;
  int step = 7 + (degrees[0] > 4 ? degrees[0] - 7 : degrees[0]) + (answer ? 2 : 0);
  const auto slots = static_cast<int>(score.rhythm.size());
  for (int i = 0; i < slots; ++i) {
    if (!score.rhythm[static_cast<size_t>(i)]) continue;
    int next = i + 1;
    while (next < slots && !score.rhythm[static_cast<size_t>(next)]) ++next;
    const bool last = next == slots;
    step = last && answer ? 7 : std::clamp(step + score.contour[static_cast<size_t>(i)], 4, 13);
    AddNote(to, score.tuneVoice,
            {atSec + i * eighth, (next - i) * eighth * 0.9,
             static_cast<double>(PitchOf(score, step)), i % 4 == 0 ? 0.24F : 0.19F, 0.08F});
  }
}

struct Plan {
  int bars = 0;  // before the ending
  int introBars = 4;
};

void AddBar(Score& score, const Plan& plan, int bar, StereoBuffer& music, StereoBuffer& drums) {
  const double at = bar * score.barSec;
  const int inSong = std::max(0, bar - plan.introBars);
  const bool intro = bar < plan.introBars;
  const bool refrain = !intro && (inSong / 8) % 2 == 1;
  const auto& chords = refrain ? score.refrain : score.verse;
  const int degree = chords[static_cast<size_t>(bar % 4)];
  AddChord(score, music, degree, at, score.barSec * 0.95, refrain ? 0.1F : 0.085F);
  AddArpeggio(score, music, degree, at, intro ? 0.13F : 0.09F);
  if (bar >= plan.introBars / 2)
    AddBass(score, music, degree, at, score.manner.drums == 2 && !intro);
  if (!intro && score.manner.drums > 0) AddDrums(score, drums, at, inSong % 4 == 3);
  const bool rest = (inSong / 8) % 4 == 2;  // every fourth section without the tune
  if (!intro && score.manner.tune && !rest && inSong % 2 == 0 && bar + 1 < plan.bars) {
    AddTune(score, music, &chords[static_cast<size_t>(bar % 4)], at, inSong % 4 == 2);
  }
}

}  // namespace

Piece Compose(uint64_t seed, const Manner& manner, double lengthSec) {
  Score score = DrawScore(seed, manner);
  const double songSec = manner.fadesOut ? lengthSec : lengthSec - kRingSec;
  Plan plan;
  plan.bars = std::max(1, static_cast<int>(songSec / score.barSec));
  if (manner.fadesOut) ++plan.bars;  // the cut falls inside the last bar
  // The bars fill the time exactly: the tempo gives way by less than one bar in all.
  if (!manner.fadesOut) score.barSec = std::max(songSec, 1.0) / plan.bars;
  plan.introBars = plan.bars >= 16 ? 4 : plan.bars >= 6 ? 2 : 0;

  Piece piece;
  StereoBuffer drums;
  for (int bar = 0; bar < plan.bars; ++bar) AddBar(score, plan, bar, piece.sound, drums);
  if (!manner.fadesOut) {
    const double at = plan.bars * score.barSec;
    for (int tone = 0; tone < 5; ++tone) {
      AddNote(
          piece.sound, Voice::kBell,
          {at + tone * 0.04, kRingSec, static_cast<double>(ChordPitch(score, 0, tone)), 0.22F, 0});
    }
    AddBass(score, piece.sound, 0, at, false);
  }
  AddEcho(piece.sound, score.barSec * 3 / 16, 0.22F, 0.35F);
  piece.sound.Add(drums);
  piece.sound.Cut(std::llround(lengthSec * kDemoRate));
  Level(piece.sound, 0.15F);
  FadeEnd(piece.sound, manner.fadesOut ? 7.0 : 1.5);

  piece.introSec = manner.tune ? static_cast<int>(plan.introBars * score.barSec) : 0;
  // One piece in eight leaves it to the station's usual mix point.
  const bool stated = score.random.Below(8) > 0;
  piece.exitPointMs = manner.fadesOut ? 5000 : stated ? 2200 + 100 * score.random.Below(12) : 0;
  return piece;
}

}  // namespace zemo
