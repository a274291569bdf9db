// "Categori.Ini", "Labels.Txt", "CD.Txt" and the varieties.
#include "settings/LineLists.h"
#include "settings/tests/SettingsStation.h"

namespace zemo::test {
namespace {

using LineLists = SettingsStation;

struct Lines {
  const char* file;
  void (*loadSave)(Station&, std::string_view, Texts&);
  const char* where;
};
constexpr Lines kLists[] = {{"Categori.Ini", LoadSaveCategories, "LoadSaveCategories"},
                            {"Labels.Txt", LoadSaveLabels, "LoadSaveLabels"},
                            {"CD.Txt", LoadSaveCD, "LoadSaveCD"}};

TEST_F(LineLists, AreSavedAnEntryALineInCapitals) {
  for (const Lines& list : kLists) {
    Texts entries = {"Zemo", "l'été", "a\tb\r\nc"};
    list.loadSave(station, "SAVE", entries);
    EXPECT_EQ(StationFile(list.file), "ZEMO\r\nL'\xC9T\xC9\r\nA B C\r\n");
    entries = {"other"};
    list.loadSave(station, "load", entries);
    EXPECT_EQ(entries, (Texts{"ZEMO", "L'ÉTÉ", "A B C"}));
  }
}

TEST_F(LineLists, StayAsTheyAreWithoutAFileAndAreEmptiedByAnEmptyOne) {
  for (const Lines& list : kLists) {
    Texts entries = {"ONE"};
    list.loadSave(station, "Load", entries);
    EXPECT_EQ(entries, Texts{"ONE"});
    on.MakeFile(list.file, "");
    list.loadSave(station, "Load", entries);
    EXPECT_EQ(entries, Texts{});
    list.loadSave(station, "Delete", entries);
    EXPECT_EQ(StationFile(list.file), "");
  }
  EXPECT_EQ(Errors(), Texts{});
}

TEST_F(LineLists, ThatCannotBeReadAreLoggedAndStay) {
  for (const Lines& list : kLists) {
    on.seen.clear();
    Texts entries = {"ONE"};
    NextFileFails();
    list.loadSave(station, "Load", entries);
    EXPECT_EQ(entries, Texts{"ONE"});
    EXPECT_EQ(Errors(), Texts{std::string(list.where) + " 75 operation 1 fails for the test"});
  }
}

TEST_F(LineLists, VarietiesAreThoseOfTheTableAndAreNeverSaved) {
  on.Sql("INSERT INTO Variete (POURCENT, VARIETE) VALUES (0, 'L''AUTRE')");
  Texts names = {"old"};
  LoadVarieties(station, "Save", names);
  EXPECT_EQ(names, Texts{"old"});
  LoadVarieties(station, "Load", names);
  EXPECT_EQ(names, (Texts{"NATIONAL", "INTERNATIONAL", "L'AUTRE"}));
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Variete"), "3");
  station.base.Close();
  LoadVarieties(station, "Load", names);
  EXPECT_EQ(names.size(), 3U);
  EXPECT_EQ(Errors().size(), 1U);
}

}  // namespace
}  // namespace zemo::test
