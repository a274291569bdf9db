#include <fcntl.h>
#include <sys/stat.h>

#include "platform/real/files/FolderEntries.h"
#include "platform/real/files/NoCaseNames.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

struct FolderEntriesTest : testing::Test {
  std::string Named(const std::string& name) { return entries.Named(real.Path(), name); }
  // The folder as if nothing had come or gone for an hour: its entries may be kept from here on.
  void Settle() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const timespec times[] = {{now.tv_sec, UTIME_OMIT}, {now.tv_sec - 3600 + ++settled_, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, real.Path().c_str(), times, 0), 0);
  }
  TemporaryFolder real;
  FolderEntries entries;

 private:
  int settled_ = 0;
};

TEST_F(FolderEntriesTest, AreFoundAsTheyAreWrittenTheFirstOfSeveral) {
  real.Put("b.TXT", "");
  real.Put("B.TXT", "");
  for (const bool settled : {false, true}) {
    if (settled) Settle();
    EXPECT_EQ(Named("b.TXT"), "b.TXT");
    EXPECT_EQ(Named("b.txt"), "B.TXT");
    EXPECT_EQ(Named("c.txt"), "");
    EXPECT_EQ(Named(""), "");
    EXPECT_EQ(Named(std::string("B.TXT\0", 6)), "");
  }
}

TEST_F(FolderEntriesTest, WhatComesAndGoesIsSeenAtTheNextCall) {
  for (int turn = 0; turn < 200; ++turn) {
    if (turn % 3 != 0) Settle();  // else in the same moment of the file system's clock
    ASSERT_EQ(Named("new.mdb"), "") << turn;
    real.Put("New.MDB", "");
    ASSERT_EQ(Named("new.mdb"), "New.MDB") << turn;
    if (turn % 2 != 0) Settle();
    ASSERT_EQ(Named("new.mdb"), "New.MDB") << turn;
    std::filesystem::rename(real.Path() + "/New.MDB", real.Path() + "/NEW.mdb");
    ASSERT_EQ(Named("new.mdb"), "NEW.mdb") << turn;
    std::filesystem::remove(real.Path() + "/NEW.mdb");
  }
}

TEST_F(FolderEntriesTest, AFolderThatIsGoneOrAnotherOneHoldsNothingOfTheFormer) {
  real.Put("Genre.Txt", "");
  Settle();
  EXPECT_EQ(Named("genre.txt"), "Genre.Txt");
  const std::string moved = real.Path() + ".moved";
  std::filesystem::rename(real.Path(), moved);
  EXPECT_EQ(Named("genre.txt"), "");
  std::filesystem::create_directory(real.Path());
  struct stat former;
  ASSERT_EQ(stat(moved.c_str(), &former), 0);
  const timespec times[] = {former.st_atim, former.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, real.Path().c_str(), times, 0), 0);
  EXPECT_EQ(Named("genre.txt"), "");
  EXPECT_EQ(entries.Named(moved, "genre.txt"), "Genre.Txt");
  std::filesystem::remove_all(moved);
}

// Nothing but the folder itself is looked at: a name that is set back under a time that stands
// still is not found.
TEST_F(FolderEntriesTest, AFolderThatStandsStillIsReadOnce) {
  real.Put("Genre.Txt", "");
  Settle();
  ASSERT_EQ(Named("genre.txt"), "Genre.Txt");
  struct stat before;
  ASSERT_EQ(stat(real.Path().c_str(), &before), 0);
  real.Put("Categori.Txt", "");
  const timespec times[] = {before.st_atim, before.st_mtim};
  ASSERT_EQ(utimensat(AT_FDCWD, real.Path().c_str(), times, 0), 0);
  EXPECT_EQ(Named("categori.txt"), "");
  Settle();
  EXPECT_EQ(Named("categori.txt"), "Categori.Txt");
}

}  // namespace
}  // namespace zemo
