// What others store while the window of the campaigns is open.
#include <QLineEdit>

#include "traffic/screens/tests/CampaignWindowFixture.h"

namespace zemo::test {
namespace {

constexpr int kSoonMs = 5000;  // at most; a look comes twice a second

class OthersCampaigns : public CampaignScreenTest {
 protected:
  void SetUp() override {
    CampaignScreenTest::SetUp();
    on.Set("Langue", "1");
    AddCampaigns();
    Open();
  }
};

TEST_F(OthersCampaigns, ShowWithoutTakingWhatIsBeingTyped) {
  Type("ChAnnonceur", "Mine");
  on.Sql("UPDATE GrillePub SET ANNONCEUR = 'Theirs', CONTACT = 'Theirs' WHERE CODE = 2");
  EXPECT_TRUE(QTest::qWaitFor([&] { return Text("ChContact") == "Theirs"; }, kSoonMs));
  EXPECT_EQ(Text("ChAnnonceur"), "Mine");
}

TEST_F(OthersCampaigns, ShowCrossesOfWhichTheBaseKnowsNothing) {
  Campaign zoo{.from = "21/11/2026",
               .to = "25/11/2026",
               .firstHour = 7,
               .lastHour = 8,
               .marks = {"00", "30"}};
  on.MakeFile("zoo.GPB", GridFileText(zoo));
  on.Sql("UPDATE GrillePub SET FILENAMEGRILLE = 'zoo.GPB', CONTACT = 'Theirs' WHERE CODE = 2");
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return window->Editor().FILENAMEGRILLE == "zoo.GPB"; }, kSoonMs));
  EXPECT_EQ(Row(1).find('X'), std::string::npos);
  zoo.crosses = {"07:30"};
  on.MakeFile("zoo.GPB", GridFileText(zoo));
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return Text("LblTotalMsg").find('5') != std::string::npos; }, kSoonMs))
      << Text("LblTotalMsg");
}

TEST_F(OthersCampaigns, AnOverviewKeepsItsLine) {
  Click("BtnRecherhe");
  Overview().setCurrentIndex(Overview().model()->index(1, 0));
  on.AddCampaign({{"ANNONCEUR", "'Abba'"}, {"FILENAMEAUDIO", "'/a.wav'"}});
  EXPECT_TRUE(QTest::qWaitFor(
      [&] {
        return OverviewColumn(0) == std::vector<std::string>{"Abba", "Bakery", "Zoo"};
      },
      kSoonMs));
  EXPECT_EQ(Overview().currentIndex().row(), 2);  // Zoo
}

TEST_F(OthersCampaigns, ADeletedOneIsToldInALineAndCanBeAdded) {
  on.Sql("DELETE FROM GrillePub WHERE CODE = 2");
  EXPECT_TRUE(QTest::qWaitFor([&] { return On("BtnAjouter"); }, kSoonMs));
  EXPECT_FALSE(On("BtnReplacer"));
  EXPECT_EQ(Text("ChAnnonceur"), "Zoo");
  Click("BtnAjouter");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM GrillePub WHERE ANNONCEUR = 'Zoo'"), "1");
}

}  // namespace
}  // namespace zemo::test
