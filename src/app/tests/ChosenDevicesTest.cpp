// The choice of sound devices in the machine's files.
#include <gtest/gtest.h>

#include <string>

#include "app/ChosenDevices.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

TEST(ChosenDevices, AreTheTwoNumbersOfTheirFileAndWhatTheyAreKnownBy) {
  TestStation on;
  on.machineFolder.Write("ZemoAudio.Ini", "1,0\r\n");
  on.localValues.Set("AudioOutID", "1");
  on.localValues.Set("AudioOutName", "usb.1");
  const ChosenDevices chosen = ReadChosenDevices(on.machineFolder);
  EXPECT_EQ(chosen.air.number, 1);
  EXPECT_EQ(chosen.air.key, "usb.1");
  EXPECT_EQ(chosen.prelisten.number, 0);
  EXPECT_EQ(chosen.prelisten.key, "");
}

TEST(ChosenDevices, AreNoneInAFileOfMoreThanFourMegabytes) {
  constexpr size_t kMost = 4 << 20;
  TestStation on;
  std::string file = "1,0\r\n";
  file.resize(kMost, ' ');
  on.machineFolder.Write("ZemoAudio.Ini", file);
  EXPECT_EQ(ReadChosenDevices(on.machineFolder).air.number, 1);
  on.machineFolder.Write("ZemoAudio.Ini", file + " ");
  EXPECT_EQ(ReadChosenDevices(on.machineFolder).air.number, -1);
  EXPECT_EQ(ReadChosenDevices(on.machineFolder).prelisten.number, -1);
}

TEST(ChosenDevices, ThePrelistensIsKnownByItsNameWhileItsNumberIsTheOneChosenWithIt) {
  TestStation on;
  EXPECT_EQ(PrelistenKey(on.localValues, 1), "");
  on.localValues.Set("AudioOutPFLID", "1");
  on.localValues.Set("AudioOutPFLName", "usb.1");
  EXPECT_EQ(PrelistenKey(on.localValues, 1), "usb.1");
  EXPECT_EQ(PrelistenKey(on.localValues, 0), "");
  on.localValues.Set("AudioOutPFLID", "-1");
  EXPECT_EQ(PrelistenKey(on.localValues, -1), "");
}

}  // namespace
}  // namespace zemo::test
