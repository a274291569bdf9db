// Tables of an older version: made anew with their rows, or left whole.
#include "store/Schema.h"
#include "store/StructureUpgrade.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

class StructureUpgrade : public OpenBaseTest {
 protected:
  StructureUpgrade() : other(BasePath()) {}

  static const CheckedTable& Table(const std::string& name) {
    for (const CheckedTable& table : kCheckedTables)
      if (table.name == name) return table;
    throw std::invalid_argument(name);
  }
  // As an older version had it.
  void Drop(const std::string& table, const std::string& field) {
    Db().Tables().DeleteField(table, field);
    base->OpenAllTables();
  }
  int Rebuild(const std::string& name, std::string* text = nullptr) {
    return ErrorOf([&] { RebuildTable(*base, Table(name)); }, text);
  }
  std::string SqlOf(const std::string& table) {
    return other.One("SELECT sql FROM sqlite_schema WHERE type = 'table' AND name = '" + table +
                     "'");
  }

  OtherProgram other;
};

TEST_F(StructureUpgrade, TheSixTablesAreComparedInTheirOrderWithTheFieldsOfTheSchema) {
  const std::vector<std::pair<std::string, size_t>> expected{
      {"Cnf", 50},         {"DiscothequeJingle", 22}, {"Toph", 5}, {"DiscothequeVirgule", 8},
      {"Discotheque", 37}, {"GrillePub", 22}};
  ASSERT_EQ(kCheckedTables.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(kCheckedTables[i].name, expected[i].first);
    EXPECT_EQ(FindSchemaTable(expected[i].first)->Fields.size(), expected[i].second);
    EXPECT_FALSE(NeedsRebuild(*base, kCheckedTables[i]));
  }
}

TEST_F(StructureUpgrade, SettingsOf49FieldsKeepTheirValuesAndGetTheDefaultOfTheFieldThatIsNew) {
  Db().Execute("UPDATE Cnf SET PmixDef = 2222, InExtrait = 50, JingleAvantPubs = 'été'");
  Drop("Cnf", "OutExtrait");
  ASSERT_TRUE(NeedsRebuild(*base, Table("Cnf")));
  ASSERT_EQ(Rebuild("Cnf"), 0);
  EXPECT_FALSE(NeedsRebuild(*base, Table("Cnf")));
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kPmixDef), 2222);
  EXPECT_EQ(base->CnfText(Cnf::kJingleAvantPubs), "été");
  EXPECT_EQ(base->CnfInt(Cnf::kInExtrait), 50);
  EXPECT_EQ(base->CnfInt(Cnf::kOutExtrait), 16);
  EXPECT_EQ(base->Table("Cnf")->FieldCount(), 50);
}

TEST_F(StructureUpgrade, AFieldThatTheSchemaDoesNotKnowGoes) {
  other.Do("ALTER TABLE Toph ADD COLUMN REMARK TEXT");
  ASSERT_EQ(Rebuild("Toph"), 0);
  EXPECT_EQ(Db().Tables().Item("Toph").Fields.size(), 5u);
  EXPECT_EQ(base->CountRecords("Toph"), 24);
}

TEST_F(StructureUpgrade, CardsKeepTheirNumbersTheirIndexesAndTheNumberThatComesNext) {
  for (const char* artist : {"A", "B", "C", "D"}) AddCard(artist);
  Db().Execute("UPDATE Discotheque SET FILENAME = 'z' WHERE CODE = 1");
  Db().Execute("UPDATE Discotheque SET FILENAME = 'a' WHERE CODE = 3");
  Db().Execute("DELETE * FROM Discotheque WHERE CODE = 2");
  Db().Execute("DELETE * FROM Discotheque WHERE CODE = 4");
  Drop("Discotheque", "MMJJFin");
  ASSERT_EQ(Rebuild("Discotheque"), 0);
  EXPECT_EQ(other.Rows("SELECT CODE, AUTEUR FROM Discotheque ORDER BY CODE"),
            (Strings{"1|A", "3|C"}));
  EXPECT_EQ(Db().Tables().Item("Discotheque").Indexes.size(), 14u);
  AddCard("E");
  EXPECT_EQ(Db().LastInsertCode(), 5);
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM sqlite_schema WHERE name LIKE '%TBTEMP%'"), "0");
  EXPECT_EQ(other.One("PRAGMA integrity_check"), "ok");
}

TEST_F(StructureUpgrade, AnEmptiedTableGivesNoNumberTwiceAfterwards) {
  AddCard("A");
  AddCard("B");
  Db().Execute("DELETE * FROM Discotheque");
  Drop("Discotheque", "REFERENCE");
  ASSERT_EQ(Rebuild("Discotheque"), 0);
  AddCard("C");
  EXPECT_EQ(Db().LastInsertCode(), 3);
}

TEST_F(StructureUpgrade, EveryRowGetsWhatTheOldStructureCouldNotHold) {
  AddCard("A");
  Db().Execute("INSERT INTO DiscothequeJingle(LIBELLE) VALUES('J')");
  Db().Execute("INSERT INTO DiscothequeJingle(LIBELLE) VALUES('K')");
  Db().Execute("INSERT INTO GrillePub(ANNONCEUR) VALUES('P')");
  Drop("Discotheque", "MMJJFin");
  Drop("Discotheque", "MMJJDebut");
  Drop("DiscothequeJingle", "AUTEURCOMPOSITEUR");
  Drop("GrillePub", "GENREASSOCIE");
  for (const char* table : {"Discotheque", "DiscothequeJingle", "GrillePub"})
    ASSERT_EQ(Rebuild(table), 0) << table;
  EXPECT_EQ(other.One("SELECT quote(MMJJDebut) || quote(MMJJFin) FROM Discotheque"), "''''");
  EXPECT_EQ(other.Rows("SELECT AUTEURCOMPOSITEUR || quote(MMJJDebut) || quote(MMJJFin) "
                       "FROM DiscothequeJingle"),
            (Strings{"x''''", "x''''"}));
  EXPECT_EQ(other.One("SELECT quote(GENREASSOCIE) FROM GrillePub"), "''");
}

TEST_F(StructureUpgrade, ATempTableFoundBeforehandLeavesBothTablesAsTheyAre) {
  Drop("Toph", "JourSemaine");
  const std::string before = SqlOf("Toph");
  other.Do("CREATE TABLE TBTEMP (A TEXT); INSERT INTO TBTEMP VALUES('kept')");
  std::string text;
  EXPECT_EQ(Rebuild("Toph", &text), kErrTableExists);
  EXPECT_EQ(text, "table TBTEMP exists already");
  EXPECT_EQ(SqlOf("Toph"), before);
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Toph"), "24");
  EXPECT_EQ(other.One("SELECT A FROM TBTEMP"), "kept");
  EXPECT_EQ(base->Table("Toph")->RecordCount(), 24);  // open again
}

TEST_F(StructureUpgrade, ATextWithoutRoomIsToldWithItsRowAndTheOldTableStaysWhole) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  Drop("Discotheque", "MMJJFin");
  other.Do("PRAGMA ignore_check_constraints = ON; UPDATE Discotheque SET AUTEUR = '" +
           std::string(41, 'X') + "' WHERE CODE > 1");
  const std::string before = SqlOf("Discotheque");
  std::string text;
  EXPECT_EQ(Rebuild("Discotheque", &text), kErrFieldTooSmall);
  EXPECT_EQ(text,
            "Discotheque.AUTEUR holds at most 40 characters; rows that hold more: 2, the first is "
            "CODE 2");
  EXPECT_EQ(SqlOf("Discotheque"), before);
  EXPECT_EQ(Db().Tables().Item("Discotheque").Indexes.size(), 14u);
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM Discotheque WHERE length(AUTEUR) = 41"), "2");
  EXPECT_EQ(other.One("SELECT COUNT(*) FROM sqlite_schema WHERE name LIKE '%TBTEMP%'"), "0");
  other.Do("UPDATE Discotheque SET AUTEUR = 'short'");  // no lock is left behind
  EXPECT_EQ(Rebuild("Discotheque"), 0);
}

TEST_F(StructureUpgrade, ANumberOutsideOfItsFieldIsToldAsAnOverflow) {
  Drop("Cnf", "OutExtrait");
  other.Do("PRAGMA ignore_check_constraints = ON; UPDATE Cnf SET FadeOut = 99999");
  std::string text;
  EXPECT_EQ(Rebuild("Cnf", &text), kErrOverflow);
  EXPECT_EQ(text, "Cnf.FadeOut holds whole numbers from -32768 to 32767; rows that hold more: 1");
  EXPECT_EQ(other.One("SELECT FadeOut FROM Cnf"), "99999");
}

TEST_F(StructureUpgrade, TheOldSettingGoesFromItsPlaceAndFromNoOther) {
  EXPECT_FALSE(DropOldSetting(*base));
  other.Do("ALTER TABLE Cnf ADD COLUMN JingleExtrait SMALLINT");  // behind the last
  EXPECT_FALSE(DropOldSetting(*base));
  other.Do(
      "ALTER TABLE Cnf DROP COLUMN JingleExtrait;"
      "ALTER TABLE Cnf RENAME COLUMN JingleExtraitYN TO JingleExtrait");  // position 44
  EXPECT_TRUE(DropOldSetting(*base));
  EXPECT_EQ(Db().Tables().Item("Cnf").Fields.size(), 49u);
  EXPECT_EQ(Db().Tables().Item("Cnf").Fields[44].Name, "JoystiquePort");
  EXPECT_EQ(base->Table("Cnf")->FieldCount(), 50);  // the one that is missing is read by default
}

TEST_F(StructureUpgrade, ATableOfOtherNamesButAsManyFieldsIsNotNoticed) {
  other.Do("ALTER TABLE Toph RENAME COLUMN FICHIER TO SOMETHING");
  EXPECT_FALSE(NeedsRebuild(*base, Table("Toph")));
}

TEST_F(StructureUpgrade, AMissingTableIsNotMade) {
  Db().Tables().Delete("Toph");
  EXPECT_FALSE(NeedsRebuild(*base, Table("Toph")));
}

}  // namespace
}  // namespace zemo
