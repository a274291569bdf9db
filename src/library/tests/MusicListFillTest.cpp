// The list of the music read and sorted in slices.
#include <string>
#include <vector>

#include "library/MusicListFill.h"
#include "library/tests/LibraryFixture.h"
#include "store/RowView.h"

namespace zemo {

namespace {

struct MusicListFilling : LibraryFixture {
  void AddCards(int count) {
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(count) +
        ") INSERT INTO Discotheque (AUTEUR, TITRE, FILENAME) SELECT "
        "CASE i % 3 WHEN 0 THEN 'Édith ' WHEN 1 THEN 'EDITH ' ELSE 'zoé ' END || (i * 7919 % 613), "
        "'Title ' || i, '/' || i || '.wav' FROM n");
  }
  std::vector<int32_t> Codes() const {
    std::vector<int32_t> codes;
    for (size_t row = 0; row < list.Count(); ++row) codes.push_back(list.Code(row));
    return codes;
  }
  std::vector<int32_t> CodesByTheBase() {
    std::vector<int32_t> codes;
    on.station.base.Db().ReadRows(
        "SELECT Code FROM Discotheque WHERE Auteur LIKE '*' ORDER BY AUTEUR, CODE",
        [&](const RowView& row) { codes.push_back(static_cast<int32_t>(row.Int(0))); });
    return codes;
  }
  int Fill() {
    MusicListFill fill(list);
    int slices = 1;
    while (!fill.Slice(on.station.base.Db())) ++slices;
    return slices;
  }

  CardList list;
};

}  // namespace

TEST_F(MusicListFilling, StandsInTheOrderOfTheBaseWhateverTheSlices) {
  for (const int more : {1, 1999, 1, 9000}) {  // 1, a slice, a slice and one, and six of them
    AddCards(more);
    Fill();
    EXPECT_EQ(Codes(), CodesByTheBase()) << list.Count();
  }
}

TEST_F(MusicListFilling, TakesASliceWhereAllCardsAreInIt) {
  EXPECT_EQ(Fill(), 1);
  AddCards(MusicListFill::kSliceRows - 1);
  EXPECT_EQ(Fill(), 1);
}

TEST_F(MusicListFilling, LeavesTheRowsThatStandUntilAllAreRead) {
  AddCards(3);
  Fill();
  list.visible = true;
  list.selected[1] = true;
  const uint64_t before = list.generation;
  AddCards(MusicListFill::kSliceRows);
  MusicListFill fill(list);
  EXPECT_FALSE(fill.Slice(on.station.base.Db()));
  EXPECT_EQ(list.Count(), 3U);
  EXPECT_EQ(list.generation, before);
  EXPECT_TRUE(list.selected[1]);
  while (!fill.Slice(on.station.base.Db())) {
  }
  EXPECT_EQ(list.Count(), 3U + MusicListFill::kSliceRows);
  EXPECT_EQ(list.generation, before + 1);
  EXPECT_TRUE(list.visible);
  EXPECT_EQ(list.selected, std::vector<bool>(list.Count(), false));
}

TEST_F(MusicListFilling, ACardThatGetsAnotherArtistMeanwhileStandsInItOnce) {
  AddCards(2 * MusicListFill::kSliceRows);
  MusicListFill fill(list);
  fill.Slice(on.station.base.Db());
  on.Sql("UPDATE Discotheque SET AUTEUR = 'zz' WHERE CODE = 1");
  on.Sql("UPDATE Discotheque SET AUTEUR = 'AA' WHERE CODE = 3000");
  while (!fill.Slice(on.station.base.Db())) {
  }
  EXPECT_EQ(list.Count(), 2U * MusicListFill::kSliceRows);
  EXPECT_EQ(list.Code(0), 3000);
}

TEST_F(MusicListFilling, CardsWithoutAnArtistDoNotStandInIt) {
  AddCards(3);
  on.Sql("UPDATE Discotheque SET AUTEUR = NULL WHERE CODE = 2");
  Fill();
  EXPECT_EQ(list.Count(), 2U);
}

}  // namespace zemo
