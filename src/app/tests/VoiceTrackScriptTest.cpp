// The voice track editor as a script drives it, from outside: titles of 60 s, of which the second
// has an intro of 3 s.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

class VoiceTrackScript : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({60, 60});
    Sql("UPDATE Discotheque SET POINTSORTIE = 4000 WHERE CODE = 1");
    Sql("UPDATE Discotheque SET INTRO = 3 WHERE CODE = 2");
  }
  // Behind the list and the opened editor.
  void DriveEditor(std::vector<std::string> orders) {
    std::vector<std::string> all = {"insert music 1", "insert music 2", "open voicetrack 1"};
    all.insert(all.end(), orders.begin(), orders.end());
    Drive(all);
  }
  Json LastScreen() const { return Events("screen").back(); }
  // The row of the list in the last event `state`.
  Json Row(int row) const { return Events("state").back()["pl"][static_cast<size_t>(row - 1)]; }
};

TEST_F(VoiceTrackScript, ShowsTheNeighboursAndWhatCanBeDone) {
  DriveEditor({"show voicetrack"});
  EXPECT_TRUE(Events("error").empty());
  const Json screen = LastScreen();
  EXPECT_EQ(screen["name"], "voicetrack");
  const Json& controls = screen["controls"];
  EXPECT_EQ(controls["Avant"], "Artist 1  Title 1");
  EXPECT_EQ(controls["FileAvant"], Path("station/title1.wav"));
  EXPECT_EQ(controls["PS1"], "4000");
  EXPECT_EQ(controls["InfoPS"], "PS = 4.0");
  EXPECT_EQ(controls["Apres"], "Artist 2  Title 2");
  EXPECT_EQ(controls["Intro"], "Intro = 3");
  EXPECT_EQ(controls["LblCodeVT"], "1");
  EXPECT_EQ(controls["CheckCut"], false);
  EXPECT_EQ(controls["SpinPreRoll"], 5);
  EXPECT_EQ(controls["LevelNormalize"], -18);
  for (const char* off : {"BtnStop", "BtnPlay1", "CheckTest", "PointSortie", "LblPS", "Gauge",
                          "BtnNormalize", "BtnEditVT", "BtnUndoNormalize"})
    EXPECT_TRUE(IsOff(screen, off)) << off;
  for (const char* on : {"BtnRecord", "BntLoadVT", "CmdVTToIntro", "BtnSave", "BtnPplay2"})
    EXPECT_FALSE(IsOff(screen, on)) << on;
}

TEST_F(VoiceTrackScript, RecordsPlacesAndSavesATrack) {
  DriveEditor({"press BtnRecord", "show voicetrack", "dump", "dump", "dump", "press BtnStop",
               "press CmdVTToIntro", "press BtnSave", "show voicetrack", "dump"});
  EXPECT_TRUE(Events("error").empty());
  const std::string file = Path("station/VoiceTrack/00000001.Wav");
  const auto recorded = Events("record");
  ASSERT_EQ(recorded.size(), 2U);
  EXPECT_EQ(recorded[0]["state"], "start");
  EXPECT_EQ(recorded[0]["file"], file);
  EXPECT_EQ(recorded[1]["state"], "stop");
  EXPECT_EQ(recorded[1]["ms"], 5000);
  EXPECT_EQ(ReadText(file).size(), 44U + 5 * 44100 * 2);
  const Json screen = LastScreen();
  EXPECT_EQ(screen["controls"]["LblTimeVT"], "00:05");
  EXPECT_EQ(screen["controls"]["LblPositionVT"], "54000");  // 60 - 4 - (5 - 3) s
  EXPECT_EQ(Events("message").back()["text"], "Voice Track recalé sur intro");
  EXPECT_EQ(Row(2)[0], "Voice Track");
  EXPECT_EQ(Row(2)[1], "1");
  EXPECT_EQ(Row(2)[5], file);
  EXPECT_EQ(Row(2)[6], "-30");
  EXPECT_EQ(Row(2)[8], "0");
  EXPECT_EQ(Row(2)[10], "54000");
  EXPECT_EQ(Sql("SELECT FILENAME, START, CUT, DUREE FROM VT"), file + "|54000|0|5000\n");
}

TEST_F(VoiceTrackScript, TheJoinIsToldWithTheTrackOverTheMusic) {
  PutWav("link.wav", 4);
  DriveEditor({"put SpinPreRoll 3", "path link.wav", "press BntLoadVT", "put LblPositionVT 54000",
               "put CheckTest on", "dump", "dump", "show voicetrack", "dump", "dump", "dump",
               "press BtnStop2"});
  EXPECT_TRUE(Events("error").empty());
  const auto told = Events("preview");
  ASSERT_GE(told.size(), 5U);
  EXPECT_EQ(told[0]["state"], "start");
  EXPECT_EQ(told[0]["slot"], 0);
  EXPECT_EQ(told[0]["position_ms"], 53000);
  EXPECT_EQ(told[0]["file"], Path("station/title1.wav"));
  EXPECT_EQ(told[1]["state"], "volume");
  EXPECT_EQ(told[1]["volume"], 6500);
  EXPECT_EQ(told[2]["state"], "start");
  EXPECT_EQ(told[2]["slot"], 2);
  EXPECT_EQ(told[2]["file"], Path("link.wav"));
  EXPECT_EQ(told[3]["slot"], 1);
  EXPECT_EQ(told[4]["state"], "fade");
  EXPECT_EQ(told[4]["ms"], 1600);
  EXPECT_EQ(told.back()["state"], "end");
  EXPECT_EQ(LastScreen()["controls"]["PoVT"], "00:01");  // at the last turn ahead of the order
}

TEST_F(VoiceTrackScript, ACutTrackHasAnExitPointAndNoIntroToMeet) {
  PutWav("link.wav", 4);
  DriveEditor({"path link.wav", "press BntLoadVT", "press CheckCut", "put PointSortie 4000",
               "show voicetrack", "put CheckTest on", "press BtnStop2", "press CmdVTToIntro",
               "press BtnSave", "dump"});
  EXPECT_TRUE(IsOff(LastScreen(), "CmdVTToIntro"));
  EXPECT_FALSE(IsOff(LastScreen(), "PointSortie"));
  EXPECT_EQ(LastScreen()["controls"]["LblPS"], "4.0");
  ASSERT_EQ(Events("error").size(), 1U);  // CmdVTToIntro is off
  EXPECT_EQ(Row(2)[0], "Voice Track Cut");
  EXPECT_EQ(Row(2)[8], "4000");
  EXPECT_EQ(Row(2)[9], "1000");  // the exit point lay at the end
}

TEST_F(VoiceTrackScript, TheProgramsOfTheMachineAreRunAndItsValuesKept) {
  PutWav("link.wav", 4);
  DriveEditor({"put VoiceTrackInputID 1", "put VoiceTrackOututID 3", "put LevelNormalize -20",
               "path /opt/waves", "press BtnChoseEditeur", "path link.wav", "press BntLoadVT",
               "press BtnEditVT", "press BtnTableMixage", "press BtnPlay1", "press BtnStop",
               "close voicetrack", "open voicetrack 1", "show voicetrack"});
  EXPECT_TRUE(Events("error").empty());
  const auto run = Events("system");
  ASSERT_EQ(run.size(), 2U);
  EXPECT_EQ(run[0]["value"], "\"/opt/waves\" \"" + Path("link.wav") + "\"");
  EXPECT_EQ(run[1]["value"], "mixer");
  EXPECT_EQ(Events("prelisten").front()["device"], 3);
  const Json controls = LastScreen()["controls"];
  EXPECT_EQ(controls["VoiceTrackInputID"], 1);
  EXPECT_EQ(controls["VoiceTrackOututID"], 3);
  EXPECT_EQ(controls["LevelNormalize"], -20);
  EXPECT_EQ(controls["LblEditeur"], "/opt/waves");
  EXPECT_NE(ReadText(root_ / "machine/Settings.Ini").find("VoiceTrackEditeur=/opt/waves"),
            std::string::npos);
}

TEST_F(VoiceTrackScript, ASilentTrackIsNotBroughtToALevel) {
  PutWav("link.wav", 4);
  DriveEditor({"path link.wav", "press BntLoadVT", "press BtnNormalize", "show voicetrack"});
  EXPECT_EQ(Events("message").back()["text"], "Ce fichier ne contient pas de son");
  EXPECT_TRUE(IsOff(LastScreen(), "BtnUndoNormalize"));
  EXPECT_EQ(LastScreen()["controls"]["FileVoiceTrack"], Path("link.wav"));
}

// The exit point lies at 56 s; the join is heard from 52 s on and the take begins at 53 s, so that
// the retake's join begins at 49 s.
TEST_F(VoiceTrackScript, ASittingGoesFromJoinToJoin) {
  Drive({"insert music 1",
         "insert music 2",
         "insert music 1",
         "open voicetrack 1",
         "show voicetrack",
         "put SpinPreRoll 4",
         "press BtnPplay2",
         "press BtnRecord",
         "show voicetrack",
         "press BtnReprise",
         "dump",
         "dump",
         "dump",
         "dump",
         "dump",
         "show voicetrack",
         "press BtnStop",
         "press BtnSuivant",
         "show voicetrack",
         "press BtnPrecedent",
         "show voicetrack",
         "choose ListJoins 2",
         "show voicetrack"});
  EXPECT_TRUE(Events("error").empty());
  const auto screens = Events("screen");
  ASSERT_EQ(screens.size(), 6U);
  const auto shown = [&](size_t screen, const char* control) {
    return screens[screen]["controls"][control].get<std::string>();
  };
  EXPECT_EQ(shown(0, "LblARemplir"), "0:03.0");
  EXPECT_EQ(shown(0, "LblDecompte"), "");
  const Json first = {"Artist 1  Title 1", "Artist 2  Title 2", "Sans voice track"};
  const Json second = {"Artist 2  Title 2", "Artist 1  Title 1", "Sans voice track"};
  EXPECT_EQ(screens[0]["lists"]["ListJoins"], Json::array({first, second}));
  EXPECT_EQ(shown(1, "LblDecompte"), "0:05.0");  // from 54 s to 59 s
  const auto recorded = Events("record");
  ASSERT_EQ(recorded.size(), 4U);
  EXPECT_EQ(recorded[1]["ms"], 2000);
  EXPECT_EQ(recorded[2]["state"], "start");
  EXPECT_EQ(recorded[2]["at"], "2026-11-21T10:00:14.000");  // 4 s behind the order
  EXPECT_EQ(shown(3, "Avant"), "Artist 2  Title 2");        // and the take is stored
  EXPECT_EQ(screens[3]["lists"]["ListJoins"][0][2], "Voice track prêt");
  EXPECT_EQ(shown(4, "Avant"), "Artist 1  Title 1");
  EXPECT_EQ(shown(4, "LblTimeVT"), "00:03");
  EXPECT_EQ(shown(5, "Avant"), "Artist 2  Title 2");
}

TEST_F(VoiceTrackScript, ARowThatThereIsNotOpensNothing) {
  Drive({"insert music 1", "open voicetrack 2", "show voicetrack"});
  EXPECT_EQ(Events("error").size(), 2U);
  EXPECT_TRUE(Events("screen").empty());
}

TEST_F(VoiceTrackScript, CaptionsAreInTheStationsLanguage) {
  Drive({"set Langue 3", "insert music 1", "open voicetrack 1", "show voicetrack"});
  EXPECT_EQ(LastScreen()["controls"]["BtnSave"], "Guardar");
  EXPECT_EQ(LastScreen()["controls"]["BtnRecord"], "Grabar");
}

}  // namespace
}  // namespace zemo
