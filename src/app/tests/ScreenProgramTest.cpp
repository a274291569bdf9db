// The program with its screen, on Qt's platform without a display: it opens, airs and leaves by a
// signal. And its forecast as a second process.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include "BlackBox.h"
#include "app/ForecastProcess.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

class ScreenProgram : public BlackBox {};

TEST_F(ScreenProgram, TheBareCommandOpensTheScreenAirsAndLeavesByASignal) {
  MakeStation({2, 2, 2}, true);
  Put("machine/Settings.Ini", "AutoPlay=True\n");
  const Result result = Shell(
      "export QT_QPA_PLATFORM=offscreen; "
      "$zemoradio --station station --machine machine --output null & "
      "i=0; until [ -s station/ZemoOnOff.Dat ] || [ $((i=i+1)) -gt 3000 ]; do sleep 0.01; done; "
      "cp station/ZemoOnOff.Dat begun; kill -TERM $!; wait $!");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(ReadText(root_ / "begun"), "1");
  EXPECT_EQ(ReadText(root_ / "station/ZemoOnOff.Dat").at(0), '0');
}

// The base of an empty folder is made at the start, and speaks the machine's language from then on;
// one that is there keeps its own.
TEST_F(ScreenProgram, TheFirstStartOfAnEmptyStationSpeaksTheMachinesLanguage) {
  Put("station/Genre.Txt", "POP\r\n");
  const std::string run =
      "export QT_QPA_PLATFORM=offscreen LC_ALL=; $zemoradio --station station --machine machine "
      "--output null --for 1";
  EXPECT_EQ(Shell("export LANG=es_ES.UTF-8; " + run).status, 0);
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT Langue FROM Cnf'").out, "3\n");
  EXPECT_EQ(Shell("export LANG=pt_PT.UTF-8; " + run).status, 0);
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT Langue FROM Cnf'").out, "3\n");
}

class ForecastRun : public BlackBox {
 protected:
  static void WaitFor(const ForecastProcess& forecast) {
    QElapsedTimer bound;
    bound.start();
    // Asleep between its events: the process that is waited for has the lowest priority.
    while (forecast.Now() == ForecastSource::State::kRunning && bound.elapsed() < 600000)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  int count_ = 1;
  char name_[8] = "test";
  char* values_[2] = {name_, nullptr};
  QCoreApplication application_{count_, values_};
};

TEST_F(ForecastRun, ASecondProcessTellsTheNextHourAndLeavesTheStationAsItWas) {
  MakeStation(std::vector<int>(12, 200), true);
  Put("machine/Settings.Ini", "AutoPlay=True\n");
  Put("machine/ZemoPlay.Ini", "#TRUE#\r\n");  // on air; its own start would list other titles first
  const auto before = Files("station");
  const auto machineBefore = Files("machine");
  ForecastProcess forecast(Program(), Path("station"), Path("machine"));
  ForecastWish wish;
  wish.from = {2026, 11, 21, 12, 0, 0, 0};
  wish.hours = 1;
  wish.script = "+0 insert music 2\n+0 start\n";
  forecast.Start(wish);
  EXPECT_EQ(forecast.Now(), ForecastSource::State::kRunning);
  WaitFor(forecast);
  ASSERT_EQ(forecast.Now(), ForecastSource::State::kDone) << forecast.Fault();
  ASSERT_GE(forecast.Lines().size(), 10u);  // an hour of titles of 3:20
  EXPECT_EQ(forecast.Lines()[0].text, "Artist 2  Title 2");
  EXPECT_EQ(forecast.Lines()[0].at, "12:00:00");
  EXPECT_EQ(Files("station"), before);
  EXPECT_EQ(Files("machine"), machineBefore);
}

// As the air does: by the replica, and nobody waits for the server.
TEST_F(ForecastRun, OfAStationOnAServerNeedsNoServer) {
  auto& server = test::TestServer::Get();
  if (!server.Missing().empty()) GTEST_SKIP() << server.Missing();
  MakeStation({2, 2, 2}, true);
  const std::string machine = " --station station --machine machine";
  ASSERT_EQ(Run("move" + machine + " --to '" + server.Url(server.NewBase()) + "'").status, 0);
  ASSERT_EQ(Run("run" + machine + " --output null --for 1").status, 0);
  server.Stop();
  ForecastProcess forecast(Program(), Path("station"), Path("machine"));
  ForecastWish wish;
  wish.from = {2026, 11, 21, 12, 0, 0, 0};
  wish.hours = 1;
  wish.script = "+0 insert music 2\n+0 start\n";
  forecast.Start(wish);
  WaitFor(forecast);
  server.Start();
  ASSERT_EQ(forecast.Now(), ForecastSource::State::kDone) << forecast.Fault();
  ASSERT_FALSE(forecast.Lines().empty());
  EXPECT_EQ(forecast.Lines()[0].text, "Artist 2  Title 2");
}

TEST_F(ForecastRun, AStationThatCannotBeSimulatedFailsWithItsLine) {
  ForecastProcess forecast(Program(), Path("nowhere/at/all"), Path("machine"));
  ForecastWish wish;
  wish.from = {2026, 11, 21, 12, 0, 0, 0};
  wish.script = "+0 nonsense\n";
  forecast.Start(wish);
  WaitFor(forecast);
  EXPECT_EQ(forecast.Now(), ForecastSource::State::kFailed);
  EXPECT_FALSE(forecast.Fault().empty());
}

TEST_F(ForecastRun, AProgramThatIsGoneFails) {
  ForecastProcess forecast(Path("no-program"), Path("station"), Path("machine"));
  forecast.Start({});
  WaitFor(forecast);
  EXPECT_EQ(forecast.Now(), ForecastSource::State::kFailed);
}

}  // namespace
}  // namespace zemo
