// "Donnees_Associees.Txt" and "Artiste-Titre.Txt".
#include "settings/NowPlaying.h"
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

struct NowPlaying : SettingsTest {
  // Of a row only what the files tell.
  void Add(int32_t code, const char* title, const char* second = "", const char* genre = "",
           std::optional<int64_t> lengthMs = {}, std::optional<double> plannedMs = {}) {
    station.PL.Add({.code = code,
                    .title = title,
                    .secondLine = second,
                    .genre = genre,
                    .lengthMs = lengthMs,
                    .plannedMs = plannedMs});
  }
  static constexpr double kNoonMs = 12 * 3600 * 1000.0;
};

TEST_F(NowPlaying, TellsTheNextFourMusicRowsBetweenAnEmptyLineAndTheComment) {
  Add(-2, "Garage Martin");
  Add(12, "Anna", "Première", "GOLD", 183999, kNoonMs);
  Add(-1, "Jingle");
  Add(7, "Bob", "Two", "POP", 1000, kNoonMs + 183000);
  Add(8, "Carl", "Three", "POP", 2000, kNoonMs + 184000);
  Add(9, "Dora", "Four", "POP", 3000, kNoonMs + 186000);
  Add(10, "Eve", "Five", "POP", 4000, kNoonMs + 189000);
  SaveAssociatedData(station, "un été");
  EXPECT_EQ(StationFile("Donnees_Associees.Txt"),
            "\r\n"
            "Anna\tPremi\xE8re\t03:03\tGOLD\t183\t12 h 00 ' 00\r\n"
            "Bob\tTwo\t00:01\tPOP\t1\t12 h 03 ' 03\r\n"
            "Carl\tThree\t00:02\tPOP\t2\t12 h 03 ' 04\r\n"
            "Dora\tFour\t00:03\tPOP\t3\t12 h 03 ' 06\r\n"
            "un \xE9t\xE9\r\n");
  EXPECT_EQ(StationFile("Artiste-Titre.Txt"), "Anna - Premi\xE8re\r\n");
}

TEST_F(NowPlaying, LeavesPlacesWithoutARowEmptyButForTheNumber) {
  Add(7, "Bob", "Two", "POP", 1000, kNoonMs + 183000);
  SaveAssociatedData(station, "");
  EXPECT_EQ(StationFile("Donnees_Associees.Txt"),
            "\r\nBob\tTwo\t00:01\tPOP\t1\t12 h 03 ' 03\r\n"
            "\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\r\n");
}

TEST_F(NowPlaying, OfAListWithoutMusicNamesNobody) {
  Add(-1, "Jingle");
  SaveAssociatedData(station, "x");
  EXPECT_EQ(StationFile("Donnees_Associees.Txt"),
            "\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\nx\r\n");
  EXPECT_EQ(StationFile("Artiste-Titre.Txt"), " - \r\n");
}

TEST_F(NowPlaying, KeepsItsFormWhateverTheTextsHold) {
  Add(7, "Bob\tB.", "Two\r\nlines");
  SaveAssociatedData(station, "a\r\nb");
  EXPECT_EQ(StationFile("Donnees_Associees.Txt"),
            "\r\nBob B.\tTwo lines\t--:--\t\t0\t\r\n"
            "\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\na b\r\n");
}

TEST_F(NowPlaying, AFaultIsLogged) {
  fake.stationFolder.writesFail = true;
  SaveAssociatedData(station, "x");
  EXPECT_EQ(fake.errors,
            Texts{"SaveDonnes_Associees/75/Donnees_Associees.Txt: No space left on device"});
}

}  // namespace
}  // namespace zemo
