// The tick reads the music library and the report into memory, so that a request need not ask the
// base for them.
#include <gtest/gtest.h>

#include "library/KnownCards.h"
#include "reports/KnownReport.h"
#include "reports/ReportPurge.h"
#include "reports/RollingReport.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int kCards = 5 * KnownCards::kSliceRows + 10;

struct LargeLibrary : testing::Test {
  void SetUp() override {
    on.Load();
    on.Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
           std::to_string(kCards) +
           ") INSERT INTO Discotheque (AUTEUR, TITRE, GENRE) SELECT 'ARTIST ' || i, 'SONG', 'ROCK' "
           "FROM n");
  }
  // By who asks and reads one slice at most.
  bool Known() { return CardsNow(on.station).has_value(); }
  TestStation on;
};

TEST_F(LargeLibrary, IsKnownSoonAfterTheStart) {
  on.RunUntil(5000);
  EXPECT_TRUE(Known());
}

TEST_F(LargeLibrary, IsKnownAgainSoonAfterAWriteOfAnotherProgram) {
  on.RunUntil(5000);
  Known();
  on.Sql("UPDATE Discotheque SET AUTEUR = 'OTHER' WHERE CODE = 1");
  on.RunUntil(6400);  // a look a second, and two ticks
  const auto cards = CardsNow(on.station);
  ASSERT_TRUE(cards);
  EXPECT_EQ(cards->texts->ArtistAt(cards->chunks[0]->at(0).artist).listed, "OTHER");
}

TEST_F(LargeLibrary, IsReadThoughOthersWriteFasterThanALongReportIsRead) {
  // Rows of 200 bytes, twenty a page at most: a tick looks at 3000 of 4000 pages.
  on.Sql(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 80000) INSERT INTO "
      "Rapport (AUTEURCOMPOSITEUR, AUTEUR, TITRE, LABEL, GENRE, DATENUM) SELECT printf('%.60c', "
      "'c'), printf('%.40c', 'a'), printf('%.40c', 't'), printf('%.40c', 'l'), printf('%.20c', "
      "'g'), 46317 FROM n");
  for (int64_t ms = 50; ms <= 5000; ms += 100)
    on.loop.At(ms, [this] { on.Sql("UPDATE Cnf SET JingleCode = JingleCode + 1"); });
  on.RunUntil(5000);
  EXPECT_EQ(LookAtReport(on.station), KnownReport::State::kBeingRead);
  EXPECT_TRUE(Known());
}

TEST_F(LargeLibrary, IsNotReadWhereAnElementIsAboutToBegin) {
  const int32_t title = on.AddCard({.lengthMs = 60000});
  on.AppendCard(title);
  on.AppendCard(title);
  on.RunUntil(5000);
  on.Start();
  on.RunUntil(10000);
  ASSERT_EQ(on.Starts().size(), 1U);
  const int64_t exitMs = on.Starts()[0].atMs + 60000 - on.station.engine.MixPointMs;
  on.RunUntil(exitMs - 900);
  on.Sql("UPDATE Discotheque SET AUTEUR = 'OTHER'");
  on.station.engine.libraryLookMs = 0;
  on.RunUntil(exitMs - 300);
  EXPECT_FALSE(Known());
  on.RunUntil(exitMs + 5000);
  EXPECT_TRUE(Known());
}

// Of 30,000 rows, the last ones of today, day 46347.
struct LongReport : testing::Test {
  void SetUp() override {
    on.Load();
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) INSERT "
        "INTO Rapport (AUTEUR, DATENUM) SELECT 'A' || i, CASE i WHEN 7 THEN 46347.9 ELSE 46317 + i "
        "/ 1000.0 END FROM n");
    on.Sql("UPDATE Cnf SET PurgeRapport = 10");
    on.localValues.Set("XRapport", "2");
  }
  std::string FirstRow() { return on.SqlText("SELECT MIN(CODE) FROM Rapport WHERE CODE <> 7"); }
  TestStation on;
};

TEST_F(LongReport, IsKnownSoonAndPurgedThen) {
  PurgeReport(on.station, 10);
  EXPECT_EQ(FirstRow(), "1");
  on.RunUntil(5000);
  EXPECT_EQ(LookAtReport(on.station), KnownReport::State::kKnown);
  EXPECT_EQ(FirstRow(), "20001");  // up to the midnight of 46337
}

TEST_F(LongReport, ItsNewestRowsAreWrittenAgainOnceItIsKnown) {
  ExportReport(on.station);
  EXPECT_EQ(on.stationFolder.Read("rapportzemo.txt")->find("A7\t"), std::string::npos);
  on.RunUntil(5000);
  EXPECT_NE(on.stationFolder.Read("rapportzemo.txt")->find("A7\t"), std::string::npos);
}

}  // namespace
}  // namespace zemo::test
