// The file as another program sees it: plain SQLite reads and writes it, and its rules hold for
// all.
#include "store/Schema.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

class BaseFile : public OpenBaseTest {
 protected:
  OtherProgram other{BasePath()};
};

TEST_F(BaseFile, TextsCompareWithoutCaseForAnyProgram) {
  other.Do("INSERT INTO Discotheque(AUTEUR, GENRE) VALUES('ABBA', 'Disco')");
  EXPECT_EQ(
      other.One("SELECT COUNT(*) FROM Discotheque WHERE AUTEUR = 'abba' AND GENRE IN ('DISCO')"),
      "1");
}

TEST_F(BaseFile, KeepsNoWriteAheadLog) {
  EXPECT_EQ(other.One("PRAGMA journal_mode"), "delete");
  EXPECT_EQ(Query("PRAGMA synchronous")->Int("synchronous"), 2);
}

TEST_F(BaseFile, SwitchedToAWriteAheadLogIsSwitchedBackAtTheNextStart) {
  base.reset();
  EXPECT_EQ(other.One("PRAGMA journal_mode = WAL"), "wal");
  {
    OtherProgram moved(BasePath());  // the switch outlives who made it
    EXPECT_EQ(moved.One("PRAGMA journal_mode"), "wal");
  }
}

TEST_F(BaseFile, RefusesTextsThatAreTooLong) {
  const std::string forty(40, 'x');
  std::string text;
  Db().Execute("INSERT INTO Discotheque(AUTEUR) VALUES('" + forty + "')");
  EXPECT_EQ(ErrorOf([&] { AddCard(forty + "y"); }, &text), kErrFieldTooSmall);
  EXPECT_EQ(text, "Discotheque.AUTEUR holds at most 40 characters");
  EXPECT_EQ(ErrorOf([&] { Db().Execute("UPDATE Discotheque SET TITRE = '" + forty + "y'"); }),
            kErrFieldTooSmall);
  EXPECT_EQ(other.Try("INSERT INTO Variete(VARIETE) VALUES('123456789012345678901')"),
            "CHECK constraint failed: Variete.VARIETE holds at most 20 characters");
}

TEST_F(BaseFile, CountsCharactersAndNotBytes) {
  std::string forty;
  for (int i = 0; i < 40; ++i) forty += "é";
  AddCard(forty);
  EXPECT_EQ(ErrorOf([&] { AddCard(forty + "é"); }), kErrFieldTooSmall);
}

TEST_F(BaseFile, RefusesNumbersOutOfTheirRange) {
  std::string text;
  Db().Execute("INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) VALUES(1, 32767, -32768)");
  EXPECT_EQ(ErrorOf(
                [&] {
                  Db().Execute("INSERT INTO Pls(NUMPLS, DISCOTHEQUE, FICHE) VALUES(1,32768,32768)");
                },
                &text),
            kErrOverflow);
  EXPECT_EQ(text, "Pls.DISCOTHEQUE holds whole numbers from -32768 to 32767");
  Db().Execute("INSERT INTO VT(START) VALUES(2147483647)");
  EXPECT_EQ(ErrorOf([&] { Db().Execute("INSERT INTO VT(START) VALUES(2147483648)"); }),
            kErrOverflow);
  EXPECT_NE(other.Try("UPDATE Cnf SET FadeOut = 40000"), "");
}

TEST_F(BaseFile, FillsDefaultsForWhoeverInserts) {
  other.Do("INSERT INTO Discotheque DEFAULT VALUES");
  EXPECT_EQ(other.One("SELECT CODE, LASTDIFF, TRANCHE07, FILENAME, NBPASSJOUR FROM Discotheque"),
            "1|0.0||NULL|NULL");
  other.Do("INSERT INTO GrillePub DEFAULT VALUES");
  EXPECT_EQ(other.One("SELECT PUB, GENREASSOCIE FROM GrillePub"), "0|");
  other.Do("INSERT INTO DiscothequeJingle(LIBELLE) VALUES('j')");
  EXPECT_EQ(
      other.One("SELECT ENDOFTITRE, POINTSORTIE, JingleExtraitYN, ARTISTEASSOCIE, CODEASSOCIE "
                "FROM DiscothequeJingle"),
      "0|0|0||NULL");
}

TEST_F(BaseFile, AllowsNullAndTheEmptyTextInEveryField) {
  AddCard("x");
  other.Do("UPDATE Discotheque SET AUTEUR = NULL, TITRE = '', LASTDIFF = NULL, TRANCHE01 = ''");
  EXPECT_EQ(other.One("SELECT AUTEUR, TITRE, LASTDIFF, TRANCHE01 FROM Discotheque"), "NULL||NULL|");
}

TEST_F(BaseFile, NeverGivesANumberTwice) {
  AddCard("a");
  AddCard("b");
  Db().Execute("DELETE * FROM Discotheque");
  AddCard("c");
  EXPECT_EQ(Db().LastInsertCode(), 3);
  EXPECT_EQ(ErrorOf([&] { Db().Execute("INSERT INTO Discotheque(CODE) VALUES(3)"); }),
            kErrDuplicateKey);
}

TEST_F(BaseFile, SchemaHoldsNothingThatOtherProgramsLack) {
  for (const auto& sql : other.Rows("SELECT sql FROM sqlite_schema WHERE sql NOT NULL")) {
    EXPECT_EQ(sql.find("FR_"), std::string::npos) << sql;
    EXPECT_EQ(sql.find("regexp"), std::string::npos) << sql;
  }
  other.Do("REINDEX");
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

TEST_F(BaseFile, NumbersAskedForByTheOneSideAreThereForTheOther) {
  Db().Execute("INSERT INTO Rapport(DATENUM, LADATE) VALUES(38353.5, '01/01/2005')");
  EXPECT_EQ(other.One("SELECT DATENUM, typeof(DATENUM), LADATE FROM Rapport"),
            "38353.5|real|01/01/2005");
}

using Catalogue = BaseFile;

TEST_F(Catalogue, ListsTablesByNameWithCnfFirst) {
  TableDefs& defs = Db().Tables();
  EXPECT_EQ(defs.Count(), 13);
  EXPECT_EQ(defs.Item(0).Name, "Cnf");
  EXPECT_EQ(defs.Item(12).Name, "VT");
  EXPECT_EQ(ErrorOf([&] { defs.Item(13); }), kErrNoSuchTable);
  EXPECT_EQ(ErrorOf([&] { defs.Item("TBTEMP"); }), kErrNoSuchTable);
}

TEST_F(Catalogue, ShowsEveryFieldAndIndexOfTheSchemaAsItWasMade) {
  for (const TableDef& expected : SchemaTables()) {
    const TableDef found = Db().Tables().Item(expected.Name);
    EXPECT_EQ(found.Name, expected.Name);
    ASSERT_EQ(found.Fields.size(), expected.Fields.size()) << expected.Name;
    for (size_t i = 0; i < expected.Fields.size(); ++i) {
      const Field& field = expected.Fields[i];
      EXPECT_EQ(found.Fields[i].Name, field.Name);
      EXPECT_EQ(found.Fields[i].Type, field.Type) << field.Name;
      EXPECT_EQ(found.Fields[i].Size, field.Size) << field.Name;
      EXPECT_EQ(found.Fields[i].AutoIncrement, field.AutoIncrement) << field.Name;
      EXPECT_EQ(found.Fields[i].AllowZeroLength, field.AllowZeroLength) << field.Name;
      EXPECT_EQ(found.Fields[i].DefaultValue, field.DefaultValue) << expected.Name << field.Name;
    }
    ASSERT_EQ(found.Indexes.size(), expected.Indexes.size()) << expected.Name;
    for (const Index& index : expected.Indexes) {
      const Index* there = found.FindIndex(index.Name);
      ASSERT_TRUE(there) << index.Name;
      EXPECT_EQ(there->Field, index.Field);
      EXPECT_EQ(there->Unique, index.Unique);
    }
  }
}

TEST_F(Catalogue, ARenamedTableLeavesItsNameAndIndexNamesFree) {
  AddCard("kept");
  TableDefs& defs = Db().Tables();
  defs.Rename("discotheque", "TBTEMP");
  EXPECT_FALSE(defs.Has("Discotheque"));
  EXPECT_EQ(defs.Item("TBTEMP").Indexes.size(), 14u);
  CreateTable(defs, "Discotheque");
  CreateIndexes(defs, "Discotheque");
  Db().Execute("INSERT INTO Discotheque SELECT * FROM TBTEMP ORDER BY TBTEMP.FILENAME");
  defs.Delete("TBTEMP");
  EXPECT_EQ(other.One("SELECT CODE, AUTEUR, GENRE FROM Discotheque"), "1|kept|ROCK");
  EXPECT_EQ(defs.Item("Discotheque").Indexes.size(), 14u);
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

TEST_F(Catalogue, ACopyTakesFieldsOfTheSameNameAndDefaultsForTheRest) {
  TableDefs& defs = Db().Tables();
  defs.Rename("Cnf", "TBTEMP");
  defs.DeleteField("TBTEMP", "OutExtrait");
  Field gone;
  gone.Name = "JingleExtrait";
  gone.Type = FieldType::kInt16;
  gone.DefaultValue = int64_t{9};
  defs.AppendField("TBTEMP", gone);
  Db().Execute("UPDATE TBTEMP SET PmixDef = 2222, JingleAvantPubs = 'C:\\été.wav'");
  CreateTable(defs, "Cnf");
  Db().BeginTrans();
  Db().Execute("INSERT INTO Cnf SELECT * FROM TBTEMP ORDER BY TBTEMP.PmixDef");
  Db().CommitTrans();
  EXPECT_EQ(other.One("SELECT PmixDef, JingleAvantPubs, InExtrait, OutExtrait FROM Cnf"),
            "2222|C:\\été.wav|46|16");
}

TEST_F(Catalogue, FieldsAndIndexesComeAndGo) {
  TableDefs& defs = Db().Tables();
  Field field;
  field.Name = "EXTRA";
  field.Size = 3;
  field.DefaultValue = std::string("a'b");
  defs.AppendField("VT", field);
  EXPECT_EQ(defs.Item("vt").Fields.size(), 8u);
  EXPECT_EQ(defs.Item("VT").FindField("extra")->DefaultValue, Value(std::string("a'b")));
  EXPECT_EQ(ErrorOf([&] { defs.AppendField("VT", field); }), kErrFieldExists);
  defs.AppendIndex("VT", {"EXTRA", "EXTRA", false});
  EXPECT_EQ(ErrorOf([&] { defs.AppendIndex("VT", {"extra", "EXTRA", false}); }), kErrIndexExists);
  EXPECT_EQ(ErrorOf([&] { defs.AppendIndex("VT", {"x", "NOFIELD", false}); }), kErrNoSuchField);
  const auto table = Db().OpenTable("VT");
  table->SetIndex("EXTRA");
  defs.DeleteIndex("VT", "EXTRA");
  EXPECT_EQ(ErrorOf([&] { defs.DeleteIndex("VT", "EXTRA"); }), kErrNoSuchIndex);
  defs.DeleteField("VT", "EXTRA");
  EXPECT_EQ(ErrorOf([&] { defs.DeleteField("VT", "EXTRA"); }), kErrNoSuchField);
  EXPECT_EQ(defs.Item("VT").Fields.size(), 7u);
}

TEST_F(Catalogue, MakingWhatExistsIsTold) {
  EXPECT_EQ(ErrorOf([&] { CreateTable(Db().Tables(), "Toph"); }), kErrTableExists);
  EXPECT_EQ(ErrorOf([&] { CreateIndexes(Db().Tables(), "GrillePub"); }), 0);
  EXPECT_EQ(ErrorOf([&] { Db().Tables().Rename("Toph", "VT"); }), kErrTableExists);
}

TEST_F(Catalogue, AStructureChangedByAnotherProgramIsSeen) {
  EXPECT_EQ(Db().OpenTable("VT")->FieldCount(), 7);
  other.Do("ALTER TABLE VT ADD COLUMN MORE INTEGER");
  EXPECT_EQ(Db().OpenTable("VT")->FieldCount(), 8);
  other.Do("CREATE TABLE Theirs(A TEXT)");
  EXPECT_TRUE(Db().Tables().Has("theirs"));
}

}  // namespace
}  // namespace zemo
