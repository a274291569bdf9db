// The window of the models in four languages and three sizes. Pictures are kept for a person to
// look at.
#include <QApplication>

#include "scheduling/screens/tests/ModelWindowFixture.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

class ModelSweep : public ModelWindowTest, public testing::WithParamInterface<int> {
 protected:
  void Prepare() {
    s.SetCnf("Langue", GetParam());
    const char* genres[] = {"POP", "ROCK", "JAZZ", "INSTRUMENTAL", "GOLD N-1", "PLAYLIST"};
    int share = 5;
    for (const char* genre : genres) {
      s.Model(6, genre, share);
      s.Execute("UPDATE Models SET TRANCHE07 = TRANCHE07 * 2, TRANCHE08 = 0 WHERE GENRE = '" +
                std::string(genre) + "'");
      share += 5;
      TitleCard card;
      card.genre = genre;
      for (int title = 0; title < share / 3; ++title) s.Add(card);
      for (int hour = 0; hour < 24; hour += 2) s.Position(6, hour, genre);
    }
    forecast.aired = {{0, 1, "An artist  With a title", 180000},
                      {1, 1, "An artist  With a title", 180000},
                      {2, 3, "C  Two", 240000}};
  }
  void Sweep(const std::string& kind) {
    Open();
    Click("BtnForecast");
    forecast.state = DayForecast::State::kDone;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !Row("Repeats", 0).empty(); }));
    for (const WindowSize& size : kWindowSizes) {
      Window().resize(size.width, size.height);
      QApplication::processEvents();
      ASSERT_EQ(Window().size(), QSize(size.width, size.height));
      const std::string where =
          "models-" + kind + "-" + kLanguageNames[GetParam()] + "-" + std::to_string(size.width);
      CheckWindow(Window(), where);
      KeepPicture(Window(), where);
    }
  }
};

TEST_P(ModelSweep, NothingIsCutAndNothingOverlapsInThePercentages) {
  Prepare();
  Open();
  ClickCell("Models", 1, 10);
  Choose("MasterPourCent", "15");
  Sweep("percent");
}

TEST_P(ModelSweep, NothingIsCutAndNothingOverlapsInTheSkeleton) {
  s.SetCnf("Squelette", -1);
  Prepare();
  Sweep("skeleton");
}

INSTANTIATE_TEST_SUITE_P(Languages, ModelSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
