// Several cards get fields of the card shown.
#include "library/SelectedCards.h"
#include "library/tests/LibraryFixture.h"

namespace zemo {

namespace {

struct SelectedMusic : LibraryFixture {
  void SetUp() override {
    LibraryFixture::SetUp();
    for (const char* artist : {"A", "B", "C"})
      on.AddCard({.lengthMs = 61000, .artist = artist, .title = "T", .genre = "JAZZ"});
    Open();  // on card 1
  }
  std::string Stored(const std::string& column, int card) {
    return on.SqlText("SELECT " + column +
                      " FROM Discotheque WHERE CODE = " + std::to_string(card));
  }
  static SharedFields Only(std::initializer_list<SharedField> fields) {
    SharedFields only{};
    for (const SharedField field : fields) only[static_cast<size_t>(field)] = true;
    return only;
  }
  size_t Give(const std::vector<int32_t>& codes, std::initializer_list<SharedField> fields) {
    return Library::GiveFields(on.station, editor, codes, Only(fields));
  }
};

}  // namespace

TEST_F(SelectedMusic, GetsTheFieldsTickedAndNoOthers) {
  editor.music.ChGenre = "POP";
  editor.music.ChVariete = "INTERNATIONAL";
  editor.music.ChTitre = "not stored";
  EXPECT_EQ(Give({1, 3}, {SharedField::kGenre}), 2U);
  EXPECT_EQ(Stored("GENRE", 1), "POP");
  EXPECT_EQ(Stored("GENRE", 2), "JAZZ");
  EXPECT_EQ(Stored("GENRE", 3), "POP");
  EXPECT_EQ(Stored("VARIETE", 3), "NATIONAL");
  EXPECT_EQ(Stored("TITRE", 1), "T");
  EXPECT_EQ(editor.music.ChTitre, "not stored");
}

TEST_F(SelectedMusic, GetsEveryKindOfField) {
  editor.music.ChVariete = "INTERNATIONAL";
  editor.music.ChNbPassJour = "3";
  editor.music.ChEcartMinutes = "90";
  editor.music.ChEcartJours = "2";
  editor.music.ChEcartArtiste = "12";
  editor.music.LblMMJJDebut = "1201";
  editor.music.LblMMJJFin = "1231";
  Library::JourSem_Click(editor, 7);
  editor.masks.Tranche.fill(false);
  SharedFields all{};
  all.fill(true);
  EXPECT_EQ(Library::GiveFields(on.station, editor, {2}, all), 1U);
  EXPECT_EQ(Stored("VARIETE", 2), "INTERNATIONAL");
  EXPECT_EQ(Stored("NBPASSJOUR", 2) + " " + Stored("ECARTMINUTES", 2) + " " +
                Stored("ECARTJOURS", 2) + " " + Stored("ECARTARTISTE", 2),
            "3 90 2 12");
  EXPECT_EQ(Stored("MMJJDebut", 2) + Stored("MMJJFin", 2), "12011231");
  EXPECT_EQ(Stored("TRANCHE07", 2), std::string(24, '0'));
  EXPECT_EQ(Stored("TRANCHE06", 2), kAllDay);
}

TEST_F(SelectedMusic, WritesTheirExchangeFilesAsTheyAreStored) {
  editor.music.ChGenre = "POP";
  editor.music.ChTitre = "not stored";
  Give({1, 2}, {SharedField::kGenre});
  for (const char* file : {"title1.Mus", "title2.Mus"}) {
    const std::string text = on.stationFolder.Read(file).value_or("");
    EXPECT_NE(text.find("\"T\",\"POP\""), std::string::npos) << text;
  }
}

// Nor does the card shown ask at the next Replacer whose fields to keep.
TEST_F(SelectedMusic, LeavesPlaysSinceTheLoadingAlone) {
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46000, DIFFUSION01 = '09/12/2025 à 00:00'");
  editor.music.ChGenre = "POP";
  Give({1, 2}, {SharedField::kGenre});
  EXPECT_EQ(Stored("LASTDIFF", 2), Stored("LASTDIFF", 1));
  EXPECT_EQ(Stored("DIFFUSION01", 1), "09/12/2025 à 00:00");
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(SelectedMusic, ACardThatIsGoneIsLeftOut) {
  on.Sql("DELETE FROM Discotheque WHERE CODE = 2");
  editor.music.ChGenre = "POP";
  EXPECT_EQ(Give({1, 2, 3}, {SharedField::kGenre}), 2U);
  EXPECT_EQ(Stored("GENRE", 3), "POP");
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(SelectedMusic, ATextThatNoFieldHoldsIsToldOnceAndStoresNothing) {
  editor.music.ChGenre = std::string(23, 'G');
  EXPECT_EQ(Give({1, 2, 3}, {SharedField::kGenre}), 0U);
  EXPECT_EQ(Messages(), 1U);
  EXPECT_EQ(Stored("GENRE", 1), "JAZZ");
}

TEST_F(SelectedMusic, IsToldWhatTheBoxesHaveOtherwise) {
  EXPECT_EQ(Library::ChangedFields(on.station, editor), SharedFields{});
  editor.music.ChGenre = "POP";
  editor.masks.Tranche[5] = false;
  editor.music.LblMMJJFin = "1231";
  EXPECT_EQ(Library::ChangedFields(on.station, editor),
            Only({SharedField::kGenre, SharedField::kHours, SharedField::kDates}));
}

}  // namespace zemo
