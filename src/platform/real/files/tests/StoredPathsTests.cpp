#include <fcntl.h>
#include <sys/stat.h>

#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

struct StoredPathsTest : testing::Test {
  TemporaryFolder machineFolder, music;
  LocalFolder machine{machineFolder.Path()};
  StoredPaths paths{machine};

  void MapIs(const std::string& bytes) { machineFolder.Put("PathMap.Ini", bytes); }
};

TEST_F(StoredPathsTest, APathOfThisSystemStaysAsItIs) {
  const std::string path = music.Put("Song.wav", "sound");
  EXPECT_EQ(paths.Resolve(path), path);
  EXPECT_TRUE(paths.Exists(path));
  EXPECT_EQ(paths.SizeBytes(path), 5);
  EXPECT_EQ(paths.Read(path), "sound");
  EXPECT_EQ(paths.Resolve(music / "song.WAV"), music / "song.WAV");
  EXPECT_FALSE(paths.Exists(music / "song.WAV"));
}

TEST_F(StoredPathsTest, AMissingFileIsNoError) {
  EXPECT_FALSE(paths.Exists(music / "a"));
  EXPECT_EQ(paths.SizeBytes(music / "a"), -1);
  EXPECT_EQ(paths.Read(music / "a"), std::nullopt);
  paths.Remove(music / "a");
}

TEST_F(StoredPathsTest, TheEmptyPathIsNoFile) {
  EXPECT_EQ(paths.Resolve(""), "");
  EXPECT_FALSE(paths.Exists(""));
  EXPECT_EQ(paths.SizeBytes(""), -1);
  EXPECT_EQ(paths.Read(""), std::nullopt);
  EXPECT_THROW(paths.Write("", "x"), FileError);
  paths.Remove("");
}

TEST_F(StoredPathsTest, AStampIsTheSizeAndTheTimeOfChangeOfTheFileBehindThePath) {
  const std::string song = music.Put("Song.wav", "sound");
  MapIs("D:\\Music = " + music.Path() + "\r\n");
  const timespec times[2] = {{0, 0}, {1'795'000'000, 123'999'999}};
  ASSERT_EQ(utimensat(AT_FDCWD, song.c_str(), times, 0), 0);
  const SoundFileStamp expected{5, 1'795'000'000'123};
  EXPECT_EQ(paths.Stamp(song), expected);
  EXPECT_EQ(paths.Stamp("d:\\MUSIC\\song.wav"), expected);
  EXPECT_EQ(paths.Stamp(""), std::nullopt);
  EXPECT_EQ(paths.Stamp(music / "a"), std::nullopt);
  EXPECT_EQ(paths.Stamp(music.Path()), std::nullopt);
}

TEST_F(StoredPathsTest, AFolderIsNoFile) {
  EXPECT_FALSE(paths.Exists(music.Path()));
  EXPECT_EQ(paths.SizeBytes(music.Path()), -1);
}

TEST_F(StoredPathsTest, ADriveGoesThroughTheMapWithoutRegardToCaseAndSlant) {
  const std::string song = music.Put("Pop/Song.wav", "sound");
  MapIs("D:\\Music = " + music.Path() + "\r\n");
  EXPECT_EQ(paths.Resolve("D:\\Music\\Pop\\Song.wav"), song);
  EXPECT_EQ(paths.Resolve("d:/MUSIC/Pop/Song.wav"), song);
  EXPECT_TRUE(paths.Exists("d:\\music\\pop\\song.WAV"));
  EXPECT_EQ(paths.Resolve("d:\\music\\POP\\SONG.wav"), song);
}

TEST_F(StoredPathsTest, LastSlashesInTheMapMakeNoDifference) {
  const std::string song = music.Put("Song.wav", "sound");
  MapIs("D:\\ = " + music.Path() + "/\r\n");
  EXPECT_EQ(paths.Resolve("D:\\Song.wav"), song);
}

TEST_F(StoredPathsTest, AMatchEndsWithAFoldersName) {
  MapIs("D:\\Music = /one\n");
  EXPECT_EQ(paths.Resolve("D:\\Musique\\a.wav"), "D:\\Musique\\a.wav");
  EXPECT_EQ(paths.Resolve("D:\\Music\\a.wav"), "/one/a.wav");
  EXPECT_EQ(paths.Resolve("D:\\Music"), "/one");
}

TEST_F(StoredPathsTest, TheLongestMatchCounts) {
  MapIs("D: = /drive\nD:\\Music\\Pop = /pop\nD:\\Music = /music\n");
  EXPECT_EQ(paths.Resolve("D:\\Music\\Pop\\a.wav"), "/pop/a.wav");
  EXPECT_EQ(paths.Resolve("D:\\Music\\b.wav"), "/music/b.wav");
  EXPECT_EQ(paths.Resolve("D:\\c.wav"), "/drive/c.wav");
}

TEST_F(StoredPathsTest, ASharedFolderCanBeMapped) {
  MapIs("\\\\server\\music=/srv/music\n");
  EXPECT_EQ(paths.Resolve("\\\\SERVER\\Music\\a.wav"), "/srv/music/a.wav");
}

TEST_F(StoredPathsTest, AccentsAreFoundInAnyCase) {
  const std::string song = music.Put("Été/Noël.mp3", "sound");
  MapIs(
      "\xEF\xBB\xBF"
      "D:\\Été = " +
      (music / "Été") + "\n");
  EXPECT_EQ(paths.Resolve("d:\\ÉTÉ\\NOËL.MP3"), song);
}

TEST_F(StoredPathsTest, AnExactNameComesBeforeOneOfAnotherCase) {
  music.Put("A/x.wav", "upper");
  music.Put("a/x.wav", "lower");
  MapIs("D: = " + music.Path() + "\n");
  EXPECT_EQ(paths.Read("D:\\a\\x.wav"), "lower");
  EXPECT_EQ(paths.Read("D:\\A\\x.wav"), "upper");
}

TEST_F(StoredPathsTest, WithoutALineADriveStaysAndASlantedPathIsLookedForHere) {
  const std::string song = music.Put("Pop/Song.wav", "sound");
  EXPECT_EQ(paths.Resolve("E:\\a.wav"), "E:\\a.wav");
  EXPECT_FALSE(paths.Exists("E:\\a.wav"));
  std::string slanted = song;
  for (char& letter : slanted)
    if (letter == '/') letter = '\\';
  EXPECT_EQ(paths.Resolve(slanted), song);
}

TEST_F(StoredPathsTest, ABackslashInANameOfThisSystemIsAName) {
  const std::string odd = music.Put("a\\b.wav", "odd");
  EXPECT_EQ(paths.Resolve(odd), odd);
}

TEST_F(StoredPathsTest, TheMapIsReadAgainWhenItsFileChanges) {
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "D:\\a.wav");
  MapIs("D:=/one\n");
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "/one/a.wav");
  MapIs("D:=/two\n");
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "/two/a.wav");
  std::filesystem::remove(machineFolder / "PathMap.Ini");
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "D:\\a.wav");
}

TEST_F(StoredPathsTest, LinesThatMapNothingArePassedOver) {
  MapIs("; D:\\ = /comment\n\n= /nothing\n\\ = /slash\nno line\nD: = /drive");
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "/drive/a.wav");
  EXPECT_EQ(paths.Resolve("\\no\\such\\a.wav"), "/no/such/a.wav");
}

TEST_F(StoredPathsTest, AMapAbove4MegabytesMapsNothing) {
  const std::string line = "D:\\Music = " + music.Path() + "\n";
  MapIs(line + std::string((4 << 20) - line.size(), ' '));
  EXPECT_EQ(paths.Resolve("D:\\Music\\a.mp3"), music / "a.mp3");
  MapIs(line + std::string((4 << 20) + 1 - line.size(), ' '));
  EXPECT_EQ(paths.Resolve("D:\\Music\\a.mp3"), "D:\\Music\\a.mp3");
}

TEST_F(StoredPathsTest, AMapThatCannotBeReadMapsNothing) {
  std::filesystem::create_directory(machineFolder / "PathMap.Ini");
  EXPECT_EQ(paths.Resolve("D:\\a.wav"), "D:\\a.wav");
}

TEST_F(StoredPathsTest, FilesAreWrittenAndRemovedBesideMappedOnes) {
  music.Put("Pop/Song.wav", "sound");
  MapIs("D: = " + music.Path() + "\n");
  paths.Write("d:\\POP\\Song.Mus", "card");
  EXPECT_EQ(music.Get("Pop/Song.Mus"), "card");
  paths.Write("d:\\POP\\SONG.MUS", "again");
  EXPECT_EQ(music.Get("Pop/Song.Mus"), "again");
  paths.Remove("D:\\pop\\song.mus");
  EXPECT_EQ(music.Get("Pop/Song.Mus"), "(no file)");
  EXPECT_EQ(music.Get("Pop/Song.wav"), "sound");
}

TEST_F(StoredPathsTest, WritingIntoAFolderThatThereIsNotIsAnError) {
  EXPECT_THROW(paths.Write(music / "no/a.wav", "x"), FileError);
}

using Texts = std::vector<std::string>;

TEST_F(StoredPathsTest, AFolderIsListedByNamesInOrderWithoutRegardToCaseAndWithoutTheHiddenOnes) {
  for (const char* name : {"b.wav", "A.mp3", "a.wav", "Été.wav", "éta.wav", "C.txt", ".hidden.wav",
                           "zoo/x.wav", "Pop/x.wav", ".trash/x.wav"})
    music.Put(name, "sound");
  std::filesystem::create_directory(music / "empty");
  const FolderListing listing = paths.List(music.Path());
  EXPECT_TRUE(listing.exists);
  EXPECT_EQ(listing.folders, (Texts{"empty", "Pop", "zoo"}));
  EXPECT_EQ(listing.files, (Texts{"A.mp3", "a.wav", "b.wav", "C.txt", "éta.wav", "Été.wav"}));
  EXPECT_EQ(paths.List(music.Path() + "/").files, listing.files);
}

TEST_F(StoredPathsTest, AFolderOfAnotherSystemIsListedThroughTheMap) {
  music.Put("Pop/Song.wav", "sound");
  MapIs("D: = " + music.Path() + "\n");
  for (const char* drive : {"D:\\", "D:", "d:/"})
    EXPECT_EQ(paths.List(drive).folders, Texts{"Pop"}) << drive;
  for (const char* folder : {"D:\\pop", "d:\\POP\\", "D:/Pop"})
    EXPECT_EQ(paths.List(folder).files, Texts{"Song.wav"}) << folder;
  MapIs("D: = /\n");
  EXPECT_EQ(paths.List("D:\\").folders, paths.List("/").folders);
  EXPECT_TRUE(paths.List("/").exists);
}

TEST_F(StoredPathsTest, AFolderOfThisSystemWithABackslashInItsNameIsListed) {
  const std::string odd = music.Put("a\\b/Song.wav", "odd");
  EXPECT_EQ(paths.List(music / "a\\b").files, Texts{"Song.wav"});
}

TEST_F(StoredPathsTest, LinksAreListedAsWhatTheyLeadTo) {
  const std::string song = music.Put("Pop/Song.wav", "sound");
  std::filesystem::create_symlink(song, music / "linked.wav");
  std::filesystem::create_directory_symlink(music / "Pop", music / "Linked");
  std::filesystem::create_symlink(music / "nowhere", music / "broken.wav");
  const FolderListing listing = paths.List(music.Path());
  EXPECT_EQ(listing.folders, (Texts{"Linked", "Pop"}));
  EXPECT_EQ(listing.files, Texts{"linked.wav"});
}

TEST_F(StoredPathsTest, AFolderThatIsNotThereIsNoError) {
  const std::string song = music.Put("Song.wav", "sound");
  for (const std::string& folder : {std::string(), std::string("D:\\Music"), music / "no", song}) {
    const FolderListing listing = paths.List(folder);
    EXPECT_FALSE(listing.exists) << folder;
    EXPECT_EQ(listing.folders.size() + listing.files.size(), 0u) << folder;
  }
}

TEST_F(StoredPathsTest, AFolderThatCannotBeReadIsNoError) {
  std::filesystem::create_symlink(music / "loop", music / "loop");
  EXPECT_FALSE(paths.List(music / "loop").exists);
  EXPECT_FALSE(paths.List(music / std::string(300, 'a')).exists);  // no name is that long
  EXPECT_EQ(paths.List(music.Path()).folders, Texts{});
}

}  // namespace
}  // namespace zemo
