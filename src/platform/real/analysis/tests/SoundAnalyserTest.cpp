// Sound files of every format, measured in one decode.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <chrono>
#include <thread>

#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/WaveformReader.h"
#include "platform/real/decoders/tests/TestSounds.h"

namespace zemo {
namespace {

constexpr int kMp3 = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
constexpr int kWav = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

SoundMeasures Measured(const std::string& path) {
  SoundFileOpener opener;
  return MeasureSound(opener, path).value();
}

// Ten seconds of 1 kHz at -20 dBFS in each of the channels.
Tones Tone(int channels) {
  return {44100, std::vector<double>(static_cast<size_t>(channels), 1000.0), 0.1, 441'000};
}

// A tone of 1 kHz has as many LUFS in two channels as its peak has dBFS in each.
TEST(SoundAnalyser, EveryFormatIsMeasuredAlike) {
  const TestFolder folder;
  for (const auto& [name, format] :
       {std::pair("a.wav", kWav), std::pair("a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16),
        std::pair("a.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS), std::pair("a.mp3", kMp3)}) {
    for (const int channels : {1, 2}) {
      SCOPED_TRACE(std::string(name) + ", " + std::to_string(channels));
      WriteSound(folder.Path(name), format, Tone(channels));
      const SoundMeasures measures = Measured(folder.Path(name));
      EXPECT_EQ(measures.lengthMs, 10'000);
      EXPECT_NEAR(*measures.loudnessLufs, -20, 0.2);
      EXPECT_NEAR(*measures.truePeakDb, -20, 0.5);
      EXPECT_EQ(measures.soundBeginMs, 0);
      EXPECT_EQ(measures.soundEndMs, 10'000);
      EXPECT_LE(measures.exitMs, 20);
      EXPECT_EQ(measures.peaks.size(), kWavePeaks);
      EXPECT_NEAR(measures.peaks[500], 0.1 * 255, 2);
    }
  }
}

TEST(SoundAnalyser, AFileOfAnotherRateIsMeasuredAsItIsHeard) {
  const TestFolder folder;
  Tones tones = Tone(2);
  tones.rate = 48'000;
  tones.frames = 480'000;
  WriteSound(folder.Path("a.wav"), kWav, tones);
  EXPECT_NEAR(*Measured(folder.Path("a.wav")).loudnessLufs, -20, 0.2);
}

TEST(SoundAnalyser, TheShapeIsTheOneThatTheScreenDraws) {
  const TestFolder folder;
  const auto bursts = Bursts(44100, 2, 44100 * 5);
  WriteBytes(folder.Path("a.mp3"), Mp3BytesOf(bursts, 44100, 2, Mp3Mode::kVariable, 0.4));
  WaveformReader reader(std::make_unique<SoundFileOpener>(), folder.Path("Peaks"));
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  auto shape = reader.PeaksOf(folder.Path("a.mp3"));
  while (!shape && std::chrono::steady_clock::now() < bound) {
    std::this_thread::yield();  // another one reads
    shape = reader.PeaksOf(folder.Path("a.mp3"));
  }
  ASSERT_TRUE(shape);
  EXPECT_EQ(Measured(folder.Path("a.mp3")).peaks, *shape);
}

TEST(SoundAnalyser, AFileOfAFewSamplesIsMeasured) {
  const TestFolder folder;
  WriteSound(folder.Path("a.wav"), kWav, {44100, {1000, 1000}, 0.5, 45});
  const SoundMeasures measures = Measured(folder.Path("a.wav"));
  EXPECT_EQ(measures.lengthMs, 1);
  EXPECT_LE(measures.soundEndMs, 1);
  EXPECT_EQ(measures.exitMs, 1);
}

TEST(SoundAnalyser, AFileThatIsNoSoundIsToldInOneLine) {
  const TestFolder folder;
  WriteBytes(folder.Path("a.mp3"), Noise(10'000, 1));
  for (const auto* name : {"a.mp3", "gone.wav"}) {
    try {
      Measured(folder.Path(name));
      ADD_FAILURE() << name;
    } catch (const SoundError& error) {
      const std::string line = error.what();
      EXPECT_NE(line.find(folder.Path(name)), std::string::npos) << line;
      EXPECT_EQ(line.find('\n'), std::string::npos) << line;
    }
  }
}

// A source that gives nothing of what it states, and one that tells its reads.
class FakeSource : public SoundSource {
 public:
  FakeSource(int64_t given, std::function<void()> onRead)
      : given_(given), onRead_(std::move(onRead)) {}
  int64_t LengthFrames() const override { return 1'000'000; }
  int Read(float* stereo, int frames) override {
    onRead_();
    const int n = static_cast<int>(std::min<int64_t>(frames, given_));
    given_ -= n;
    std::fill_n(stereo, 2 * n, 0.5F);
    return n;
  }
  void Seek(int64_t) override {}

 private:
  int64_t given_;
  std::function<void()> onRead_;
};

class FakeOpener : public SoundOpener {
 public:
  explicit FakeOpener(
      int64_t given, std::function<void()> onRead = [] {})
      : given_(given), onRead_(std::move(onRead)) {}
  std::unique_ptr<SoundSource> Open(const std::string&) override {
    return std::make_unique<FakeSource>(given_, onRead_);
  }

 private:
  int64_t given_;
  std::function<void()> onRead_;
};

TEST(SoundAnalyser, AFileOfWhichNothingCanBeDecodedIsAnError) {
  FakeOpener opener(0);
  EXPECT_THROW(MeasureSound(opener, "a.mp3"), SoundError);
}

// 22050 of 1000000 frames: half a second of 22.676.
TEST(SoundAnalyser, OfADamagedFileCountsWhatCouldBeDecoded) {
  FakeOpener opener(22'050);
  const SoundMeasures measures = MeasureSound(opener, "a.mp3").value();
  EXPECT_EQ(measures.lengthMs, 22'676);
  EXPECT_GE(measures.peaks[0], 127);
  EXPECT_EQ(measures.peaks[23], 0);
}

TEST(SoundAnalyser, ItStopsBetweenTwoBlocksWhenItIsToldTo) {
  std::stop_source stop;
  int reads = 0;
  FakeOpener opener(1'000'000, [&] {
    if (++reads == 3) stop.request_stop();
  });
  EXPECT_FALSE(MeasureSound(opener, "a.mp3", stop.get_token()));
  EXPECT_EQ(reads, 3);
}

}  // namespace
}  // namespace zemo
