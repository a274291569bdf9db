// Who has a machine's folder. Between processes: OneEngineTest.cpp of the program.
#include <unistd.h>

#include <optional>

#include "platform/real/files/EngineLock.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

std::string Taking(const std::string& machine) {
  return FileErrorOf([&] { const EngineLock lock(machine, "/other"); });
}

TEST(EngineLock, RefusesTheSecondWithTheProcessAndTheStationOfTheFirst) {
  const TemporaryFolder folder;
  const std::string machine = folder / "machine";
  std::optional<EngineLock> first(std::in_place, machine, "/radio");
  for (int again = 0; again < 2; ++again)
    EXPECT_EQ(Taking(machine), "the machine folder " + machine + " is in use by process " +
                                   std::to_string(getpid()) +
                                   " with the station /radio; a second engine needs a folder of "
                                   "its own (--machine)");
  EXPECT_EQ(folder.Get("machine/Engine.Lock"), std::to_string(getpid()) + "\n/radio\n");
  first.reset();
  EXPECT_EQ(folder.Get("machine/Engine.Lock"), "");
  EXPECT_EQ(Taking(machine), "(no error)");
}

TEST(EngineLock, OfAnotherFolderIsAnother) {
  const TemporaryFolder folder;
  const EngineLock first(folder / "one", "/radio");
  EXPECT_EQ(Taking(folder / "two"), "(no error)");
}

TEST(EngineLock, WithoutItsTextTellsOfAnotherProgram) {
  const TemporaryFolder folder;
  const EngineLock first(folder.Path(), "/radio");
  folder.Put("Engine.Lock", "");
  EXPECT_EQ(Taking(folder.Path()), "the machine folder " + folder.Path() +
                                       " is in use by another program; a second engine needs a "
                                       "folder of its own (--machine)");
}

TEST(EngineLock, OfAFolderThatCannotBeMadeOrWrittenCostsNothing) {
  const TemporaryFolder folder;
  folder.Put("file", "");
  EXPECT_EQ(Taking(folder / "file/machine"), "(no error)");
  std::filesystem::create_directories(folder / "machine/Engine.Lock");
  EXPECT_EQ(Taking(folder / "machine"), "(no error)");
}

}  // namespace
}  // namespace zemo
