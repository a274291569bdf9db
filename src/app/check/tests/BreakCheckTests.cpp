// Breaks of the coming week, out of one campaign of news that lasts 70 s and airs twice an hour.
#include <fstream>

#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

class BreakCheck : public CheckedStation {
 protected:
  // In every hour from 10 to 11, at :15 and at `second`.
  void MakeCampaign(const std::string& second) const {
    PutWav("long.wav", 70);
    std::ofstream grid(Path("long.GPB"));
    for (int cell = 0; cell < 4 * 7; ++cell) grid << "X\r\n";
    Sql("DELETE FROM GrillePub; UPDATE Cnf SET PmixPubs = 0; INSERT INTO GrillePub(CAMPAGNEDEPART, "
        "CAMPAGNEFIN, HDEPART, HFIN, DECOUPEH1, DECOUPEH2, FILENAMEAUDIO, FILENAMEGRILLE, DUREE, "
        "ANNONCEUR, PRIORITY, PUB) VALUES ('JOURNALIER', 'JOURNALIER', '10', '11', '15', '" +
        second + "', '" + Path("long.wav") + "', '" + Path("long.GPB") +
        "', 70000, 'Infos', 10, 0)");
  }

  Lines Breaks() const {
    CheckOptions options = Options();
    options.now = LocalDateTime{.year = 2026, .month = 11, .day = 21, .hour = 23};
    Lines lines;
    for (const std::string& line : Found(options))
      if (line.rfind("break: ", 0) == 0) lines.push_back(line);
    return lines;
  }

 private:
  // Silence, 8 kHz mono 16-bit.
  void PutWav(const std::string& name, uint32_t seconds) const {
    const uint32_t bytes = seconds * 16000;
    const auto little = [](uint32_t number, int size) {
      std::string text;
      for (int i = 0; i < size; ++i) text += static_cast<char>(number >> (8 * i));
      return text;
    };
    std::ofstream(Path(name), std::ios::binary)
        << "RIFF" << little(36 + bytes, 4) << "WAVEfmt " << little(16, 4) << little(1, 2)
        << little(1, 2) << little(8000, 4) << little(16000, 4) << little(2, 2) << little(16, 2)
        << "data" << little(bytes, 4) << std::string(bytes, '\0');
  }
};

TEST_F(BreakCheck, ABreakThatLastsIntoTheNextIsToldWithTheDaysOfTheWeekAhead) {
  MakeCampaign("16");
  const std::string days =
      " (21/11/2026, 22/11/2026, 23/11/2026, 24/11/2026, 25/11/2026, 26/11/2026, 27/11/2026) "
      "(warning)";
  EXPECT_EQ(Breaks(), (Lines{"break: 10:15: takes 01:10 of air and runs into the break of 10:16, "
                             "01:00 behind its begin" +
                                 days,
                             "break: 11:15: takes 01:10 of air and runs into the break of 11:16, "
                             "01:00 behind its begin" +
                                 days}));
}

TEST_F(BreakCheck, BreaksFarEnoughApartAreNone) {
  MakeCampaign("17");
  EXPECT_EQ(Breaks(), Lines{});
}

TEST_F(BreakCheck, ADayThatCannotBeComposedIsAnError) {
  MakeCampaign("16");
  Sql("UPDATE GrillePub SET CAMPAGNEFIN = '22/11/2026', FILENAMEGRILLE = '/'");
  EXPECT_EQ(Breaks(), Lines{"break: the day's grid: cannot be composed: /: Is a directory "
                            "(21/11/2026, 22/11/2026)"});
}

// The pip stands 52 s into the last minute, the break begins at its begin.
TEST_F(BreakCheck, ABreakThatLastsIntoThePipIsTold) {
  MakeCampaign("59");
  const Lines lines = Breaks();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].rfind("break: 10:59: takes 01:10 of air and runs into the pip of 11:00, 00:52 "
                           "behind its begin (",
                           0),
            0U)
      << lines[0];
}

TEST_F(BreakCheck, OnlyDaysOnWhichACampaignRunsCount) {
  MakeCampaign("16");
  Sql("UPDATE GrillePub SET CAMPAGNEDEPART = '26/11/2026', CAMPAGNEFIN = '30/11/2026', HFIN = "
      "'10'");
  const Lines lines = Breaks();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines[0].find("(26/11/2026, 27/11/2026)"), std::string::npos) << lines[0];
}

TEST_F(BreakCheck, ACampaignThatEndsBeforeItBeginsIsNamed) {
  MakeCampaign("16");
  Sql("UPDATE GrillePub SET CAMPAGNEDEPART = '30/11/2026', CAMPAGNEFIN = '26/11/2026'");
  Lines named;
  for (const std::string& line : Found(Options()))
    if (line.find("Infos: its last day") != std::string::npos) named.push_back(line);
  ASSERT_EQ(named.size(), 1U);
  EXPECT_TRUE(
      named[0].ends_with("its last day 26/11/2026 lies before its first, 30/11/2026: it is "
                         "never on air (warning)"))
      << named[0];
}

TEST_F(BreakCheck, TheStationItselfIsLeftAsItWas) {
  MakeCampaign("16");
  Sql("UPDATE GrillePub SET CAMPAGNEFIN = '23/11/2026'; UPDATE Cnf SET SuppressionPub = 1");
  const auto read = [&] {
    std::ifstream file(Base(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  const std::string before = read();
  EXPECT_FALSE(Breaks().empty());
  EXPECT_EQ(read(), before) << "the ended campaign went with the copy";
}

}  // namespace
}  // namespace zemo
