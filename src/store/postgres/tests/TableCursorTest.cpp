// Table cursors: order, seeks, edits, and how they live with other programs on the base.
#include "store/postgres/tests/EngineFixture.h"

namespace zemo {
namespace {

class TableCursors_ : public EngineTest {
 protected:
  void Begin() override { cards = Db().OpenTable("Discotheque"); }
  Strings Walk(Recordset& table, const std::string& field) {
    table.MoveFirst();
    return ColumnOf(table, field);
  }
  Strings WalkBack(Recordset& table, const std::string& field) {
    Strings values;
    for (table.MoveLast(); !table.Bof(); table.MovePrevious()) values.push_back(table.Text(field));
    return values;
  }
  void AddCampaign(int priority) {
    Db().Execute("INSERT INTO GrillePub(PRIORITY) VALUES(" + std::to_string(priority) + ")");
  }

  std::unique_ptr<Recordset> cards;
};
class TableOrder : public TableCursors_ {};
ON_EVERY_ENGINE(TableOrder);
class TableSeek : public TableCursors_ {};
ON_EVERY_ENGINE(TableSeek);
class TableEdit : public TableCursors_ {};
ON_EVERY_ENGINE(TableEdit);
class TableShared : public TableCursors_ {};
ON_EVERY_ENGINE(TableShared);

TEST_P(TableOrder, WithoutAnIndexIsInsertionOrder) {
  for (const char* artist : {"C", "A", "B"}) AddCard(artist);
  EXPECT_EQ(Walk(*cards, "AUTEUR"), (Strings{"C", "A", "B"}));
  EXPECT_EQ(WalkBack(*cards, "AUTEUR"), (Strings{"B", "A", "C"}));
  const auto varieties = Db().OpenTable("Variete");
  EXPECT_EQ(Walk(*varieties, "VARIETE"), (Strings{"NATIONAL", "INTERNATIONAL"}));
}

TEST_P(TableOrder, OfAnIndexPutsEqualKeysByNumberAndNullFirst) {
  for (const char* artist : {"b", "A", "B", "a"}) AddCard(artist);
  Db().Execute("INSERT INTO Discotheque(GENRE) VALUES('x')");
  Db().Execute("INSERT INTO Discotheque(GENRE) VALUES('y')");
  cards->SetIndex("auteur");
  EXPECT_EQ(Walk(*cards, "CODE"), (Strings{"5", "6", "2", "4", "1", "3"}));
  EXPECT_EQ(WalkBack(*cards, "CODE"), (Strings{"3", "1", "4", "2", "6", "5"}));
  cards->SetIndex("");
  EXPECT_EQ(cards->Int("CODE"), 1);
}

TEST_P(TableOrder, OfEachIndexIsItsOwn) {
  AddCard("A", "ROCK");
  AddCard("B", "JAZZ");
  cards->SetIndex("Auteur");
  EXPECT_EQ(Walk(*cards, "AUTEUR"), (Strings{"A", "B"}));
  cards->SetIndex("Genre");
  EXPECT_EQ(Walk(*cards, "AUTEUR"), (Strings{"B", "A"}));
}

TEST_P(TableOrder, OfANumberIndexIsNumeric) {
  for (const int priority : {10, 9, -1, 9}) AddCampaign(priority);
  const auto campaigns = Db().OpenTable("GrillePub");
  campaigns->SetIndex("PRIORITY");
  EXPECT_EQ(Walk(*campaigns, "CODE"), (Strings{"3", "2", "4", "1"}));
}

TEST_P(TableOrder, AFreshCursorStandsOnTheFirstRow) {
  const auto pips = Db().OpenTable("Toph");
  EXPECT_FALSE(pips->Eof());
  EXPECT_FALSE(pips->Bof());
  EXPECT_EQ(pips->Int("HEURE"), 0);
  EXPECT_EQ(pips->RecordCount(), 24);
}

TEST_P(TableOrder, AnEmptyTableIsAtBothEnds) {
  EXPECT_TRUE(cards->Eof());
  EXPECT_TRUE(cards->Bof());
  cards->MoveLast();
  EXPECT_TRUE(cards->Eof());
  EXPECT_EQ(ErrorOf([&] { cards->MoveNext(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { cards->Text("AUTEUR"); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { cards->Edit(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorOf([&] { cards->Delete(); }), kErrNoCurrentRecord);
}

TEST_P(TableOrder, BothEndsCanBeLeftAgainAndNotPassed) {
  AddCard("A");
  AddCard("B");
  cards->MoveLast();
  cards->MoveNext();
  EXPECT_TRUE(cards->Eof());
  EXPECT_EQ(ErrorOf([&] { cards->MoveNext(); }), kErrNoCurrentRecord);
  cards->MovePrevious();
  EXPECT_EQ(cards->Text("AUTEUR"), "B");
  cards->MoveFirst();
  cards->MovePrevious();
  EXPECT_TRUE(cards->Bof());
  EXPECT_EQ(ErrorOf([&] { cards->MovePrevious(); }), kErrNoCurrentRecord);
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
}

TEST_P(TableOrder, AnIndexThatTheTableLacksIsAnError) {
  EXPECT_EQ(ErrorOf([&] { cards->SetIndex("TRANCHE07"); }), kErrNoSuchIndex);
  EXPECT_EQ(ErrorOf([&] { Db().OpenTable("NoTable"); }), kErrNoSuchTable);
}

TEST_P(TableSeek, FindsACardByItsNumber) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  cards->SetIndex("CODE");
  cards->Seek("=", int64_t{2});
  EXPECT_FALSE(cards->NoMatch());
  EXPECT_EQ(cards->Text("Auteur"), "B");
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "C");
}

TEST_P(TableSeek, WithoutAMatchHasNoCurrentRow) {
  AddCard("A");
  cards->SetIndex("CODE");
  for (const Value& key : {Value(int64_t{9}), Value(1.5), Value(std::string("A")), Value{}}) {
    cards->Seek("=", key);
    EXPECT_TRUE(cards->NoMatch());
    EXPECT_TRUE(cards->Eof());
    EXPECT_EQ(ErrorOf([&] { cards->Text("AUTEUR"); }), kErrNoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { cards->MoveNext(); }), kErrNoCurrentRecord);
  }
  cards->Seek("=", int64_t{1});
  EXPECT_FALSE(cards->NoMatch());
}

TEST_P(TableSeek, OnTextKnowsNoCase) {
  AddCard("ABBA");
  AddCard("Édith");
  AddCard("abba");
  cards->SetIndex("Auteur");
  cards->Seek("=", std::string("Abba"));
  EXPECT_EQ(cards->Int("CODE"), 1) << "the lowest number of equal keys";
  cards->Seek("=", std::string("ÉDITH"));
  ASSERT_FALSE(cards->NoMatch());
  EXPECT_EQ(cards->Int("CODE"), 2);
  cards->Seek("=", std::string("édith"));  // an accented letter in another case
  ASSERT_FALSE(cards->NoMatch());
  EXPECT_EQ(cards->Int("CODE"), 2);
  cards->Seek("=", std::string("Edith"));
  EXPECT_TRUE(cards->NoMatch());
  cards->Seek("=", std::string("élan"));
  EXPECT_TRUE(cards->NoMatch());
}

TEST_P(TableSeek, NeedsAnIndexAndKnowsEqualityOnly) {
  AddCard("A");
  EXPECT_EQ(ErrorOf([&] { cards->Seek("=", int64_t{1}); }), kErrNoSuchIndex);
  cards->SetIndex("CODE");
  EXPECT_EQ(ErrorOf([&] { cards->Seek(">=", int64_t{1}); }), kErrSyntax);
}

TEST_P(TableSeek, ByNumberServesInEveryTableThatHasNumbers) {
  const auto pips = Db().OpenTable("Toph");
  pips->SetIndex("CODE");
  pips->Seek("=", int64_t{5});
  EXPECT_EQ(pips->Int("HEURE"), 4);
}

TEST_P(TableSeek, OnNumbersReadsTheirTextToo) {
  AddCampaign(7);
  const auto campaigns = Db().OpenTable("GrillePub");
  campaigns->SetIndex("PRIORITY");
  campaigns->Seek("=", std::string("7"));
  EXPECT_FALSE(campaigns->NoMatch());
}

TEST_P(TableEdit, AnAddedRowHasItsDefaultsAndBecomesCurrent) {
  cards->AddNew();
  cards->Set("auteur", std::string("New"));
  EXPECT_EQ(cards->Text("AUTEUR"), "New");
  EXPECT_EQ(cards->Field("LASTDIFF"), Value(int64_t{0}));
  EXPECT_TRUE(IsNull(cards->Field("CODE")));
  cards->Update();
  EXPECT_EQ(cards->Int("CODE"), 1);
  EXPECT_EQ(cards->Text("AUTEUR"), "New");
  EXPECT_EQ(cards->Text("TRANCHE01"), "");
  EXPECT_TRUE(IsNull(cards->Field("TITRE")));
  cards->MoveNext();
  EXPECT_TRUE(cards->Eof());
}

TEST_P(TableEdit, ARowOfNothingButDefaultsCanBeAdded) {
  const auto settings = Db().OpenTable("Cnf");
  settings->AddNew();
  settings->Update();
  EXPECT_EQ(settings->RecordCount(), 2);
  EXPECT_EQ(settings->Int("FadeOut"), 1600);
}

TEST_P(TableEdit, AnEditWritesTheFieldsThatWereSetAndNoOther) {
  AddCard("A");
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
  Other().Do("UPDATE Discotheque SET TITRE = 'theirs'");
  cards->Edit();
  EXPECT_EQ(cards->Text("TITRE"), "theirs") << "an edit begins with the row as it is stored";
  cards->Set("AUTEUR", std::string("B"));
  Other().Do("UPDATE Discotheque SET LABEL = 'meanwhile'");
  cards->Update();
  EXPECT_EQ(cards->Text("AUTEUR"), "B");
  EXPECT_EQ(Other().One("SELECT AUTEUR, TITRE, LABEL FROM Discotheque"), "B|theirs|meanwhile");
}

TEST_P(TableEdit, ValuesTakeTheTypeOfTheirField) {
  const auto tracks = Db().OpenTable("VT");
  tracks->AddNew();
  tracks->Set("CUT", int64_t{1});
  tracks->Set("START", 2.5);
  tracks->Set("DUREE", std::string(" 12 "));
  tracks->Set("LIBELLE", 38000.0);
  tracks->Update();
  EXPECT_EQ(Other().One("SELECT CUT, START, DUREE, LIBELLE FROM VT"), "-1|2|12|38000");
  EXPECT_EQ(tracks->Field("CUT"), Value(int64_t{-1}));
  tracks->Edit();
  std::string text;
  EXPECT_EQ(ErrorOf([&] { tracks->Set("START", std::string("soon")); }, &text), kErrValueRefused);
  EXPECT_EQ(text, "VT.START holds a number, not \"soon\"");
}

TEST_P(TableEdit, ValuesBeyondTheirFieldAreRefusedAndNothingIsStored) {
  AddCard("A");
  cards->MoveFirst();
  cards->Edit();
  cards->Set("AUTEUR", std::string(41, 'x'));
  EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrFieldTooSmall);
  cards->MoveFirst();
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
  const auto rows = Db().OpenTable("Pls");
  rows->AddNew();
  rows->Set("FICHE", int64_t{40000});
  EXPECT_EQ(ErrorOf([&] { rows->Update(); }), kErrOverflow);
  EXPECT_EQ(rows->RecordCount(), 0);
}

TEST_P(TableEdit, AMoveGivesAnEditUp) {
  AddCard("A");
  cards->AddNew();
  cards->Set("AUTEUR", std::string("B"));
  cards->MoveFirst();
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
  EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrNoEdit);
  EXPECT_EQ(ErrorOf([&] { cards->Set("AUTEUR", std::string("C")); }), kErrNoEdit);
  EXPECT_EQ(cards->RecordCount(), 1);
}

TEST_P(TableEdit, ALastMoveAndAnotherOrderGiveAnEditUpToo) {
  for (const char* artist : {"A", "B"}) AddCard(artist);
  cards->Edit();
  cards->MoveLast();
  EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrNoEdit);
  cards->Edit();
  cards->SetIndex("CODE");
  EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrNoEdit);
}

TEST_P(TableEdit, ARowWhoseNumberWasChangedStaysCurrent) {
  for (const char* artist : {"A", "B"}) AddCard(artist);
  cards->Edit();
  cards->Set("CODE", int64_t{9});
  cards->Update();
  cards->Edit();
  cards->Set("TITRE", std::string("of nine"));
  cards->Update();
  EXPECT_EQ(Other().Rows("SELECT CODE, AUTEUR FROM Discotheque WHERE TITRE = 'of nine'"),
            (Strings{"9|A"}));
}

TEST_P(TableEdit, ADeletedRowIsLeftForItsNeighbours) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  cards->SetIndex("Auteur");
  cards->Seek("=", std::string("B"));
  cards->Delete();
  EXPECT_EQ(ErrorOf([&] { cards->Text("AUTEUR"); }), kErrNoCurrentRecord);
  EXPECT_FALSE(cards->Eof());
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "C");
  cards->Delete();
  cards->MovePrevious();
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
}

TEST_P(TableEdit, AllRowsCanBeDeletedInOneWalk) {
  const auto pips = Db().OpenTable("Toph");
  int deleted = 0;
  for (; !pips->Eof(); pips->MoveNext(), ++deleted) pips->Delete();
  EXPECT_EQ(deleted, 24);
  EXPECT_EQ(pips->RecordCount(), 0);
}

TEST_P(TableEdit, ChangingTheKeyMovesTheRowInTheOrder) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  cards->SetIndex("Auteur");
  cards->MoveFirst();
  cards->Edit();
  cards->Set("AUTEUR", std::string("BB"));
  cards->Update();
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "C");
}

TEST_P(TableShared, RowsOfOthersAreMetAtTheNextMove) {
  AddCard("A");
  OtherStation& other = Other();
  cards->SetIndex("Auteur");
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
  other.Do("INSERT INTO Discotheque(AUTEUR) VALUES('B')");
  EXPECT_EQ(cards->RecordCount(), 2);
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "B");
  other.Do("DELETE FROM Discotheque WHERE AUTEUR = 'B'");
  EXPECT_EQ(cards->Text("AUTEUR"), "B") << "until it moves";
  cards->MovePrevious();
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
}

TEST_P(TableShared, ARowDeletedByOthersCannotBeEdited) {
  AddCard("A");
  AddCard("B");
  EXPECT_EQ(cards->Text("AUTEUR"), "A");
  OtherStation& other = Other();
  other.Do("DELETE FROM Discotheque WHERE AUTEUR = 'A'");
  EXPECT_EQ(ErrorOf([&] { cards->Edit(); }), kErrNoCurrentRecord);
  cards->MoveNext();
  EXPECT_EQ(cards->Text("AUTEUR"), "B");
  cards->Edit();
  cards->Set("AUTEUR", std::string("C"));
  other.Do("DELETE FROM Discotheque");
  EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrNoCurrentRecord);
}

TEST_P(TableShared, NoCursorKeepsOthersFromWriting) {
  for (const char* artist : {"A", "B", "Ç"}) AddCard(artist);
  OtherStation& other = Other();
  const auto otherWrites = [&](const char* after) { EXPECT_TRUE(other.CanWrite()) << after; };
  cards->SetIndex("Auteur");
  const std::pair<const char*, std::function<void()>> steps[] = {
      {"Field", [&] { cards->Text("AUTEUR"); }},
      {"Seek", [&] { cards->Seek("=", std::string("ç")); }},
      {"miss", [&] { cards->Seek("=", std::string("é")); }},
      {"MoveLast", [&] { cards->MoveLast(); }},
      {"MovePrevious", [&] { cards->MovePrevious(); }},
      {"MoveNext", [&] { cards->MoveNext(); }},
      {"Eof", [&] { cards->MoveNext(); }},
      {"RecordCount", [&] { cards->RecordCount(); }},
      {"MoveFirst", [&] { cards->MoveFirst(); }},
      {"Edit", [&] { cards->Edit(); }},
      {"Update",
       [&] {
         cards->Set("TITRE", std::string("t"));
         cards->Update();
       }},
      {"failed Update",
       [&] {
         cards->Edit();
         cards->Set("ANNEE", std::string("20055"));
         EXPECT_EQ(ErrorOf([&] { cards->Update(); }), kErrFieldTooSmall);
       }},
      {"Delete",
       [&] {
         cards->MoveFirst();
         cards->Delete();
       }},
      {"snapshot", [&] { Query("SELECT * FROM Toph"); }},
      {"failed query", [&] { ErrorOf([&] { Query("SELECT x FROM Toph"); }); }},
      {"counter", [&] { Db().ChangeCounter(); }},
      {"catalogue", [&] { Db().Tables().Count(); }},
  };
  for (const auto& [name, step] : steps) {
    step();
    otherWrites(name);
  }
}

}  // namespace
}  // namespace zemo
