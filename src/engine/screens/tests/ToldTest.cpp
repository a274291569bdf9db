// No order ends in silence: what became of it, or why nothing did, stands in the line at the
// bottom.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTableView>

#include "engine/screens/tests/ScreenFixture.h"

namespace zemo::test {
namespace {

using Names = std::vector<std::string>;

class Told : public Screen {
 protected:
  void SetUp() override {
    Screen::SetUp();
    Loaded();
    on.Set("Langue", "1");
  }
  void OpenLive() {
    Open();
    Click("Toolbar1_2");
    QCoreApplication::processEvents();
  }
  std::string Line() {
    Draw();
    return Find("LblAvis")->isVisible() ? Text("LblAvis") : std::string();
  }
  // The questions that were asked, each answered as given.
  void Answering(Answer answer) {
    on.messages.shown = [this](const std::string&, const std::string& text, Buttons, Answer) {
      asked.push_back(text);
    };
    on.messages.AnswerNext(answer);
  }
  Names asked;
};

TEST_F(Told, WhyTheProgramIsNotLeftOnAir) {
  AddTitles(2);
  Open();
  EXPECT_EQ(Line(), "");
  Click("Toolbar1_5");
  Run(1000);
  window->close();
  EXPECT_EQ(Line(), "On air: stop first, then quit");
  EXPECT_FALSE(Find("LblInfo")->isVisible());
  Run(8000);
  EXPECT_EQ(Line(), "");
  EXPECT_TRUE(Find("LblInfo")->isVisible());
}

TEST_F(Told, HowManyBreaksTheGridOfTheDayHasNow) {
  Open();
  window->findChild<QAction*>("MakePubduJour")->trigger();
  EXPECT_EQ(Line(), "The day's grid is composed; breaks: 0");
}

TEST_F(Told, ThatTheGridCouldNotBeComposed) {
  Open();
  on.Sql("DROP TABLE GrillePub");
  window->findChild<QAction*>("MakePubduJour")->trigger();
  EXPECT_EQ(Line(), "The day's grid is not composed");
}

TEST_F(Told, HowManyCharactersASearchWants) {
  AddTitles(1);
  OpenLive();
  auto* box = Find<QLineEdit>("Rech");
  QTest::keyClicks(box, "AR");
  EXPECT_EQ(Line(), "Type at least 3 characters, or * for all");
  QTest::keyClicks(box, "T");
  EXPECT_EQ(Line(), "");
  EXPECT_TRUE(Find("LblInfo")->isVisible());  // at once
}

TEST_F(Told, AnotherOrdersWordStaysWhileTheSearchFinds) {
  AddTitles(1);
  OpenLive();
  Click("Toolbar1_5");
  Run(1000);
  window->close();
  Find<QLineEdit>("Rech")->insert("ARTIST");  // as it is pasted
  EXPECT_EQ(Line(), "On air: stop first, then quit");
}

TEST_F(Told, AWordStandsBeforeWhatWorks) {
  AddTitles(1);
  Open();
  Click("Toolbar1_5");
  Run(1000);
  window->close();
  on.station.notices.progress.visible = true;
  Draw();
  EXPECT_TRUE(Find("LblAvis")->isVisible());
  EXPECT_FALSE(Find("LblProgression")->isVisible());
  Run(8000);
  EXPECT_FALSE(Find("LblAvis")->isVisible());
  EXPECT_TRUE(Find("LblProgression")->isVisible());
}

TEST_F(Told, ThatAnEmptySearchWantsNothing) {
  AddTitles(1);
  OpenLive();
  auto* box = Find<QLineEdit>("Rech");
  QTest::keyClicks(box, "A");
  Run(8000);
  QTest::keyClick(box, Qt::Key_Backspace);
  EXPECT_EQ(Line(), "");
}

TEST_F(Told, ThatAPasswordWasWrong) {
  on.station.lists.Locked = true;
  Open();
  window->findChild<QAction*>("MnuPasseWord")->trigger();
  auto* dialog = window->findChild<QDialog*>("FrmPasseWord");
  ASSERT_TRUE(dialog);
  QTest::keyClicks(dialog->findChild<QLineEdit*>("ChPasse"), "wrong");
  QTest::mouseClick(dialog->findChild<QAbstractButton*>("BtnOk"), Qt::LeftButton);
  EXPECT_EQ(Line(), "Wrong password: nothing is changed");
}

TEST_F(Told, WhatTheLockBarsStandsOnTheScreenWhileItDoes) {
  AddTitles(1);
  Open();
  EXPECT_FALSE(Find("LblVerrou")->isVisible());
  on.station.lists.Locked = true;
  Draw();
  EXPECT_TRUE(Find("LblVerrou")->isVisible());
  EXPECT_EQ(Text("LblVerrou"), "LOCKED: Edit, Settings and the cards");
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier, InRow(1));
  EXPECT_EQ(Line(), "The password locks the cards");
  on.station.lists.Locked = false;
  Draw();
  EXPECT_FALSE(Find("LblVerrou")->isVisible());
}

// --- the list, and the way back ---

TEST_F(Told, CtrlZBringsBackWhatTheLastOrderTookOutAndSaysSo) {
  AddTitles(3);
  Open();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  Key(Qt::Key_Delete);
  ASSERT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3"}));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2", "ARTIST 3"}));
  EXPECT_EQ(Line(), "The last action on the list is undone; Ctrl+Z redoes it");
}

TEST_F(Told, CtrlZBringsAMovedRowBackOnTheScreenToo) {
  AddTitles(3);
  Open();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(3));
  Key(Qt::Key_Up, Qt::AltModifier);
  ASSERT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3", "ARTIST 2"}));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 2", "ARTIST 3"}));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3", "ARTIST 2"}));
}

TEST_F(Told, CtrlZWithoutAnOrderSaysSo) {
  Open();
  List().setFocus();
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Line(), "No action on the list to undo");
}

TEST_F(Told, CtrlZInATextBoxIsTheTexts) {
  AddTitles(3);
  OpenLive();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  Key(Qt::Key_Delete);
  auto* box = Find<QLineEdit>("Rech");
  box->setFocus();
  QTest::keyClicks(box, "ART");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(box->text(), "");
  EXPECT_EQ(Titles(), (Names{"ARTIST 1", "ARTIST 3"}));
}

TEST_F(Told, NewAsksWhileTheAirPlaysFromTheListAndNoKeepsIt) {
  AddTitles(3);
  OpenLive();
  Click("Toolbar1_5");
  Run(1000);
  Answering(Answer::kNo);
  Click("BtnNew");
  EXPECT_EQ(asked, (Names{"This list is on air. Clear it?"}));
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 3"}));
  Answering(Answer::kYes);
  Click("BtnNew");
  Draw();
  EXPECT_TRUE(on.station.PL.Empty());
  List().setFocus();
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Titles(), (Names{"ARTIST 2", "ARTIST 3"}));
}

TEST_F(Told, NewDoesNotAskWhileTheEngineIsStoppedAndTheTotalFollowsAtOnce) {
  AddTitles(2);  // 3 min each
  OpenLive();
  ASSERT_EQ(Text("HHTot") + Text("MnTot") + Text("SSTot"), "000600");
  Answering(Answer::kNo);
  Click("BtnNew");
  Draw();
  EXPECT_TRUE(asked.empty());
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(Text("HHTot") + Text("MnTot") + Text("SSTot"), "000000");
}

TEST_F(Told, NewDoesNotAskOnAirWhereTheListIsEmpty) {
  AddTitles(1);
  OpenLive();
  Click("Toolbar1_5");
  Run(1000);
  on.station.PL.Clear();
  on.station.storedList.OptPls = 2;
  Answering(Answer::kNo);
  Click("BtnNew");
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(on.station.storedList.OptPls, 0);
}

// --- saving ---

TEST_F(Told, AListOfAWrongTimeOrDateIsNotSaved) {
  AddTitles(1);
  OpenLive();
  StoredListEditor& panel = on.station.storedList;
  panel.ComboPLS.text = "EVENING";
  panel.LblDate = "24/12/2026";
  panel.ChHeure = "25:00";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "\"25:00\" is not a time (hh:mm): the list is not saved");
  EXPECT_TRUE(Find("ChHeure")->hasFocus());
  panel.ChHeure = "hh:mn";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "Enter a time (hh:mm): the list is not saved");
  panel.ChHeure = "18:30";
  panel.LblDate = "JJ/MM/ANNE";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "Choose a date: the list is not saved");
  EXPECT_TRUE(Find("LblDate")->hasFocus());
  panel.LblDate = "31/02/2026";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "\"31/02/2026\" is not a date: the list is not saved");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  panel.LblDate = "JOURNALIER";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "The list \"EVENING\" is saved");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "1");
}

TEST_F(Told, AListWithoutANameIsSavedAndToldAsSuch) {
  AddTitles(1);
  OpenLive();
  on.station.storedList.LblDate = "JOURNALIER";
  on.station.storedList.ChHeure = "18:30";
  Click("BtnSauve");
  EXPECT_EQ(Line(), "The list \"–\" is saved");
}

TEST_F(Told, AListWithoutAMomentOrWithoutARowIsSavedOnlyOnDemand) {
  OpenLive();
  Answering(Answer::kNo);
  Click("BtnSauve");
  EXPECT_EQ(asked, (Names{"Without a date and time it will not go on air by itself. Save it?"}));
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  on.station.storedList.LblDate = "JOURNALIER";
  on.station.storedList.ChHeure = "18:30";
  Answering(Answer::kNo);
  Click("BtnSauve");
  EXPECT_EQ(asked.back(), "The list is empty. Save it?");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  Answering(Answer::kYes);
  Click("BtnSauve");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "1");
}

TEST_F(Told, TheNeutralTimeTypedBackIsNeutral) {
  OpenLive();
  auto* hour = Find<QLineEdit>("ChHeure");
  hour->selectAll();
  QTest::keyClicks(hour, "18:30");
  hour->selectAll();
  QTest::keyClicks(hour, "hh:mm");
  EXPECT_EQ(on.station.storedList.ChHeure, "hh:mn");
}

TEST_F(Told, OnlyWhatHasACardIsSaidToBeLocked) {
  OnAirElement spot;
  spot.code = Element::kSpot;
  spot.title = "BAKERY";
  on.Append(spot);
  on.station.lists.Locked = true;
  Open();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, Qt::ControlModifier, InRow(1));
  EXPECT_EQ(Line(), "");
}

TEST_F(Told, AListThatTheBaseDoesNotTakeIsToldAsNotSaved) {
  AddTitles(1);
  OpenLive();
  on.station.storedList.LblDate = "JOURNALIER";
  on.station.storedList.ChHeure = "18:30";
  on.Sql("DROP TABLE Playlist");
  Click("BtnSauve");
  EXPECT_EQ(Line(), "The list is not saved");
}

// --- the keyboard, and figures ---

TEST_F(Told, DownGoesFromTheSearchTextIntoItsFinds) {
  AddTitles(3);
  OpenLive();
  auto* box = Find<QLineEdit>("Rech");
  box->setFocus();
  Key(Qt::Key_Down);
  EXPECT_TRUE(box->hasFocus());  // nothing is found yet
  QTest::keyClicks(box, "ARTIST");
  QTRY_COMPARE(Find<QTableView>("ListRech")->model()->rowCount(), 3);
  Key(Qt::Key_Down);
  EXPECT_TRUE(Find("ListRech")->hasFocus());
  EXPECT_EQ(Find<QTableView>("ListRech")->currentIndex().row(), 0);
}

TEST_F(Told, DownGoesBackToTheFindThatWasChosen) {
  AddTitles(3);
  OpenLive();
  auto* box = Find<QLineEdit>("Rech");
  auto* finds = Find<QTableView>("ListRech");
  box->setFocus();
  QTest::keyClicks(box, "ARTIST");
  QTRY_COMPARE(finds->model()->rowCount(), 3);
  finds->selectRow(1);
  Key(Qt::Key_Down);
  EXPECT_TRUE(finds->hasFocus());
  EXPECT_EQ(finds->currentIndex().row(), 1);
}

TEST_F(Told, NothingRemainsWhereNothingPlays) {
  AddTitles(1);
  Open();
  EXPECT_EQ(Text("Temp"), "");
  Click("Toolbar1_5");
  Run(2000);
  EXPECT_NE(Text("Temp"), "");
  Click("Toolbar1_6");
  Run(1000);
  EXPECT_NE(Text("Temp"), "");  // it plays out
  Run(200000);
  EXPECT_EQ(Text("Temp"), "");
}

TEST_F(Told, TheOrderToStopAndTheCutHaveNamesAndLooksOfTheirOwn) {
  AddTitles(1);
  Open();
  EXPECT_EQ(Text("Toolbar1_6"), "Stop at end");
  EXPECT_EQ(Text("CmdStop"), "Stop");
  EXPECT_FALSE(Find("CmdStop")->property("cuts").toBool());  // there is nothing to cut
  Click("Toolbar1_5");
  Run(1000);
  EXPECT_EQ(Text("CmdStop"), "Next");
  EXPECT_FALSE(Find("CmdStop")->property("cuts").toBool());
  Click("Toolbar1_6");
  Run(1000);
  EXPECT_EQ(Text("CmdStop"), "Stop");
  EXPECT_TRUE(Find("CmdStop")->property("cuts").toBool());
  EXPECT_EQ(Find("CmdStop")->toolTip().toStdString().find("Cuts the element still playing out"),
            0U);
}

TEST_F(Told, TheNextBreakOfTheLiveModeIsNamedInTheOperatorsWords) {
  AddTitles(1);
  OpenLive();
  on.station.notices.day = "15:15 >> Pubs - 01:05";
  Draw();
  EXPECT_EQ(Text("InfoDate"), "15:15 >> Spots - 01:05");
}

// A title of 60 s begins its successor 6 s before its end; the list reckons at the start of each.
TEST_F(Told, NextAndTheFirstRowShowTheSameMomentInEveryMode) {
  for (int title = 0; title < 4; ++title)
    on.AppendCard(on.AddCard({.lengthMs = 60000, .exitMs = 6000}));
  OpenLive();
  Click("Toolbar1_5");
  const auto* planned = List().model();
  for (int second = 1; second < 100; ++second) {
    if (second == 70) Click("Toolbar1_1");
    Run(1000);
    const std::string row = planned->index(0, Col::kPlanned).data().toString().toStdString();
    const std::string shown = row.substr(0, 2) + ":" + row.substr(5, 2) + ":" + row.substr(10, 2);
    ASSERT_EQ(Text("TileNextWhen"), shown) << second;
  }
}

TEST_F(Told, AutomaticModeBeginsWithMusicWhereALiveListRanDry) {
  AddTitles(4);
  on.ModelOfOneGenre("POP");
  on.station.PL.Clear();
  OpenLive();
  Click("Toolbar1_5");
  on.station.PL.Clear();
  Run(2000);
  const size_t before = on.Events("request").size();
  Click("Toolbar1_1");
  EXPECT_EQ(on.Events("request").size(), before + 1);
  EXPECT_FALSE(on.station.PL.Empty());
}

TEST_F(Told, AutomaticModeAsksForNothingWhileSomethingPlays) {
  AddTitles(1);
  on.ModelOfOneGenre("POP");
  OpenLive();
  Click("Toolbar1_5");
  Run(2000);
  const size_t before = on.Events("request").size();
  Click("Toolbar1_1");
  EXPECT_EQ(on.Events("request").size(), before);
}

TEST_F(Told, HowManyElementsWereAddedWhichTheListShows) {
  AddTitles(40);
  OpenLive();
  auto* box = Find<QLineEdit>("Rech");
  QTest::keyClicks(box, "ARTIST 7");
  QTRY_COMPARE(Find<QTableView>("ListRech")->model()->rowCount(), 1);
  box->setFocus();
  Key(Qt::Key_Down);
  Key(Qt::Key_Insert);
  EXPECT_EQ(Line(), "Added to the list: 1");
  EXPECT_EQ(Titles().size(), 41U);
  EXPECT_TRUE(List().viewport()->rect().intersects(
      List().visualRect(List().model()->index(40, Col::kTitle))));
}

TEST_F(Told, AnOrderGivenAgainIsToldAsSuch) {
  AddTitles(2);
  Open();
  QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, InRow(2));
  Key(Qt::Key_Delete);
  Key(Qt::Key_Z, Qt::ControlModifier);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Line(), "The last action on the list is redone; Ctrl+Z undoes it");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Line(), "The last action on the list is undone; Ctrl+Z redoes it");
}

}  // namespace
}  // namespace zemo::test
