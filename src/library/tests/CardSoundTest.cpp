// The sound of the music card shown: its marks beside its boxes and its marks file, and what is
// heard of it. The titles are 180 s long.
#include "library/CardSound.h"
#include "library/tests/LibraryFixture.h"
#include "library/tests/StillPrelisten.h"
#include "platform/Desktop.h"
#include "store/SoundMeasuresTable.h"

namespace zemo {
namespace {

using Library::JoinSide;

struct CardSoundFixture : LibraryFixture {
  void SetUp() override {
    LibraryFixture::SetUp();
    on.localValues.Set("AudioOutPFLID", "1");
    for (int song = 1; song <= 3; ++song)
      on.AddCard({.artist = "ARTIST " + std::to_string(song), .exitMs = 4000, .introSec = 14});
  }
  void OpenAndLook() {
    Open();
    Look();
  }
  void Look() { Library::LookAtSound(on.station, editor); }
  void Go(int32_t position) {
    Library::Slider1_Change(on.station, editor, position);
    Look();
  }
  SoundMarkers& Marks() { return editor.sound.markers; }
  void Put(Mark mark, int32_t ms) {
    Library::TakeMarkBoxes(editor);
    Markers::Put(Marks(), mark, ms);
    Library::PutMarkBoxes(editor);
  }
  std::string FileOf(int code) const {
    return on.stationDir.Path() + "/title" + std::to_string(code) + ".wav";
  }
  std::string MarksFile(int code) {
    return on.stationFolder.Read("title" + std::to_string(code) + ".mar").value_or("(none)");
  }
  // "state file" of each event, the file by its name.
  std::vector<std::string> Heard() {
    std::vector<std::string> told;
    for (const auto& event : on.Events("prelisten"))
      told.push_back(event["state"] + event["file"].substr(event["file"].rfind('/')));
    return told;
  }
  int32_t HeardAt() { return Library::HeardAtMs(on.station, editor); }
};

using Told = std::vector<std::string>;

TEST_F(CardSoundFixture, TheMarksOfACardAreThoseOfItsBoxesAndOfItsMarksFile) {
  on.MakeFile("title1.mar", "30000,45000\r\n");
  OpenAndLook();
  EXPECT_EQ(Markers::LengthMs(Marks()), 180000);
  EXPECT_EQ(Marks().marks, (SoundMarks{14, 4000, 30000, 45000}));
}

TEST_F(CardSoundFixture, AMarkThatIsMovedChangesItsBoxAndABoxItsMark) {
  OpenAndLook();
  Put(Mark::kIntro, 9500);
  Put(Mark::kExit, 173000);
  EXPECT_EQ(editor.music.ChIntro, "9");
  EXPECT_EQ(editor.music.PointSortie, 7000);
  editor.music.ChIntro = "20";
  editor.music.PointSortie = 500;
  Library::TakeMarkBoxes(editor);
  EXPECT_EQ(Marks().marks.introSec, 20);
  EXPECT_EQ(Marks().marks.exitMs, 500);
}

TEST_F(CardSoundFixture, ABoxIsLeftAsItWasTypedWhereItsMarkStays) {
  OpenAndLook();
  editor.music.ChIntro = "014";
  Put(Mark::kExit, 170000);
  EXPECT_EQ(editor.music.ChIntro, "014");
  editor.music.ChIntro = "";
  Put(Mark::kExit, 171000);
  EXPECT_EQ(editor.music.ChIntro, "");
}

TEST_F(CardSoundFixture, ReplacerStoresTheMarksWithTheCard) {
  OpenAndLook();
  Put(Mark::kIntro, 9500);
  Put(Mark::kExit, 173000);
  Put(Mark::kExtractBegin, 61000);
  Put(Mark::kExtractEnd, 76000);
  EXPECT_EQ(MarksFile(1), "(none)") << "nothing is stored before";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT INTRO FROM Discotheque WHERE CODE = 1"), "9");
  EXPECT_EQ(on.SqlText("SELECT POINTSORTIE FROM Discotheque WHERE CODE = 1"), "7000");
  EXPECT_EQ(MarksFile(1), "61000,76000\r\n");
  EXPECT_EQ(Marks().marks, (SoundMarks{9, 7000, 61000, 76000})) << "the card is shown on";
}

TEST_F(CardSoundFixture, TheEngineReadsTheMarksFileThatIsWritten) {
  OpenAndLook();
  Put(Mark::kExtractEnd, 76000);
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(ReadExtractMarks(on.station, FileOf(1)), (ExtractMarks{0, 76000}));
}

TEST_F(CardSoundFixture, AMarksFileThatNobodyChangedIsNotWritten) {
  on.MakeFile("title1.mar", "30000 ; 45000 as it was");
  OpenAndLook();
  Put(Mark::kExit, 173000);
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(MarksFile(1), "30000 ; 45000 as it was");
}

TEST_F(CardSoundFixture, AMarksFileWithoutMarksLeftGoes) {
  on.MakeFile("title1.mar", "30000,45000\r\n");
  OpenAndLook();
  Markers::Erase(Marks(), Mark::kExtractBegin);
  Markers::Erase(Marks(), Mark::kExtractEnd);
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(MarksFile(1), "(none)");
}

TEST_F(CardSoundFixture, AnotherCardGivesUpMarksThatWereNotStored) {
  OpenAndLook();
  Put(Mark::kExtractEnd, 45000);
  Go(2);
  EXPECT_EQ(Marks().marks, (SoundMarks{14, 4000, 0, 0}));
  Library::Replacer_Click(on.station, editor);
  Go(1);
  EXPECT_EQ(Marks().marks.extractEndMs, 0);
  EXPECT_EQ(MarksFile(1), "(none)");
  EXPECT_EQ(MarksFile(2), "(none)");
}

TEST_F(CardSoundFixture, TheSameCardShownAnewGivesThemUpAsWell) {
  OpenAndLook();
  Put(Mark::kExtractEnd, 45000);
  Library::OpenOnCard(on.station, editor, 1);
  EXPECT_EQ(Marks().marks.extractEndMs, 0);
}

TEST_F(CardSoundFixture, ANewCardIsAddedWithItsMarksFile) {
  const std::string file = on.MakeSound("new.mp3", 60000);
  OpenAndLook();
  Library::Nouveau_Click(on.station, editor);
  Library::TakeFiles(on.station, editor, {file});
  Look();
  EXPECT_EQ(Markers::LengthMs(Marks()), 60000);
  Put(Mark::kExtractBegin, 10000);
  Put(Mark::kExit, 58000);
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(on.stationFolder.Read("new.mar"), "10000,0\r\n");
  EXPECT_EQ(on.SqlText("SELECT POINTSORTIE FROM Discotheque WHERE CODE = 4"), "2000");
}

TEST_F(CardSoundFixture, MeasuresOfTheFileAsItIsGiveItsLengthAndItsProposedMarks) {
  SoundMeasures measures;
  measures.lengthMs = 179500;
  measures.soundBeginMs = 120;
  measures.soundEndMs = 176000;
  measures.exitMs = 5200;
  const auto stamp = on.station.platform.soundFiles.Stamp(FileOf(1));
  ASSERT_TRUE(stamp);
  StoreMeasures(on.station.base, FileOf(1), *stamp, measures);
  OpenAndLook();
  EXPECT_EQ(Markers::LengthMs(Marks()), 179500);
  EXPECT_EQ(Marks().measured.soundBeginMs, 120);
  EXPECT_EQ(Marks().measured.soundEndMs, 176000);
  Markers::TakeMeasuredExit(Marks());
  EXPECT_EQ(Marks().marks.exitMs, 5200);
  Go(2);
  EXPECT_EQ(Marks().measured.exitMs, 0);
}

// --- listening ---

TEST_F(CardSoundFixture, TheCardIsHeardFromTheCursorOnAndPausesWhereItWasHeardTo) {
  OpenAndLook();
  Library::ListenAt(on.station, editor, 60000);
  EXPECT_EQ(HeardAt(), -1);
  Library::BtnEcoute_Click(on.station, editor);
  on.RunUntil(2500);
  EXPECT_EQ(HeardAt(), 62500);
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(HeardAt(), -1);
  EXPECT_EQ(Marks().cursorMs, 62500);
  Library::ListenAt(on.station, editor, 10000);
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(HeardAt(), 10000);
  Library::ListenAt(on.station, editor, 90000);
  EXPECT_EQ(HeardAt(), 90000);
  EXPECT_EQ(Heard(), (Told{"play/title1.wav", "pause/title1.wav", "play/title1.wav"}));
}

TEST_F(CardSoundFixture, AnotherCardAnotherTabAndTheEndOfTheScreenAreSilent) {
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  Go(2);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(HeardAt(), 0);
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kJingles);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kMusic);
  Look();
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(HeardAt(), 0);
  Library::Form_Unload(on.station, editor);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

TEST_F(CardSoundFixture, TheStepToAnotherCardIsSilentAtOnce) {
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

TEST_F(CardSoundFixture, AnotherFileForTheSameCardIsSilent) {
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  Library::TakeFiles(on.station, editor, {FileOf(3)});
  Look();
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

TEST_F(CardSoundFixture, WhatOthersPlayIsNotStopped) {
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  on.prelisten.Open(FileOf(3));
  on.prelisten.Start();
  Go(2);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kPlaying);
}

TEST_F(CardSoundFixture, TheOutputOfTheAirPlaysNothingAndThatIsSaid) {
  OpenAndLook();
  on.localValues.Set("AudioOutID", "1");
  on.station.engine.IsRunning = true;
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(Library::ListeningNote(on.station, editor), "Mauvais choix de sortie PFL");
  EXPECT_EQ(Heard(), Told{});
  on.station.engine.IsRunning = false;
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(Library::ListeningNote(on.station, editor), "");
  EXPECT_EQ(HeardAt(), 0);
}

TEST_F(CardSoundFixture, AnOutputThatRefusesIsToldInTheSelectorsWords) {
  on.localValues.Set("AudioOutPFLID", "7");
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(Message(0), "Impossible d'écouter sur cette sortie audio");
}

TEST_F(CardSoundFixture, WhereNoOutputIsChosenTheNoteSaysWhereOneIs) {
  on.localValues.Set("AudioOutPFLID", "-1");
  OpenAndLook();
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(Message(0), "Impossible d'écouter sur cette sortie audio");
  EXPECT_EQ(Library::ListeningNote(on.station, editor),
            "Aucune sortie de préécoute choisie : écran d'antenne, Options > Paramétrage...");
}

// --- joins ---

// Title 1 gives way 4 s ahead of its end, which is a long overlap: it is heard from 171 s on.
TEST_F(CardSoundFixture, TheJoinWithTheCardBehindIsHeardAsItWouldAir) {
  OpenAndLook();
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBehind);
  EXPECT_EQ(HeardAt(), 171000);
  on.RunUntil(4999);
  EXPECT_EQ(HeardAt(), 175999);
  on.RunUntil(6000);
  EXPECT_EQ(on.prelisten.FileName(), FileOf(2));
  EXPECT_EQ(on.prelisten.PositionMs(), 1000);
  EXPECT_EQ(HeardAt(), -1) << "another title is";
  EXPECT_EQ(Library::ListeningNote(on.station, editor), "ARTIST 2 - TITLE");
  EXPECT_EQ(Heard(), (Told{"play/title1.wav", "play/title2.wav"}));
}

// 6 dB and 12 dB too loud.
TEST_F(CardSoundFixture, EachTitleOfAJoinHasTheLevelThatItHasOnAir) {
  on.machineFolder.Write("Settings.Ini", "LoudnessTarget=-18\r\n");
  for (int song = 1; song <= 2; ++song) {
    SoundMeasures measures;
    measures.loudnessLufs = song == 1 ? -12 : -6;
    measures.truePeakDb = -1;
    StoreMeasures(on.station.base, FileOf(song), *on.soundFiles.Stamp(FileOf(song)), measures);
  }
  StillPrelisten player;
  on.station.platform.prelisten = &player;
  OpenAndLook();
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBehind);
  on.station.platform.prelisten = &on.prelisten;
  EXPECT_EQ(player.following.path, FileOf(2));
  EXPECT_NEAR(player.following.openGain, 0.501, 0.001);
  EXPECT_NEAR(player.following.gain, 0.251, 0.001);
}

TEST_F(CardSoundFixture, TheJoinIntoTheCardIsHeardFromTheCardAheadOfIt) {
  OpenAndLook();
  Go(2);
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBefore);
  EXPECT_EQ(on.prelisten.FileName(), FileOf(1));
  EXPECT_EQ(on.prelisten.PositionMs(), 171000);
  EXPECT_EQ(HeardAt(), -1);
  EXPECT_EQ(Library::ListeningNote(on.station, editor), "ARTIST 1 - TITLE");
  on.RunUntil(7000);
  EXPECT_EQ(HeardAt(), 2000);
  EXPECT_EQ(Library::ListeningNote(on.station, editor), "");
}

TEST_F(CardSoundFixture, AnExitThatIsNotStoredYetIsHeard) {
  OpenAndLook();
  Put(Mark::kExit, 100000);  // at the earliest 32.767 s ahead of the end
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBehind);
  EXPECT_EQ(HeardAt(), 180000 - 32767 - 5000);
}

TEST_F(CardSoundFixture, WithoutAnExitTheSettingsIsHeard) {
  on.Set("PmixDef", "2500");
  OpenAndLook();
  editor.music.PointSortie = 0;
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBehind);
  EXPECT_EQ(HeardAt(), 180000 - 2500 - 5000);
}

TEST_F(CardSoundFixture, ATitleThatIsKeptIsTheOneThatOthersAreHeardWith) {
  OpenAndLook();
  Go(3);
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBehind).name, "");
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBefore).name, "ARTIST 2 - TITLE");
  Library::BtnRetenir_Click(editor);
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBefore).name, "ARTIST 2 - TITLE");
  Go(1);
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBehind).name, "ARTIST 3 - TITLE");
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBefore).name, "ARTIST 3 - TITLE");
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBefore);
  EXPECT_EQ(on.prelisten.FileName(), FileOf(3));
  Go(3);
  Library::BtnRetenir_Click(editor);
  Go(1);
  EXPECT_EQ(Library::PartnerOf(on.station, editor, JoinSide::kBehind).name, "ARTIST 2 - TITLE");
}

TEST_F(CardSoundFixture, AfterAJoinTheCardItselfIsHeardAgain) {
  OpenAndLook();
  Library::BtnRaccord_Click(on.station, editor, JoinSide::kBehind);
  on.RunUntil(6000);
  Library::BtnEcoute_Click(on.station, editor);  // pauses what is heard
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kPaused);
  Library::BtnEcoute_Click(on.station, editor);
  EXPECT_EQ(HeardAt(), 0);
}

}  // namespace
}  // namespace zemo
