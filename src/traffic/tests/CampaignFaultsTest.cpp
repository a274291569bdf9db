// What a campaign and the categories keep where the base or a file refuses.
#include <filesystem>

#include "support/BaseFaults.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

struct CampaignFaults : testing::Test {
  BaseFaults base;  // ahead of the station, whose base it may fail
  CampaignStation s;

  void AddCategory(const std::string& category) {
    s.editor.Categorie = category;
    s.messages.AnswerNext(Answer::kYes);
    Campaigns::Categorie_KeyEnter(s.station, s.editor);
  }
};

TEST_F(CampaignFaults, ADeletionThatTheBaseRefusesCostsNoCross) {
  s.MakeFile("Bakery.GPB", "X\r\n");
  s.AddCampaign({{"FILENAMEAUDIO", "'" + s.MakeSound("Bakery.wav", 15000) + "'"},
                 {"FILENAMEGRILLE", "'" + s.InFolder("Bakery.GPB") + "'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  for (const BasePoint point : {BasePoint::kLockToWrite, BasePoint::kLockToCommit}) {
    s.messages.AnswerNext(Answer::kOk);
    base.Arm(point, BaseFault::kLocked);
    EXPECT_FALSE(Campaigns::BtnDelete_Click(s.station, s.editor));
    base.Disarm();
    EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "1");
    EXPECT_EQ(s.File("Bakery.GPB"), "X\r\n");
    EXPECT_NE(s.First("error", "where", "BtnDelete"), nullptr);
  }
  s.messages.AnswerNext(Answer::kOk);
  EXPECT_TRUE(Campaigns::BtnDelete_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
  EXPECT_EQ(s.File("Bakery.GPB"), "(no file)");
}

TEST_F(CampaignFaults, ASaveThatComesToNothingIsToldWhereItWasAskedFor) {
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::CmdLoadFile_Click(s.station, s.editor, s.MakeSound("Bakery.wav", 15000), 15000);
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  EXPECT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  base.Disarm();
  EXPECT_EQ(s.LastMessage(), "Impossible de sauver");
  EXPECT_EQ(s.SqlText("SELECT COUNT(*) FROM GrillePub"), "0");
  EXPECT_TRUE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  EXPECT_EQ(s.Events("message").size(), 1U);
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  base.Disarm();
  EXPECT_EQ(s.Events("message").size(), 2U);
  std::filesystem::remove(s.InFolder("Bakery.GPB"));
  std::filesystem::create_directory(s.InFolder("Bakery.GPB"));
  EXPECT_FALSE(Campaigns::BtnReplacer_Click(s.station, s.editor));
  EXPECT_EQ(s.Events("message").size(), 3U);
}

// It is the record that is shown, though its files are missing.
TEST_F(CampaignFaults, ARecordWhoseFilesFailedIsDeletedWhereItIsShown) {
  s.AddCampaign({{"ANNONCEUR", "'Other'"}});
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  Campaigns::BtnNew_Click(s.station, s.editor);
  Campaigns::CmdLoadFile_Click(s.station, s.editor, s.MakeSound("Bakery.wav", 15000), 15000);
  Campaigns::LblDepartPub_RightClick(s.station, s.editor);
  std::filesystem::create_directory(s.InFolder("Bakery.GPB"));
  ASSERT_FALSE(Campaigns::BtnAjouter_Click(s.station, s.editor));
  s.messages.AnswerNext(Answer::kOk);
  EXPECT_TRUE(Campaigns::BtnDelete_Click(s.station, s.editor));
  EXPECT_EQ(s.SqlText("SELECT ANNONCEUR FROM GrillePub"), "Other");
}

TEST_F(CampaignFaults, TheOpeningForgetsTheKeyOfAnOverlay) {
  s.station.engine.OverlayKey = "F5";
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  EXPECT_EQ(s.station.engine.OverlayKey, "");
}

TEST_F(CampaignFaults, CategoriesThatCannotBeReadAreNotReplacedByTheOneThatIsAdded) {
  s.MakeFile("Categori.Ini", "FOOD\r\nCARS\r\n");
  s.stationFolder.unreadable = "Categori.Ini";
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  AddCategory("toys");
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\nCARS\r\n");
  EXPECT_NE(s.First("error", "where", "Categorie"), nullptr);
  s.stationFolder.unreadable.clear();
  AddCategory("toys");
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\nCARS\r\nTOYS\r\n");
}

TEST_F(CampaignFaults, CategoriesThatCannotBeReadAreNotLostWithTheOneThatIsDeleted) {
  s.MakeFile("Categori.Ini", "FOOD\r\nCARS\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.stationFolder.unreadable = "Categori.Ini";
  s.editor.Categorie = "food";
  s.messages.AnswerNext(Answer::kYes);
  Campaigns::Categorie_KeyDelete(s.station, s.editor);
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\nCARS\r\n");
  EXPECT_EQ(s.editor.CategorieList.size(), 2U);
}

TEST_F(CampaignFaults, CategoriesOfAnotherMachineStayWhenOneIsAddedOrDeleted) {
  s.MakeFile("Categori.Ini", "FOOD\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.MakeFile("Categori.Ini", "FOOD\r\nPETS\r\n");
  AddCategory("toys");
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\nPETS\r\nTOYS\r\n");
  EXPECT_EQ(s.editor.CategorieList, (std::vector<std::string>{"FOOD", "PETS", "TOYS"}));
  s.MakeFile("Categori.Ini", "FOOD\r\nPETS\r\nTOYS\r\nWINE\r\n");
  s.editor.Categorie = "food";
  s.messages.AnswerNext(Answer::kYes);
  Campaigns::Categorie_KeyDelete(s.station, s.editor);
  EXPECT_EQ(s.File("Categori.Ini"), "PETS\r\nTOYS\r\nWINE\r\n");
}

// A field of a base that another program wrote.
TEST_F(CampaignFaults, AYearThatNoCalendarHasIsNoDate) {
  for (const char* date : {"01/12/ 9e9", "01/12/ -99"}) {
    CampaignForm form = FormOf(date, "31/12/2026");
    BuildDatedGrid(s.station, form);
    EXPECT_EQ(GridColumns(form.GPub), 1) << date;
  }
}

}  // namespace
}  // namespace zemo::test
