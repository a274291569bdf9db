// Where the control socket stands, and whose it is.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/real/control/ControlPlace.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

// What a bind tells; empty: it listens.
std::string RefusalAt(const std::string& folder) {
  try {
    ControlPlace place(folder);
    close(place.Bind());
    place.Remove();
    return "";
  } catch (const ControlError& error) {
    return error.what();
  }
}

bool CanConnect(const std::string& folder) {
  const int made = ControlPlace(folder).Connect();
  if (made >= 0) close(made);
  return made >= 0;
}

TEST(ControlPlace, IsItsOwnersAlone) {
  const TemporaryFolder folder;
  ControlPlace place(folder.Path());
  const int listening = place.Bind();
  struct stat there {};
  ASSERT_EQ(stat((folder / "Control.Sock").c_str(), &there), 0);
  EXPECT_TRUE(S_ISSOCK(there.st_mode));
  EXPECT_EQ(there.st_mode & 07777, 0600u);
  EXPECT_TRUE(CanConnect(folder.Path()));
  close(listening);
}

TEST(ControlPlace, OfADeadProgramIsReplaced) {
  const TemporaryFolder folder;
  {
    ControlPlace dead(folder.Path());
    close(dead.Bind());
  }
  ASSERT_EQ(folder.Names(), Names{"Control.Sock"});
  EXPECT_FALSE(CanConnect(folder.Path()));
  EXPECT_EQ(RefusalAt(folder.Path()), "");
}

TEST(ControlPlace, OfALivingProgramIsLeftToIt) {
  const TemporaryFolder folder;
  ControlPlace living(folder.Path());
  const int listening = living.Bind();
  EXPECT_EQ(RefusalAt(folder.Path()),
            folder / "Control.Sock" + std::string(" is another program's, which is listening "
                                                  "there"));
  EXPECT_TRUE(living.StandsThere());
  EXPECT_TRUE(CanConnect(folder.Path()));
  close(listening);
}

TEST(ControlPlace, WhatIsNoSocketStaysAsItIs) {
  const TemporaryFolder folder;
  folder.Put("Control.Sock", "a text");
  EXPECT_EQ(RefusalAt(folder.Path()),
            folder / "Control.Sock" + std::string(" is no socket, so that nobody can be "
                                                  "listened to there"));
  EXPECT_EQ(folder.Get("Control.Sock"), "a text");
}

TEST(ControlPlace, MayHaveAPathOfAnyLength) {
  const TemporaryFolder folder;
  const std::string deep = folder / std::string(100, 'd') + "/" + std::string(100, 'e');
  std::filesystem::create_directories(deep);
  ControlPlace place(deep);
  const int listening = place.Bind();
  EXPECT_TRUE(place.StandsThere());
  EXPECT_TRUE(CanConnect(deep));
  EXPECT_EQ(RefusalAt(deep).find(deep), 0u);
  close(listening);
  place.Remove();
  EXPECT_FALSE(std::filesystem::exists(deep + "/Control.Sock"));
}

TEST(ControlPlace, TakesAwayOnlyWhatItMade) {
  const TemporaryFolder folder;
  ControlPlace place(folder.Path());
  const int listening = place.Bind();
  std::filesystem::remove(folder / "Control.Sock");
  folder.Put("Control.Sock", "another's");
  EXPECT_FALSE(place.StandsThere());
  place.Remove();
  EXPECT_EQ(folder.Get("Control.Sock"), "another's");
  close(listening);
}

// The number of a socket that nobody has open any more may be another file's by now.
TEST(ControlPlace, ForgetsWhatItMadeWhereItCannotMakeItAgain) {
  const TemporaryFolder folder;
  ControlPlace place(folder.Path());
  close(place.Bind());
  std::filesystem::rename(folder / "Control.Sock", folder / "Aside");
  folder.Put("Control.Sock", "another's");
  EXPECT_THROW(place.Bind(), ControlError);
  std::filesystem::rename(folder / "Aside", folder / "Control.Sock");
  EXPECT_FALSE(place.StandsThere());
  place.Remove();
  EXPECT_TRUE(std::filesystem::exists(folder / "Control.Sock"));
}

TEST(ControlPlace, InAFolderThatIsNotThereIsToldInOneLine) {
  const TemporaryFolder folder;
  EXPECT_EQ(RefusalAt(folder / "none"),
            "cannot open the machine folder " + folder / "none" + ": No such file or directory");
}

}  // namespace
}  // namespace zemo
