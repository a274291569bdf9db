// The picture of the join: what stands where, and how mouse and keys move the track and the cursor.
// 170 s to 187 s are the track's place in most of them: it ends with the intro.
#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QWheelEvent>

#include "platform/SoundSource.h"
#include "ui/Theme.h"
#include "voicetrack/screens/tests/VoiceTrackWindowFixture.h"

namespace zemo::test {
namespace {

class JoinPicture : public VoiceTrackScreenTest {
 protected:
  void OpenWithTrack() {
    OpenOn(1);
    Load(17000);
    Click("CmdVTToIntro");
    Wait(50);
    ASSERT_EQ(Editor().LblPositionVT, 170000);
    View().setFocus();
  }
  void Wheel(const QPoint& at, int turned, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QWheelEvent event(at, View().mapToGlobal(at), {}, {0, turned}, Qt::NoButton, keys,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&View(), &event);
  }
  int32_t PixelMs() { return View().MsOf(1) - View().MsOf(0) + 1; }
  QPoint InBefore(int32_t ms) { return {View().XOf(ms), View().height() / 5}; }
  QColor ColourAt(const QPoint& point) { return View().grab().toImage().pixelColor(point); }
  // Of the preview's starts, the position of that slot.
  std::string StartedAt(const std::string& slot) {
    for (const Seen& event : on.Events("preview"))
      if (event["state"] == "start" && event["slot"] == slot) return event["position_ms"];
    return {};
  }
};

TEST_F(JoinPicture, AllThatMeetsInTheJoinIsInView) {
  OpenWithTrack();
  const JoinView::Picture& shown = View().Shown();
  EXPECT_EQ(shown.fromMs, 168000);  // the pre-roll and the track begin at 170 s
  EXPECT_EQ(shown.toMs, 190000);    // track and intro end at 187 s
  EXPECT_EQ(ColourAt({View().XOf(175000), View().height() / 5}), Theme::kExit);
  EXPECT_EQ(View().TrackRect().left(), View().XOf(170000));
  EXPECT_EQ(View().TrackRect().right(), View().XOf(187000));
  for (const JoinView::Sound& sound : shown.sounds) EXPECT_TRUE(sound.whole);
}

TEST_F(JoinPicture, EachSoundIsReadAsCloseAsItIsShown) {
  OpenWithTrack();
  Wait(50);
  Wait(50);
  Wait(50);
  const auto& sounds = View().Shown().sounds;
  ASSERT_TRUE(sounds[JoinView::kBefore].part && sounds[JoinView::kTrack].part &&
              sounds[JoinView::kAfter].part);
  EXPECT_EQ(sounds[JoinView::kBefore].part->fromFrame, 168 * 44100);
  EXPECT_EQ(sounds[JoinView::kTrack].part->toFrame, 17 * 44100);
  EXPECT_EQ(sounds[JoinView::kAfter].part->toFrame, 15 * 44100);  // of 190 s, begun at 175 s
}

TEST_F(JoinPicture, TheMusicIsDrawnDuckedBelowTheTrackAndFadedBehindTheExitPoint) {
  on.Set("VolumeMusique", "16000");
  on.Set("VolumeMusiqueSous", "4000");
  on.Set("FadeOut", "2000");
  OpenWithTrack();
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kBefore, 169999), 1);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kBefore, 170000), 0.25);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kBefore, 176000), 0.125);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kBefore, 177000), 0);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kAfter, 186999), 0.25);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kAfter, 187000), 1);
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kTrack, 175000), 1);
  Click("CheckCut");
  EXPECT_DOUBLE_EQ(View().GainAt(JoinView::kBefore, 174000), 1);
}

TEST_F(JoinPicture, TheTrackIsMovedWithTheMouseAndTheViewStandsStillMeanwhile) {
  OpenWithTrack();
  const QPoint from = InTrack(172000), to = InTrack(170500);
  QTest::mousePress(&View(), Qt::LeftButton, Qt::NoModifier, from);
  QMouseEvent move(QEvent::MouseMove, to, View().mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QApplication::sendEvent(&View(), &move);
  Wait(50);
  EXPECT_NEAR(Editor().LblPositionVT, 168500, 2 * PixelMs());
  EXPECT_EQ(View().Shown().fromMs, 168000);
  QTest::mouseRelease(&View(), Qt::LeftButton, Qt::NoModifier, to);
  EXPECT_EQ(View().Shown().fromMs, Editor().LblPositionVT - 2000);
  EXPECT_EQ(Text("LblPositionVT"), std::to_string(Editor().LblPositionVT));
}

TEST_F(JoinPicture, TheTrackBeginsAtTheExitPointAtTheLatest) {
  OpenWithTrack();
  Drag(InTrack(171000), InTrack(189000));
  EXPECT_EQ(Editor().LblPositionVT, 175000);
}

TEST_F(JoinPicture, TheArrowsMoveTheTrackByTenAndByAHundred) {
  OpenWithTrack();
  Key(Qt::Key_Right);
  EXPECT_EQ(Editor().LblPositionVT, 170010);
  Key(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Editor().LblPositionVT, 169910);
  Key(Qt::Key_Left);
  EXPECT_EQ(Editor().LblPositionVT, 169900);
  Key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(Editor().LblPositionVT, 170000);
}

TEST_F(JoinPicture, ATrackThatIsAnElementOfItsOwnStaysWhereItIs) {
  OpenWithTrack();
  Click("CheckCut");
  EXPECT_EQ(View().TrackRect().left(), View().XOf(175000));
  Key(Qt::Key_Right);
  Drag(InTrack(180000), InTrack(183000));
  EXPECT_EQ(Editor().LblPositionVT, 170000);
}

TEST_F(JoinPicture, SpacePlaysFromTheCursorAndEndsTheJoinAgain) {
  OpenWithTrack();
  const QPoint place = InBefore(173000);
  QTest::mouseClick(&View(), Qt::LeftButton, Qt::NoModifier, place);
  EXPECT_EQ(View().Shown().cursorMs, View().MsOf(place.x()));
  Key(Qt::Key_Space);
  EXPECT_EQ(StartedAt("0"), std::to_string(View().MsOf(place.x())));
  Wait(1000);
  EXPECT_EQ(View().Shown().heardMs, View().MsOf(place.x()) + 1000);
  Key(Qt::Key_Space);
  EXPECT_FALSE(Editor().join.on);
  EXPECT_EQ(View().Shown().heardMs, -1);
}

TEST_F(JoinPicture, TheCursorGoesByTheSecondAndHomeToThePreRoll) {
  OpenWithTrack();
  EXPECT_EQ(View().Shown().cursorMs, 170000);
  Key(Qt::Key_Right, Qt::ControlModifier);
  Key(Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(View().Shown().cursorMs, 172000);
  Key(Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(View().Shown().cursorMs, 171000);
  Key(Qt::Key_Home);
  EXPECT_EQ(View().Shown().cursorMs, 170000);
}

// Of 22 s half, then a quarter, is in view.
TEST_F(JoinPicture, TheWheelShowsItCloserAroundTheMouse) {
  OpenWithTrack();
  const QPoint mouse(View().XOf(173500), View().height() / 2);
  const int32_t under = View().MsOf(mouse.x());
  Wheel(mouse, 120);
  EXPECT_EQ(View().Shown().toMs - View().Shown().fromMs, 11000);
  EXPECT_NEAR(View().MsOf(mouse.x()), under, 2 * PixelMs());
  Wheel(mouse, 120);
  EXPECT_EQ(View().Shown().toMs - View().Shown().fromMs, 5500);
  EXPECT_NEAR(View().MsOf(mouse.x()), under, 4 * PixelMs());
  for (int turn = 0; turn < 4; ++turn) Wait(50);  // one part is asked for at a time
  ASSERT_TRUE(View().Shown().sounds[JoinView::kTrack].part);
  EXPECT_EQ(View().Shown().sounds[JoinView::kTrack].part->fromFrame,
            MsToFrames(View().Shown().fromMs - 170000));
  for (int turn = 0; turn < 3; ++turn) Wheel(mouse, -120);
  EXPECT_EQ(View().Shown().fromMs, 168000);
  EXPECT_EQ(View().Shown().toMs, 190000);
}

TEST_F(JoinPicture, AFineWheelTurnsByPartsOfANotch) {
  OpenWithTrack();
  const QPoint mouse(View().XOf(173500), View().height() / 2);
  for (int part = 0; part < 3; ++part) Wheel(mouse, 40);
  EXPECT_EQ(View().Shown().toMs - View().Shown().fromMs, 11000);
}

TEST_F(JoinPicture, PlusAndMinusShowItCloserAroundTheCursorSixtyFourTimesAtMost) {
  OpenWithTrack();
  QTest::mouseClick(&View(), Qt::LeftButton, Qt::NoModifier, InBefore(172000));
  for (int turn = 0; turn < 9; ++turn) Key(Qt::Key_Plus, Qt::ShiftModifier);
  EXPECT_EQ(View().Shown().toMs - View().Shown().fromMs, 22000 / 64);
  EXPECT_LE(View().Shown().fromMs, View().Shown().cursorMs);
  EXPECT_GE(View().Shown().toMs, View().Shown().cursorMs);
  for (int turn = 0; turn < 9; ++turn) Key(Qt::Key_Minus);
  EXPECT_EQ(View().Shown().fromMs, 168000);
  EXPECT_EQ(View().Shown().toMs, 190000);
}

TEST_F(JoinPicture, ShiftAndTheWheelScrollInsideOfTheWhole) {
  OpenWithTrack();
  const QPoint mouse(View().XOf(168000), View().height() / 2);
  Wheel(mouse, 120);
  Wheel(mouse, 120);
  EXPECT_EQ(View().Shown().fromMs, 168000);
  Wheel(mouse, -120, Qt::ShiftModifier);  // an eighth of 5.5 s
  EXPECT_EQ(View().Shown().fromMs, 168000 + 687);
  for (int turn = 0; turn < 30; ++turn) Wheel(mouse, -120, Qt::ShiftModifier);
  EXPECT_EQ(View().Shown().toMs, 190000);
  Wheel(mouse, 120, Qt::ShiftModifier);  // no turn was kept at the end
  EXPECT_EQ(View().Shown().toMs, 190000 - 687);
}

TEST_F(JoinPicture, SeenCloserTheTrackIsMovedAsFinely) {
  OpenWithTrack();
  const QPoint mouse(View().XOf(170000), View().height() / 2);
  for (int turn = 0; turn < 4; ++turn) Wheel(mouse, 120);
  const int32_t from = View().Shown().fromMs;
  ASSERT_LT(View().XOf(170600), View().width());
  Drag(InTrack(170500), InTrack(170600));
  EXPECT_NEAR(Editor().LblPositionVT, 170100, 2 * PixelMs());
  EXPECT_EQ(View().Shown().fromMs, from);
}

TEST_F(JoinPicture, SeenCloserTheViewGoesWithTheCursorAndWithWhatIsHeard) {
  OpenWithTrack();
  const QPoint mouse(View().XOf(170000), View().height() / 2);
  for (int turn = 0; turn < 3; ++turn) Wheel(mouse, 120);
  Key(Qt::Key_Home);  // 170 s
  for (int second = 1; second <= 15; ++second) {
    Key(Qt::Key_Right, Qt::ControlModifier);
    ASSERT_EQ(View().Shown().cursorMs, 170000 + second * 1000);
    ASSERT_LE(View().Shown().fromMs, View().Shown().cursorMs);
    ASSERT_GT(View().Shown().toMs, View().Shown().cursorMs);
  }
  Key(Qt::Key_Home);
  Key(Qt::Key_Space);
  for (int second = 0; second < 12; ++second) {
    Wait(1000);
    ASSERT_LE(View().Shown().fromMs, View().Shown().heardMs);
    ASSERT_GT(View().Shown().toMs, View().Shown().heardMs);
  }
}

TEST_F(JoinPicture, WhatIsRecordedGrowsFromThePlaceWhereItAirs) {
  OpenOn(1);
  Key(Qt::Key_F5);
  Wait(4000);
  Key(Qt::Key_F9);
  Wait(2000);
  EXPECT_TRUE(View().Shown().recording);
  EXPECT_EQ(View().Shown().plan.trackFromMs, 174000 - 2420);
  EXPECT_EQ(View().Shown().plan.trackToMs, 174000 - 2420 + 2000);
}

}  // namespace
}  // namespace zemo::test
