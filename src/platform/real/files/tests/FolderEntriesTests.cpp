#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

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

// --- a folder that was changed just now ---

int WatchesOfThisProcess() {
  int watches = 0;
  for (const auto& open : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    watches += std::filesystem::read_symlink(open.path(), gone) == "anon_inode:inotify";
  }
  return watches;
}

TEST_F(FolderEntriesTest, OfAFreshFolderTheSystemTellsWhatComesAndGoes) {
  const int before = WatchesOfThisProcess();
  {
    const FolderEntries fresh;
    real.Put("Genre.Txt", "");
    EXPECT_EQ(fresh.Named(real.Path(), "new.mdb"), "");
    EXPECT_EQ(WatchesOfThisProcess(), before + 1);
    real.Put("New.MDB", "");
    EXPECT_EQ(fresh.Named(real.Path(), "new.mdb"), "New.MDB");
    EXPECT_EQ(WatchesOfThisProcess(), before + 1);
  }
  EXPECT_EQ(WatchesOfThisProcess(), before);
}

TEST_F(FolderEntriesTest, WhatAnotherProcessDoesIsSeenAtTheNextCall) {
  for (int turn = 0; turn < 20; ++turn) {
    ASSERT_EQ(Named("new.mdb"), "") << turn;
    const pid_t other = fork();
    if (other == 0) {
      const int made = open((real.Path() + "/New.MDB").c_str(), O_CREAT | O_WRONLY, 0600);
      _exit(made >= 0 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(other, &status, 0), other);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(Named("new.mdb"), "New.MDB") << turn;
    std::filesystem::remove(real.Path() + "/New.MDB");
  }
}

TEST_F(FolderEntriesTest, ThatAreOursGoWithTheFolderThatIsMovedAway) {
  const FolderEntries ours(true);
  real.Put("Genre.Txt", "");
  ASSERT_EQ(ours.Named(real.Path(), "genre.txt"), "Genre.Txt");
  const std::string moved = real.Path() + ".moved";
  std::filesystem::rename(real.Path(), moved);
  EXPECT_EQ(ours.Named(real.Path(), "genre.txt"), "");
  std::filesystem::create_directory(real.Path());
  EXPECT_EQ(ours.Named(real.Path(), "genre.txt"), "");
  std::filesystem::remove_all(moved);
}

TEST_F(FolderEntriesTest, MoreThanTheSystemKeepsIsReadAgain) {
  real.Put("Genre.Txt", "");
  ASSERT_EQ(Named("new.mdb"), "");
  std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
  int most = 0;
  limit >> most;
  ASSERT_GT(most, 0);
  const std::string a = real.Path() + "/a", b = real.Path() + "/b";
  real.Put("a", "");
  for (int told = 0; told < most + 10; told += 4) {  // two events a renaming
    std::filesystem::rename(a, b);
    std::filesystem::rename(b, a);
  }
  real.Put("New.MDB", "");
  EXPECT_EQ(Named("new.mdb"), "New.MDB");
  std::filesystem::remove(real.Path() + "/New.MDB");
  EXPECT_EQ(Named("new.mdb"), "");
}

// Files and folders of few names come, go and change their case; the folder itself is replaced.
TEST_F(FolderEntriesTest, AtEveryMomentAreWhatTheFolderHolds) {
  std::mt19937 random(17);
  const auto pick = [&random](int most) { return std::uniform_int_distribution(0, most)(random); };
  static constexpr const char* kNames[] = {"a.txt", "A.txt", "a.TXT", "b", "B"};
  const auto path = [&](int name) { return real.Path() + "/" + kNames[name]; };
  const FolderEntries ours(true);
  const std::string aside = real.Path() + ".aside";
  for (int turn = 0; turn < 3000; ++turn) {
    std::error_code failed;
    const int act = pick(12), name = pick(4);
    if (act < 4) real.Put(kNames[name], "");
    if (act == 4 || act == 5) std::filesystem::remove(path(name), failed);
    if (act == 6 || act == 7) std::filesystem::rename(path(name), path(pick(4)), failed);
    if (act == 8) std::filesystem::create_directory(path(name), failed);
    if (act == 9) Settle();
    if (act == 11)
      renameat2(AT_FDCWD, path(name).c_str(), AT_FDCWD, path(pick(4)).c_str(), RENAME_EXCHANGE);
    if (act == 10 && pick(20) == 0) {
      std::filesystem::rename(real.Path(), aside);
      std::filesystem::create_directory(real.Path());
      std::filesystem::remove_all(aside);
    }
    const std::string asked = kNames[pick(4)];
    ASSERT_EQ(Named(asked), EntryNamed(real.Path(), asked)) << turn;
    ASSERT_EQ(ours.Named(real.Path(), asked), EntryNamed(real.Path(), asked)) << turn;
  }
}

}  // namespace
}  // namespace zemo
