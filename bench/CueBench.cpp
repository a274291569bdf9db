// What measuring a sound file (SoundAnalyser) says and costs. First a seeded corpus of titles whose
// exit is known, an ending of every kind: how many are how far off, as a histogram a kind. Then the
// measuring of four minutes in every format as a multiple of decoding the same file alone, and what
// libebur128 would add for the same two figures; processor time of one thread, the best of several
// turns each, in turn. Usage: CueBench [TITLES_OF_A_KIND]
#include <ebur128.h>
#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "Figures.h"
#include "platform/real/analysis/LoudnessMeter.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/analysis/TruePeakMeter.h"
#include "platform/real/decoders/ShapeMaker.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "support/TitleCorpus.h"

namespace zemo {
namespace {

// --- How far off the exits are ---

constexpr std::array kBounds = {-2.0, -1.0, -0.5, -0.3, -0.1, -0.03, 0.03, 0.1, 0.3, 0.5, 1.0, 2.0};

struct Errors {
  std::vector<double> seconds;
  double WithinPerCent(double bound) const {
    const auto within = std::count_if(seconds.begin(), seconds.end(),
                                      [&](double error) { return std::fabs(error) <= bound; });
    return 100.0 * static_cast<double>(within) / static_cast<double>(seconds.size());
  }
};

void PrintHistogram(const std::string& kind, const Errors& errors) {
  std::printf("\n%s: %zu titles, within 0.3 s %.1f %%, within 0.1 s %.1f %%\n", kind.c_str(),
              errors.seconds.size(), errors.WithinPerCent(0.3), errors.WithinPerCent(0.1));
  double low = -std::numeric_limits<double>::infinity();
  for (size_t i = 0; i <= kBounds.size(); ++i) {
    const double high = i < kBounds.size() ? kBounds[i] : std::numeric_limits<double>::infinity();
    const auto count = std::count_if(errors.seconds.begin(), errors.seconds.end(),
                                     [&](double error) { return error > low && error <= high; });
    const auto share = static_cast<double>(count) / static_cast<double>(errors.seconds.size());
    if (count > 0) {
      const std::string bar(static_cast<size_t>(std::lround(share * 60)), '#');
      std::printf("  %+5.2f to %+5.2f s  %5td  %s\n", low, high, count, bar.c_str());
    }
    low = high;
  }
}

void MeasureCorpus(int titles) {
  using Make = std::function<test::KnownTitle(test::Chance&, double)>;
  std::map<std::string, Errors> errors;
  Errors fades;
  test::Chance chance(2026);
  const auto add = [&](const Make& make, int count) {
    for (int i = 0; i < count; ++i) {
      const test::KnownTitle title = make(chance, 60);
      test::MadeOpener opener(title);
      const auto measures = MeasureSound(opener, "made");
      const double error = test::ErrorSeconds(title, *measures);
      errors[title.kind].seconds.push_back(error);
      if (title.kind.starts_with("fade")) fades.seconds.push_back(error);
    }
  };
  add(test::RandomFade, 3 * titles);
  for (const auto make : {test::RandomCold, test::RandomReverb, test::RandomHidden}) {
    add(make, titles);
  }
  add(test::RandomApplause, 2 * titles);
  std::puts("Exits of made titles: measured less known instant");
  PrintHistogram("all fades", fades);
  for (const auto& [kind, of] : errors) PrintHistogram(kind, of);
}

// --- What it costs ---

using Consumer = std::function<void(const float*, int)>;

void Decode(const std::string& path, const Consumer& consume) {
  SoundFileOpener opener;
  const auto source = opener.Open(path);
  std::vector<float> block(2 * 4096);
  while (const int frames = source->Read(block.data(), 4096)) consume(block.data(), frames);
}

// Four minutes of chords under beats: of a dynamic recording, or of one that was pushed up by 12 dB
// against a limit, as today's are.
std::vector<float> Music(bool loud) {
  std::vector<float> music;
  for (uint32_t second = 0; second < 240; ++second) {
    const auto loop = test::LoopOf(test::Material::kBeat, false, 1 + second / 4);
    music.insert(music.end(), loop.begin(), loop.end());
  }
  for (float& sample : music) sample = loud ? std::tanh(4 * sample) : 0.8F * sample;
  return music;
}

struct Format {
  const char* name;
  int format;
};

void Write(const std::string& path, const Format& format, const std::vector<float>& music) {
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = kChannels;
  info.format = format.format;
  SNDFILE* out = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!out) std::abort();
  double level = 0.4;  // of MP3: 192 kbit/s
  if ((format.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG) {
    sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  }
  constexpr size_t kPiece = 2000;  // more in one call overflows the stack of some encoders
  for (size_t at = 0; at < music.size(); at += kPiece) {
    const size_t samples = std::min(kPiece, music.size() - at);
    sf_writef_float(out, music.data() + at, static_cast<sf_count_t>(samples / kChannels));
  }
  sf_close(out);
}

void DecodeWithLibrary(const std::string& path, int mode) {
  ebur128_state* state = ebur128_init(kChannels, kSampleRate, mode);
  Decode(path, [&](const float* stereo, int frames) {
    ebur128_add_frames_float(state, stereo, static_cast<size_t>(frames));
  });
  double lufs = 0;
  ebur128_loudness_global(state, &lufs);
  ebur128_destroy(&state);
}

// Of a file: decoding alone, with each of the meters, and the whole measuring.
void MeasureCost(const std::string& path, const char* what) {
  constexpr size_t kWorks = 7;
  std::array<double, kWorks> best;  // ms
  best.fill(std::numeric_limits<double>::infinity());
  const std::array<std::function<void()>, kWorks> works = {
      [&] { Decode(path, [](const float*, int) {}); },
      [&] {
        LoudnessMeter meter;
        Decode(path, [&](const float* stereo, int frames) { meter.Add(stereo, frames); });
      },
      [&] {
        TruePeakMeter meter;
        Decode(path, [&](const float* stereo, int frames) { meter.Add(stereo, frames); });
      },
      [&] {
        ShapeMaker shape(240 * kSampleRate);
        Decode(path, [&](const float* stereo, int frames) { shape.Add(stereo, frames); });
      },
      [&] {
        SoundFileOpener opener;
        MeasureSound(opener, path);
      },
      [&] { DecodeWithLibrary(path, EBUR128_MODE_I); },
      [&] { DecodeWithLibrary(path, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK); }};
  for (int turn = 0; turn < 7; ++turn) {
    for (size_t i = 0; i < works.size(); ++i)
      best[i] = std::min(best[i], bench::WorkedMsOf(works[i]));
  }
  std::printf("%-14s %8.1f %8.1f %8.1f %8.1f %8.1f %8.2f %10.1f %10.1f\n", what, best[0],
              best[1] - best[0], best[2] - best[0], best[3] - best[0], best[4], best[4] / best[0],
              best[5] - best[0], best[6] - best[0]);
}

void MeasureCosts() {
  std::string folder = (std::filesystem::temp_directory_path() / "cue-bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) std::abort();
  std::puts(
      "\nFour minutes, ms of one processor: decoding, what each meter adds, all, all / decoding; "
      "what libebur128 adds");
  std::printf("%-14s %8s %8s %8s %8s %8s %8s %10s %10s\n", "", "decode", "loudness", "peak",
              "shape", "all", "times", "lib I", "lib I+TP");
  const std::array formats = {Format{"WAV", SF_FORMAT_WAV | SF_FORMAT_PCM_16},
                              Format{"FLAC", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                              Format{"MP3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
                              Format{"Ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS}};
  for (const bool loud : {false, true}) {
    const std::vector<float> music = Music(loud);
    for (const Format& format : formats) {
      const std::string path = folder + "/" + format.name;
      Write(path, format, music);
      MeasureCost(path, (std::string(format.name) + (loud ? ", loud" : "")).c_str());
    }
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace zemo

int main(int count, char** arguments) {
  const int titles = count > 1 ? std::atoi(arguments[1]) : 50;
  zemo::MeasureCorpus(titles);
  zemo::MeasureCosts();
}
