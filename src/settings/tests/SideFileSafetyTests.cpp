// Whatever a card, a side file or a hand puts into a text stays that text: no file gains a line, a
// field or a tag by it, and nothing grows at each pass.
#include "platform/LocalValues.h"
#include "settings/GenreList.h"
#include "settings/NowPlaying.h"
#include "settings/WebPage.h"
#include "settings/tests/SettingsTest.h"
#include "station/SideFileText.h"

namespace zemo {
namespace {

struct SideFileSafety : SettingsTest {
  void PageIs(const std::string& bytes) {
    StationFileIs("Internet.Txt", "D:\\Web\\air.htm\r\non air: \r\n - \r\nbanner\r\n");
    fake.soundFiles.files["D:\\Web\\air.htm"] = bytes;
    LoadFileRealAudio(station);
  }
  const std::string& Page() { return fake.soundFiles.files["D:\\Web\\air.htm"]; }
};

TEST_F(SideFileSafety, AnAnnouncementIsOnlyTextInThePage) {
  const struct {
    const char* announcement;
    const char* inPage;
  } cases[] = {{"Anna - <script>x</script>", "Anna - &lt;script&gt;x&lt;/script&gt;"},
               {"Simon & Anna - \"O'One\"", "Simon & Anna - \"O'One\""},
               {"two\r\nlines", "two lines"},
               {"a\tb", "a b"},
               {"on air: on air: ", "on air: on air: "}};
  for (const auto& one : cases) {
    PageIs("<p>on air: x</p>\r\n<p>rest</p>\r\n");
    for (int pass = 0; pass < 3; ++pass)
      SaveInfoRealAudio(station, one.announcement, "D:\\Music\\Song.mp3");
    EXPECT_EQ(Page(), "<p>on air: " + std::string(one.inPage) + "</p>\r\n<p>rest</p>\r\n");
  }
}

TEST_F(SideFileSafety, APictureIsOnlyAPathInThePage) {
  const struct {
    const char* sound;
    const char* inPage;
  } cases[] = {{"D:\\My Music\\O'One.mp3", "/My Music/O'One.JPG"},
               {"/music/a\"><script>.mp3", "/music/a%22%3E%3Cscript%3E.JPG"},
               {"/music/a\nb\tc.mp3", "/music/a%0Ab%09c.JPG"},
               {"/music/../../etc/x.mp3", "/music/../../etc/x.JPG"}};
  for (const auto& one : cases) {
    fake.soundFiles.files[SideFilePath(one.sound, "JPG")] = "picture";
    PageIs("<img src=old.jpg width=80>\r\n");
    for (int pass = 0; pass < 3; ++pass) SaveInfoRealAudio(station, "x", one.sound);
    EXPECT_EQ(Page(), "<img src=" + std::string(one.inPage) + " width=80>\r\n");
  }
}

TEST_F(SideFileSafety, TheNetFileGivesOnePathAndNothingElse) {
  const struct {
    const char* net;
    const char* inPage;
  } cases[] = {{"/net/new.gif\r\n<b>", "/net/new.gif"},
               {"x.gif><script>alert(1)</script>", "x.gif%3E%3Cscript%3Ealert(1)%3C/script%3E"},
               {"my new pic's.gif", "my%20new%20pic%27s.gif"},
               {"/my pic.JPG", "/my pic.JPG"},
               {"", "old.gif"},  // no line: the page keeps its own
               {"\r\n/second.gif", ""}};
  for (const auto& one : cases) {
    fake.soundFiles.files["D:\\Music\\Song.Net"] = one.net;
    PageIs("<img alt=banner src=old.gif width=80>\r\n");
    for (int pass = 0; pass < 3; ++pass) SaveInfoRealAudio(station, "x", "D:\\Music\\Song.mp3");
    EXPECT_EQ(Page(), "<img alt=banner src=" + std::string(one.inPage) + " width=80>\r\n")
        << one.net;
  }
}

TEST_F(SideFileSafety, ATitleStaysInItsFieldOfTheNowPlayingFiles) {
  OnAirElement element;
  element.title = "A\tB\n\"C\"";
  element.secondLine = "'); DROP TABLE x";
  element.code = 1;
  element.genre = "\t\t";
  element.lengthMs = 1999;
  station.PL.Add(element);
  SaveAssociatedData(station, "\r\n\r\n");
  EXPECT_EQ(StationFile("Donnees_Associees.Txt"),
            "\r\nA B \"C\"\t'); DROP TABLE x\t00:01\t  \t1\t\r\n"
            "\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n\t\t\t\t0\t\r\n  \r\n");
  EXPECT_EQ(StationFile("Artiste-Titre.Txt"), "A B \"C\" - '); DROP TABLE x\r\n");
}

TEST_F(SideFileSafety, EntriesStayOneEntryOfTheirFile) {
  Texts genres = {"POP\r\nROCK", "A\tB", "\"Q\""};
  LoadSaveGenres(station, "Save", genres);
  EXPECT_EQ(StationFile("Genre.Txt"), "POP ROCK\r\nA B\r\n\"Q\"\r\n");
  lists.ComboHeure = {"06:00\"\r\n\"STOP\",\"06:01-Q"};
  LoadSaveStartStop(station, "Save", 0, true);
  EXPECT_EQ(StationFile("StartStop.0"), "\"START\",\"06:00\"\"  \"\"STOP\"\",\"\"06:01-Q\"\r\n");
  LoadSaveStartStop(station, "Load", 0, true);
  EXPECT_EQ(lists.ComboHeure, Texts{"06:00\"  \"STOP\",\"06:01-Q"});
  EXPECT_EQ(lists.HeureArretSystem, Texts{});
  lists.Exclusion = {{"06:00\r\n00:00\t23:59", "07:00"}};
  LoadSaveExclusion(station, "Save");
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00 00:00 23:59\t07:00\r\n");
}

TEST_F(SideFileSafety, AValueOfTheMachineStaysOnItsLine) {
  fake.localValues.Set("XRapport", "20\r\nPCProduction=True");
  EXPECT_EQ(fake.localValues.Get("PCProduction"), std::nullopt);
  EXPECT_EQ(MachineFile("Settings.Ini"), "XRapport=20  PCProduction=True\r\n");
}

TEST_F(SideFileSafety, AFaultsTextStaysOnItsLineOfTheLog) {
  LogError(station, "A\r\nB", 1, "name\nwith\ttabs.wav: No such file");
  EXPECT_EQ(StationFile("Messages.Txt"),
            "21/11/2026 12:34:56\tA B\t1\tname with tabs.wav: No such file\r\n");
}

}  // namespace
}  // namespace zemo
