// "Genre.Txt", the genres on offer.
#include "settings/GenreList.h"
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

using GenreList = SettingsTest;

TEST_F(GenreList, AMissingFileIsMadeWithTheSevenFixedGenres) {
  Texts genres;
  LoadSaveGenres(station, "Load", genres);
  EXPECT_EQ(genres, (Texts{"INSTRUMENTAL", "STARTER", "PLAYLIST", "GOLD N-1", "GOLD N-2",
                           "GOLD N-3", "GOLD N-4"}));
  EXPECT_EQ(StationFile("Genre.Txt"),
            "INSTRUMENTAL\r\nSTARTER\r\nPLAYLIST\r\nGOLD N-1\r\nGOLD N-2\r\nGOLD N-3\r\n"
            "GOLD N-4\r\n");
}

TEST_F(GenreList, AMissingFileLeavesAListThatIsLoaded) {
  Texts genres = {"POP"};
  LoadSaveGenres(station, "Load", genres);
  EXPECT_EQ(genres, Texts{"POP"});
  EXPECT_EQ(StationFile("Genre.Txt"), "(no file)");
}

TEST_F(GenreList, InstrumentalIsAddedToTheListAndNotToTheFile) {
  StationFileIs("Genre.Txt", "POP\r\nROCK\r\n");
  Texts genres;
  LoadSaveGenres(station, "LOAD", genres);
  EXPECT_EQ(genres, (Texts{"POP", "ROCK", "INSTRUMENTAL"}));
  EXPECT_EQ(StationFile("Genre.Txt"), "POP\r\nROCK\r\n");
  StationFileIs("Genre.Txt", "instrumental\r\nPOP\r\n");
  LoadSaveGenres(station, "Load", genres);
  EXPECT_EQ(genres, (Texts{"instrumental", "POP"}));
}

TEST_F(GenreList, GenresAreSavedInCapitals) {
  Texts genres = {"pop", "Été"};
  LoadSaveGenres(station, "Save", genres);
  EXPECT_EQ(StationFile("Genre.Txt"), "POP\r\n\xC9T\xC9\r\n");
}

}  // namespace
}  // namespace zemo
