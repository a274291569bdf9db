// The prelisten of a station on air, on the device that its machine remembers, by the program's own
// event loop.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "app/RealStation.h"
#include "platform/Prelisten.h"
#include "platform/real/sound/SoundFileWriter.h"
#include "platform/real/sound/tests/SoundServers.h"

namespace zemo {
namespace {

using testing::ServerKind;
using testing::SinkRecorder;
using testing::SoundServer;

constexpr int kNumber = 7;  // under which the device was chosen once; another one has it by now

class StationPrelisten : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    SoundServer::LoadSink("one");
    SoundServer::LoadSink("two");
    SoundFileWriter file(server_.Path("second.wav"));
    const std::vector<int16_t> level(2 * kSampleRate, 8000);
    file.Write(level.data(), kSampleRate);
    file.Close();
  }
  // Serves the loop until the answer is yes.
  static bool Within(RealStation& real, int ms, const std::function<bool()>& condition) {
    return testing::Within(ms, [&] {
      real.loop.WaitYield();
      return condition();
    });
  }

  SoundServer server_{ServerKind::kPulseAudio};
};

TEST_F(StationPrelisten, IsHeardOnTheDeviceThatIsKnownByItsKeyAndEndsInTheEventLoop) {
  const testing::TestFolder machineFolder, stationFolder;
  ScreenlessMachine machine;
  RealStation real(stationFolder.Path(""), machineFolder.Path(""),
                   {OutputSpec::Kind::kNull, "", false}, machine.Parts(), nullptr);
  real.localValues.Set("AudioOutPFLID", std::to_string(kNumber));
  real.localValues.Set("AudioOutPFLName", "two");
  ASSERT_NE(real.station.platform.prelisten, nullptr);
  Prelisten& prelisten = *real.station.platform.prelisten;
  std::vector<bool> ends;
  prelisten.OnEnd([&](bool lost) { ends.push_back(lost); });
  EXPECT_TRUE(real.devices.PrelistenClosed());

  SinkRecorder one("one", server_.Path("one"), true), two("two", server_.Path("two"), true);
  prelisten.SetDevice(kNumber);
  prelisten.Open(server_.Path("second.wav"));
  EXPECT_FALSE(real.devices.PrelistenClosed());
  EXPECT_EQ(prelisten.LengthMs(), 1000);
  const uint64_t served = real.loop.EventsServed();
  prelisten.Start();
  ASSERT_TRUE(Within(real, 8000, [&] { return !ends.empty(); }));
  EXPECT_EQ(ends, std::vector<bool>{false});
  EXPECT_GT(real.loop.EventsServed(), served);
  ASSERT_TRUE(Within(real, 8000, [&] { return two.SoundsBehind(0); }));
  EXPECT_FALSE(one.SoundsBehind(0));

  prelisten.Close();
  prelisten.SetDevice(-1);
  prelisten.Open(server_.Path("second.wav"));
  EXPECT_THROW(prelisten.Start(), SoundError) << "none is chosen";
  prelisten.Close();
  EXPECT_TRUE(Within(real, 8000, [&] { return real.prelisten.Rests(); }));
}

}  // namespace
}  // namespace zemo
