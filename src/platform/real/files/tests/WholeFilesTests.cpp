#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <utility>
#include <vector>

#include "platform/Folder.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

struct WholeFiles : testing::Test {
  TemporaryFolder folder;
};

TEST_F(WholeFiles, AreReadByteForByte) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(ReadWholeFile(folder.Put("a", bytes)), bytes);
  EXPECT_EQ(ReadWholeFile(folder.Put("empty", "")), "");
}

TEST_F(WholeFiles, ThatAreMissingAreNoError) {
  EXPECT_EQ(ReadWholeFile(folder / "a"), std::nullopt);
  EXPECT_EQ(ReadWholeFile(folder / "no/folder/a"), std::nullopt);
  EXPECT_EQ(RegularFileSizeBytes(folder / "a"), -1);
  EXPECT_FALSE(IsRegularFile(folder / "a"));
  RemoveFile(folder / "a");
}

TEST_F(WholeFiles, AFolderOrAPipeIsNoFile) {
  EXPECT_EQ(FileErrorOf([&] { ReadWholeFile(folder.Path()); }), folder.Path() + ": Is a directory");
  EXPECT_EQ(FileErrorOf([&] { ReplaceWholeFile(folder.Path(), "x"); }),
            folder.Path() + ": Is a directory");
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(FileErrorOf([&] { ReadWholeFile(pipe); }), pipe + ": not a regular file");
  EXPECT_EQ(FileErrorOf([&] { ReplaceWholeFile(pipe, "x"); }), pipe + ": not a regular file");
  EXPECT_FALSE(IsRegularFile(pipe));
}

TEST_F(WholeFiles, AreReplacedWithoutAnythingLeftBeside) {
  folder.Put("a", "old and longer");
  ReplaceWholeFile(folder / "a", "new");
  ReplaceWholeFile(folder / "b", "made");
  EXPECT_EQ(folder.Get("a"), "new");
  EXPECT_EQ(folder.Get("b"), "made");
  EXPECT_EQ(folder.Names(), (Names{"a", "b"}));
}

TEST_F(WholeFiles, InPartsTakeTheirNameWhenTheyAreWhole) {
  folder.Put("a", "old");
  {
    const auto file = ReplaceFileInParts(folder / "a");
    file->Append("new ");
    EXPECT_EQ(folder.Get("a"), "old");
    file->Append("and whole");
    file->Finish();
  }
  EXPECT_EQ(folder.Get("a"), "new and whole");
  ReplaceFileInParts(folder / "a")->Append("given up");
  EXPECT_EQ(folder.Get("a"), "new and whole");
  EXPECT_EQ(folder.Names(), Names{"a"});
  EXPECT_EQ(FileErrorOf([&] { ReplaceFileInParts(folder / "no/a"); }),
            folder / "no/a" + ": No such file or directory");
}

TEST_F(WholeFiles, KeepTheirPermissionsWhenReplaced) {
  const std::string path = folder.Put("a", "old");
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  ReplaceWholeFile(path, "new");
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(WholeFiles, ThatAreNotForGoodAreReplacedWithTheirPermissions) {
  folder.Put("Genre.Txt", "old");
  const std::string path = folder.Path() + "/Genre.Txt";
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  ReplaceWholeFile(path, "new", kNoDiskSync);
  EXPECT_EQ(ReadWholeFile(path), "new");
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST_F(WholeFiles, ThatAreSecretAreTheirOwnersAlone) {
  for (const mode_t before : {mode_t{0644}, mode_t{0}}) {
    const std::string path = folder / (before ? "open" : "none");
    if (before) {
      folder.Put("open", "old");
      ASSERT_EQ(chmod(path.c_str(), before), 0);
    }
    ReplaceSecretFile(path, "word");
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u) << path;
    EXPECT_EQ(folder.Get(before ? "open" : "none"), "word");
  }
}

TEST_F(WholeFiles, ALinkStaysAndItsTargetIsReplaced) {
  folder.Put("real/a", "old");
  std::filesystem::create_symlink(folder / "real/a", folder / "link");
  ReplaceWholeFile(folder / "link", "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  EXPECT_EQ(folder.Get("real/a"), "new");
}

TEST_F(WholeFiles, AReaderThatOpenedTheOldBytesReadsThemToTheEnd) {
  const std::string path = folder.Put("a", "old bytes");
  std::ifstream reader(path);
  ReplaceWholeFile(path, "new");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old bytes");
}

TEST_F(WholeFiles, OnAFullDiskTheOldBytesStayAndNothingIsLeftBeside) {
  const std::string path = folder.Put("a", "old");
  // A limit on the size of files stands for the full disk; in a child, since it cannot be lifted.
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit = {1000, 1000};
    std::signal(SIGXFSZ, SIG_IGN);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(2);
    try {
      ReplaceWholeFile(path, std::string(100000, 'x'));
    } catch (const FileError&) {
      _exit(0);
    }
    _exit(1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(folder.Get("a"), "old");
  EXPECT_EQ(folder.Names(), Names{"a"});
}

TEST_F(WholeFiles, InAFolderWithoutWritePermissionStayAsTheyAre) {
  if (geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  const std::string path = folder.Put("a", "old");
  ASSERT_EQ(chmod(folder.Path().c_str(), 0500), 0);
  EXPECT_EQ(FileErrorOf([&] { ReplaceWholeFile(path, "new"); }), path + ": Permission denied");
  ASSERT_EQ(chmod(folder.Path().c_str(), 0700), 0);
  EXPECT_EQ(folder.Get("a"), "old");
}

TEST_F(WholeFiles, ThatMayNotBeReadAreAnError) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read everything";
  const std::string path = folder.Put("a", "old");
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  EXPECT_EQ(FileErrorOf([&] { ReadWholeFile(path); }), path + ": Permission denied");
}

TEST_F(WholeFiles, GrowByWhatIsAppended) {
  AppendToFile(folder / "a", "one");
  AppendToFile(folder / "a", "two");
  EXPECT_EQ(folder.Get("a"), "onetwo");
}

TEST_F(WholeFiles, ChangeInPlaceWhereBytesArePut) {
  folder.Put("a", "0123456789");
  PutIntoFile(folder / "a", 3, "xy");
  EXPECT_EQ(folder.Get("a"), "012xy56789");
  PutIntoFile(folder / "b", 2, "z");
  EXPECT_EQ(folder.Get("b"), std::string("\0\0z", 3));
}

TEST_F(WholeFiles, ANameThatIsAFolderIsNeitherRemovedNorWrittenInto) {
  EXPECT_NE(FileErrorOf([&] { RemoveFile(folder.Path()); }), "(no error)");
  EXPECT_EQ(FileErrorOf([&] { AppendToFile(folder.Path(), "x"); }),
            folder.Path() + ": Is a directory");
}

TEST_F(WholeFiles, AreRenamedOverOthers) {
  folder.Put("a", "new");
  folder.Put("b", "old");
  RenameFile(folder / "a", folder / "b");
  EXPECT_EQ(folder.Get("b"), "new");
  EXPECT_EQ(folder.Names(), Names{"b"});
  EXPECT_EQ(FileErrorOf([&] { RenameFile(folder / "a", folder / "c"); }),
            (folder / "a") + " to " + (folder / "c") + ": No such file or directory");
}

// Looks at the file `watched` at each sync and can let one fail.
class WatchedSync : public DiskSync {
 public:
  explicit WatchedSync(std::string watched) : watched_(std::move(watched)) {}
  mutable std::vector<std::string> seen;  // "file" or "folder", and what `watched` held
  int failing = 0;                        // number of the sync that fails, from 1 ...
  int reason = EIO;                       // ... with this errno

  int Sync(int descriptor) const override {
    struct stat status {};
    EXPECT_EQ(fstat(descriptor, &status), 0);
    seen.push_back((S_ISDIR(status.st_mode) ? "folder: " : "file: ") +
                   ReadWholeFile(watched_).value_or("(none)"));
    if (static_cast<int>(seen.size()) == failing) return reason;
    return DiskSync::Sync(descriptor);
  }

 private:
  std::string watched_;
};

using Seen = std::vector<std::string>;

struct DurableFiles : WholeFiles {
  const std::string path = folder.Put("a", "old");
  WatchedSync disk{path};
};

TEST_F(DurableFiles, AreOnTheDiskBeforeTheyTakeTheirNameAndTheirFolderAfter) {
  ReplaceWholeFileDurably(path, "new", disk);
  EXPECT_EQ(disk.seen, (Seen{"file: old", "folder: new"}));
  EXPECT_EQ(folder.Names(), Names{"a"});
}

TEST_F(DurableFiles, ThatDoNotReachTheDiskLeaveTheOldOnesAndAreTold) {
  disk.failing = 1;
  EXPECT_EQ(FileErrorOf([&] { ReplaceWholeFileDurably(path, "new", disk); }),
            path + ": Input/output error");
  EXPECT_EQ(folder.Get("a"), "old");
  EXPECT_EQ(folder.Names(), Names{"a"});
}

TEST_F(DurableFiles, OfWhichTheNameDoesNotReachTheDiskAreToldToo) {
  disk.failing = 2;
  EXPECT_EQ(FileErrorOf([&] { ReplaceWholeFileDurably(path, "new", disk); }),
            path + ": Input/output error");
  EXPECT_EQ(folder.Get("a"), "new");
}

TEST_F(DurableFiles, OnAShareThatCannotBeAskedAreWrittenAllTheSame) {
  disk.failing = 1;
  disk.reason = EINVAL;
  ReplaceWholeFileDurably(path, "new", disk);
  EXPECT_EQ(folder.Get("a"), "new");
}

TEST_F(DurableFiles, BehindALinkAreSyncedWhereTheyLie) {
  std::filesystem::create_symlink(path, folder / "link");
  WatchedSync linked(folder / "link");
  ReplaceWholeFileDurably(folder / "link", "new", linked);
  EXPECT_EQ(linked.seen, (Seen{"file: old", "folder: new"}));
}

TEST_F(DurableFiles, ThatGrowAreSyncedAndTheirFolderWhenTheyAreNew) {
  AppendToFileDurably(path, "er", disk);
  EXPECT_EQ(disk.seen, (Seen{"file: older"}));
  WatchedSync made(folder / "b");
  AppendToFileDurably(folder / "b", "one", made);
  EXPECT_EQ(made.seen, (Seen{"file: one", "folder: one"}));
  disk.failing = 2;
  EXPECT_EQ(FileErrorOf([&] { AppendToFileDurably(path, "s", disk); }),
            path + ": Input/output error");
}

}  // namespace
}  // namespace zemo
