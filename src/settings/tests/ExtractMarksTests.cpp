#include "settings/ExtractMarks.h"
#include "settings/tests/SettingsTest.h"

namespace zemo {
namespace {

struct ExtractMarksTest : SettingsTest {
  auto& Files() { return fake.soundFiles.files; }
};

TEST_F(ExtractMarksTest, AreWrittenAsTwoNumbersThatAreReadBack) {
  WriteExtractMarks(station, "D:\\Music\\Song.Mp3", {61000, 76500});
  EXPECT_EQ(Files()["D:\\Music\\Song.mar"], "61000,76500\r\n");
  EXPECT_EQ(ReadExtractMarks(station, "D:\\Music\\Song.Mp3"), (ExtractMarks{61000, 76500}));
}

TEST_F(ExtractMarksTest, WithoutMarksTheirFileGoes) {
  Files()["/music/song.mar"] = "1,2";
  WriteExtractMarks(station, "/music/song.wav", {});
  EXPECT_FALSE(Files().contains("/music/song.mar"));
  EXPECT_EQ(ReadExtractMarks(station, "/music/song.wav"), std::nullopt);
  WriteExtractMarks(station, "/music/song.wav", {});  // nothing to remove
}

TEST_F(ExtractMarksTest, TheSoundFileOfAnotherKindIsNeverTheirs) {
  Files()["/music/song.flac"] = "sound";
  WriteExtractMarks(station, "/music/song.flac", {0, 9000});
  EXPECT_EQ(Files()["/music/song.flac"], "sound");
  EXPECT_EQ(ReadExtractMarks(station, "/music/song.flac"), (ExtractMarks{0, 9000}));
}

}  // namespace
}  // namespace zemo
