// The window of the campaigns in four languages and three sizes. Pictures are kept for a person to
// look at.
#include <QApplication>
#include <QHeaderView>

#include "traffic/screens/tests/CampaignWindowFixture.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

class CampaignSweep : public CampaignScreenTest, public testing::WithParamInterface<int> {
 protected:
  void Prepare(int langue) {
    on.Set("Langue", std::to_string(langue));
    on.station.base.CheckCnf();
    AddCampaigns();
    on.Sql(
        "UPDATE GrillePub SET CAMPAGNEFIN = '31/01/2027', HDEPART = '06', HFIN = '22', DECOUPEH1 = "
        "'10', DECOUPEH2 = '25', DECOUPEH3 = '40', DECOUPEH4 = '55', DUREE = 1185000, PRIORITY = "
        "300, CONTACT = 'Anne of the garden, 01 02 03 04 05', CATEGORIE = 'CULTURE AND LEISURE', "
        "GENREASSOCIE = 'INSTRUMENTAL' WHERE CODE = 2");
    for (int more = 3; more < 40; ++more)
      on.AddCampaign({{"ANNONCEUR", "'Advertiser of many words " + std::to_string(more) + "'"},
                      {"GENREASSOCIE", "'INSTRUMENTAL'"},
                      {"CATEGORIE", "'CULTURE AND LEISURE'"},
                      {"CAMPAGNEDEPART", "'21/11/2026'"},
                      {"CAMPAGNEFIN", "'25/12/2026'"}});
  }
  // Weekdays at two moments, a moment of every day, and one day whole.
  void Paint() {
    Drag({At(3, 3), At(3, 7)});
    Drag({At(11, 3), At(11, 7)});
    ClickCell(6, 1, Qt::LeftButton, Qt::ShiftModifier);
    ClickCell(6, 14, Qt::LeftButton, Qt::ControlModifier);
  }
  void Check(const std::string& name) {
    CheckWindow(*window, name);
    KeepPicture(*window, name);
  }
};

TEST_P(CampaignSweep, NothingIsCutAndNothingOverlaps) {
  Prepare(GetParam());
  Open();
  for (const WindowSize& size : kWindowSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    const std::string where =
        std::string("campaigns-") + kLanguageNames[GetParam()] + "-" + std::to_string(size.width);
    Click("BtnFin");
    Paint();
    Check(where);
    Click("BtnRecherhe");
    Check(where + "-overview");
    const QHeaderView& heads = *Overview().horizontalHeader();
    for (int column = 0; column < CampaignOverviewModel::kColumns; ++column)
      EXPECT_GE(Overview().columnWidth(column), heads.sectionSizeHint(column) - 6)
          << where << ": head " << column;
    Click("BtnDebut");
    ClickCell(3, 1, Qt::LeftButton, Qt::ShiftModifier);
    Check(where + "-weekly");
    Click("BtnNew");
    Check(where + "-new");
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, CampaignSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
