// The files for programs outside, as an element starts.
#include <gtest/gtest.h>

#include "support/TestStation.h"

namespace zemo::test {
namespace {

struct NowPlayingOnAir : testing::Test {
  NowPlayingOnAir() {
    on.MakeFile("Internet.Txt", on.stationDir.Path() + "/air.htm\r\non air: \r\n / \r\nbanner\r\n");
    on.MakeFile("air.htm", "<p>on air: nobody</p>\r\n<img src=none.jpg>\r\n");
    on.Load();
    on.MakeFile("one.JPG", "picture");
    const Card one{.file = on.MakeSound("one.wav", 10000),
                   .lengthMs = 10000,
                   .artist = "ANNA",
                   .title = "ONE",
                   .comment = "first"};
    const Card two{.lengthMs = 12000, .artist = "BOB", .title = "TWO", .comment = "second"};
    on.AppendCard(on.AddCard(one));
    on.AppendCard(on.AddCard(two));
  }
  std::string Line(const std::string& name, size_t number) {
    const std::string text = on.stationFolder.Read(name).value_or("(no file)");
    size_t at = 0;
    for (size_t line = 0; line < number; ++line) at = text.find("\r\n", at) + 2;
    return text.substr(at, text.find("\r\n", at) - at);
  }
  TestStation on;
};

TEST_F(NowPlayingOnAir, TheTitleThatStartsStandsFirst) {
  on.Start();
  on.RunUntil(5000);
  EXPECT_EQ(Line("Artiste-Titre.Txt", 0), "ANNA - ONE");
  EXPECT_EQ(Line("Donnees_Associees.Txt", 0), "");
  EXPECT_EQ(Line("Donnees_Associees.Txt", 1).substr(0, 9), "ANNA\tONE\t");
  EXPECT_EQ(Line("Donnees_Associees.Txt", 2).substr(0, 8), "BOB\tTWO\t");
  EXPECT_EQ(Line("Donnees_Associees.Txt", 5), "first");
  on.RunUntil(15000);
  EXPECT_EQ(Line("Artiste-Titre.Txt", 0), "BOB - TWO");
  EXPECT_EQ(Line("Donnees_Associees.Txt", 5), "second");
}

TEST_F(NowPlayingOnAir, ThePageAnnouncesTheTitleAndShowsItsPicture) {
  on.Start();
  on.RunUntil(5000);
  EXPECT_EQ(on.stationFolder.Read("air.htm"),
            "<p>on air: ANNA / ONE</p>\r\n<img src=" + on.stationDir.Path() + "/one.JPG>\r\n");
  on.RunUntil(15000);
  EXPECT_EQ(Line("air.htm", 0), "<p>on air: BOB / TWO</p>");
}

}  // namespace
}  // namespace zemo::test
