// The language of the office's screens as a script sees them: that of each one's opening.
#include <gtest/gtest.h>

#include "OfficeScript.h"

namespace zemo {
namespace {

class OfficeLanguage : public OfficeScript {
 protected:
  void SetUp() override {
    OfficeScript::SetUp();
    MakeStation({60, 60});
  }
  Json Screen(size_t number) const {
    const auto screens = Events("screen");
    return number < screens.size() ? screens[number] : Json();
  }
};

TEST_F(OfficeLanguage, AScreenKeepsTheOneOfItsOpeningUntilItIsOpenedAgain) {
  Drive({"insert music 1", "insert music 2", "open voicetrack 1", "open library", "open report",
         "open campaigns", "open settings", "open models", "set Langue 1", "press JourSemaine.2",
         "show library", "show report", "show campaigns", "show settings", "show models",
         "show voicetrack", "close models", "open models", "show models"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Screen(0)["controls"]["TabStrip1"], "Musiques");
  EXPECT_EQ(Screen(0)["controls"]["Nouveau"], "Nouveau");
  EXPECT_EQ(Screen(1)["title"], "Rapport et statistiques");
  EXPECT_EQ(Screen(1)["controls"]["BtnStats"], "Statistiques");
  EXPECT_EQ(Screen(2)["title"], "Horaires des pubs");
  EXPECT_EQ(Screen(2)["controls"]["BtnNew"], "Nouvelle");
  EXPECT_EQ(Screen(3)["controls"]["BtnSave"], "Sauvegarder");
  EXPECT_EQ(Screen(3)["grids"]["Filtre"][0], Json({"de", "à"}));
  EXPECT_EQ(Screen(4)["title"], "Model en %");
  EXPECT_EQ(Screen(4)["controls"]["BtnSave"], "Sauvegarder");
  EXPECT_EQ(Screen(4)["grids"]["Models"][0][0], "Genres");
  EXPECT_EQ(Screen(4)["lists"]["PopJour"][6], Json({"Dimanche"}));
  EXPECT_EQ(Screen(5)["controls"]["BtnSave"], "Sauver");
  EXPECT_EQ(Screen(6)["title"], "Model in %");
  EXPECT_EQ(Screen(6)["controls"]["BtnSave"], "Save");
  EXPECT_EQ(Screen(6)["grids"]["Models"][0][0], "Style");
}

TEST_F(OfficeLanguage, AnUnknownOneIsFrench) {
  Drive({"set Langue 4", "open campaigns", "show campaigns", "open report", "show report"});
  EXPECT_TRUE(Events("error").empty());
  EXPECT_EQ(Screen(0)["title"], "Horaires des pubs");
  EXPECT_EQ(Screen(0)["controls"]["BtnNew"], "Nouvelle");
  EXPECT_EQ(Screen(1)["title"], "Rapport et statistiques");
  EXPECT_EQ(Screen(1)["controls"]["BtnStats"], "Statistiques");
}

}  // namespace
}  // namespace zemo
