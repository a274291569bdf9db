// An import beside the air, on the virtual clock.
#include "library/ImportRun.h"
#include "library/tests/LibraryFixture.h"
#include "platform/Clock.h"
#include "store/StoreError.h"
#include "support/BaseLock.h"
#include "support/ReadAtOnce.h"

namespace zemo {

namespace {

using Turn = ImportRun::Turn;

struct ImportRuns : LibraryFixture {
  test::ReadAtOnce files{on.opener, on.soundFiles};
  std::vector<std::pair<int32_t, std::string>> bare;

  ImportRun Begin(LibraryTab kind, std::vector<std::string> paths) {
    return {on.station, files, kind, std::move(paths),
            [this](int32_t code, const std::string& file) { bare.emplace_back(code, file); }};
  }
  // The turns that it takes to the end.
  int RunOut(ImportRun& run) {
    int turns = 0;
    while (turns < 1000 && run.Slice() == Turn::kMore) ++turns;
    return turns;
  }
  std::string Count(const std::string& table) {
    return on.SqlText("SELECT COUNT(*) FROM " + table);
  }
};

}  // namespace

TEST_F(ImportRuns, AFileATurnBecomesACardOfTheKindAskedFor) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 4000);
  for (const auto& [kind, table] : {std::pair(LibraryTab::kMusic, "Discotheque"),
                                    {LibraryTab::kJingles, "DiscothequeJingle"},
                                    {LibraryTab::kShortElements, "DiscothequeVirgule"}}) {
    ImportRun run = Begin(kind, {a, b});
    EXPECT_EQ(run.Slice(), Turn::kMore);
    EXPECT_EQ(Count(table), "1");
    EXPECT_EQ(run.Progress().done, 1U);
    EXPECT_EQ(run.Progress().found, 2U);
    EXPECT_EQ(run.Slice(), Turn::kMore);
    EXPECT_EQ(run.Slice(), Turn::kDone);
    EXPECT_EQ(run.Report().Counts(1), "2 added, 0 known already, 0 refused");
    EXPECT_EQ(on.SqlText(std::string("SELECT DUREE FROM ") + table + " WHERE CODE = 2"), "4000");
  }
}

TEST_F(ImportRuns, WhatIsKnownOrRefusedIsToldAndTheRestGoesIn) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 4000);
  const std::string broken = on.MakeFile("c.wav", "no sound");
  on.AddCard({.file = a});
  ImportRun run = Begin(LibraryTab::kMusic, {a, broken, b, "/no/such.wav"});
  RunOut(run);
  EXPECT_EQ(files.known, std::vector<std::string>{a});
  EXPECT_EQ(run.Report().Counts(1), "1 added, 1 known already, 2 refused");
  EXPECT_EQ(run.Report().Counts(0), "1 ajoutés, 1 déjà connus, 2 refusés");
  const std::string lines = run.Report().Lines(1);
  EXPECT_EQ(lines.substr(0, lines.find(": ")), "Refused (2):\n" + broken);
  EXPECT_NE(lines.find("\n/no/such.wav: there is no such file\n"), std::string::npos);
}

TEST_F(ImportRuns, WhatItRefusedCutAndFoundTwiceIsToldInThisOrderUnderHeadings) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 3000);
  files.tags.texts[b].year = "1999 or so";
  ImportRun run = Begin(LibraryTab::kMusic, {a, b, "/no/such.wav"});
  RunOut(run);
  EXPECT_EQ(run.Report().Lines(1),
            "Refused (1):\n/no/such.wav: there is no such file\n\n"
            "Texts cut to their field (1):\ncard 2  " +
                b + ": year cut to its field\n\nThe same sound under another name (1):\ncard 2  " +
                b + ": the same sound as card 1\n");
}

TEST_F(ImportRuns, TheLinesOfTheMapThatLeadNowhereAreInItsReport) {
  on.stationFolder.Write(kGenreMapFile, "Polka=MARCHES\r\n");
  EXPECT_EQ(Begin(LibraryTab::kMusic, {}).Report().Notes(0),
            "ImportGenres.Txt, ligne 1 : la station n'a pas le genre MARCHES\n");
}

TEST_F(ImportRuns, ALibraryOfThousandsIsLookedThroughInSlicesAheadOfTheFirstFile) {
  on.Sql(
      "INSERT INTO Discotheque (AUTEUR, FILENAME) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 1200) SELECT 'A', '/' || i || '.wav' FROM n");
  ImportRun run = Begin(LibraryTab::kMusic, {on.MakeSound("a.wav", 3000), "/700.wav"});
  EXPECT_EQ(run.Slice(), Turn::kMore);
  EXPECT_EQ(run.Slice(), Turn::kMore);
  EXPECT_FALSE(files.atWork);  // 1000 of 1200 cards
  EXPECT_EQ(run.Slice(), Turn::kMore);
  EXPECT_EQ(files.known.size(), 1200U);
  EXPECT_EQ(run.Report().Done(), 1U);
}

TEST_F(ImportRuns, ALockedBasePostponesWithoutAWaitAndLosesNothing) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 4000);
  ImportRun run = Begin(LibraryTab::kMusic, {a, b});
  ASSERT_EQ(run.Slice(), Turn::kMore);
  {
    const test::BaseLock lock(on.stationDir.Path() + "/Triskin.MDB");
    const int64_t beganMs = on.loop.MonotonicMs();
    EXPECT_EQ(run.Slice(), Turn::kLater);
    EXPECT_EQ(run.Slice(), Turn::kLater);
    EXPECT_EQ(on.loop.MonotonicMs(), beganMs);
  }
  RunOut(run);
  EXPECT_EQ(run.Report().Counts(1), "2 added, 0 known already, 0 refused");
  EXPECT_EQ(Count("Discotheque"), "2");
  EXPECT_EQ(on.Events("error").size(), 0U);
}

TEST_F(ImportRuns, TheTimeLeftIsToldOnceTenFilesAndFiveSecondsAreAMeasure) {
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i) paths.push_back(on.MakeSound(std::to_string(i) + ".wav", 1000 + i));
  ImportRun run = Begin(LibraryTab::kMusic, paths);
  for (int i = 0; i < 9; ++i) run.Slice();
  on.RunUntil(on.loop.MonotonicMs() + 6000);
  EXPECT_EQ(run.Progress().leftMs, std::nullopt);
  run.Slice();
  EXPECT_EQ(run.Progress().leftMs, 6000 * 30 / 10);
  EXPECT_EQ(TimeLeftMs(4999, 1000, 2000), std::nullopt);
}

TEST_F(ImportRuns, WhoseExitNobodySetIsHandedOnToBeMeasured) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 4000);
  on.MakeFile("a.Txt", "\"A\",\"T\",\"POP\",\"\",\"\",0,1,0,60\r\n");
  ImportRun run = Begin(LibraryTab::kMusic, {a, b});
  RunOut(run);
  EXPECT_EQ(bare, (std::vector{std::pair(2, b)}));
}

TEST_F(ImportRuns, WhoEndsItKeepsTheCardsAndNothingIsReadAnyMore) {
  const std::string a = on.MakeSound("a.wav", 3000), b = on.MakeSound("b.wav", 4000);
  {
    ImportRun run = Begin(LibraryTab::kMusic, {a, b});
    run.Slice();
    EXPECT_TRUE(files.atWork);
  }
  EXPECT_FALSE(files.atWork);
  EXPECT_EQ(Count("Discotheque"), "1");
}

}  // namespace zemo
