// A base that goes away while the station is at work, and comes back: another file, the same one,
// or one that the start had to do without.
#include <gtest/gtest.h>

#include <filesystem>

#include "store/DatabaseFiles.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

namespace fs = std::filesystem;

class LostBase : public testing::Test {
 protected:
  LostBase() : on("2026-11-21 12:05:00") {}
  void SetUp() override { on.Load(); }
  std::vector<int64_t> Openings() const {
    std::vector<int64_t> atMs;
    for (const Seen& base : on.Events("base"))
      if (base["state"] == "opened" && base.atMs > 0) atMs.push_back(base.atMs);
    return atMs;
  }
  TestStation on;
};

TEST_F(LostBase, AFileThatAnotherTookThePlaceOfIsTakenUpOnAirWithItsKeys) {
  ON_FILES_ALONE("the file is replaced under the program");
  const int32_t code = on.AddCard({.lengthMs = 60000});
  on.AppendCard(code);
  on.Start();
  on.At(5000, [this] {
    const std::string copy = on.stationDir.Path() + "/copy";
    fs::copy_file(on.station.base.Path(), copy);
    DBEngine::ExecuteNative(copy,
                            "INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, TOUCHE) "
                            "VALUES ('/key.wav', 1000, 'KEY', 1)");
    fs::rename(copy, on.station.base.Path());
  });
  on.RunUntil(8000);
  EXPECT_EQ(Openings().size(), 1U) << on.Describe();
  ASSERT_EQ(on.station.lists.Touches.size(), 1U);
  EXPECT_EQ(on.station.lists.Touches[0].FileName, "/key.wav");
  EXPECT_EQ(on.Starts().size(), 1U);
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
}

// A look every 2 s as long as nothing is amiss; behind one that had to open it the pauses double up
// to a minute.
TEST_F(LostBase, OneThatFailsAgainAndAgainIsOpenedLessAndLess) {
  on.RunUntil(3000);
  on.station.engine.baseLookMs = 0;
  for (int64_t atMs = 3050; atMs < 130000; atMs += 100)
    on.At(atMs, [this] { on.station.base.Close(); });
  on.RunUntil(130000);
  const std::vector<int64_t> atMs = Openings();
  ASSERT_EQ(atMs.size(), 7U) << on.Describe();
  for (size_t i = 1; i < atMs.size(); ++i)
    EXPECT_NEAR(static_cast<double>(atMs[i] - atMs[i - 1]), i < 6 ? 1000.0 * (1 << i) : 60000.0,
                200)
        << i;
}

TEST_F(LostBase, OneThatTheStartWentWithoutIsSetUpAsAtAStart) {
  on.Set("JoystiquePort", "1");
  on.Set("TempsMaxiImPulsion", "5");
  on.Sql("DROP TABLE VT");
  on.Sql("ALTER TABLE Toph DROP COLUMN JourSemaine");
  on.station.base.Close();
  on.station.engine.baseWasOpen = false;
  on.RunUntil(5000);
  EXPECT_TRUE(on.station.engine.JoystickInUse) << on.Describe();
  EXPECT_EQ(on.station.engine.TempsMaxiImPulsion, 5);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM VT"), "0");
  EXPECT_NE(on.First("base", "table", "Toph"), nullptr) << on.Describe();
}

}  // namespace
}  // namespace zemo::test
