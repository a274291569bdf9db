// The library screen and the sound file selector as a script drives them, from outside.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

class LibraryScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({10, 20, 30});
  }
};

TEST_F(LibraryScript, ShowsTheFirstCardWithItsTextsNumbersBoxesAndGroups) {
  Drive({"open library", "show library"});
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_EQ(screens[0]["name"], "library");
  const Json& controls = screens[0]["controls"];
  EXPECT_EQ(controls["lblNumero"], "1");
  EXPECT_EQ(controls["ChAuteur"], "Artist 1");
  EXPECT_EQ(controls["Longeur"], "10000");
  EXPECT_EQ(controls["LblTemp"], "00:10");
  EXPECT_EQ(controls["Slider1"], 1);
  EXPECT_EQ(controls["LblInfoMus"], "Discotheque1 / 3");
  EXPECT_EQ(controls["OptionTri"], Json({true, false, false, false, false, false}));
  EXPECT_EQ(controls["Tranche"].size(), 24U);
  EXPECT_EQ(controls["JourSem"].size(), 7U);
  EXPECT_EQ(controls["ChDiffusion"].size(), 8U);
  EXPECT_EQ(controls["CheckSurimpression"], false);
  EXPECT_EQ(controls["Ajouter"], "Ajouter");
  EXPECT_EQ(screens[0]["grids"]["GTopH"].size(), 24U);
  EXPECT_TRUE(IsOff(screens[0], "ChLibJingle"));
  EXPECT_FALSE(IsOff(screens[0], "Replacer"));
}

TEST_F(LibraryScript, WhatIsTypedIsStoredByReplacer) {
  Drive({"open library", "put Slider1 2", "put ChTitre \"New title\"", "put Tranche.0 off",
         "put JourSem.3 on", "put Tranche.23 off", "put PointSortie 1500", "press Replacer"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Sql("SELECT TITRE, TRANCHE01, TRANCHE03, POINTSORTIE FROM Discotheque WHERE CODE = 2"),
            "New title|000000000000000000000000|000000000000000000000000|1500\n");
}

TEST_F(LibraryScript, AControlThatIsOffOrNotThereIsAnErrorAndChangesNothing) {
  Drive({"put ChTitre x", "open library", "put ChLibJingle x", "put Nothing x", "press Nouveau",
         "press Replacer", "put OptionTri.6 on", "choose PLDisco 1"});
  EXPECT_EQ(Events("error").size(), 6U);
}

TEST_F(LibraryScript, ALotIsAddedThroughTheSelector) {
  PutWav("a.wav", 5);
  PutWav("b.wav", 6);
  Drive({"open library", "files \"" + Path("a.wav") + "\" \"" + Path("b.wav") + "\"",
         "press CmdFileMusique", "show library", "press Ajouter", "show library"});
  EXPECT_EQ(Events("message").size(), 1U);
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 2U);
  EXPECT_EQ(screens[0]["lists"]["ListLot"].size(), 2U);
  EXPECT_EQ(screens[1]["controls"]["Slider1"], 5);
  EXPECT_EQ(screens[1]["controls"]["ChAuteur"], "b");
  EXPECT_EQ(screens[1]["controls"]["Longeur"], "6000");
  EXPECT_NE(ReadText(root_ / "a.Mus"), "");
}

TEST_F(LibraryScript, AllOfAFolderButWhatHasACard) {
  PutWav("station/new.wav", 5);
  Drive({"open library", "press Nouveau", "answer ok", "files all " + Path("station"),
         "press CmdFileMusique", "show library"});
  const auto messages = Events("message");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0]["text"], "Filtrer les fiches existantes");
  EXPECT_EQ(Events("screen")[0]["controls"]["ChFileName"], Path("station/new.wav"));
}

TEST_F(LibraryScript, WithoutAnOrderTheSelectorIsCancelledAndTheCardStays) {
  Drive({"open library", "press CmdFileMusique", "show library"});
  EXPECT_EQ(Events("screen")[0]["controls"]["ChAuteur"], "Artist 1");
  EXPECT_EQ(Events("screen")[0]["controls"]["ChFileName"], Path("station/title1.wav"));
}

TEST_F(LibraryScript, TheOpenSelectorPrelistensUntilItsOk) {
  Drive({"local AudioOutPFLID 2", "open library", "files open " + Path("station/title3.wav"),
         "press CmdFileMusique", "press btnPlay", "show selector", "press btnPause",
         "press btnRestart", "press BtnOk", "show library"});
  const auto told = Events("prelisten");
  ASSERT_EQ(told.size(), 4U);
  const char* states[] = {"play", "pause", "play", "stop"};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(told[i]["state"], states[i]);
    EXPECT_EQ(told[i]["device"], 2);
    EXPECT_EQ(told[i]["file"], Path("station/title3.wav"));
  }
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 2U);
  EXPECT_EQ(screens[0]["name"], "selector");
  // The order of that second is served before the bar's timer.
  EXPECT_EQ(screens[0]["controls"]["TrackBar"], 900);
  EXPECT_EQ(screens[1]["controls"]["ChFileName"], Path("station/title3.wav"));
}

TEST_F(LibraryScript, WhileOnAirTheSelectorDoesNotPlayOnTheOutputOfTheAir) {
  Drive({"local AudioOutID 1", "local AudioOutPFLID 1", "start", "open library",
         "files open " + Path("station/title3.wav"), "press CmdFileMusique", "show selector",
         "press btnPlay"});
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_TRUE(IsOff(screens[0], "btnPlay"));
  EXPECT_EQ(screens[0]["controls"]["LblOut"], "Mauvais choix de sortie PFL");
  ASSERT_EQ(Events("error").size(), 1U);
  EXPECT_EQ(Events("error")[0]["text"], "btnPlay is off");
  EXPECT_TRUE(Events("prelisten").empty());
}

TEST_F(LibraryScript, NoRowIsChosenInAListThatIsNotSeen) {
  Drive({"open library", "press MnuListe", "choose PLDisco 2", "put TabStrip1 2", "put TabStrip1 1",
         "choose PLDisco 3", "show library"});
  ASSERT_EQ(Events("error").size(), 1U);
  EXPECT_EQ(Events("error")[0]["text"], "PLDisco is off");
  EXPECT_EQ(Events("screen")[0]["controls"]["lblNumero"], "2");
}

TEST_F(LibraryScript, ACalendarDayGoesIntoItsWindowLabelAndARightClickEmptiesIt) {
  Drive({"open library", "day 2026-12-24", "press LblMMJJDebut", "day 2026-01-06",
         "press LblMMJJFin", "press LblMMJJFin", "show library", "press LblMMJJFin right",
         "show library"});
  const auto screens = Events("screen");
  EXPECT_EQ(screens[0]["controls"]["LblMMJJDebut"], "1224");
  EXPECT_EQ(screens[0]["controls"]["LblMMJJFin"], "0106");
  EXPECT_EQ(screens[1]["controls"]["LblMMJJFin"], "");
}

TEST_F(LibraryScript, ADoubleClickOnAPipsFileChoosesOneAndClosingSaves) {
  PutWav("pip.wav", 1);
  Drive({"open library", "put TabStrip1 4", "cell GTopH 7 2"});
  Put("more",
      "+0 open library\n+0 put TabStrip1 4\n+0 files \"" + Path("pip.wav") +
          "\"\n+0 cell GTopH 7 1\n+0 cell GTopH 7 1\n+0 cell GTopH 7 2\n+0 close library\n");
  ASSERT_EQ(Run("simulate --station station --in-place --no-start --for 5 --script more --trace "
                "trace")
                .status,
            0);
  EXPECT_EQ(Sql("SELECT FICHIER, SURIMPRESSION FROM Toph WHERE HEURE = 7"),
            Path("pip.wav") + "|-1\n");
}

TEST_F(LibraryScript, ARightClickOnAPipChangesNothing) {
  Drive({"open library", "put TabStrip1 4", "cell GTopH 7 2", "cell GTopH 7 2 right",
         "show library"});
  EXPECT_EQ(Events("screen")[0]["grids"]["GTopH"][7][2], "True");
}

TEST_F(LibraryScript, ThePrintAndTheSheetGoWhereTheyAreAskedFor) {
  Drive({"open library", "press MnuImp", "path \"" + Path("all") + "\"", "press MnuExporter"});
  const auto prints = Events("print");
  ASSERT_EQ(prints.size(), 1U);
  EXPECT_EQ(prints[0]["title"], "Impression discothèque du Samedi 21 nov. 2026");
  ASSERT_EQ(prints[0]["pages"].size(), 1U);
  EXPECT_EQ(prints[0]["pages"][0].size(), 5U);
  EXPECT_TRUE(ReadText(root_ / "all.xlsx").starts_with("PK"));
}

TEST_F(LibraryScript, ALockedMenuOpensNothing) {
  Put("machine/ZemoPasseWord.Ini", "#TRUE#,\"secret\"\r\n");
  Drive({"open library", "show library"});
  EXPECT_TRUE(Events("screen").empty());
  EXPECT_EQ(Events("error").size(), 1U);
}

}  // namespace
}  // namespace zemo
