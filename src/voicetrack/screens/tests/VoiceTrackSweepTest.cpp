// The window of the voice tracks in four languages and three sizes. Pictures are kept for a person
// to look at.
#include <QApplication>

#include "support/TestStation.h"
#include "ui/tests/WindowSweep.h"
#include "voicetrack/screens/tests/VoiceTrackWindowFixture.h"

namespace zemo::test {
namespace {

class VoiceTrackSweep : public VoiceTrackScreenTest, public testing::WithParamInterface<int> {
 protected:
  void Prepare(int langue) {
    on.Set("Langue", std::to_string(langue));
    on.station.base.CheckCnf();
    on.localValues.Set("AudioOutID", "0");  // the first output, which the window says
    on.soundDevices.devices = {{{"Built-in Audio Mono", "a"}, {"Studio microphone", "b"}},
                               {{"Built-in Audio Analog Stereo", "c"}, {"Headphones", "d"}}};
    for (int more = 0; more < 12; ++more)
      on.AppendCard(on.AddCard({.artist = "THE WANDERING BAND " + std::to_string(more),
                                .title = "SONG OF THE SEA",
                                .exitMs = 4000,
                                .introSec = 9}));
  }
  void Check(const std::string& name) {
    QApplication::processEvents();
    CheckWindow(*window, name);
    KeepPicture(*window, name);
  }
};

TEST_P(VoiceTrackSweep, NothingIsCutAndNothingOverlaps) {
  Prepare(GetParam());
  OpenOn(1);
  for (const WindowSize& size : kWindowSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    const std::string where =
        std::string("voicetrack-") + kLanguageNames[GetParam()] + "-" + std::to_string(size.width);
    Check(where + "-new");
    on.recorder.gives = false;
    Click("BtnPplay2");
    Wait(3000);
    Click("BtnRecord");
    Wait(4500);
    Check(where + "-recording");
    Click("BtnStop");
    on.recorder.gives = true;
    Load(17000);
    Click("CheckTest");
    Wait(6000);
    Check(where + "-join");
    Click("BtnStop2");
    Click("CheckCut");
    Wait(100);
    Check(where + "-cut");
    Click("CheckCut");
    Click("BtnSave");
    Wait(100);
    Check(where + "-saved");
    View().setFocus();
    for (int turn = 0; turn < 5; ++turn) Key(Qt::Key_Plus);
    for (int turn = 0; turn < 4; ++turn) Wait(50);
    Check(where + "-closer");
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, VoiceTrackSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
