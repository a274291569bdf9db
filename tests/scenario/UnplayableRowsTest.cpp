// What the error log tells of rows that cannot be played, and how often.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/TestStation.h"

namespace zemo::test {
namespace {

class UnplayableRows : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void AppendLost(int count, const std::string& folder = "/gone") {
    for (int i = 0; i < count; ++i) {
      ++lost;
      on.AppendCard(on.AddCard({.file = folder + "/" + std::to_string(lost) + ".wav",
                                .artist = "ARTIST",
                                .title = "LOST " + std::to_string(lost)}));
    }
  }
  void AppendTitle() { on.AppendCard(on.AddCard({.lengthMs = 10000})); }
  std::string Next() const { return "; next: zemoradio check " + on.stationFolder.Path(); }
  TestStation on;
  int lost = 0;
};

TEST_F(UnplayableRows, AMissingFileIsALineWithItsTitleItsPathAndTheNextStepAndNoErrorOfTheTrace) {
  AppendLost(1);
  AppendTitle();
  on.Start();
  on.RunUntil(5000);
  EXPECT_EQ(on.LoggedTexts(),
            std::vector<std::string>{
                "\"ARTIST  LOST 1\" cannot be played, its file is missing: /gone/1.wav" + Next()});
  EXPECT_NE(on.station.notices.lastError.find("LOST 1"), std::string::npos);
  EXPECT_EQ(on.Events("skip").size(), 1U);
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

TEST_F(UnplayableRows, ADamagedFileHasItsTitleBehindItsError) {
  const std::string text = on.MakeFile("text.mp3", "no sound");
  on.AppendCard(on.AddCard({.file = text, .artist = "ARTIST", .title = "TORN"}));
  AppendTitle();
  on.Start();
  on.RunUntil(5000);
  const auto logged = on.LoggedTexts();
  ASSERT_EQ(logged.size(), 2U);
  EXPECT_EQ(
      logged[1],
      "\"ARTIST  TORN\" cannot be played, its file is damaged or holds no sound: " + text + Next());
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
}

TEST_F(UnplayableRows, TheSameRowIsToldOnceAMinute) {
  const int32_t card = on.AddCard({.file = "/gone/a.wav"});
  on.AppendCard(card);
  AppendTitle();
  on.AppendCard(card);  // at 8.6 s
  AppendTitle();
  on.Start();
  on.RunUntil(15000);
  EXPECT_EQ(on.Events("skip").size(), 2U) << on.Describe();
  EXPECT_EQ(on.LoggedTexts().size(), 1U);
}

TEST_F(UnplayableRows, TenInARowAreOneLineOnTheirFolderAndThenNothingUntilARowHasSounded) {
  AppendLost(25);
  AppendTitle();
  AppendLost(1);
  on.Start();
  on.RunUntil(2600);
  EXPECT_EQ(on.Events("skip").size(), 25U) << on.Describe();
  const auto gone = on.LoggedTexts();
  ASSERT_EQ(gone.size(), 10U);  // nine rows, and the tenth for all
  EXPECT_EQ(gone[9],
            "10 rows in a row cannot be played: the folder of the sounds is gone or not mounted "
            "(/gone)" +
                Next());
  on.RunUntil(20000);
  const auto logged = on.LoggedTexts();
  ASSERT_EQ(logged.size(), 11U);
  EXPECT_EQ(logged[10].rfind("\"ARTIST  LOST 26\"", 0), 0U) << logged[10];
}

}  // namespace
}  // namespace zemo::test
