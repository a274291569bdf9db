// Cards' files measured in the background, by a measurer that the test is.
#include <deque>

#include "library/CardMeasuring.h"
#include "library/tests/LibraryFixture.h"
#include "store/SoundMeasuresTable.h"
#include "support/BaseLock.h"

namespace zemo {

namespace {

constexpr int64_t kHourMs = int64_t{60} * 60 * 1000;

struct TestMeasurer : SoundMeasurer {
  std::vector<std::string> wishes;
  std::deque<MeasuredSound> measured;
  bool full = false;
  bool Wish(const std::string& path) override {
    if (full) return false;
    wishes.push_back(path);
    return true;
  }
  std::optional<MeasuredSound> TakeMeasured() override {
    if (measured.empty()) return std::nullopt;
    std::optional<MeasuredSound> sound(std::move(measured.front()));
    measured.pop_front();
    return sound;
  }
  void Give(const std::string& path, int32_t exitMs) {
    SoundMeasures measures;
    measures.lengthMs = 60000;
    measures.loudnessLufs = -20;
    measures.truePeakDb = -3;
    measures.exitMs = exitMs;
    measured.push_back({path, measures, {}});
  }
};

struct Measuring : LibraryFixture {
  TestMeasurer measurer;

  std::string AddFile(const std::string& name, int exitMs = 1600) {
    const std::string file = on.MakeSound(name, 60000);
    on.AddCard({.file = file, .exitMs = exitMs});
    return file;
  }
  void SetTarget() { on.machineFolder.Write("Settings.Ini", "LoudnessTarget=-18\r\n"); }
  void Turns(CardMeasuring& measuring, int turns) {
    for (int turn = 0; turn < turns; ++turn) measuring.Turn();
  }
  bool IsKnown(const std::string& file) {
    return FindMeasures(on.station.base.Db(), file, *on.soundFiles.Stamp(file)).has_value();
  }
  std::string Exits() {
    return on.SqlText("SELECT GROUP_CONCAT(POINTSORTIE) FROM Discotheque ORDER BY CODE");
  }
};

using Files = std::vector<std::string>;

}  // namespace

TEST_F(Measuring, WithoutATargetOnlyImportedCardsAreMeasured) {
  const std::string file = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  Turns(measuring, 20);
  EXPECT_TRUE(measurer.wishes.empty());
  measuring.Add(1, file);
  measuring.Turn();
  EXPECT_EQ(measurer.wishes, Files{file});
}

TEST_F(Measuring, ATurnSaysWhetherThereIsAnythingLeftToDo) {
  const std::string file = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  EXPECT_FALSE(measuring.Turn());
  measuring.Add(1, file);
  EXPECT_TRUE(measuring.Turn());
  EXPECT_TRUE(measuring.Turn());
  measurer.Give(file, 4200);
  Turns(measuring, 1);
  EXPECT_FALSE(measuring.Turn());
}

TEST_F(Measuring, ATurnSaysThatTheLibraryIsNotLookedThroughYet) {
  SetTarget();
  Files files;
  for (int card = 0; card < 12; ++card) files.push_back(AddFile("no" + std::to_string(card)));
  CardMeasuring measuring(on.station, measurer);
  for (int given = 0; given < 12; ++given) {
    EXPECT_TRUE(measuring.Turn()) << given;
    ASSERT_GT(measurer.wishes.size(), static_cast<size_t>(given));
    measurer.Give(measurer.wishes[static_cast<size_t>(given)], 4200);
  }
  int more = 0;
  while (measuring.Turn() && more < 100) ++more;
  EXPECT_LT(more, 100);
  for (const std::string& file : files) EXPECT_TRUE(IsKnown(file)) << file;
  // Ten cards a turn, of which nothing is wished for any more.
  CardMeasuring nextRun(on.station, measurer);
  EXPECT_TRUE(nextRun.Turn());
}

TEST_F(Measuring, AnImportedCardGetsTheExitPointUnlessAHandWasFaster) {
  const std::string a = AddFile("a.wav"), b = AddFile("b.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Add(1, a);
  measuring.Add(2, b);
  measuring.Turn();
  on.Sql("UPDATE Discotheque SET POINTSORTIE = 900 WHERE CODE = 2");
  measurer.Give(a, 4200);
  measurer.Give(b, 4300);
  Turns(measuring, 2);
  EXPECT_EQ(Exits(), "4200,900");
  EXPECT_TRUE(IsKnown(a));
  EXPECT_TRUE(IsKnown(b));
}

TEST_F(Measuring, ACardImportedWhileItsFileIsMeasuredForTheLibraryGetsItsExitPoint) {
  SetTarget();
  const std::string file = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Turn();
  ASSERT_EQ(measurer.wishes, Files{file});
  measuring.Add(1, file);
  measuring.Turn();
  measurer.Give(file, 4200);
  Turns(measuring, 2);
  EXPECT_EQ(Exits(), "4200");
}

TEST_F(Measuring, TheNewestImportedIsMeasuredFirstAndAllAheadOfTheLibrary) {
  SetTarget();
  Files files;
  for (const char* name : {"1", "2", "3", "4", "5", "6"}) files.push_back(AddFile(name));
  CardMeasuring measuring(on.station, measurer);
  for (int32_t code = 1; code <= 5; ++code)
    measuring.Add(code, files[static_cast<size_t>(code - 1)]);
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes, (Files{files[4], files[3], files[2], files[1]}));
  for (size_t file : {4U, 3U, 2U, 1U}) measurer.Give(files[file], 1600);
  Turns(measuring, 5);
  ASSERT_EQ(measurer.wishes.size(), 6U);
  EXPECT_EQ(measurer.wishes[4], files[0]);
  EXPECT_EQ(measurer.wishes[5], files[5]);
}

TEST_F(Measuring, WithATargetEveryCardOfEveryKindIsMeasuredOnceAndItsExitPointStays) {
  SetTarget();
  const std::string a = AddFile("a.wav"), b = AddFile("b.wav");
  const std::string jingle = on.MakeSound("j.wav", 5000), other = on.MakeSound("o.wav", 5000);
  on.Sql("INSERT INTO DiscothequeJingle (LIBELLE, FILENAME) VALUES ('J', '" + jingle + "')");
  on.Sql("INSERT INTO DiscothequeVirgule (LIBELLE, FILENAME) VALUES ('O', '" + other + "')");
  on.AddCard({.file = "/lost.wav"});
  CardMeasuring measuring(on.station, measurer);
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes, (Files{b, a, jingle, other}));
  for (const std::string& file : {b, a, jingle, other}) measurer.Give(file, 4200);
  Turns(measuring, 5);
  for (const std::string& file : {b, a, jingle, other}) EXPECT_TRUE(IsKnown(file)) << file;
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE POINTSORTIE = 1600"), "2");
  on.RunUntil(2 * kHourMs);
  Turns(measuring, 10);
  EXPECT_EQ(measurer.wishes.size(), 4U);
}

TEST_F(Measuring, AFileThatHasChangedIsMeasuredAnewWithinTheHour) {
  SetTarget();
  const std::string a = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  Turns(measuring, 5);
  measurer.Give(a, 1600);
  Turns(measuring, 5);
  on.MakeFile("a.wav", "another sound");
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes.size(), 1U);
  on.RunUntil(kHourMs + 1000);
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes, (Files{a, a}));
}

TEST_F(Measuring, WhatChangesWhileItIsMeasuredIsKeptUnderTheStampOfBefore) {
  const std::string a = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Add(1, a);
  measuring.Turn();
  on.MakeFile("a.wav", "another sound");
  measurer.Give(a, 4200);
  measuring.Turn();
  EXPECT_FALSE(IsKnown(a));
}

TEST_F(Measuring, WhatCannotBeMeasuredIsNotTriedAgainUntilItChanges) {
  SetTarget();
  const std::string a = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  Turns(measuring, 5);
  measurer.measured.push_back({a, std::nullopt, "no sound"});
  Turns(measuring, 5);
  on.RunUntil(kHourMs + 1000);
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes.size(), 1U);
  on.MakeFile("a.wav", "another sound");
  on.RunUntil(2 * kHourMs + 2000);
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes.size(), 2U);
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(Measuring, ALockedBasePostponesAndNothingIsLost) {
  const std::string a = AddFile("a.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Add(1, a);
  measuring.Turn();
  measurer.Give(a, 4200);
  {
    const test::BaseLock lock(on.stationDir.Path() + "/Triskin.MDB");
    const int64_t beganMs = on.loop.MonotonicMs();
    Turns(measuring, 3);
    EXPECT_EQ(on.loop.MonotonicMs(), beganMs);
  }
  measuring.Turn();
  EXPECT_EQ(Exits(), "4200");
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(Measuring, WhatTheBaseRefusesIsToldOnceAndTheRestIsMeasured) {
  const std::string a = AddFile("a.wav"), b = AddFile("b.wav"), c = AddFile("c.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Add(1, a);
  measuring.Turn();
  measurer.Give(a, 4200);
  measuring.Turn();
  on.Native(
      "CREATE TRIGGER Refused BEFORE INSERT ON Mesures WHEN NEW.CHEMIN LIKE '%b.wav' BEGIN SELECT "
      "RAISE(ABORT, 'refused'); END");
  measuring.Add(3, c);
  measuring.Add(2, b);
  measuring.Turn();
  measurer.Give(b, 4200);
  measurer.Give(c, 4200);
  Turns(measuring, 3);
  EXPECT_FALSE(IsKnown(b));
  EXPECT_TRUE(IsKnown(c));
  EXPECT_EQ(on.Events("error").size(), 1U);
  EXPECT_FALSE(on.stationFolder.Exists(kExitsToFindFile));
}

TEST_F(Measuring, WhatTheProgramLeftIsFoundByTheNextOne) {
  const std::string a = AddFile("a.wav"), b = AddFile("b\xC3\xA9.wav");
  const std::string odd = AddFile("two\nlines\\n\t.wav");
  {
    CardMeasuring first(on.station, measurer);
    first.Add(3, odd);
    first.Add(1, a);
    first.Add(2, b);
    first.Turn();
    measurer.Give(b, 4200);
    first.Turn();
  }
  measurer.wishes.clear();
  CardMeasuring next(on.station, measurer);
  next.Turn();
  EXPECT_EQ(measurer.wishes, (Files{a, odd}));
  EXPECT_TRUE(on.stationFolder.Exists(kExitsToFindFile));
  measurer.Give(a, 4300);
  measurer.Give(odd, 4400);
  Turns(next, 3);
  EXPECT_EQ(Exits(), "4300,4200,4400");
  EXPECT_FALSE(on.stationFolder.Exists(kExitsToFindFile));
}

TEST_F(Measuring, WhereNoWishIsTakenTheCardWaits) {
  SetTarget();
  const std::string a = AddFile("a.wav"), b = AddFile("b.wav");
  CardMeasuring measuring(on.station, measurer);
  measuring.Add(2, b);
  measurer.full = true;
  Turns(measuring, 5);
  measurer.full = false;
  Turns(measuring, 5);
  EXPECT_EQ(measurer.wishes, (Files{b, a}));
}

}  // namespace zemo
