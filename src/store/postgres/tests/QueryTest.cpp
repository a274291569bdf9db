// Queries on a base: what they select, in which order, and what a snapshot is.
#include "store/postgres/tests/EngineFixture.h"

namespace zemo {
namespace {

class Queries : public EngineTest {};
class Snapshots : public EngineTest {};
ON_EVERY_ENGINE(Queries);
ON_EVERY_ENGINE(Snapshots);

TEST_P(Queries, FindArtistsWithoutRegardToCaseAccentedLettersIncluded) {
  AddCard("Édith Piaf");
  AddCard("ÉDITH PIAF");
  AddCard("Edith Piaf");
  AddCard("ABBA");
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE AUTEUR = 'édith piaf'", "CODE"),
            (Strings{"1", "2"}));
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE auteur = \"abba\"", "code"), (Strings{"4"}));
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE AUTEUR In('édith PIAF', 'abba')", "CODE"),
            (Strings{"1", "2", "4"}));
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE AUTEUR NOT IN('édith piaf')", "CODE"),
            (Strings{"3", "4"}));
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE AUTEUR <> 'ÉDITH piaf'", "CODE"),
            (Strings{"3", "4"}));
}

TEST_P(Queries, SeveralArtistsBetweenOrsAreFoundInAnyCase) {
  for (const char* artist : {"Édith Piaf", "ÉDITH PIAF", "ABBA", "Été", "ÉTÉ"}) AddCard(artist);
  const auto codes = [&](const std::string& where) {
    return Column("SELECT CODE FROM Discotheque WHERE " + where, "CODE");
  };
  const Strings all = {"1", "2", "4", "5"};
  EXPECT_EQ(codes("AUTEUR = 'édith piaf' OR AUTEUR = 'été'"), all);
  EXPECT_EQ(codes("'édith piaf' = AUTEUR OR AUTEUR = 'été'"), all);
  EXPECT_EQ(codes("'édith piaf' = AUTEUR OR 'été' = AUTEUR"), all);
  EXPECT_EQ(codes("AUTEUR = 'été' OR AUTEUR = 'abba'"), (Strings{"3", "4", "5"}));
  Db().Execute("INSERT INTO Discotheque(GENRE) VALUES('x')");
  EXPECT_EQ(codes("NOT AUTEUR = 'été'"), (Strings{"1", "2", "3"})) << "Null is unlike nothing";
}

TEST_P(Queries, LikeMatchesStarsQuestionMarksAndCase) {
  for (const char* artist : {"Téléphone", "TÉLÉPHONE LIVE", "Telex", "100% Disco", "100 Disco"}) {
    AddCard(artist);
  }
  Db().Execute("INSERT INTO Discotheque(GENRE) VALUES('NULL ARTIST')");
  const auto find = [&](const std::string& pattern) {
    return Column("SELECT CODE FROM Discotheque WHERE Auteur LIKE '" + pattern + "'", "CODE");
  };
  EXPECT_EQ(find("téléphone"), (Strings{"1"}));
  EXPECT_EQ(find("téléphone*"), (Strings{"1", "2"}));
  EXPECT_EQ(find("t?l*"), (Strings{"1", "2", "3"}));
  EXPECT_EQ(find("TELEX"), (Strings{"3"}));
  EXPECT_EQ(find("100%*"), (Strings{"4"}));
  EXPECT_EQ(find("*"), (Strings{"1", "2", "3", "4", "5"})) << "Null is like nothing";
  EXPECT_EQ(find("?"), Strings{});
}

TEST_P(Queries, AHourIsFoundByItsPlaceInTheAuthorisations) {
  Db().Execute(
      "INSERT INTO Discotheque(TRANCHE03, NBPASSJOUR) VALUES('000100000000000000000000', 1)");
  Db().Execute(
      "INSERT INTO Discotheque(TRANCHE03, NBPASSJOUR) VALUES('111011111111111111111111', 1)");
  EXPECT_EQ(Column("Select * From Discotheque Where Tranche03 LIKE '???1*' AND NBPASSJOUR > 0 "
                   "ORDER BY Lastdiff ASC;",
                   "CODE"),
            (Strings{"1"}));
  EXPECT_EQ(Column("SELECT * FROM Toph WHERE Heure = 00 AND JourSemaine Like '??X*'", "HEURE"),
            (Strings{"0"}));
}

TEST_P(Queries, WhereStarAndNoConditionGiveAllRows) {
  EXPECT_EQ(Query("SELECT FICHIER FROM Toph WHERE '*'")->RecordCount(), 24);
  EXPECT_EQ(Query("SELECT FICHIER FROM Toph ")->RecordCount(), 24);
}

TEST_P(Queries, OrderTextsAsAFrenchReaderExpects) {
  for (const char* artist : {"Zazie", "étoile", "Eva", "ÉTÉ", "edam", "Ève"}) AddCard(artist);
  EXPECT_EQ(Column("SELECT AUTEUR FROM Discotheque ORDER BY AUTEUR", "AUTEUR"),
            (Strings{"edam", "ÉTÉ", "étoile", "Eva", "Ève", "Zazie"}));
  EXPECT_EQ(Column("SELECT AUTEUR FROM Discotheque ORDER BY AUTEUR DESC", "AUTEUR"),
            (Strings{"Zazie", "Ève", "Eva", "étoile", "ÉTÉ", "edam"}));
}

TEST_P(Queries, GiveEqualKeysInTheOrderOfTheirNumbers) {
  for (const char* artist : {"B", "a", "b", "A"}) AddCard(artist);
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque ORDER BY AUTEUR", "CODE"),
            (Strings{"2", "4", "1", "3"}));
  EXPECT_EQ(Column("SELECT CODE FROM Discotheque WHERE GENRE IN('rock') ORDER BY LASTDIFF", "CODE"),
            (Strings{"1", "2", "3", "4"}));
}

TEST_P(Queries, WithoutAnOrderGiveRowsAsTheyWereStoredWhateverIndexServes) {
  AddCard("a", "ROCK");
  AddCard("b", "DISCO");
  AddCard("c", "ROCK");
  EXPECT_EQ(Column("Select * From Discotheque Where Genre In('ROCK', 'DISCO')", "CODE"),
            (Strings{"1", "2", "3"}));
}

TEST_P(Queries, TopGivesTheFirstRowsAndTheNewestAmongEquals) {
  for (const char* artist : {"A", "B", "A"}) {
    Db().Execute("INSERT INTO Rapport(AUTEUR, DATENUM) VALUES('" + std::string(artist) +
                 "', 38000)");
  }
  EXPECT_EQ(Column("SELECT TOP 1 CODE FROM Rapport ORDER BY CODE DESC;", "CODE"), (Strings{"3"}));
  EXPECT_EQ(
      Column("SELECT TOP 1 Auteur, CODE FROM Rapport Where Auteur = 'a' ORDER BY DATENUM DESC",
             "CODE"),
      (Strings{"3"}));
  EXPECT_EQ(Column("SELECT TOP 2 * FROM Rapport WHERE Code > 0 ORDER BY DATENUM DESC;", "CODE"),
            (Strings{"3", "2"}));
}

TEST_P(Queries, TrueIsAnythingButZero) {
  Db().Execute("INSERT INTO VT(CUT) VALUES(1), (0), (-1)");
  EXPECT_EQ(Column("SELECT CODE FROM VT WHERE CUT = True", "CODE"), (Strings{"1", "3"}));
  EXPECT_EQ(Column("SELECT CODE FROM VT WHERE CUT = False", "CODE"), (Strings{"2"}));
  Db().Execute("UPDATE VT SET CUT = True WHERE CODE = 2");
  EXPECT_EQ(Query("SELECT CUT FROM VT WHERE CODE = 2")->Int("CUT"), -1);
}

TEST_P(Queries, DeleteAndUpdateTouchTheirRowsOnly) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  Db().Execute("DELETE * FROM Discotheque WHERE AUTEUR LIKE 'b*'");
  Db().Execute("UPDATE Discotheque SET TITRE = 'L''été' WHERE CODE = 3");
  EXPECT_EQ(Column("SELECT CODE, TITRE FROM Discotheque", "TITRE"), (Strings{"NULL", "L'été"}));
}

TEST_P(Queries, ThatAreNotUnderstoodAreOneClearError) {
  std::string text;
  EXPECT_EQ(ErrorOf([&] { Query("SELECT FROM"); }, &text), kErrSyntax);
  EXPECT_NE(text.find("SELECT FROM"), std::string::npos) << text;
  EXPECT_EQ(ErrorOf([&] { Query("SELECT * FROM NoTable"); }), kErrNoSuchTable);
  EXPECT_EQ(ErrorOf([&] { Query("SELECT NoField FROM Toph"); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { Db().Execute("INSERT INTO Toph(NoField) VALUES(1)"); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { Db().Execute(""); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Query("DELETE * FROM Toph"); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().Execute("DELETE * FROM Toph; DELETE * FROM Cnf"); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().Execute(std::string_view("DELETE\0 FROM Toph", 17)); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Query("SELECT * FROM Toph WHERE FICHIER = 'x"); }), kErrSyntax);
  EXPECT_EQ(Count("Toph"), 24);
}

TEST_P(Queries, MoreThanAreKeptPreparedAllGiveTheirOwnRows) {
  for (int round = 0; round < 2; ++round) {
    for (int hour = 0; hour < 24; ++hour) {
      for (int i = 0; i < 10; ++i) {
        const auto rows = Query("SELECT HEURE, " + std::to_string(i) +
                                " FROM Toph WHERE HEURE = " + std::to_string(hour));
        ASSERT_EQ(AsInt(rows->Field(0)), hour);
        ASSERT_EQ(AsInt(rows->Field(1)), i);
      }
    }
  }
}

TEST_P(Snapshots, StandOnTheirFirstRowAndWalkToBothEnds) {
  const auto rows = Query("SELECT HEURE FROM Toph WHERE HEURE < 3 ORDER BY HEURE");
  EXPECT_EQ(rows->RecordCount(), 3);
  EXPECT_FALSE(rows->Bof());
  EXPECT_EQ(rows->Int("HEURE"), 0);
  rows->MoveLast();
  EXPECT_EQ(rows->Int("HEURE"), 2);
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(ErrorOf([&] { rows->MoveNext(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { rows->Int("HEURE"); }), kErrNoCurrentRecord);
  rows->MovePrevious();
  EXPECT_EQ(rows->Int("HEURE"), 2);
  rows->MoveFirst();
  rows->MovePrevious();
  EXPECT_TRUE(rows->Bof());
  EXPECT_FALSE(rows->Eof());
  EXPECT_EQ(ErrorOf([&] { rows->MovePrevious(); }), kErrNoCurrentRecord);
  rows->MoveNext();
  EXPECT_EQ(rows->Int("HEURE"), 0);
}

TEST_P(Snapshots, OfNothingAreAtBothEnds) {
  const auto rows = Query("SELECT * FROM Discotheque");
  EXPECT_TRUE(rows->Eof());
  EXPECT_TRUE(rows->Bof());
  EXPECT_EQ(rows->RecordCount(), 0);
  rows->MoveFirst();
  rows->MoveLast();
  EXPECT_TRUE(rows->Eof());
  EXPECT_TRUE(rows->Bof());
  EXPECT_EQ(rows->FieldCount(), 37);
}

TEST_P(Snapshots, KeepTheRowsOfTheMomentTheyWereOpened) {
  const auto rows = Query("SELECT HEURE, FICHIER FROM Toph");
  Db().Execute("UPDATE Toph SET FICHIER = 'late'");
  Db().Execute("DELETE * FROM Toph WHERE HEURE > 0");
  EXPECT_EQ(rows->RecordCount(), 24);
  EXPECT_EQ(rows->Text("FICHIER"), "");
}

TEST_P(Snapshots, GiveEveryKindOfValueBack) {
  Db().Execute(
      "INSERT INTO Discotheque(AUTEUR, TITRE, DUREE, LASTDIFF, INTRO, COMMENTAIRE) VALUES('Ève', "
      "'', "
      "2147483647, 38353.25, -128, '" +
      std::string(3000, 'm') + "')");
  Db().Execute(
      "INSERT INTO Discotheque(AUTEUR, TITRE, DUREE, LASTDIFF, INTRO, COMMENTAIRE) VALUES('Ève', "
      "'again and again', 127, -1.5, 128, NULL)");
  Db().Execute(
      "INSERT INTO Discotheque(AUTEUR, TITRE, DUREE) VALUES('Other', 'again and again', 0)");
  const auto rows = Query("SELECT * FROM Discotheque ORDER BY CODE");
  EXPECT_EQ(rows->Field("auteur"), Value(std::string("Ève")));
  EXPECT_EQ(rows->Field("TITRE"), Value(std::string()));
  EXPECT_EQ(rows->Field("DUREE"), Value(int64_t{2147483647}));
  EXPECT_EQ(rows->Field("LASTDIFF"), Value(38353.25));
  EXPECT_EQ(rows->Field("INTRO"), Value(int64_t{-128}));
  EXPECT_EQ(rows->Text("COMMENTAIRE").size(), 3000u);
  rows->MoveNext();
  EXPECT_EQ(rows->Field("AUTEUR"), Value(std::string("Ève")));
  EXPECT_EQ(rows->Field("DUREE"), Value(int64_t{127}));
  EXPECT_EQ(rows->Field("LASTDIFF"), Value(-1.5));
  EXPECT_EQ(rows->Field("INTRO"), Value(int64_t{128}));
  EXPECT_TRUE(IsNull(rows->Field("COMMENTAIRE")));
  rows->MoveNext();
  EXPECT_EQ(rows->Text("AUTEUR"), "Other");
  EXPECT_EQ(rows->Text("TITRE"), "again and again");
  EXPECT_EQ(rows->Int("DUREE"), 0);
}

TEST_P(Snapshots, GiveThousandsOfRowsBackInOrder) {
  {
    Transaction all(Db());
    for (int i = 1; i <= 5000; ++i)
      Db().Execute("INSERT INTO Discotheque(AUTEUR, GENRE) VALUES(?, 'SAME GENRE')",
                   {"Artist number " + std::to_string(i)});
    all.Commit();
  }
  const auto rows = Query("SELECT CODE, AUTEUR, GENRE FROM Discotheque ORDER BY CODE");
  ASSERT_EQ(rows->RecordCount(), 5000);
  for (int i = 1; i <= 5000; ++i, rows->MoveNext()) {
    ASSERT_EQ(rows->Int("CODE"), i);
    ASSERT_EQ(rows->Text("AUTEUR"), "Artist number " + std::to_string(i));
    ASSERT_EQ(rows->Text("GENRE"), "SAME GENRE");
  }
}

TEST_P(Queries, WalkedRowByRowLeaveNothingOpenEvenWhenTheWalkBreaksOff) {
  AddCard("Ève");
  AddCard("ABBA");
  Strings artists;
  Db().ReadRows("SELECT AUTEUR, CODE, LASTDIFF, TITRE FROM Discotheque ORDER BY AUTEUR",
                [&](const RowView& row) {
                  artists.push_back(std::string(row.Text(0)) + std::to_string(row.Int(1)));
                  EXPECT_EQ(row.Real(2), 0.0);
                  EXPECT_TRUE(row.IsNull(3));
                });
  EXPECT_EQ(artists, (Strings{"ABBA2", "Ève1"}));
  EXPECT_EQ(ErrorOf([&] {
              Db().ReadRows("SELECT CODE FROM Discotheque",
                            [](const RowView&) { throw StoreError(kErrOther, "enough"); });
            }),
            kErrOther);
  EXPECT_TRUE(Other().CanWrite());
}

TEST_P(Queries, InsideAWalkOtherQueriesServeAndTheWalkGoesOn) {
  int hours = 0;
  const std::string walk = "SELECT HEURE FROM Toph ORDER BY HEURE";
  Db().ReadRows(walk, [&](const RowView& row) {
    EXPECT_EQ(row.Int(0), hours++);
    for (int i = 0; i < 10; ++i) {  // more texts in all than are kept prepared
      Query("SELECT HEURE FROM Toph WHERE HEURE = " + std::to_string(hours * 10 + i));
    }
    EXPECT_EQ(Query(walk)->RecordCount(), 24) << "the same once more inside of it";
  });
  EXPECT_EQ(hours, 24);
  EXPECT_EQ(Query(walk)->RecordCount(), 24);
}

TEST_P(Snapshots, NameTheirFieldsAndAreReadOnly) {
  const auto rows = Query("SELECT Fichier, HEURE FROM Toph");
  EXPECT_EQ(rows->FieldCount(), 2);
  EXPECT_EQ(rows->FieldName(1), "HEURE");
  EXPECT_EQ(ErrorOf([&] { rows->FieldName(2); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { rows->Field("CODE"); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { rows->Field(-1); }), kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { rows->AddNew(); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { rows->SetIndex("CODE"); }), kErrReadOnly);
  rows->Close();
  EXPECT_TRUE(rows->Eof());
}

// --- Rows one by one ---

class RowsOneByOne : public EngineTest {
 protected:
  void Begin() override {
    for (int i = 0; i < 300; ++i) AddCard("artist " + std::to_string(i));
  }
};
ON_EVERY_ENGINE(RowsOneByOne);

TEST_P(RowsOneByOne, ComeInTheirOrderAndToTheirEnd) {
  int64_t next = 1;
  Db().ReadRows("SELECT CODE, AUTEUR FROM Discotheque WHERE CODE > ? ORDER BY CODE", {int64_t{0}},
                [&](const RowView& row) {
                  EXPECT_EQ(row.Int(0), next);
                  EXPECT_EQ(row.Text(1), "artist " + std::to_string(next - 1));
                  ++next;
                });
  EXPECT_EQ(next, 301);
}

TEST_P(RowsOneByOne, OtherQuestionsComeBetweenThem) {
  int rows = 0;
  int inner = 0;
  Db().ReadRows("SELECT CODE FROM Discotheque ORDER BY CODE", [&](const RowView& row) {
    ++rows;
    EXPECT_EQ(row.Int(0), rows);
    if (rows == 10) {
      EXPECT_EQ(Count("Discotheque"), 300);
    }
    if (rows == 20)
      Db().ReadRows("SELECT CODE FROM Discotheque WHERE CODE <= 5",
                    [&inner](const RowView&) { ++inner; });
  });
  EXPECT_EQ(rows, 300);
  EXPECT_EQ(inner, 5);
}

TEST_P(RowsOneByOne, BehindAReaderWhoHadEnoughOthersAreRead) {
  int rows = 0;
  for (int times = 0; times < 3; ++times)
    EXPECT_THROW(Db().ReadRows("SELECT CODE FROM Discotheque",
                               [&rows](const RowView&) {
                                 ++rows;
                                 throw std::runtime_error("enough");
                               }),
                 std::runtime_error);
  EXPECT_EQ(rows, 3);
}

TEST_P(RowsOneByOne, AReaderWhoHasEnoughEndsThemAtOnce) {
  Db().BeginTrans();
  AddCard("kept");
  int rows = 0;
  EXPECT_THROW(Db().ReadRows("SELECT CODE FROM Discotheque",
                             [&rows](const RowView&) {
                               if (++rows == 3) throw std::runtime_error("enough");
                             }),
               std::runtime_error);
  EXPECT_EQ(rows, 3);
  EXPECT_EQ(Count("Discotheque"), 301);
  Db().CommitTrans();
  EXPECT_EQ(Count("Discotheque"), 301);
}

TEST_P(RowsOneByOne, AQuestionThatFailsIsToldAndLeavesTheTransaction) {
  Db().BeginTrans();
  AddCard("kept");
  EXPECT_EQ(ErrorOf([&] { Db().ReadRows("SELECT NONE FROM Discotheque", [](const RowView&) {}); }),
            kErrNoSuchField);
  EXPECT_EQ(ErrorOf([&] { Db().ReadRows("DELETE FROM VT", [](const RowView&) {}); }), kErrSyntax);
  Db().CommitTrans();
  EXPECT_EQ(Count("Discotheque"), 301);
}

TEST_P(RowsOneByOne, ATableThatAnotherProgramChangedIsReadAsItIs) {
  NOT_ON_A_REPLICA();
  const std::string all = "SELECT * FROM Discotheque WHERE CODE = 1";
  int rows = 0;
  const auto count = [&rows](const RowView&) { ++rows; };
  Db().ReadRows(all, count);
  Other().Db().Tables().DeleteField("Discotheque", "COMMENTAIRE");
  Db().ReadRows(all, count);
  EXPECT_EQ(rows, 2);
}

}  // namespace
}  // namespace zemo
