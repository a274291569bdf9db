#include <gtest/gtest.h>

#include "library/SoundFileSelector.h"
#include "library/tests/StillPrelisten.h"
#include "platform/Desktop.h"
#include "support/TestStation.h"

namespace zemo {

namespace {

struct SelectorFixture : testing::Test {
  test::TestStation on;
  SoundFileSelector selector;
  std::string folder;

  void SetUp() override {
    on.Load();
    folder = on.stationDir.Path();
    on.MakeSound("a.wav", 10000);
    on.MakeSound("B.MP3", 20000);
    on.MakeSound("c.flac", 30000);
    on.MakeFile("words.txt", "no sound");
    on.localValues.Set("AudioOutPFLID", "1");
  }
  void Open(const std::string& file = {}, const std::vector<std::string>& known = {}) {
    Selector::Open(on.station, selector, file, known);
    if (file.empty()) Selector::Dir1_Change(on.station, selector, folder);
  }
  std::vector<std::string> Chosen() { return Selector::ChosenFiles(on.station, selector); }
  std::string LastPrelisten() {
    const auto told = on.Events("prelisten");
    return told.empty() ? "" : told.back()["state"] + " " + told.back()["device"];
  }
};

}  // namespace

TEST_F(SelectorFixture, OpensOnTheFolderOfTheCurrentFileWithItChosen) {
  Open(folder + "/B.MP3");
  EXPECT_EQ(selector.Dir1, folder);
  ASSERT_EQ(selector.File1.size(), 3U);
  EXPECT_EQ(selector.File1[0].name, "a.wav");
  EXPECT_EQ(selector.File1[1].name, "B.MP3");
  EXPECT_EQ(selector.FileName, folder + "/B.MP3");
  EXPECT_EQ(selector.TrackBarMax, 20000);
  EXPECT_EQ(Chosen(), std::vector<std::string>{folder + "/B.MP3"});
}

TEST_F(SelectorFixture, ShowsSoundFilesOnly) {
  Open();
  for (const auto& file : selector.File1) EXPECT_NE(file.name, "words.txt");
}

TEST_F(SelectorFixture, AClickPutsFolderSlashAndNameTogether) {
  Open();
  Selector::File1_Click(on.station, selector, {0, 2});
  EXPECT_EQ(selector.FileName, folder + "/c.flac");
  EXPECT_EQ(Chosen(), (std::vector<std::string>{folder + "/a.wav", folder + "/c.flac"}));
  EXPECT_EQ(Selector::PathIn("/", "a.wav"), "/a.wav");
  EXPECT_EQ(Selector::PathIn("D:\\", "a.wav"), "D:\\a.wav");
  EXPECT_EQ(Selector::PathIn("D:\\Music", "a.wav"), "D:\\Music\\a.wav");
  EXPECT_EQ(Selector::FolderOf("/a.wav"), "/");
  EXPECT_EQ(Selector::FolderOf("D:\\a.wav"), "D:\\");
}

TEST_F(SelectorFixture, ATypedPathTakesThePlaceOfTheSelection) {
  Open();
  Selector::File1_Click(on.station, selector, {0});
  Selector::FileName_Change(on.station, selector, folder + "/c.flac");
  EXPECT_EQ(Chosen(), std::vector<std::string>{folder + "/c.flac"});
}

TEST_F(SelectorFixture, AnotherFolderForgetsTheFileThatWasChosen) {
  Open(folder + "/a.wav");
  ASSERT_TRUE(Selector::Dir1_Change(on.station, selector, on.machineDir.Path()));
  EXPECT_TRUE(Chosen().empty());
}

TEST_F(SelectorFixture, AFolderThatIsNotThereChangesNothing) {
  Open();
  EXPECT_FALSE(Selector::Dir1_Change(on.station, selector, "/no/such/folder"));
  EXPECT_EQ(selector.Dir1, folder);
}

TEST_F(SelectorFixture, PlaysOnTheOutputOfThePrelistenAndComesBackToTheBeginAtTheEnd) {
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  EXPECT_EQ(LastPrelisten(), "play 1");
  on.RunUntil(4000);
  EXPECT_EQ(selector.TrackBar, 4000);
  EXPECT_EQ(selector.LblTemp, "00:00:04");
  Selector::btnPause_Click(on.station, selector);
  on.RunUntil(6000);
  EXPECT_EQ(selector.TrackBar, 4000);
  Selector::btnRestart_Click(on.station, selector);
  on.RunUntil(12100);
  EXPECT_EQ(LastPrelisten(), "end 1");
  EXPECT_EQ(selector.TrackBar, 0);
}

TEST_F(SelectorFixture, DraggingTheBarSetsThePositionOfThePlayer) {
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  Selector::TrackBar_Change(on.station, selector, 9000);
  on.RunUntil(1100);
  EXPECT_EQ(LastPrelisten(), "end 1");
}

TEST_F(SelectorFixture, ADeviceThatRefusesIsTold) {
  on.localValues.Set("AudioOutPFLID", "7");
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  EXPECT_EQ(LastPrelisten(), "refused 7");
  const auto* message = on.First("message");
  ASSERT_TRUE(message);
  EXPECT_EQ((*message)["text"], "Impossible d'écouter sur cette sortie audio");
  EXPECT_EQ((*message)["title"], "Alerte");
}

TEST_F(SelectorFixture, TheOutputOfTheAirIsAWrongChoiceWhileOnAir) {
  on.localValues.Set("AudioOutID", "1");
  Open();
  EXPECT_EQ(selector.LblOut, "");
  EXPECT_TRUE(selector.btnPlayEnabled);
  Selector::BtnCancel_Click(on.station, selector);
  on.Start();
  Open();
  EXPECT_EQ(selector.LblOut, "Mauvais choix de sortie PFL");
  EXPECT_FALSE(selector.btnPlayEnabled);
}

TEST_F(SelectorFixture, TheMachinesFileOfDevicesGoesBeforeTheValue) {
  on.machineFolder.Write("ZemoAudio.Ini", "0,2\r\n");
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  EXPECT_EQ(LastPrelisten(), "play 2");
}

TEST_F(SelectorFixture, SelectingAllKeepsWhatHasACardWithoutAnOk) {
  Open({}, {folder + "/a.wav"});
  Selector::SelectAll_Click(on.station, selector, true);
  EXPECT_EQ((*on.First("message"))["text"], "Filtrer les fiches existantes");
  EXPECT_EQ(Chosen().size(), 3U);
}

TEST_F(SelectorFixture, FilteringUnselectsWhatHasACard) {
  Open({}, {folder + "/a.wav ", "/elsewhere/B.MP3"});
  on.messages.AnswerNext(Answer::kOk);
  Selector::SelectAll_Click(on.station, selector, true);
  EXPECT_EQ(Chosen(), (std::vector<std::string>{folder + "/B.MP3", folder + "/c.flac"}));
  EXPECT_EQ(selector.LblOut, "Fini");
  EXPECT_EQ(selector.TrackBarMax, 3);
}

TEST_F(SelectorFixture, BehindTheFilterTheBarHasTheLengthOfTheFileChosenAgain) {
  Open(folder + "/B.MP3");
  on.messages.AnswerNext(Answer::kOk);
  Selector::SelectAll_Click(on.station, selector, true);
  EXPECT_EQ(selector.TrackBarMax, 20000);
}

TEST_F(SelectorFixture, FilteringWithoutKnownFilesLeavesAllSelected) {
  Open();
  on.messages.AnswerNext(Answer::kOk);
  Selector::SelectAll_Click(on.station, selector, true);
  EXPECT_EQ(Chosen().size(), 3U);
}

TEST_F(SelectorFixture, FilteringAnEmptyFolderDoesNothing) {
  Open();
  selector.File1.clear();
  on.messages.AnswerNext(Answer::kOk);
  Selector::SelectAll_Click(on.station, selector, true);
  EXPECT_TRUE(selector.File1.empty());
}

TEST_F(SelectorFixture, ClosingStopsThePlayer) {
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  Selector::BtnOk_Click(on.station, selector);
  EXPECT_TRUE(selector.selectorOk);
  EXPECT_FALSE(selector.open);
  EXPECT_EQ(LastPrelisten(), "stop 1");
  Open(folder + "/a.wav");
  EXPECT_FALSE(selector.selectorOk);
  Selector::btnPlay_Click(on.station, selector);
  EXPECT_EQ(LastPrelisten(), "play 1");
  Selector::BtnCancel_Click(on.station, selector);
  EXPECT_FALSE(selector.selectorOk);
  EXPECT_EQ(LastPrelisten(), "stop 1");
}

TEST_F(SelectorFixture, ADeviceThatIsLostWhileItPlaysIsTold) {
  StillPrelisten player;
  on.station.platform.prelisten = &player;
  Open(folder + "/a.wav");
  Selector::btnPlay_Click(on.station, selector);
  ASSERT_TRUE(player.ended);
  EXPECT_EQ(on.First("message"), nullptr);
  player.ended(true);
  on.station.platform.prelisten = &on.prelisten;
  const auto* message = on.First("message");
  ASSERT_TRUE(message);
  EXPECT_EQ((*message)["text"], "Impossible d'écouter sur cette sortie audio");
}

}  // namespace zemo
