// The tabs of the jingles and of the short elements.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSlider>

#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

class JingleTab : public LibraryScreenTest {
 protected:
  void OpenTab(int tab) {
    for (const char* label : {"Morning", "Evening", "News"}) {
      AddJingle(label);
      AddShortElement(label);
    }
    Open();
    Tab(tab);
  }
  std::string Jingle(const std::string& column, int32_t code = 1) {
    return on.SqlText("SELECT " + column +
                      " FROM DiscothequeJingle WHERE CODE = " + std::to_string(code));
  }
  std::string Short(const std::string& column, int32_t code = 1) {
    return on.SqlText("SELECT " + column +
                      " FROM DiscothequeVirgule WHERE CODE = " + std::to_string(code));
  }
};

TEST_F(JingleTab, ShowsTheFirstJingleWithItsHoursAndItsList) {
  OpenTab(2);
  EXPECT_EQ(Text("ChLibJingle"), "Morning");
  EXPECT_EQ(Text("LblInfoJingle"), "Fiche 1 sur 3");
  EXPECT_TRUE(Seen("FrameAutorisation"));
  EXPECT_TRUE(Find("BtnCopy")->isEnabled());
  EXPECT_EQ(Column("PLJingles", 0), (Names{"Evening", "Morning", "News"}));
  for (const char* menu : {"MnuListe", "MnuImp", "MnuTxt", "MnuExporter", "MnuInitDate"})
    EXPECT_FALSE(On(menu)) << menu;
  EXPECT_FALSE(Find("OptionTri_0")->isVisible());
}

TEST_F(JingleTab, EveryControlOfAJingleIsStored) {
  AddSong("ABBA", "Waterloo");
  on.MakeFile("Genre.Txt", "INSTRUMENTAL\r\nPOP\r\n");
  OpenTab(2);
  Type("ChFileJingle", "/other.wav");
  Type("longeurJingle", "4000");
  EXPECT_EQ(Text("lblTempJingle"), "00:04");
  Type("ChLibJingle", "Sunrise");
  Type("ChAuteurJingle", "Bach");
  for (const char* box : {"CheckSurimpression", "EndofTitre", "JingleExtraitYN"}) Click(box);
  auto* genre = Find<QComboBox>("GenreAssocie");
  genre->setFocus();
  QTest::keyClick(genre, Qt::Key_End);
  auto* exit = Find<QSlider>("SliderPSJ");
  exit->setFocus();
  QTest::keyClick(exit, Qt::Key_PageUp);
  EXPECT_EQ(Text("LblPSJ"), "1.0");
  Type("CodeAssocie", "1");
  EXPECT_EQ(Text("LblArtisteAssocie"), "ABBA - Waterloo");
  EXPECT_TRUE(Find<QLineEdit>("LblArtisteAssocie")->isReadOnly());
  EXPECT_EQ(Jingle("LIBELLE"), "Morning");
  Menu("Replacer");
  EXPECT_EQ(Jingle("LIBELLE"), "Sunrise");
  EXPECT_EQ(Jingle("FILENAME"), "/other.wav");
  EXPECT_EQ(Jingle("DUREE"), "4000");
  EXPECT_EQ(Jingle("AUTEURCOMPOSITEUR"), "Bach");
  EXPECT_EQ(Jingle("SURIMPRESSION"), "1");
  EXPECT_EQ(Jingle("ENDOFTITRE"), "1");
  EXPECT_EQ(Jingle("JingleExtraitYN"), "1");
  EXPECT_EQ(Jingle("GENREASSOCIE"), "POP");
  EXPECT_EQ(Jingle("POINTSORTIE"), "1000");
  EXPECT_EQ(Jingle("CODEASSOCIE"), "1");
  EXPECT_EQ(Column("PLJingles", 0), (Names{"Evening", "News", "Sunrise"}));
}

TEST_F(JingleTab, AnArtistIsTypedWhereNoCardIsLinked) {
  OpenTab(2);
  Type("LblArtisteAssocie", "CHER");
  Menu("Replacer");
  EXPECT_EQ(Jingle("ARTISTEASSOCIE"), "CHER");
}

TEST_F(JingleTab, ARowOfTheListShowsItsJingleAndTheListStaysBesideIt) {
  OpenTab(2);
  ClickRow("PLJingles", 2);
  EXPECT_EQ(Text("ChLibJingle"), "News");
  EXPECT_TRUE(Seen("PLJingles"));
  EXPECT_TRUE(Find("BtnColler")->isEnabled());
}

TEST_F(JingleTab, InANarrowWindowTheListComesByItsButtonAndBarsTheHours) {
  for (const char* label : {"Morning", "Evening"}) AddJingle(label);
  Open(1024, 768);
  Tab(2);
  EXPECT_FALSE(Seen("PLJingles"));
  Click("BtnRechJingles");
  EXPECT_TRUE(Seen("PLJingles"));
  EXPECT_FALSE(Seen("FrameAutorisation"));
  ClickCell("PLJingles", 0, 0, true);
  EXPECT_FALSE(Seen("PLJingles"));
  EXPECT_EQ(Text("ChLibJingle"), "Evening");
}

TEST_F(JingleTab, ADeletedJingleLeavesTheList) {
  OpenTab(2);
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuDelete");
  EXPECT_EQ(on.Events("message").back()["text"], "Confirmez la suppression de la fiche Morning");
  EXPECT_EQ(Column("PLJingles", 0), (Names{"Evening", "News"}));
  EXPECT_EQ(Text("LblInfoJingle"), "Fiche 1 sur 2");
}

TEST_F(JingleTab, TheListIsSearchedByLabel) {
  OpenTab(2);
  Type("RechJingles", "NING");
  EXPECT_EQ(Column("PLJingles", 0), (Names{"Evening", "Morning"}));
}

TEST_F(JingleTab, EveryControlOfAShortElementIsStored) {
  OpenTab(3);
  EXPECT_FALSE(Seen("FrameAutorisation"));
  EXPECT_EQ(Text("LblInfoVirgule"), "Fiche 1 sur 3");
  Type("ChFileVirgule", "/short.wav");
  Type("LongeurVirgule", "2000");
  EXPECT_EQ(Text("lblTempVirgule"), "00:02");
  Type("ChLibVirgule", "Bell");
  Click("CheckJingleRacro");
  auto* key = Find<QComboBox>("Tch");
  key->setFocus();
  QTest::keyClick(key, Qt::Key_7);
  auto* exit = Find<QSlider>("PSAutre");
  exit->setFocus();
  QTest::keyClick(exit, Qt::Key_Right);
  EXPECT_EQ(Text("LblPSAutre"), "0.1");
  Menu("Replacer");
  EXPECT_EQ(Short("FILENAME"), "/short.wav");
  EXPECT_EQ(Short("DUREE"), "2000");
  EXPECT_EQ(Short("LIBELLE"), "Bell");
  EXPECT_EQ(Short("JingleRacro"), "1");
  EXPECT_EQ(Short("TOUCHE"), "7");
  EXPECT_EQ(Short("POINTSORTIE"), "100");
  EXPECT_EQ(Column("PLAutre", 0), (Names{"Bell", "Evening", "News"}));
  EXPECT_EQ(Column("PLAutre", 2), (Names{"X", "", ""}));
}

TEST_F(JingleTab, ShortElementsHaveTheirListInANarrowWindowToo) {
  AddShortElement("Bell");
  Open(1024, 768);
  Tab(3);
  Click("BtnFindAutre");
  EXPECT_EQ(Column("PLAutre", 3), (Names{"/Bell.wav"}));
  ClickRow("PLAutre", 0);
  Click("BtnFicheAutre");
  EXPECT_EQ(Text("ChLibVirgule"), "Bell");
  EXPECT_TRUE(Seen("ChLibVirgule"));
}

}  // namespace
}  // namespace zemo::test
