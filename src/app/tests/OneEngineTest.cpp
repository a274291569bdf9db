// A machine's folder has one engine, with real processes.
#include "BlackBox.h"

namespace zemo {
namespace {

class OneEngine : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation({900, 900}, true);
    std::filesystem::create_directory(root_ / "other");
  }

  // Shell: the first engine, in the background; `first` is its process. Its file of lines grows
  // once it is on air.
  static std::string FirstOnAir() {
    return "rm -f lines; $zemoradio run --station station --machine machine --output null >lines & "
           "first=$!; echo $first >pid; i=0; "
           "until [ -s lines ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; ";
  }
  static std::string EndFirst() {
    return "; s=$?; while kill -TERM $first 2>/dev/null; do sleep 0.1; done; wait $first; exit $s";
  }
  std::string Pid() const { return LinesOf(ReadText(root_ / "pid")).at(0); }
  std::string Refusal() const {
    return "zemoradio: the machine folder machine is in use by process " + Pid() +
           " with the station " + Path("station") +
           "; a second engine needs a folder of its own (--machine)\n";
  }
};

TEST_F(OneEngine, RefusesAnotherOneBeforeAnythingIsWritten) {
  std::string seconds;
  for (const char* second : {"run --output null --for 0", "--output null --for 0",
                             "simulate --in-place --for 1 --trace trace",
                             "render --in-place --for 1 --audio a.wav --trace trace"})
    seconds += std::string("timeout -s KILL 20 $zemoradio ") + second +
               " --station other --machine machine 2>>refusals; echo $? >>states; ";
  const Result first = Shell(
      FirstOnAir() + "chmod 700 $TMPDIR; cp -r machine before; export QT_QPA_PLATFORM=offscreen " +
      "XDG_RUNTIME_DIR=$TMPDIR; " + seconds + "cp -r machine after; true" + EndFirst());
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(ReadText(root_ / "states"), "1\n1\n1\n1\n");
  EXPECT_EQ(ReadText(root_ / "refusals"), Refusal() + Refusal() + Refusal() + Refusal());
  EXPECT_TRUE(Files("other").empty());
  EXPECT_EQ(Files("after")["ZemoPlay.Ini"], Files("before")["ZemoPlay.Ini"]);
  EXPECT_NE(Files("after")["ZemoPlay.Ini"].find("#TRUE#"), std::string::npos);
}

TEST_F(OneEngine, KeepsItsFlagBesideARefusalAndGoesOnAirAgainAfterAPowerCut) {
  const std::string refusedThenKilled =
      "$zemoradio run --station other --machine machine --output null --for 0; s=$?; "
      "kill -KILL $first; wait $first; exit $s";
  EXPECT_EQ(Shell(FirstOnAir() + refusedThenKilled).status, 1);
  EXPECT_NE(ReadText(root_ / "machine/ZemoPlay.Ini").find("#TRUE#"), std::string::npos);
  EXPECT_NE(ReadText(root_ / "machine/Engine.Lock"), "");  // the text of who is gone locks nothing
  const Result again = Shell(FirstOnAir() + "true" + EndFirst());
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.err, "");
  EXPECT_NE(ReadText(root_ / "lines").find("  15:00\n"), std::string::npos);
}

TEST_F(OneEngine, IsAskedAndSimulatedByOthersWhileItIsOnAir) {
  const std::string here = " --station station --machine machine";
  const Result result = Shell(
      FirstOnAir() + "$zemoradio simulate --for 1m --trace trace" + here +
      " && $zemoradio grid >grid" + here + " && $zemoradio settings set FadeOut 1500" + here +
      " && $zemoradio simulate --in-place --for 1 --trace trace --station other --machine own" +
      EndFirst());
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST_F(OneEngine, OfEachOfTwoFoldersAirTwoStationsSideBySide) {
  const std::string run = "$zemoradio run --output null --for 2 ";
  const Result result = Shell(FirstOnAir() + run + "--station other --machine own" + EndFirst());
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(std::filesystem::exists(root_ / "own/ZemoPlay.Ini"));
}

}  // namespace
}  // namespace zemo
