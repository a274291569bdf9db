// The one error log: its line, the screen's line and the event, and that it survives every fault.
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/SoundSource.h"
#include "station/tests/FakePlatform.h"
#include "store/StoreError.h"

namespace zemo {
namespace {

struct ErrorLog : testing::Test {
  FakePlatform fake;
  Station& station = fake.station;

  const std::string& Log() { return fake.stationFolder.files["Messages.Txt"]; }

  template <typename Error>
  void ThrowAndLog(const Error& error) {
    try {
      throw error;
    } catch (...) {
      LogCurrentException(station, "PlayWave");
    }
  }
};

TEST_F(ErrorLog, AppendsOneLineWithTabsForEachError) {
  LogError(station, "PlayWave", 3163, "field too small");
  fake.clock.now = {2026, 1, 2, 3, 4, 5};
  LogError(station, "SurveillePlaylist", 5, "x");
  EXPECT_EQ(Log(),
            "21/11/2026 12:34:56\tPlayWave\t3163\tfield too small\r\n"
            "02/01/2026 03:04:05\tSurveillePlaylist\t5\tx\r\n");
}

TEST_F(ErrorLog, ShowsTheErrorOnTheScreensErrorLine) {
  LogError(station, "PlayWave", 3163, "field too small");
  EXPECT_EQ(station.notices.lastError, "12:34:56  ERR n° 3163 - PlayWave - field too small  - ");
}

TEST_F(ErrorLog, TellsTheErrorAsAnEvent) {
  LogError(station, "PlayWave", 3163, "field too small");
  EXPECT_EQ(fake.errors, std::vector<std::string>{"PlayWave/3163/field too small"});
}

TEST_F(ErrorLog, ANoticeIsALineOfTheLogAndOfTheScreenOnceAndNoErrorEvent) {
  LogNotice(station, "PlayWave", 0, "x");
  LogNotice(station, "PlayWave", 0, "x");
  EXPECT_EQ(Log(), "21/11/2026 12:34:56\tPlayWave\t0\tx\r\n");
  EXPECT_EQ(station.notices.lastError, "12:34:56  ERR n° 0 - PlayWave - x  - ");
  EXPECT_TRUE(fake.errors.empty());
}

TEST_F(ErrorLog, KeepsATextOfSeveralLinesOnOne) {
  LogError(station, "A\tB", 1, "one\r\ntwo\nthree\tfour");
  EXPECT_EQ(Log(), "21/11/2026 12:34:56\tA B\t1\tone two three four\r\n");
  EXPECT_EQ(fake.errors, std::vector<std::string>{"A B/1/one two three four"});
}

TEST_F(ErrorLog, WritesInTheEncodingOfSideFilesLineByLine) {
  LogError(station, "A", 1, "été");
  LogError(station, "A", 2, "Łódź");
  EXPECT_EQ(Log(),
            "21/11/2026 12:34:56\tA\t1\t\xE9t\xE9\r\n"
            "21/11/2026 12:34:56\tA\t2\t\xC5\x81\xC3\xB3"
            "d\xC5\xBA\r\n");
}

TEST_F(ErrorLog, GoesToTheFileThatTheStationNames) {
  station.files.Messages = "Autre.Txt";
  LogError(station, "A", 1, "x");
  EXPECT_EQ(fake.stationFolder.files.count("Messages.Txt"), 0u);
  EXPECT_EQ(fake.stationFolder.files["Autre.Txt"], "21/11/2026 12:34:56\tA\t1\tx\r\n");
}

TEST_F(ErrorLog, OnAFullDiskTheScreenStillTells) {
  fake.stationFolder.writesFail = true;
  LogError(station, "A", 1, "x");
  EXPECT_EQ(station.notices.lastError, "12:34:56  ERR n° 1 - A - x  - ");
  EXPECT_EQ(fake.errors.size(), 1u);
}

TEST_F(ErrorLog, AListenerThatReportsAnErrorOfItsOwnDoesNotBeginAnew) {
  fake.onError = [&] { LogError(station, "listener", 2, "inner"); };
  LogError(station, "A", 1, "x");
  EXPECT_EQ(fake.errors, std::vector<std::string>{"A/1/x"});
  fake.onError = nullptr;
  LogError(station, "B", 2, "y");
  EXPECT_EQ(fake.errors, (std::vector<std::string>{"A/1/x", "B/2/y"}));
}

TEST_F(ErrorLog, AListenerThatThrowsIsSwallowedAndTheNextErrorIsLogged) {
  fake.onError = [] { throw std::runtime_error("listener"); };
  LogError(station, "A", 1, "x");
  fake.onError = nullptr;
  LogError(station, "B", 2, "y");
  EXPECT_EQ(fake.errors, (std::vector<std::string>{"A/1/x", "B/2/y"}));
}

TEST_F(ErrorLog, KnowsTheNumberOfEveryKindOfFault) {
  ThrowAndLog(StoreError(kErrDuplicateKey, "duplicate"));
  ThrowAndLog(FileError("a.txt: disk full"));
  ThrowAndLog(SoundError("a.mp3: no sound"));
  ThrowAndLog(std::out_of_range("index"));
  ThrowAndLog(42);
  EXPECT_EQ(fake.errors,
            (std::vector<std::string>{"PlayWave/3022/duplicate", "PlayWave/75/a.txt: disk full",
                                      "PlayWave/321/a.mp3: no sound", "PlayWave/5/index",
                                      "PlayWave/5/unknown error"}));
}

}  // namespace
}  // namespace zemo
