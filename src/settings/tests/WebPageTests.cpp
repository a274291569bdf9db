// The web page: announcement and pictures.
#include "settings/WebPage.h"
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

constexpr const char* kPage = "D:\\Web\\air.htm";
constexpr const char* kSong = "D:\\Music\\Song.mp3";

struct WebPage : SettingsTest {
  WebPage() { StationFileIs("Internet.Txt", "D:\\Web\\air.htm\r\nOn air: \r\n - \r\nBANNER\r\n"); }
  void PageIs(const std::string& bytes) {
    fake.soundFiles.files[kPage] = bytes;
    LoadFileRealAudio(station);
  }
  const std::string& Page() { return fake.soundFiles.files[kPage]; }
};

TEST_F(WebPage, IsDescribedByFourLines) {
  PageIs("");
  EXPECT_TRUE(lists.Internet.on);
  EXPECT_EQ(lists.Internet.pageFile, kPage);
  EXPECT_EQ(lists.Internet.firstMarker, "On air: ");
  EXPECT_EQ(lists.Internet.separator, " - ");
  EXPECT_EQ(lists.Internet.secondMarker, "BANNER");
}

TEST_F(WebPage, IsOffWithoutThePageOrTheDescription) {
  LoadFileRealAudio(station);
  EXPECT_FALSE(lists.Internet.on);
  EXPECT_EQ(lists.Internet.separator, " - ");
  PageIs("x");
  fake.stationFolder.files.clear();
  LoadFileRealAudio(station);
  EXPECT_FALSE(lists.Internet.on);
  EXPECT_EQ(lists.Internet.pageFile, "");
  SaveInfoRealAudio(station, "Anna - One", kSong);
  EXPECT_EQ(Page(), "x");
  EXPECT_TRUE(fake.errors.empty());
}

TEST_F(WebPage, MayBeDescribedByFewerLines) {
  StationFileIs("Internet.Txt", "D:\\Web\\air.htm");
  PageIs("<p>On air: old</p>\r\n");
  EXPECT_EQ(lists.Internet.firstMarker, "");
  SaveInfoRealAudio(station, "Anna - One", kSong);
  EXPECT_EQ(Page(), "<p>On air: old</p>\r\n");
}

TEST_F(WebPage, TakesTheAnnouncementBehindItsMarkerUpToTheNextTag) {
  PageIs("<html>\r\n<p>ON AIR: nobody</p>\r\n<p>on air: second</p>\r\n");
  SaveInfoRealAudio(station, "Anna - Été", kSong);
  EXPECT_EQ(Page(), "<html>\r\n<p>ON AIR: Anna - \xC9t\xE9</p>\r\n<p>on air: second</p>\r\n");
}

TEST_F(WebPage, TakesTheAnnouncementUpToTheLinesEndWhereNoTagFollows) {
  PageIs("<b>on air: nobody\n</b>");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), "<b>on air: Anna\r\n</b>\r\n");
}

TEST_F(WebPage, FindsAMarkerWithAccentsInAnyCase) {
  StationFileIs("Internet.Txt",
                "D:\\Web\\air.htm\r\n\xE0 l'\xE9"
                "coute:\r\n");
  PageIs(
      "<p>\xC0 L'\xC9"
      "COUTE: x</p>\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(),
            "<p>\xC0 L'\xC9"
            "COUTE:Anna</p>\r\n");
}

TEST_F(WebPage, ShowsThePictureBesideTheSoundFile) {
  fake.soundFiles.files["D:\\Music\\Song.JPG"] = "picture";
  PageIs("<p>On air: x</p>\r\n<img src=/Music/old.jpg width=80>\r\n<img src=b.jpg>\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(),
            "<p>On air: Anna</p>\r\n<img src=/Music/Song.JPG width=80>\r\n<img src=b.jpg>\r\n");
}

TEST_F(WebPage, ShowsThePictureOfAPathOfThisSystemWhole) {
  fake.soundFiles.files["/srv/music/Song.JPG"] = "picture";
  PageIs("<img SRC=old.JPG>\r\n");
  SaveInfoRealAudio(station, "Anna", "/srv/music/Song.wav");
  EXPECT_EQ(Page(), "<img SRC=/srv/music/Song.JPG>\r\n");
}

TEST_F(WebPage, KeepsItsPictureWithoutOneBesideTheSoundFile) {
  PageIs("<img src=/Music/old.jpg>\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), "<img src=/Music/old.jpg>\r\n");
}

TEST_F(WebPage, PassesOnTheFirstLineOfTheNetFileAtTheSecondMarker) {
  fake.soundFiles.files["D:\\Music\\Song.Net"] = "/net/new.gif\r\nignored\r\n";
  PageIs("<img src=first.gif>\r\n<img alt=banner src=old.gif border=0>\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), "<img src=first.gif>\r\n<img alt=banner src=/net/new.gif border=0>\r\n");
  fake.soundFiles.files["D:\\Music\\Song.Net"] = "/net/photo.jpg";
  SaveInfoRealAudio(station, "Anna", kSong);
  fake.soundFiles.files["D:\\Music\\Song.Net"] = "/x.gif";
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), "<img src=first.gif>\r\n<img alt=banner src=/x.gif border=0>\r\n");
}

TEST_F(WebPage, IsLookedAtUpToItsHundredthLineAndKeptBehindIt) {
  std::string before;
  for (int line = 1; line < 100; ++line) before += "<br>\r\n";
  PageIs(before + "on air: x<\r\non air: y<\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), before + "on air: Anna<\r\non air: y<\r\n");
  PageIs(before + "<br>\r\non air: y<\r\n");
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(Page(), before + "<br>\r\non air: y<\r\n");
}

TEST_F(WebPage, InUtf8StaysInUtf8) {
  PageIs("<p>été</p>\r\non air: x<\r\n");
  SaveInfoRealAudio(station, "Noël", kSong);
  EXPECT_EQ(Page(), "<p>été</p>\r\non air: Noël<\r\n");
  PageIs("<meta charset=\"utf-8\">\r\non air: x<\r\n");
  SaveInfoRealAudio(station, "Noël", kSong);
  EXPECT_EQ(Page(), "<meta charset=\"utf-8\">\r\non air: Noël<\r\n");
  PageIs("\xEF\xBB\xBFon air: x<\r\n");
  SaveInfoRealAudio(station, "Noël", kSong);
  EXPECT_EQ(Page(), "\xEF\xBB\xBFon air: Noël<\r\n");
}

TEST_F(WebPage, AFaultIsLogged) {
  PageIs("on air: x<\r\n");
  fake.soundFiles.writesFail = true;
  SaveInfoRealAudio(station, "Anna", kSong);
  EXPECT_EQ(fake.errors, Texts{"SaveInfoRealAudio/75/D:\\Web\\air.htm: No space left on device"});
  EXPECT_EQ(Page(), "on air: x<\r\n");
}

}  // namespace
}  // namespace zemo
