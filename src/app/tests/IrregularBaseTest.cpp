// What stands under the base's name and is no file: a pipe, a device, a folder. Every command
// refuses it at once and waits for nobody.
#include <gtest/gtest.h>

#include <filesystem>

#include "BlackBox.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

class IrregularBase : public BlackBox {};

TEST_F(IrregularBase, IsRefusedAtOnceByEveryCommandWithOneLine) {
  const std::vector<std::string> makings = {"mkfifo $base", "ln -s /dev/zero $base", "mkdir $base"};
  const std::vector<std::string> commands = {
      "run --station station --machine machine --output null --for 1s",
      "--station station --machine machine --output null --for 1s",
      "simulate --station station --machine machine --for 1m --trace trace",
      "simulate --station station --machine machine --in-place --for 1m --trace trace",
      "render --station station --machine machine --for 1s --audio out.wav",
      "grid --station station --machine machine",
      "models list --station station --machine machine",
      "why --station station --machine machine --code 1",
      "affidavit --station station --machine machine --advertiser A "
      "--from 2026-11-21 --to 2026-11-21",
      "campaign list --station station --machine machine",
      "settings list --station station --machine machine",
      "compact --station station --machine machine",
      "demo station"};
  fs::create_directories(Path("machine"));
  for (const std::string& making : makings) {
    fs::remove_all(Path("station"));
    fs::create_directories(Path("station"));
    ASSERT_EQ(Shell("base=station/Triskin.MDB; " + making).status, 0);
    for (const std::string& command : commands) {
      SCOPED_TRACE(making + ": " + command);
      const Result refused =
          Shell("QT_QPA_PLATFORM=offscreen timeout -s KILL 20 $zemoradio " + command);
      EXPECT_EQ(refused.status, 1);
      if (!command.starts_with("--station")) ExpectOneError(refused.err);  // else Qt has its say
      EXPECT_NE(refused.err.find("station/Triskin.MDB is not a regular file: it cannot be a base"),
                std::string::npos)
          << refused.err;
    }
  }
}

}  // namespace
}  // namespace zemo
