// The window of the report in four languages and three sizes. Pictures are kept for a person to
// look at.
#include <QApplication>
#include <QHeaderView>

#include "reports/screens/tests/ReportWindowFixture.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

class ReportSweep : public ReportScreenTest, public testing::WithParamInterface<int> {
 protected:
  // A month of a station: music by the hour of the day, jingles, pips, news and spots.
  void AddMonth() {
    on.Sql("DELETE FROM Variete");
    on.Sql("INSERT INTO Variete (VARIETE) VALUES ('INTERNATIONAL'), ('NATIONAL')");
    on.Sql(
        "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
        "LABEL, REFERENCE, DATENUM) WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < 8999) SELECT printf('%02d/11/2026', 1 + i / 300), printf('%02d:%02d:%02d', i % "
        "300 * 288 / 3600, i % 300 * 288 / 60 % 60, i % 300 * 288 % 60), 'Composer of ' || (i * i "
        "% 97), 'Band with a name ' || (i * i % 97), 'Song of the evening ' || (i * i % 97), CASE "
        "WHEN i % 25 = 0 THEN 'TOP-H' WHEN i % 9 = 0 THEN 'JINGLE' WHEN i % 14 = 1 AND i % 300 > "
        "80 "
        "THEN 'PUB' WHEN i % 25 = 2 THEN 'Rubrique' ELSE CASE (i * i + i % 300 / 60) % 7 WHEN 0 "
        "THEN 'JAZZ' WHEN 1 THEN 'ROCK' WHEN 2 THEN 'CHANSON FRANCAISE' WHEN 3 THEN 'INSTRUMENTAL' "
        "ELSE 'POP' END END, CASE WHEN i % 9 = 0 THEN '' WHEN i % 5 < 3 THEN 'INTERNATIONAL' ELSE "
        "'NATIONAL' END, 'Label ' || (i % 12), 'REF ' || (i % 97), 46327 + i / 300 + i % 300 * "
        "288 / 86400.0 FROM n");
  }
  void Check(const std::string& name) {
    CheckWindow(*window, name);
    KeepPicture(*window, name);
  }
};

TEST_P(ReportSweep, NothingIsCutAndNothingOverlaps) {
  on.Set("Langue", std::to_string(GetParam()));
  on.station.base.CheckCnf();
  AddMonth();
  sources.openAffidavit = [] {};
  OpenWindow();
  for (const WindowSize& size : kWindowSizes) {
    window->resize(size.width, size.height);
    QApplication::processEvents();
    ASSERT_EQ(window->size(), QSize(size.width, size.height));
    const std::string where =
        std::string("report-") + kLanguageNames[GetParam()] + "-" + std::to_string(size.width);
    Click("CmdCalend");
    PickInCalendar(2026, 11, 1);
    Click("BtnDateFin");
    PickInCalendar(2026, 11, 30);
    Check(where + "-rows");
    Click("BtnStats");
    ClickHead("ListStat", StatCol::kPlays);
    ClickHead("ListStat", StatCol::kPlays);
    ClickRow("ListStat", 0);
    Check(where);
    for (const char* list : {"ListRap", "ListStat"}) {
      const QHeaderView& heads = *Find<QTableView>(list)->horizontalHeader();
      for (int column = 0; column < heads.count(); ++column)
        EXPECT_GE(heads.sectionSize(column), heads.sectionSizeHint(column) - 6)
            << where << ": " << list << " " << column;
    }
    if (size.width >= kWidthOfPictures) continue;
    Click("BtnVues");
    Check(where + "-charts");
    Click("BtnVues");
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, ReportSweep, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

}  // namespace
}  // namespace zemo::test
