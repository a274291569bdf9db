// The operator's last order on the list is taken back: what has aired since stays aired.
#include <gtest/gtest.h>

#include "engine/OperatorControls.h"
#include "engine/StoredPlaylists.h"
#include "library/OnAirRows.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

using Codes = std::vector<int32_t>;

class ListUndoTest : public testing::Test {
 protected:
  // Cards 1 to `count` of 10 s each, in the list.
  void Listed(int count) {
    on.Load();
    for (int i = 0; i < count; ++i) on.AppendCard(on.AddCard({.lengthMs = 10000}));
    on.station.listUndo.reset();  // the titles were put in by hand
  }
  Codes List() { return on.station.PL.Codes(); }
  TestStation on;
};

TEST_F(ListUndoTest, WithoutAnOrderThereIsNothingToTakeBack) {
  Listed(1);
  EXPECT_FALSE(UndoListOrder(on.station));
  EXPECT_EQ(List(), (Codes{1}));
}

TEST_F(ListUndoTest, ADeletedRowComesBackToItsPlace) {
  Listed(3);
  OnAir::PL_KeyDelete(on.station, 2);
  ASSERT_EQ(List(), (Codes{1, 3}));
  EXPECT_TRUE(UndoListOrder(on.station));
  EXPECT_EQ(List(), (Codes{1, 2, 3}));
}

TEST_F(ListUndoTest, TheRightButtonsRowComesBackWithItsPlannedTime) {
  Listed(2);
  OnAir::PL_RightClick(on.station, 1);
  UndoListOrder(on.station);
  // 12:00:00, and 10 s on.
  EXPECT_EQ(*on.station.PL.Row(2).plannedMs - *on.station.PL.Row(1).plannedMs, 10000);
}

TEST_F(ListUndoTest, TakenBackTwiceTheOrderStands) {
  Listed(3);
  OnAir::PL_DragDrop(on.station, 3, 1);
  ASSERT_EQ(List(), (Codes{3, 1, 2}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2, 3}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{3, 1, 2}));
}

TEST_F(ListUndoTest, AnEmptiedListComesBackWithTheFieldsOfItsPanel) {
  Listed(2);
  StoredListEditor& panel = on.station.storedList;
  panel.ComboPLS.text = "EVENING";
  panel.LblDate = "24/12/2026";
  panel.ChHeure = "18:30";
  panel.OptPls = 2;
  panel.LblCodePL = 7;
  OnAir::BtnNew_Click(on.station);
  ASSERT_TRUE(on.station.PL.Empty());
  ASSERT_EQ(panel.LblCodePL, 0);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2}));
  EXPECT_EQ(panel.ComboPLS.text, "EVENING");
  EXPECT_EQ(panel.LblDate, "24/12/2026");
  EXPECT_EQ(panel.ChHeure, "18:30");
  EXPECT_EQ(panel.OptPls, 2);
  EXPECT_EQ(panel.LblCodePL, 7);
}

TEST_F(ListUndoTest, AStoredListThatWasLoadedGivesWayToTheListBefore) {
  Listed(2);
  on.station.storedList.ComboPLS.text = "EVENING";
  ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
  on.AppendCard(on.AddCard({}));
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 1));
  ASSERT_EQ(List(), (Codes{1, 2}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2, 3}));
}

TEST_F(ListUndoTest, ARequestsTitlesGo) {
  Listed(1);
  on.ModelOfOneGenre("POP");
  for (int i = 0; i < 3; ++i) on.AddCard({.artist = "OTHER " + std::to_string(i)});
  OnAir::CmdRequette_Click(on.station);
  ASSERT_GT(on.station.PL.Count(), 1) << on.Describe();
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1}));
}

TEST_F(ListUndoTest, WhatAiredSinceTheOrderStaysAired) {
  Listed(4);
  on.Start();
  on.At(1000, [&] { OnAir::PL_KeyDelete(on.station, 3); });  // 1 sounds; 2, 3 and 4 stand there
  on.RunUntil(12000);                                        // 2 sounds
  ASSERT_EQ(List(), (Codes{3}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{3, 4}));
}

TEST_F(ListUndoTest, ARowThatWasMovedAndAiredSinceStaysAired) {
  Listed(4);
  on.Start();
  on.At(1000, [&] { OnAir::PL_DragDrop(on.station, 3, 1); });  // 4 before 2 and 3
  on.RunUntil(12000);
  ASSERT_EQ(List(), (Codes{2, 3}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{2, 3}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{2, 3}));
}

TEST_F(ListUndoTest, WhatTheEnginePutInSinceKeepsItsPlace) {
  Listed(3);
  OnAir::PL_KeyDelete(on.station, 3);
  OnAirElement spot;
  spot.code = Element::kSpot;
  on.station.PL.Insert(1, spot);
  spot.code = Element::kNews;
  on.station.PL.Insert(3, spot);
  ASSERT_EQ(List(), (Codes{-2, 1, -4, 2}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{-2, 1, -4, 2, 3}));
}

TEST_F(ListUndoTest, AnOrderThatChangesNothingLeavesTheFormerOneToTakeBack) {
  Listed(2);
  OnAir::PL_KeyDelete(on.station, 1);
  OnAir::PL_KeyDelete(on.station, 9);
  EXPECT_FALSE(OnAir::SelectStoredList(on.station, 9));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2}));
}

TEST_F(ListUndoTest, AVoiceTrackWhoseRecordIsGoneDoesNotComeBack) {
  Listed(2);
  on.AppendVoiceTrack(on.MakeSound("vt.wav", 3000), 5000);
  on.messages.AnswerNext(Answer::kYes);
  OnAir::PL_KeyDelete(on.station, 3);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2}));
}

TEST_F(ListUndoTest, AVoiceTrackThatKeptItsRecordComesBack) {
  Listed(1);
  on.AppendVoiceTrack(on.MakeSound("vt.wav", 3000), 5000);
  on.messages.AnswerNext(Answer::kNo);
  OnAir::PL_KeyDelete(on.station, 2);
  ASSERT_EQ(List(), (Codes{1}));
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, -30}));
}

TEST_F(ListUndoTest, BehindAnOrderThatCannotBeTakenBackNoOlderOneIs) {
  Listed(2);
  OnAir::PL_KeyDelete(on.station, 2);
  on.AppendVoiceTrack(on.MakeSound("vt.wav", 3000), 5000);
  on.messages.AnswerNext(Answer::kYes);
  OnAir::PL_KeyDelete(on.station, 2);
  EXPECT_FALSE(UndoListOrder(on.station));
  EXPECT_EQ(List(), (Codes{1}));
}

TEST_F(ListUndoTest, RowsThatStillStandInTheListStayAsTheyAreNow) {
  Listed(3);
  OnAir::PL_KeyDelete(on.station, 3);
  on.station.PL.Row(1).exitMs = 4000;  // as the fitting shortens a title
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2, 3}));
  EXPECT_EQ(on.station.PL.Row(1).exitMs, 4000);
}

// The first row waits for its transition while the operator takes it out: it airs all the same.
TEST_F(ListUndoTest, ARowThatWentToTheAirWhileItWasTakenOutDoesNotComeBack) {
  Listed(3);
  const int64_t key = on.station.PL.Row(1).key;
  OnAir::PL_RightClick(on.station, 1);
  on.station.PL.TakeToAir(key);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{2, 3}));
}

TEST_F(ListUndoTest, WhatAiredBehindThatRowIsNoReasonForItToComeBack) {
  Listed(3);
  const int64_t key = on.station.PL.Row(1).key;
  OnAir::PL_RightClick(on.station, 1);
  on.station.PL.TakeToAir(key);
  on.station.PL.TakeToAir(on.station.PL.Row(1).key);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{3}));
}

// As while a request works: the title and its track have begun when the order is done.
TEST_F(ListUndoTest, AVoiceTrackThatBeganDuringTheOrderDoesNotComeBack) {
  Listed(1);
  on.AppendVoiceTrack(on.MakeSound("vt.wav", 3000), 5000);
  for (int i = 0; i < 2; ++i) on.AppendCard(on.AddCard({.lengthMs = 10000}));
  {
    const ListOrder order(on.station);
    on.Start();
    on.RunUntil(7000);
    ASSERT_EQ(List(), (Codes{2, 3}));
    on.station.PL.Remove(2);
  }
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{2, 3}));
}

TEST_F(ListUndoTest, HoweverManyRowsHaveAiredSinceTheyStayAired) {
  Listed(67);
  OnAir::PL_KeyDelete(on.station, 67);
  while (!on.station.PL.Empty()) on.station.PL.TakeToAir(on.station.PL.Row(1).key);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{67}));
}

TEST_F(ListUndoTest, AMoveGivenAgainLeavesOutTheRowThatAiredInItsOldPlace) {
  Listed(3);
  OnAir::PL_DragDrop(on.station, 3, 1);
  UndoListOrder(on.station);
  ASSERT_EQ(List(), (Codes{1, 2, 3}));
  on.station.PL.TakeToAir(on.station.PL.Row(3).key);
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{1, 2}));
}

// The second title begins at 54100 ms; its row stands in the list until the first has faded out.
TEST_F(ListUndoTest, ARowThatIsTakenOutWhileItBeginsDoesNotComeBack) {
  on.Load();
  on.Set("FadeOut", "5000");
  on.AppendCard(on.AddCard({.lengthMs = 60000, .exitMs = 6000}));
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.Start();
  on.At(55000, [&] {
    ASSERT_EQ(List(), (Codes{2, 3}));
    OnAir::PL_RightClick(on.station, 1);
  });
  on.RunUntil(65000);
  ASSERT_EQ(on.Events("onair").size(), 2U) << on.Describe();
  UndoListOrder(on.station);
  EXPECT_EQ(List(), (Codes{3}));
}

TEST_F(ListUndoTest, AnyFieldThatNewClearsComesBackToAnEmptyList) {
  on.Load();
  OnAir::BtnNew_Click(on.station);
  StoredListEditor& panel = on.station.storedList;
  const auto cleared = [&](auto& field, const auto& value) {
    field = value;
    OnAir::BtnNew_Click(on.station);
    EXPECT_NE(field, value);
    EXPECT_TRUE(UndoListOrder(on.station));
    EXPECT_EQ(field, value);
    OnAir::BtnNew_Click(on.station);
    ForgetListOrder(on.station);
  };
  cleared(panel.ComboPLS.text, std::string("EVENING"));
  cleared(panel.LblDate, std::string("24/12/2026"));
  cleared(panel.ChHeure, std::string("18:30"));
  cleared(panel.LblCodePL, 7);
  cleared(panel.OptPls, 2);
}

TEST_F(ListUndoTest, NoListIsChosenInTheBoxBehindIt) {
  Listed(1);
  StoredListEditor& panel = on.station.storedList;
  for (const char* label : {"MORNING", "EVENING"}) {
    panel.LblCodePL = 0;
    panel.ComboPLS.text = label;
    ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
  }
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 1));
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 2));
  UndoListOrder(on.station);
  EXPECT_EQ(panel.LblCodePL, 1);
  EXPECT_EQ(panel.ComboPLS.text, "MORNING");
  EXPECT_EQ(panel.ComboPLS.items.size(), 2U);
  on.messages.AnswerNext(Answer::kOk);
  OnAir::ComboPLS_KeyDelete(on.station);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "2");
}

TEST_F(ListUndoTest, WhereTheEngineMadeTheListAnewThereIsNoWayBack) {
  Listed(3);
  OnAir::PL_KeyDelete(on.station, 3);
  on.Start();
  on.RunUntil(3600000 + 1000);  // the titles of the old hour leave the list at 13:00
  EXPECT_FALSE(UndoListOrder(on.station));
}

TEST_F(ListUndoTest, BehindTheDeletionOfAStoredListThereIsNoWayBack) {
  Listed(1);
  on.station.storedList.ComboPLS.text = "EVENING";
  ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 1));
  OnAir::PL_KeyDelete(on.station, 1);
  on.messages.AnswerNext(Answer::kOk);
  OnAir::ComboPLS_KeyDelete(on.station);
  EXPECT_FALSE(UndoListOrder(on.station));
}

}  // namespace
}  // namespace zemo::test
