// What the check says of the emergency folder of the machine.
#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

class EmergencyCheck : public CheckedStation {
 protected:
  std::string Emergency(const std::string& name) const {
    return folder_ / "machine/Secours/" + name;
  }
  void MakeFolder() const { std::filesystem::create_directories(folder_ / "machine/Secours"); }
};

constexpr const char* kNothing = "emergency: Secours: the folder holds no sound file that can play";

TEST_F(EmergencyCheck, MissingFolderIsNoFault) {
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(EmergencyCheck, EmptyFolderIsAFault) {
  MakeFolder();
  EXPECT_EQ(Found(), Lines{kNothing});
}

TEST_F(EmergencyCheck, FileInItsPlaceIsAFault) {
  std::filesystem::create_directories(folder_ / "machine");
  folder_.Put("machine/Secours", "x");
  EXPECT_EQ(Found(), Lines{kNothing});
}

TEST_F(EmergencyCheck, FolderOfOtherFilesIsAFault) {
  MakeFolder();
  folder_.Put("machine/Secours/read me.txt", "x");
  EXPECT_EQ(Found(), Lines{kNothing});
}

TEST_F(EmergencyCheck, FolderOfUnplayableFilesIsAFaultAndEachIsNamed) {
  MakeFolder();
  folder_.Put("machine/Secours/a.mp3", "");
  EXPECT_EQ(Found(),
            (Lines{"emergency: Secours/a.mp3: the sound file is empty (warning)", kNothing}));
}

TEST_F(EmergencyCheck, OnePlayableFileDoes) {
  MakeFolder();
  std::filesystem::copy_file(Title1(), Emergency("a.mp3"));
  EXPECT_EQ(Found(), Lines{});
}

}  // namespace
}  // namespace zemo
