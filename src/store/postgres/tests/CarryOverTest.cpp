// A whole base into another one, in both directions, and what keeps one that differs from counting
// as carried over.
#include <algorithm>

#include "store/CarryOver.h"
#include "store/SideTables.h"
#include "store/postgres/tests/EngineFixture.h"

namespace zemo {
namespace {

using test::TestServer;

// The parameter is the engine that is carried over; the other one takes it.
class Carried : public EngineTest {
 protected:
  void Begin() override {
    Db().Execute(
        "INSERT INTO Discotheque(AUTEUR, TITRE, DUREE, LASTDIFF, NBPASSJOUR) VALUES(?, ?, ?, ?, ?)",
        {std::string("Zoé\t\\N"), std::string("a\nb\r'\"\\"), int64_t{-2147483648}, 46349.123456789,
         int64_t{-1}});
    Db().Execute("INSERT INTO Discotheque(AUTEUR, TITRE) VALUES('', ?)", {Value()});
    AddCard("gone");
    Db().Execute("DELETE FROM Discotheque WHERE AUTEUR = 'gone'");
    MakeOther();
  }
  void MakeOther() {
    const auto wait = std::make_shared<LockWait>();
    if (GetParam() == Engine::kFile) {
      auto& server = TestServer::Get();
      if (!server.Missing().empty()) GTEST_SKIP() << server.Missing();
      other = ClosedPostgresDatabase(server.Url(server.NewBase()), wait);
    } else {
      folder =
          std::filesystem::path(testing::TempDir()) / ("zemo_carried_" + std::to_string(getpid()));
      std::filesystem::create_directories(folder);
      std::filesystem::remove(folder / "base");
      other = DBEngine::ClosedDatabase((folder / "base").string(), wait);
    }
    other->Open(true);
  }
  void TearDown() override {
    other.reset();
    if (!folder.empty()) std::filesystem::remove_all(folder);
  }
  // What VerifyCarried says; empty: all is the same.
  std::string Difference(const std::vector<TableSum>& sums) {
    std::string text;
    ErrorOf([&] { VerifyCarried(Db(), *other, sums); }, &text);
    return text;
  }
  std::filesystem::path folder;
  std::unique_ptr<Database> other;
};
ON_BOTH_ENGINES(Carried);

TEST_P(Carried, HasEveryRowValueAndNumber) {
  std::vector<std::string> told;
  const auto sums =
      CarryOver(Db(), *other, [&told](const TableSum& sum) { told.push_back(sum.table); });
  EXPECT_EQ(told.size(), 13U);
  EXPECT_EQ(Difference(sums), "");
  const auto cards = std::find_if(sums.begin(), sums.end(),
                                  [](const TableSum& sum) { return sum.table == "Discotheque"; });
  ASSERT_NE(cards, sums.end());
  EXPECT_EQ(cards->rows, 2);
  EXPECT_EQ(cards->lastNumber, 3);

  const auto rows = other->OpenRecordset("SELECT * FROM Discotheque ORDER BY CODE");
  EXPECT_EQ(rows->Text("AUTEUR"), "Zoé\t\\N");
  EXPECT_EQ(rows->Text("TITRE"), "a\nb\r'\"\\");
  EXPECT_EQ(rows->Int("DUREE"), -2147483648);
  EXPECT_EQ(rows->Real("LASTDIFF"), 46349.123456789);
  EXPECT_EQ(rows->Int("NBPASSJOUR"), -1);
  rows->MoveNext();
  EXPECT_EQ(rows->Field("AUTEUR"), Value(std::string()));
  EXPECT_TRUE(IsNull(rows->Field("TITRE")));
  other->Execute("INSERT INTO Discotheque(AUTEUR) VALUES('next')");
  EXPECT_EQ(other->LastInsertCode(), 4);
}

TEST_P(Carried, HasTheIndexesByWhichItsCursorsMove) {
  CarryOver(Db(), *other, nullptr);
  for (const TableDef& table : SchemaTables())
    for (const Index& index : table.Indexes) {
      const TableDef made = other->Tables().Item(table.Name);
      ASSERT_NE(made.FindIndex(index.Name), nullptr) << table.Name << '.' << index.Name;
      EXPECT_EQ(made.FindIndex(index.Name)->Unique, index.Unique) << table.Name;
    }
  const auto cursor = other->OpenTable("Discotheque");
  cursor->SetIndex("AUTEUR");
  cursor->Seek("=", std::string("zoé\t\\n"));
  EXPECT_FALSE(cursor->NoMatch());
}

TEST_P(Carried, ATableBesideTheSchemaGoesAlong) {
  TableDef table;
  table.Name = "Beside";
  table.Fields = {SideField("CODE", FieldType::kInt32), SideField("PEAK", FieldType::kFloat64),
                  SideField("TOLD", FieldType::kMemo)};
  table.Fields[0].AutoIncrement = true;
  table.Indexes = {{"PEAK", "PEAK", false}};
  Db().Tables().Append(table);
  Db().Tables().AppendIndex("Beside", table.Indexes[0]);
  Db().Execute("INSERT INTO Beside(PEAK, TOLD) VALUES(0.1, 'x')");
  EXPECT_EQ(Difference(CarryOver(Db(), *other, nullptr)), "");
  EXPECT_EQ(other->OpenRecordset("SELECT TOLD FROM Beside WHERE PEAK = 0.1")->RecordCount(), 1);
}

TEST_P(Carried, ABaseThatHoldsTablesIsNotFilled) {
  CreateTable(other->Tables(), "VT");
  std::string text;
  EXPECT_EQ(ErrorOf([&] { CarryOver(Db(), *other, nullptr); }, &text), kErrTableExists);
  EXPECT_EQ(text, "the base that is to be filled holds tables already, such as VT");
}

TEST_P(Carried, WhatFailsInItsMiddleLeavesNothing) {
  int tables = 0;
  EXPECT_THROW(CarryOver(Db(), *other,
                         [&tables](const TableSum&) {
                           if (++tables == 5) throw std::runtime_error("enough");
                         }),
               std::runtime_error);
  EXPECT_EQ(other->Tables().Count(), 0);
  EXPECT_EQ(Difference(CarryOver(Db(), *other, nullptr)), "");
}

TEST_P(Carried, WhatBecameOtherIsFound) {
  const auto sums = CarryOver(Db(), *other, nullptr);
  other->Execute("UPDATE Discotheque SET TITRE = 'c' WHERE CODE = 2");
  EXPECT_EQ(Difference(sums), "the table Discotheque has other values after it was carried over");
  other->Execute("UPDATE Discotheque SET TITRE = ? WHERE CODE = 2", {Value()});
  EXPECT_EQ(Difference(sums), "");
  other->Execute("INSERT INTO VT(LIBELLE) VALUES('x')");
  EXPECT_EQ(Difference(sums), "the table VT has 1 rows after it was carried over, and had 0");
  other->Execute("DELETE FROM VT");
  EXPECT_EQ(Difference(sums),
            "the table VT has given the number 1 after it was carried over, and had given 0");
}

TEST_P(Carried, AnIndexThatIsMissingIsFound) {
  const auto sums = CarryOver(Db(), *other, nullptr);
  other->Tables().DeleteIndex("Discotheque", "AUTEUR");
  EXPECT_NE(Difference(sums).find("the table Discotheque cannot be carried over as it is: index "
                                  "Auteur on AUTEUR"),
            std::string::npos)
      << Difference(sums);
}

TEST_P(Carried, WhatIsReadIsOfOneMomentWhateverOthersWrite) {
  if (GetParam() == Engine::kFile) return;  // a file that is read is not written
  Db().BeginReading();
  EXPECT_EQ(Count("Discotheque"), 2);
  Other().Do("DELETE FROM Discotheque");
  EXPECT_EQ(Count("Discotheque"), 2);
  EXPECT_EQ(ErrorOf([&] { Db().Execute("DELETE FROM VT"); }), kErrReadOnly);
  Db().CommitTrans();
  EXPECT_EQ(Count("Discotheque"), 0);
}

// --- What a server's columns cannot hold ---

class ToServer : public Carried {
 protected:
  // The error of a base in which this was done with another tool.
  std::string ErrorAfter(const std::string& sql) {
    Db().Close();
    DBEngine::ExecuteNative(Made().Path(), sql);
    Db().Open(false);
    std::string text;
    ErrorOf([&] { CarryOver(Db(), *other, nullptr); }, &text);
    EXPECT_EQ(other->Tables().Count(), 0);
    return text;
  }
};
INSTANTIATE_TEST_SUITE_P(Engines, ToServer, testing::Values(Engine::kFile), NameOfEngine);

TEST_P(ToServer, ATextInAFieldOfNumbersIsToldWithItsRow) {
  EXPECT_EQ(ErrorAfter("PRAGMA ignore_check_constraints = 1; UPDATE Discotheque SET DUREE = 'long' "
                       "WHERE CODE = 2"),
            "Discotheque.DUREE holds a whole number on a server, and something else in row 2 of "
            "the table");
}

TEST_P(ToServer, ATextBeyondItsWidthIsToldWithItsRow) {
  EXPECT_EQ(ErrorAfter("PRAGMA ignore_check_constraints = 1; UPDATE Discotheque SET AUTEUR = "
                       "printf('%.41c', 'x') WHERE CODE = 2"),
            "Discotheque.AUTEUR holds at most 40 characters, in row 2 of the table");
}

TEST_P(ToServer, ATextThatIsNoUtf8IsToldWithItsRow) {
  const std::string text =
      ErrorAfter("UPDATE Discotheque SET TITRE = CAST(x'636166e9' AS TEXT) WHERE CODE = 1");
  EXPECT_NE(text.find("in row 1 of the table"), std::string::npos) << text;
}

}  // namespace
}  // namespace zemo
