// An import of thousands of files beside the air: how many cards a second it makes, beside the time
// that reading the tags of the files takes alone and looking into the files, and for how long it
// holds the logic's thread at a time. Goal: no hold of more than some milliseconds but where the
// disk itself takes longer for a row. The files are MP3s of three seconds with tags of their own,
// and read once ahead of all, as a disk's first look at them is the disk's. Usage: ImportBench
// [FILES], 10,000 by default, a quarter of a MB for ten of them below TMPDIR.
#include <sndfile.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "BigLibrary.h"
#include "library/ImportRun.h"
#include "platform/real/analysis/TagReader.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/files/ImportReader.h"
#include "platform/real/files/ImportThread.h"
#include "support/TestStation.h"

namespace zemo {
namespace {

using Steady = std::chrono::steady_clock;

double MsSince(Steady::time_point begin) {
  return std::chrono::duration<double, std::milli>(Steady::now() - begin).count();
}

// --- the files ---

std::string ThreeSeconds(const std::string& path) {
  SF_INFO info{};
  info.samplerate = kSampleRate;
  info.channels = kChannels;
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  SNDFILE* out = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!out) std::abort();
  double level = 0.9;
  sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
  std::vector<float> second(size_t{kSampleRate} * kChannels);
  for (size_t i = 0; i < second.size(); ++i)
    second[i] = 0.3F * std::sin(static_cast<float>(i / 2) * 0.06F);
  for (int i = 0; i < 3; ++i) sf_writef_float(out, second.data(), kSampleRate);
  sf_close(out);
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string BigEnd(size_t value, unsigned bits) {
  std::string bytes;
  for (int byte = 3; byte >= 0; --byte)
    bytes +=
        static_cast<char>((value >> (static_cast<unsigned>(byte) * bits)) & ((1U << bits) - 1));
  return bytes;
}

std::string Frame(const std::string& name, const std::string& text) {
  return name + BigEnd(text.size() + 1, 8) + std::string(3, '\0') + text;
}

// A room behind the frames that differs, so that hardly two files have one size.
std::string Tag(int file) {
  const std::string number = std::to_string(file);
  const std::string body = Frame("TPE1", "Artist " + std::to_string(file / 12)) +
                           Frame("TIT2", "Title " + number) + Frame("TALB", "Album") +
                           Frame("TYER", "1999") + Frame("TCON", "Pop") +
                           std::string(100 + static_cast<size_t>(file) * 7919 % 9973, '\0');
  return std::string("ID3\3\0\0", 6) + BigEnd(body.size(), 7) + body;
}

std::vector<std::string> MakeFiles(const std::string& folder, int count) {
  const std::string sound = ThreeSeconds(folder + "/sound");
  std::filesystem::remove(folder + "/sound");
  std::vector<std::string> files;
  for (int file = 0; file < count; ++file) {
    const std::string artist = folder + "/music/" + std::to_string(file / 100);
    std::filesystem::create_directories(artist);
    files.push_back(artist + "/" + std::to_string(file) + ".mp3");
    std::ofstream(files.back(), std::ios::binary) << Tag(file) << sound;
  }
  return files;
}

// --- what it costs ---

void Tell(const char* what, size_t files, double ms) {
  std::printf("%-44s %8.1f s %8.0f files/s\n", what, ms / 1000,
              1000 * static_cast<double>(files) / ms);
}

void ReadTags(const std::vector<std::string>& files, bool told) {
  TagReader tags;
  const auto begin = Steady::now();
  for (const std::string& file : files)
    if (!tags.Read(file)) std::abort();
  if (told) Tell("tags alone", files.size(), MsSince(begin));
}

void LookInto(test::TestStation& on, const std::vector<std::string>& files) {
  TagReader tags;
  SoundFileOpener opener;
  ImportReader reader(opener, tags, on.soundFiles, {});
  const auto begin = Steady::now();
  for (const std::string& file : files)
    if (!reader.Read(file).error.empty()) std::abort();
  Tell("looking into them: length, begin, tags", files.size(), MsSince(begin));
}

void TellHolds(std::vector<double> holds) {
  std::sort(holds.begin(), holds.end());
  const auto at = [&](double share) {
    return holds[static_cast<size_t>(share * static_cast<double>(holds.size() - 1))];
  };
  const auto above = [&](double ms) {
    return holds.end() - std::upper_bound(holds.begin(), holds.end(), ms);
  };
  std::printf(
      "holds of the logic's thread, ms: half of them %.2f, 99 %% %.2f, 99.9 %% %.2f, longest %.2f; "
      "above 5 ms %td, above 20 ms %td of %zu\n",
      at(0.5), at(0.99), at(0.999), holds.back(), above(5), above(20), holds.size());
}

// As the window does it, but for the free moments.
void Import(test::TestStation& on, const std::string& folder, size_t files, const char* what) {
  ImportThread thread(
      [] {
        return ImportTools{std::make_unique<SoundFileOpener>(), std::make_unique<TagReader>()};
      },
      on.machineDir.Path());
  std::vector<double> holds;
  const auto begin = Steady::now();
  ImportRun run(on.station, thread, LibraryTab::kMusic, {folder + "/music"}, nullptr);
  for (ImportRun::Turn turn = ImportRun::Turn::kMore; turn != ImportRun::Turn::kDone;) {
    const auto began = Steady::now();
    turn = run.Slice();
    holds.push_back(MsSince(began));
    if (turn == ImportRun::Turn::kLater) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  Tell(what, files, MsSince(begin));
  std::puts(("  " + run.Report().Counts(1)).c_str());
  TellHolds(std::move(holds));
}

}  // namespace
}  // namespace zemo

int main(int count, char** arguments) {
  std::string folder = (std::filesystem::temp_directory_path() / "import-bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  const auto files = zemo::MakeFiles(folder, count > 1 ? std::atoi(arguments[1]) : 10000);
  zemo::test::TestStation on;
  constexpr int kManyCards = 100'000;
  on.Load();
  zemo::ReadTags(files, false);
  zemo::ReadTags(files, true);
  zemo::LookInto(on, files);
  zemo::Import(on, folder, files.size(), "import of them all");
  zemo::Import(on, folder, files.size(), "import of them again");
  on.Sql(zemo::bench::CardsSql(kManyCards));
  on.Sql("DELETE FROM Discotheque WHERE FILENAME LIKE '" + folder + "%'");
  zemo::Import(on, folder, files.size(), "import of them all into 100,000 cards");
  std::filesystem::remove_all(folder);
}
