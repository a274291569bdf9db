// Rows handed over as they are read.
#include "store/RowView.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

class ReadRowsTest : public OpenBaseTest {
 protected:
  ReadRowsTest() {
    Db().Execute(
        "INSERT INTO Discotheque (AUTEUR, TITRE, DUREE, LASTDIFF) VALUES ('Zoé', '12 x', 2000, "
        "0.5)");
    Db().Execute("INSERT INTO Discotheque (AUTEUR, DUREE) VALUES ('Abel', 3000)");
  }
};

TEST_F(ReadRowsTest, ComeByTheDialectsConditionsAndOrder) {
  std::vector<std::string> artists;
  Db().ReadRows("Select TOP 5 AUTEUR From Discotheque Where Auteur LIKE '*' ORDER BY Auteur;",
                [&](const RowView& row) { artists.emplace_back(row.Text(0)); });
  EXPECT_EQ(artists, (std::vector<std::string>{"Abel", "Zoé"}));
}

TEST_F(ReadRowsTest, ReadAsLenientlyAsAValue) {
  int rows = 0;
  Db().ReadRows("Select TITRE, DUREE, LASTDIFF, TITRE From Discotheque", [&](const RowView& row) {
    if (++rows > 1) return;
    EXPECT_EQ(row.Int(0), AsInt(Value(std::string("12 x"))));
    EXPECT_EQ(row.Int(1), 2000);
    EXPECT_EQ(row.Real(2), 0.5);
    EXPECT_EQ(row.Text(3), "12 x");
  });
  EXPECT_EQ(rows, 2);
}

TEST_F(ReadRowsTest, NullIsZeroAndAnEmptyText) {
  Db().ReadRows("Select TITRE, GENRE, INTRO From Discotheque Where AUTEUR = 'abel'",
                [](const RowView& row) {
                  EXPECT_TRUE(row.IsNull(0));
                  EXPECT_EQ(row.Text(0), "");
                  EXPECT_EQ(row.Int(1), 0);
                  EXPECT_EQ(row.Real(2), 0);
                });
}

TEST_F(ReadRowsTest, FailOnAnUnknownFieldAndPassOnTheReadersError) {
  EXPECT_THROW(Db().ReadRows("Select NONE From Discotheque", [](const RowView&) {}), StoreError);
  EXPECT_THROW(Db().ReadRows("Select CODE From Discotheque",
                             [](const RowView&) { throw std::runtime_error("reader"); }),
               std::runtime_error);
  Db().Execute("DELETE * FROM Discotheque");  // nothing holds the file
}

}  // namespace
}  // namespace zemo
