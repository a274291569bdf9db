// Every kind of row on the air: volumes, exit points, report words, extracts, voice tracks,
// markers.
#include <gtest/gtest.h>

#include "library/OnAirRows.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class ElementKinds : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void AppendRow(int32_t code, const std::string& text, int64_t lengthMs,
                 std::optional<int64_t> exitMs = {}) {
    OnAirElement row;
    row.title = text;
    row.secondLine = "SECOND";
    row.file = on.MakeSound(text + ".wav", lengthMs);
    row.code = code;
    row.exitMs = exitMs;
    on.Append(row);
  }
  // Speaks over the element before, from `startMs` of it on.
  void AppendTrack(int64_t startMs) {
    OnAirElement track;
    track.code = Element::kVoiceTrack;
    track.file = on.MakeSound("link.wav", 5000);
    track.liesOver = true;
    track.startMs = startMs;
    on.Append(track);
  }
  int64_t MixOf(int element) {
    return on.Events("onair").at(static_cast<size_t>(element)).Int("mix_ms");
  }
  TestStation on;
};

TEST_F(ElementKinds, EachHasItsVolumeExitPointAndReportWord) {
  on.Set("PmixPubs", "300");
  on.Set("PmixToph", "400");
  on.Set("PmixJingles", "700");
  on.Set("VolumeRubriques", "17000");
  AppendRow(Element::kJingle, "JINGLE A", 3000);
  AppendRow(Element::kJingle, "JINGLE B", 3000, 900);
  AppendRow(Element::kSpot, "SPOT", 3000, 900);
  AppendRow(Element::kNews, "NEWS", 3000);
  AppendRow(Element::kHourPip, "PIP", 3000);
  AppendRow(Element::kOther, "OTHER", 3000, 800);
  AppendRow(Element::kVoiceTrack, "Voice Track Cut", 3000, 600);
  on.Start();
  on.RunUntil(40000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 7U) << on.Describe();
  const int64_t volumes[] = {16384, 16384, 18000, 17000, 16384, 16384, 16384};
  const int64_t mixes[] = {700, 900, 300, 300, 400, 800, 600};
  for (size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(starts[i].Int("volume"), volumes[i]) << i;
    EXPECT_EQ(MixOf(static_cast<int>(i)), mixes[i]) << i;
  }
  const auto reports = on.Events("report");
  ASSERT_EQ(reports.size(), 6U);  // the voice track leaves none
  const char* words[] = {"JINGLE", "JINGLE", "PUB", "Rubrique", "TOP-H", "AUTRES"};
  for (size_t i = 0; i < 6; ++i) EXPECT_EQ(reports[i]["GENRE"], words[i]);
  EXPECT_EQ(reports[2]["AUTEUR"], "SPOT");
  EXPECT_EQ(reports[2]["TITRE"], "SECOND");
  EXPECT_EQ(reports[2]["VARIETE"], "");
}

TEST_F(ElementKinds, MusicWithoutCardPlaysWithPmixDefAndNoReport) {
  AppendRow(4711, "GONE", 10000, 3000);
  on.Start();
  on.RunUntil(5000);
  EXPECT_EQ(MixOf(0), 1600) << on.Describe();
  EXPECT_TRUE(on.Events("report").empty());
}

TEST_F(ElementKinds, PlaylistMarkersSetAndClearTheFlagsAndAreReported) {
  on.Append(PlaylistMarkerRow(Element::kStartPlaylist, "MATINALE"));
  AppendRow(Element::kJingle, "JINGLE", 3000);
  on.Append(PlaylistMarkerRow(Element::kEndPlaylist, "MATINALE"));
  AppendRow(Element::kJingle, "LAST", 3000);
  on.station.engine.PipSuppressed = true;
  on.station.engine.NoJingleActive = true;
  on.station.engine.HourBlockHandled = true;
  on.Start();
  std::string name;
  on.At(1000, [&] { name = on.station.engine.RunningPlaylistName; });
  on.RunUntil(10000);
  const auto markers = on.Events("marker");
  ASSERT_EQ(markers.size(), 2U) << on.Describe();
  EXPECT_EQ(markers[0].atMs, 100);
  EXPECT_EQ(markers[0]["title"], "Start Playlist  MATINALE");
  EXPECT_EQ(on.Starts().at(0).atMs, 200);  // a marker takes one tick
  EXPECT_EQ(name, "MATINALE");
  EXPECT_FALSE(on.station.engine.PlaylistRunning);
  EXPECT_FALSE(on.station.engine.PipSuppressed);
  EXPECT_FALSE(on.station.engine.NoJingleActive);
  EXPECT_FALSE(on.station.engine.HourBlockHandled);
  EXPECT_EQ(on.SqlText("SELECT GENRE || AUTEUR || TITRE FROM Rapport WHERE CODE = 1"),
            "PLAYLISTStart PlaylistMATINALE");
  EXPECT_TRUE(on.Events("skip").empty());
}

TEST_F(ElementKinds, ExtractPlaysBetweenItsMarks) {
  const int32_t first = on.AddCard({.lengthMs = 180000});
  on.MakeFile("title1.mar", "30000,90000\r\n");
  on.Append(BeginExtractRow());
  on.AppendCard(first);
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.Start();
  on.RunUntil(70000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(on.First("marker")->atMs, 100);
  EXPECT_EQ(starts[0].atMs, 200);
  EXPECT_EQ(starts[0].Int("position_ms"), 30000);
  EXPECT_EQ(starts[1].atMs, 60200);  // 90000 of position
  // Without marks and without ExtraitAuto the next one plays whole.
  EXPECT_EQ(starts[1].Int("position_ms"), 0);
  EXPECT_EQ(on.station.engine.ExtractEndMs, 0);
}

TEST_F(ElementKinds, AutomaticExtractPlaysFrom30To90Seconds) {
  on.Set("ExtraitAuto", "1");
  on.Set("InExtrait", "30");
  on.Set("OutExtrait", "60");
  on.Append(BeginExtractRow());
  on.AppendCard(on.AddCard({.lengthMs = 180000}));
  AppendRow(Element::kJingle, "JINGLE", 3000);
  on.Start();
  on.RunUntil(70000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[0].Int("position_ms"), 30000);
  EXPECT_EQ(starts[1].atMs, 60200);
  EXPECT_EQ(starts[1].Int("position_ms"), 0);
  EXPECT_FALSE(on.station.engine.CheckExtrait);  // an element that is no music ends it
}

TEST_F(ElementKinds, VoiceTrackSpeaksOverTheElementBefore) {
  on.AppendCard(on.AddCard({.lengthMs = 100000}));
  on.AppendVoiceTrack(on.MakeSound("link.wav", 5000), 70000);
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.Start();
  on.RunUntil(90000);
  const auto states = on.Events("flag");
  const Seen* armed = on.First("flag", "name", "VoiceTrackState");
  ASSERT_TRUE(armed) << on.Describe();
  EXPECT_EQ(armed->atMs, 51100);  // above 50 percent
  ASSERT_EQ(on.Events("overlay").size(), 1U);
  EXPECT_EQ(on.Events("overlay")[0].atMs, 70100);
  EXPECT_EQ(on.Events("overlay")[0]["reason"], "voicetrack");
  const auto volumes = on.Events("volume");
  ASSERT_EQ(volumes.size(), 2U);
  EXPECT_EQ(volumes[0].atMs, 70100);
  EXPECT_EQ(volumes[0].Int("to"), 6500);
  EXPECT_EQ(volumes[1].atMs, 75100);
  EXPECT_EQ(volumes[1].Int("to"), 16384);
}

TEST_F(ElementKinds, AVoiceTrackLowersAndRaisesTheMusicOfTheSecondSlotToo) {
  on.AppendCard(on.AddCard({.lengthMs = 21600}));
  on.AppendCard(on.AddCard({.lengthMs = 100000}));  // from 20100 ms on
  AppendTrack(70000);
  on.Start();
  on.RunUntil(100000);
  std::string volumes;
  for (const Seen& volume : on.Events("volume"))
    if (volume["slot"] == "1") volumes += volume["to"] + " ";
  EXPECT_EQ(volumes, "6500 16384 ") << on.Describe();
}

TEST_F(ElementKinds, AVoiceTrackIsNotArmedAnyMoreAt65Percent) {
  on.AppendCard(on.AddCard({.lengthMs = 100000}));
  on.Start();
  on.RunUntil(65050);
  AppendTrack(90000);
  on.RunUntil(66000);
  EXPECT_EQ(on.station.engine.VoiceTrackState, 0) << on.Describe();
}

TEST_F(ElementKinds, ATitleUnderAnArmedVoiceTrackBeginsAtTheVolumeUnderIt) {
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.Start();
  on.At(58450, [&] {
    on.station.engine.VoiceTrackState = -1;
    on.station.engine.VoiceTrackStartMs = 1000000;
  });
  on.RunUntil(59000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].Int("volume"), 6500);
}

TEST_F(ElementKinds, ASpotPutsOffTheNextJingleOverAnIntroduction) {
  AppendRow(Element::kSpot, "SPOT", 3000);
  on.Start();
  on.RunUntil(150);
  EXPECT_EQ(on.station.engine.LastIntroJingleTimer, 43200.1F);  // 12:00:00.1
}

TEST_F(ElementKinds, ACommentRunsInCapitalsUntilTheNextElement) {
  on.AppendCard(on.AddCard({.comment = "L'été en fête"}));
  on.AppendCard(on.AddCard({}));
  on.Start();
  on.At(2050, [&] {
    EXPECT_EQ(on.station.notices.ticker, std::string(20, ' ') + "L'ÉTÉ EN FÊTE");
    on.station.engine.NextRequested = true;
  });
  on.RunUntil(6000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.station.notices.ticker, "");
}

TEST_F(ElementKinds, SecondVoiceTrackWaitsForTheNextElement) {
  on.AppendCard(on.AddCard({.lengthMs = 100000}));
  for (const char* name : {"one.wav", "two.wav"})  // the first ends at 70 percent, too late to arm
    on.AppendVoiceTrack(on.MakeSound(name, 10000), 60000);
  on.Start();
  on.RunUntil(98000);
  EXPECT_EQ(on.Events("overlay").size(), 1U) << on.Describe();
  ASSERT_EQ(on.station.PL.Count(), 1);
  EXPECT_EQ(on.station.PL.Row(1).title, "Voice Track");
}

TEST_F(ElementKinds, BaseLockedByAnotherProcessLosesNoReportRow) {
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.station.base.Db().Waiting().LetEachWait(0);
  on.Start();
  std::unique_ptr<Database> other;
  on.At(10000, [&] {
    other = test::OpenElsewhere(on.station.base.Path());
    other->BeginTrans();
    other->Execute("UPDATE Cnf SET Veille = 0");
  });
  on.At(30000, [&] {
    other->CommitTrans();
    other.reset();
  });
  on.RunUntil(60000);
  EXPECT_EQ(on.Starts().size(), 3U) << on.Describe();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "3");
  // The second title began at 18500 ms: its row says so although it was written later.
  EXPECT_EQ(on.SqlText("SELECT HEURE FROM Rapport WHERE CODE = 2"), "12:00:20");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE DIFFUSION01 <> ''"), "3");
}

}  // namespace
}  // namespace zemo::test
