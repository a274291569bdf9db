// The shown list and what the tick does to the list behind it; the lamps that tell of the air.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <utility>
#include <vector>

#include "engine/OperatorControls.h"
#include "engine/screens/tests/ScreenFixture.h"
#include "ui/Theme.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class OnAirRows : public Screen {
 protected:
  void SetUp() override {
    Screen::SetUp();
    sources.openMusicCard = [this](int32_t code) { card = code; };
    sources.openSelector = [this](const std::string& file) { selected = file; };
  }
  void OpenWith(int titles) {
    Open();
    AddTitles(titles);
    Draw();
  }
  int32_t card = 0;
  std::string selected;
};

// The head went on air since the list was drawn.
TEST_F(OnAirRows, AnOrderMeansTheRowThatWasSeen) {
  OpenWith(4);
  on.station.PL.Remove(1);
  QTest::mouseClick(List().viewport(), Qt::RightButton, {}, InRow(3));
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 4"}));
  on.station.PL.Remove(1);
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier, InRow(2));
  EXPECT_EQ(card, on.station.PL.Row(1).code);
}

TEST_F(OnAirRows, AnOrderForARowThatHasGoneDoesNothing) {
  OpenWith(2);
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  on.station.PL.Clear();
  Key(Qt::Key_Delete);
  Key(Qt::Key_Return);
  Key(Qt::Key_Return, Qt::ControlModifier);
  QTest::mouseClick(List().viewport(), Qt::RightButton, {}, InRow(1));
  EXPECT_TRUE(selected.empty());
  EXPECT_EQ(card, 0);
}

TEST_F(OnAirRows, ARowDraggedWhileTheHeadLeavesIsStillTheSame) {
  OpenWith(4);
  QTest::mousePress(List().viewport(), Qt::LeftButton, {}, InRow(2));
  on.station.PL.Remove(1);
  Draw();
  QTest::mouseMove(List().viewport(), InRow(3));
  QTest::mouseRelease(List().viewport(), Qt::LeftButton, {}, InRow(3));
  EXPECT_EQ(Titles(), (Names{"ARTIST 3", "ARTIST 4", "ARTIST 2"}));
}

TEST_F(OnAirRows, AFailedRequestLeavesNoOldListOnTheScreen) {
  OpenWith(3);
  on.station.requests.PLHidden = true;  // as such a request leaves it
  on.station.PL.Remove(1);
  Draw();
  EXPECT_EQ(List().model()->rowCount(), 2);
}

TEST_F(OnAirRows, RowsThatMoveWithTheirKeysStandOnTheScreenOnce) {
  OpenWith(3);
  std::vector<OnAirRow> rows(on.station.PL.begin(), on.station.PL.end());
  std::swap(rows.front(), rows.back());
  on.station.PL.Restore(std::move(rows));
  Draw();
  EXPECT_EQ(Titles(), (Names{"ARTIST 3", "ARTIST 2", "ARTIST 1"}));
  EXPECT_EQ(List().model()->rowCount(), 3);
}

TEST_F(OnAirRows, OnlyAVoiceTrackWaitsForAFreeMomentToBeDeleted) {
  OpenWith(2);
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(1));
  on.station.engine.tickRunning = true;
  Key(Qt::Key_Delete);
  EXPECT_EQ(Titles(), (Names{"ARTIST 2"}));
  on.station.engine.tickRunning = false;
}

// On air since 100 ms, the first title has its exit point 1600 ms before the end of its 180 s: at
// 178500 ms. The order stands until the next title has begun.
TEST_F(OnAirRows, AnOrderThatHoldsTheTickWaitsForTheElementThatIsAboutToBegin) {
  OpenWith(3);
  Click("Toolbar1_2");
  Click("Toolbar1_5");
  Run(178200);
  on.station.storedList.LblDate = "JOURNALIER";
  on.station.storedList.ChHeure = "18:30";
  Click("BtnSauve");
  QCoreApplication::processEvents();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  Run(1000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return on.SqlText("SELECT COUNT(*) FROM Playlist") == "1"; }, 5000));
}

TEST_F(OnAirRows, TheVoiceTrackButtonFollowsTheRowAndTheMode) {
  OpenWith(2);
  Click("Toolbar1_2");
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(1));
  Draw();
  EXPECT_TRUE(Find("BntVoiceTrack")->isVisible());
  Click("Toolbar1_1");
  EXPECT_FALSE(Find("BntVoiceTrack")->isVisible());
  Click("Toolbar1_2");
  EXPECT_TRUE(Find("BntVoiceTrack")->isVisible());
  OnAir::PL_RightClick(on.station, 2);
  OnAir::PL_RightClick(on.station, 1);
  Draw();
  EXPECT_FALSE(Find("BntVoiceTrack")->isVisible());
}

TEST_F(OnAirRows, TheLampTellsOfASilentAir) {
  Open();
  Click("Toolbar1_5");
  window->Observe();
  Draw();
  EXPECT_EQ(Text("OnAirLamp"), "ANTENNE");
  Run(10000);  // the list is empty: nothing sounds
  window->Observe();
  Draw();
  EXPECT_EQ(Text("OnAirLamp"), "SILENCE");
}

// Red, and its reason in amber, of what the output tells.
TEST_F(OnAirRows, TheLampIsRedOnlyWhileADeviceTakesTheSound) {
  OutputFigures output{.output = "card", .heard = true};
  sources.output = [&output] { return output; };
  OpenWith(3);
  Click("Toolbar1_5");
  Run(1000);
  const auto lamp = [this] { return Find("OnAirLamp")->styleSheet(); };
  EXPECT_TRUE(lamp().contains("#ffd92b2b")) << lamp().toStdString();
  EXPECT_FALSE(Find("OnAirLampReason")->isVisible());
  const std::pair<OutputFigures, std::string> unheard[] = {
      {{.output = "a card that no routine names"}, "a card that no routine names"},
      {{.output = "no output", .device = false}, "aucune sortie"},
      {{.output = "file /air/of/today.wav", .heard = true, .device = false},
       "fichier /air/of/today.wav"}};
  for (const auto& [one, shown] : unheard) {
    output = one;
    Draw();
    EXPECT_EQ(Text("OnAirLamp"), "SANS CARTE");
    EXPECT_TRUE(lamp().contains("#fff0b44a")) << lamp().toStdString();
    EXPECT_TRUE(Find("OnAirLampReason")->isVisible());
    EXPECT_EQ(Find("OnAirLamp")->toolTip().toStdString(),
              "Personne ne l'entend : aucune carte ne prend le son (" + shown + ")");
  }
  output = {.output = "card", .heard = true};
  Draw();
  EXPECT_EQ(Text("OnAirLamp"), "ANTENNE");
  EXPECT_EQ(Find("OnAirLamp")->toolTip().toStdString(), "");
}

TEST_F(OnAirRows, AMinimisedWindowIsDrawnOnceASecond) {
  int drawn = 0;
  sources.output = [&drawn] {
    ++drawn;
    return OutputFigures{.output = "card", .heard = true};
  };
  OpenWith(1);
  window->Begin();
  EXPECT_TRUE(QTest::qWaitFor([&] { return drawn > 20; }, 10'000));
  window->showMinimized();
  QApplication::processEvents();
  drawn = 0;
  int ticks = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&ticks] { ++ticks; });
  tick.start(100);
  QElapsedTimer passed;
  passed.start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks >= 6; }, 10'000));
  EXPECT_LE(drawn, passed.elapsed() / 1000 + 1);
  window->showNormal();
  drawn = 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return drawn > 20; }, 10'000));
}

TEST_F(OnAirRows, TheLampWithoutADeviceFitsInEveryLanguage) {
  sources.output = [] { return OutputFigures{.output = "no output", .device = false}; };
  struct Shown {
    const char *langue, *word, *reason;
  };
  const Shown words[] = {{"0", "SANS CARTE", "aucune sortie"},
                         {"1", "NO DEVICE", "no output"},
                         {"2", "SEM PLACA", "sem saída"},
                         {"3", "SIN TARJETA", "sin salida"}};
  Loaded();
  for (const auto& [langue, word, reason] : words) {
    on.Set("Langue", langue);
    on.station.base.CheckCnf();
    Open(800, 600);
    on.station.engine.IsRunning = true;
    Draw();
    EXPECT_EQ(Text("OnAirLamp"), word);
    EXPECT_EQ(Text("OnAirLampReason"), reason);
    auto* lamp = Find("OnAirLamp");
    EXPECT_LE(lamp->fontMetrics().horizontalAdvance(QString::fromUtf8(word)), lamp->width());
    KeepPicture(*window, std::string("no-device-") + langue);
  }
}

TEST_F(OnAirRows, NothingElseOnTheScreenIsRedWhileATitleWithAnIntroductionPlaysUnheard) {
  sources.output = [] { return OutputFigures{.output = "no output", .device = false}; };
  Loaded();
  on.AppendCard(on.AddCard({.lengthMs = 180000, .introSec = 14}));
  Open();
  Click("Toolbar1_5");
  Run(8000);
  window->Observe();
  Draw();
  ASSERT_TRUE(Find("VueIntro")->isVisible());
  const QImage picture = window->grab().toImage();
  int red = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QColor colour = picture.pixelColor(x, y);
      // The edge of an orange digit has more green.
      if (colour == Theme::kHeard || (colour.red() > 150 && colour.green() < 80)) ++red;
    }
  EXPECT_EQ(red, 0);
  KeepPicture(*window, "unheard-introduction");
}

TEST_F(OnAirRows, TheLampTellsOfTheEmergencyFolder) {
  const std::pair<const char*, const char*> words[] = {
      {"0", "SECOURS"}, {"1", "EMERGENCY"}, {"2", "EMERGÊNCIA"}, {"3", "EMERGENCIA"}};
  Loaded();
  for (const auto& [langue, word] : words) {
    on.Set("Langue", langue);
    on.station.base.CheckCnf();
    Open(800, 600);
    on.station.engine.IsRunning = true;
    on.station.engine.EmergencyOnAir = true;
    Draw();
    EXPECT_EQ(Text("OnAirLamp"), word);
    auto* lamp = Find("OnAirLamp");
    EXPECT_LE(lamp->fontMetrics().horizontalAdvance(QString::fromUtf8(word)), lamp->width());
  }
}

TEST_F(OnAirRows, NoModeMovesTheHeader) {
  for (const QSize& size : {QSize(800, 600), QSize(1280, 800), QSize(1920, 1080)}) {
    Open(size.width(), size.height());
    const QRect header = Find("StatusHeader")->geometry();
    const QRect strip = Find("BottomStrip")->geometry();
    for (const char* mode : {"Toolbar1_2", "Toolbar1_3", "Toolbar1_1"}) {
      Click(mode);
      QCoreApplication::processEvents();
      EXPECT_EQ(Find("StatusHeader")->geometry(), header) << mode;
      EXPECT_EQ(Find("BottomStrip")->geometry(), strip) << mode;
    }
  }
}

// A track that was made to follow the first title and to lead into the second.
TEST_F(OnAirRows, ATrackWhoseNeighboursAreOthersIsMarkedWithTheReason) {
  OpenWith(3);
  OnAirElement track;
  track.code = Element::kVoiceTrack;
  track.title = "Voice Track";
  track.liesOver = true;
  track.madeFor = NeighboursOf(&on.station.PL.Row(1), &on.station.PL.Row(2));
  on.station.PL.Insert(2, track);
  Draw();
  const auto shown = [this](int role) {
    return List().model()->index(1, Col::kTitle).data(role).toString();
  };
  EXPECT_EQ(shown(Qt::DisplayRole), "Voice Track");
  const QVariant colour = List().model()->index(1, Col::kTitle).data(Qt::ForegroundRole);
  EXPECT_FALSE(colour.isValid());
  on.station.PL.Row(1).exitMs = 1234;
  Draw();
  EXPECT_EQ(shown(Qt::DisplayRole), "! Voice Track");
  EXPECT_EQ(shown(Qt::ToolTipRole),
            "La durée ou le point de sortie de l'élément précédent a changé depuis ce Voice Track");
  EXPECT_EQ(List().model()->index(1, Col::kTitle).data(Qt::ForegroundRole).value<QColor>(),
            Theme::kHeard);
  on.station.PL.Remove(3);
  on.station.PL.Row(1).exitMs = track.madeFor->exitBeforeMs;
  Draw();
  EXPECT_EQ(shown(Qt::ToolTipRole), "Ce Voice Track a été fait pour précéder un autre élément");
}

}  // namespace
}  // namespace zemo::test
