// Rows that another machine writes while the window of the report is open.
#include "reports/screens/tests/ReportWindowFixture.h"

namespace zemo::test {
namespace {

constexpr int kSoonMs = 5000;  // at most; a look comes twice a second

using OthersRows = ReportScreenTest;

TEST_F(OthersRows, AreListedInTheOrderThatStandsWithTheRowThatWasChosen) {
  AddSongs();
  OpenWindow();
  ClickHead("ListRap", RapCol::kArtist);
  ClickRow("ListRap", 3);  // Zoo
  Add({.time = "11:30:00", .artist = "Nena", .title = "Late"});
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return Column("ListRap", RapCol::kArtist).size() == 5; }, kSoonMs));
  EXPECT_EQ(Column("ListRap", RapCol::kArtist), (Texts{"Abba", "Abba", "Bakery", "Nena", "Zoo"}));
  EXPECT_EQ(Find<QTableView>("ListRap")->currentIndex().row(), 4);
  EXPECT_EQ(Editor().ListRap.chosen, 4U);
}

}  // namespace
}  // namespace zemo::test
