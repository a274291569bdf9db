#include <unistd.h>

#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/NoCaseNames.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

struct LocalFolderTest : testing::Test {
  TemporaryFolder real;
  LocalFolder folder{real.Path()};
};

TEST(FoldedName, FoldsAsciiAndTheAccentedCapitals) {
  EXPECT_EQ(FoldedName("TRISKIN.mdb"), "triskin.mdb");
  EXPECT_EQ(FoldedName("ÉTÉ ÀÇÑÖÞ ×÷ßÿ"), "été àçñöþ ×÷ßÿ");
  EXPECT_EQ(FoldedName("\xC3"), "\xC3");
}

TEST_F(LocalFolderTest, HasAPathThatEndsInASlash) {
  EXPECT_EQ(folder.Path(), real.Path() + "/");
  EXPECT_EQ(LocalFolder(real.Path() + "/").Path(), real.Path() + "/");
  EXPECT_EQ(LocalFolder(real.Path() + "/x/../").Path(), real.Path() + "/");
  EXPECT_EQ(LocalFolder(".").Path(), std::filesystem::current_path().string() + "/");
}

TEST_F(LocalFolderTest, FindsAFileWithoutRegardToCase) {
  real.Put("Triskin.MDB", "base");
  EXPECT_TRUE(folder.Exists("triskin.mdb"));
  EXPECT_EQ(folder.Read("TRISKIN.mdb"), "base");
  EXPECT_EQ(folder.PathOf("triskin.mdb"), real.Path() + "/Triskin.MDB");
  real.Put("Été.Txt", "x");
  EXPECT_TRUE(folder.Exists("été.txt"));
}

TEST_F(LocalFolderTest, PrefersTheExactNameAndElseTheFirst) {
  real.Put("a.txt", "lower");
  real.Put("A.TXT", "upper");
  EXPECT_EQ(folder.Read("a.txt"), "lower");
  EXPECT_EQ(folder.Read("A.TXT"), "upper");
  EXPECT_EQ(folder.Read("A.txt"), "upper");  // capitals come first in the order of bytes
}

TEST_F(LocalFolderTest, KeepsTheNameOfAnExistingFile) {
  real.Put("Genre.Txt", "old");
  folder.Write("GENRE.TXT", "new");
  folder.Append("genre.txt", "er");
  folder.PutBytes("gEnre.txt", 0, "N");
  EXPECT_EQ(real.Names(), Names{"Genre.Txt"});
  EXPECT_EQ(real.Get("Genre.Txt"), "Newer");
  folder.Remove("genre.TXT");
  EXPECT_EQ(real.Names(), Names{});
}

TEST_F(LocalFolderTest, GivesANewFileTheNameAsked) {
  EXPECT_EQ(folder.PathOf("New.Txt"), real.Path() + "/New.Txt");
  EXPECT_EQ(folder.Read("New.Txt"), std::nullopt);
  folder.Write("New.Txt", "x");
  EXPECT_EQ(real.Names(), Names{"New.Txt"});
}

TEST_F(LocalFolderTest, SeesWhatOthersChangeAtOnce) {
  EXPECT_FALSE(folder.Exists("NEW.MDB"));
  real.Put("new.mdb", "1");
  EXPECT_EQ(folder.Read("NEW.MDB"), "1");
  real.Put("new.mdb", "2");
  EXPECT_EQ(folder.Read("NEW.MDB"), "2");
  std::filesystem::remove(real / "new.mdb");
  EXPECT_FALSE(folder.Exists("NEW.MDB"));
}

TEST_F(LocalFolderTest, RenamesOverAFileOfAnotherCase) {
  real.Put("triskin.mdb", "base");
  real.Put("TRISKIN.bak", "older");
  folder.Rename("Triskin.MDB", "Triskin.BAK");
  EXPECT_EQ(real.Names(), Names{"TRISKIN.bak"});
  EXPECT_EQ(real.Get("TRISKIN.bak"), "base");
}

TEST_F(LocalFolderTest, RenamesAFileToAnotherCaseOfItsName) {
  real.Put("a.txt", "x");
  folder.Rename("A.TXT", "A.Txt");
  EXPECT_EQ(real.Names(), Names{"A.Txt"});
}

TEST_F(LocalFolderTest, ThatIsMissingHoldsNothingAndIsMadeByTheFirstWrite) {
  LocalFolder missing(real / "machine/deep");
  EXPECT_FALSE(missing.Exists("a"));
  EXPECT_EQ(missing.Read("a"), std::nullopt);
  missing.Remove("a");
  EXPECT_EQ(real.Names(), Names{});
  missing.Write("a", "x");
  EXPECT_EQ(real.Get("machine/deep/a"), "x");
  LocalFolder appended(real / "log");
  appended.Append("a", "x");
  EXPECT_EQ(real.Get("log/a"), "x");
  LocalFolder put(real / "flag");
  put.PutBytes("a", 0, "1");
  EXPECT_EQ(real.Get("flag/a"), "1");
}

TEST_F(LocalFolderTest, WhosePlaceIsTakenByAFileIsAnErrorToWriteInto) {
  real.Put("taken", "x");
  LocalFolder folderOnFile(real / "taken");
  EXPECT_EQ(folderOnFile.Read("a"), std::nullopt);
  EXPECT_FALSE(folderOnFile.Exists("a"));
  const std::string error = FileErrorOf([&] { folderOnFile.Write("a", "x"); });
  EXPECT_EQ(error.find(real / "taken"), 0u) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos);
  EXPECT_EQ(real.Get("taken"), "x");
}

TEST_F(LocalFolderTest, HoldsNoFileUnderANameThatIsNone) {
  const std::string outside = real.Put("outside.txt", "x");
  LocalFolder inner(real / "inner");
  inner.Write("a", "x");
  for (const std::string name : {"", ".", "..", "../outside.txt", "a/b", "/etc/passwd"}) {
    EXPECT_FALSE(inner.Exists(name)) << name;
    EXPECT_EQ(inner.Read(name), std::nullopt) << name;
    EXPECT_THROW(inner.Write(name, "y"), FileError) << name;
    EXPECT_THROW(inner.Append(name, "y"), FileError) << name;
    EXPECT_THROW(inner.PutBytes(name, 0, "y"), FileError) << name;
    EXPECT_THROW(inner.Rename("a", name), FileError) << name;
    inner.Remove(name);
  }
  EXPECT_THROW(inner.Write(std::string("a\0b", 3), "y"), FileError);
  EXPECT_EQ(real.Get("outside.txt"), "x");
  EXPECT_EQ(real.Get("inner/a"), "x");
}

TEST_F(LocalFolderTest, AFolderInItIsNoFile) {
  std::filesystem::create_directory(real / "Sub");
  EXPECT_FALSE(folder.Exists("sub"));
  EXPECT_THROW(folder.Read("sub"), FileError);
  EXPECT_THROW(folder.Write("sub", "x"), FileError);
}

TEST_F(LocalFolderTest, AFolderInsideIsMadeByItsFirstFile) {
  Folder& inside = folder.Subfolder("Refus");
  EXPECT_EQ(inside.Read("a.txt"), std::nullopt);
  EXPECT_EQ(real.Names(), Names{});
  inside.Write("a.txt", "x");
  EXPECT_EQ(real.Get("Refus/a.txt"), "x");
  EXPECT_EQ(&folder.Subfolder("Refus"), &inside);
}

TEST_F(LocalFolderTest, AFolderInsideIsFoundWithoutRegardToCase) {
  real.Put("REFUS/a.txt", "x");
  EXPECT_EQ(folder.Subfolder("Refus").Read("A.TXT"), "x");
}

TEST_F(LocalFolderTest, AFolderInsideIsFoundInAnotherCaseOnceItIsMade) {
  Folder& inside = folder.Subfolder("Refus");
  EXPECT_EQ(inside.Read("a.txt"), std::nullopt);
  real.Put("REFUS/a.txt", "x");
  EXPECT_EQ(folder.Subfolder("Refus").Read("a.txt"), "x");
  EXPECT_EQ(&folder.Subfolder("Refus"), &inside);
}

TEST_F(LocalFolderTest, NamesItsFilesInTheOrderOfTheirBytes) {
  using List = std::vector<std::string>;
  EXPECT_EQ(folder.Names(), List{});
  for (const char* name : {"b.wav", "A.wav", "a.wav", ".hidden", "\xC3\xA9.wav", "sub/c.wav"})
    real.Put(name, "x");
  EXPECT_EQ(folder.Names(), (List{".hidden", "A.wav", "a.wav", "b.wav", "\xC3\xA9.wav"}));
  EXPECT_EQ(folder.Subfolder("sub").Names(), List{"c.wav"});
  EXPECT_EQ(folder.Subfolder("none").Names(), List{});
  EXPECT_EQ(folder.Subfolder("a.wav").Names(), List{});
}

TEST_F(LocalFolderTest, HasNoFolderInsideUnderANameThatIsNone) {
  for (const std::string name : {"", "..", "a/b"}) EXPECT_THROW(folder.Subfolder(name), FileError);
}

TEST_F(LocalFolderTest, ThatIsRenamedFromNowhereIsAnError) {
  EXPECT_THROW(folder.Rename("a", "b"), FileError);
}

TEST_F(LocalFolderTest, MakesASubfolderWithItsFirstFileOnly) {
  Folder& inner = folder.Subfolder("inner");
  EXPECT_FALSE(inner.Exists("a.txt"));
  EXPECT_TRUE(real.Names().empty());
  inner.Append("a.txt", "one");
  inner.Append("A.TXT", " two");
  EXPECT_EQ(real.Get("inner/a.txt"), "one two");
  EXPECT_EQ(&folder.Subfolder("inner"), &inner);
  EXPECT_THROW(folder.Subfolder("../out"), FileError);
}

class CountedSync : public DiskSync {
 public:
  mutable int count = 0;
  int Sync(int descriptor) const override { return ++count, DiskSync::Sync(descriptor); }
};

TEST(LocalFolderAndDisk, OnlyWhatIsToBeDurableWaitsForTheDisk) {
  const TemporaryFolder real;
  const CountedSync disk;
  LocalFolder folder(real.Path(), disk);
  folder.Write("a", "1");
  folder.Append("a", "2");
  folder.PutBytes("a", 0, "3");
  EXPECT_EQ(disk.count, 0);
  folder.WriteDurably("a", "4");
  EXPECT_EQ(disk.count, 2);
  folder.AppendDurably("A", "5");
  EXPECT_EQ(disk.count, 3);
  folder.Subfolder("Sub").WriteDurably("b", "6");
  EXPECT_EQ(disk.count, 5);
  EXPECT_EQ(real.Get("a") + real.Get("Sub/b"), "456");
}

}  // namespace
}  // namespace zemo
