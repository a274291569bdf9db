// The folder that --station names: it has to be there.
#include "BlackBox.h"

namespace zemo {
namespace {

class StationFolder : public BlackBox {};

TEST_F(StationFolder, ThatIsNotThereIsOneLineForEveryCommandAndIsNotMade) {
  for (const std::string command :
       {"--output null --for 0", "run --output null --for 0", "simulate --for 1",
        "simulate --in-place --for 1", "render --for 1 --audio a.wav", "why --code 1",
        "why --report 1", "models list", "models export a.xlsx", "grid",
        "affidavit --advertiser A --from 2026-11-21 --to 2026-11-21", "settings list",
        "settings get FadeOut", "settings set FadeOut 1500", "campaign list", "campaign show 1",
        "campaign add --file a.wav --weekly", "campaign remove 1", "compact"}) {
    SCOPED_TRACE(command);
    const Result result = Run(command + " --station nowhere/radio --machine machine");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("zemoradio: there is no station folder nowhere/radio\n"),
              std::string::npos)
        << result.err;
    EXPECT_FALSE(std::filesystem::exists(root_ / "nowhere"));
    EXPECT_TRUE(std::filesystem::is_empty(root_ / "machine"));
  }
}

TEST_F(StationFolder, ThatIsAFileIsNone) {
  Put("file", "");
  const Result result = Run("run --station file --machine machine --output null --for 0");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "zemoradio: there is no station folder file\n");
}

}  // namespace
}  // namespace zemo
