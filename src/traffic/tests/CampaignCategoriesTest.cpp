// The categories of the campaign editor: how one joins and leaves their list.
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

TEST(CampaignCategories, OneJoinsTheListInCapitalsWhenConfirmed) {
  CampaignStation s;
  s.MakeFile("Categori.Ini", "FOOD\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.Categorie = "été";
  s.messages.AnswerNext(Answer::kYes);
  Campaigns::Categorie_KeyEnter(s.station, s.editor);
  EXPECT_EQ(s.LastMessage(), "Ajouter cette Catégorie à la liste\r\nété");
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\n\xC9T\xC9\r\n");
  s.editor.Categorie = "no";
  Campaigns::Categorie_KeyEnter(s.station, s.editor);  // unanswered: no
  EXPECT_EQ(s.editor.Categorie, "");
  EXPECT_EQ(s.editor.CategorieList.size(), 2u);
}

TEST(CampaignCategories, OneLeavesTheListWhenConfirmed) {
  CampaignStation s;
  s.MakeFile("Categori.Ini", "FOOD\r\nCARS\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  s.editor.Categorie = "FOOD";
  Campaigns::Categorie_KeyDelete(s.station, s.editor);
  EXPECT_EQ(s.LastMessage(), "Effacer cette Catégorie FOOD");
  EXPECT_EQ(s.File("Categori.Ini"), "FOOD\r\nCARS\r\n");
  s.messages.AnswerNext(Answer::kYes);
  Campaigns::Categorie_KeyDelete(s.station, s.editor);
  EXPECT_EQ(s.File("Categori.Ini"), "CARS\r\n");
}

TEST(CampaignCategories, OneThatStandsInSmallLettersLeavesTheListToo) {
  CampaignStation s;
  s.MakeFile("Categori.Ini", "Food\r\nCARS\r\n\xE9t\xE9\r\n");
  Campaigns::MnuHPubs_Click(s.station, s.editor);
  for (const char* category : {"Food", "ÉTÉ"}) {
    s.editor.Categorie = category;
    s.messages.AnswerNext(Answer::kYes);
    Campaigns::Categorie_KeyDelete(s.station, s.editor);
  }
  EXPECT_EQ(s.File("Categori.Ini"), "CARS\r\n");
}

}  // namespace
}  // namespace zemo::test
