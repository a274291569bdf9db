// `zemoradio devices` from outside, on a sound server of the test's own, and what a run makes of
// the machine's choice.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"
#include "platform/real/sound/tests/SoundServers.h"

namespace zemo {
namespace {

using Json = nlohmann::json;
using testing::ServerKind;
using testing::SoundServer;

class Devices : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    const std::string why = server_.Start();
    if (!why.empty()) GTEST_SKIP() << why;
    one_ = SoundServer::LoadSink("one");
    SoundServer::LoadSink("two");
    ASSERT_TRUE(SoundServer::MakeDefault("two"));
    ASSERT_TRUE(
        testing::Within(5000, [] { return SoundServer::Answer("get-default-sink") == "two"; }));
  }
  Json Listed() const { return Json::parse(Run("devices --machine machine --json").out); }
  static Json Of(const Json& listed, const std::string& key) {
    for (const Json& device : listed["devices"])
      if (device["key"] == key) return device;
    return {};
  }

  SoundServer server_{ServerKind::kPulseAudio};
  std::string one_;  // the module of that sink
};

TEST_F(Devices, AreListedWithWhatTheyAreUsedFor) {
  const Json listed = Listed();
  const Json one = Of(listed, "one"), two = Of(listed, "two");
  EXPECT_EQ(one["name"], "Sink_one");
  EXPECT_EQ(one["system"], "PulseAudio");
  EXPECT_EQ(one["rates"], Json::array({44100}));
  EXPECT_EQ(one["channels"], 2);
  EXPECT_EQ(one["default"], false);
  EXPECT_EQ(one["uses"], Json::array());
  EXPECT_EQ(two["default"], true);
  EXPECT_EQ(two["uses"], Json::array({"air"}));
  EXPECT_EQ(listed["air"]["number"], two["number"]);
  EXPECT_EQ(listed["air"]["missing"], false);
  EXPECT_EQ(listed["prelisten"]["number"], Json());
  const Result told = Run("devices --machine machine");
  EXPECT_EQ(told.status, 0);
  EXPECT_NE(told.out.find("  Sink_two\n    PulseAudio, 2 channels, 44100 Hz; default, air\n"),
            std::string::npos)
      << told.out;
}

TEST_F(Devices, AChosenOneStaysChosenWhileOthersComeAndGo) {
  MakeStation({});
  const std::string number = Of(Listed(), "one")["number"].dump();
  const Result set = Run("settings --station station --machine machine set PlayCombo " + number);
  ASSERT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(ReadText(root_ / "machine/ZemoAudio.Ini"), number + ",-1\r\n");
  EXPECT_EQ(Of(Listed(), "one")["uses"], Json::array({"air"}));
  EXPECT_EQ(Of(Listed(), "two")["uses"], Json::array());

  ASSERT_TRUE(SoundServer::UnloadSink(one_));
  EXPECT_EQ(Listed()["air"]["missing"], true);
  EXPECT_EQ(Listed()["air"]["chosen"], "one");
  EXPECT_NE(Run("devices --machine machine").out.find("air: one is chosen and not there\n"),
            std::string::npos);

  SoundServer::LoadSink("three");
  SoundServer::LoadSink("one");
  const Json listed = Listed();
  EXPECT_NE(Of(listed, "one")["number"].dump(), number);
  EXPECT_EQ(Of(listed, "one")["uses"], Json::array({"air"}));
}

TEST_F(Devices, ARunOnAChosenNumberRemembersItsDeviceAndPlaysThere) {
  MakeStation({5}, true);
  Put("machine/ZemoAudio.Ini", Of(Listed(), "one")["number"].dump() + ",-1\r\n");
  const Result run = Shell(
      "timeout 30 $zemoradio run --station station --machine machine --for 3 & "
      "i=0; until pactl list sink-inputs | grep -q 'Sink: 0' || [ $((i=i+1)) -gt 200 ]; do "
      "sleep 0.05; done; pactl list sink-inputs >inputs; wait $!");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_NE(ReadText(root_ / "inputs").find("Sink: 0\n"), std::string::npos);  // the first loaded
  EXPECT_NE(ReadText(root_ / "machine/Settings.Ini").find("AudioOutName=one"), std::string::npos);
}

TEST_F(Devices, ARunWithoutItsChosenDeviceSaysSoAndGoesOn) {
  MakeStation({5}, true);
  const Result run = Run("run --station station --machine machine --output device:nowhere --for 3");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      run.err,
      "zemoradio: Sound: nowhere: no such sound device on this machine: the air goes on unheard "
      "until it is back\n");
  const std::string log = ReadText(root_ / "station/Messages.Txt");
  EXPECT_NE(log.find("\tSound\t321\tnowhere: no such sound device"), std::string::npos) << log;
  EXPECT_EQ(LinesOf(log).size(), 1u) << log;
  EXPECT_NE(run.out.find("Title 1"), std::string::npos);
}

}  // namespace
}  // namespace zemo
