// Two machines on one base, each a process with a machine folder of its own: what is entered at
// the desk reaches the other's air without a restart. In real time: up to two minutes.
#include <gtest/gtest.h>

#include <ctime>

#include "app/tests/BlackBox.h"
#include "support/Child.h"

namespace zemo {
namespace {

using test::Child;
using test::WaitFor;

class TwoProcesses : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation(std::vector<int>(6, kTitleSec), true);
    PutWav("station/Bakery.wav", 5);
    std::filesystem::create_directory(root_ / "desk");
    Put("desk/Settings.Ini", "PCProduction=True\n");
    // At the end of an hour a fitting would bring the spot forward.
    ASSERT_EQ(AtTheDesk("settings set OptimiseToph 0").status, 0);
  }
  Child Engine(const std::string& machine) const {
    return Child({Program(), "run", "--station", Path("station"), "--machine", Path(machine),
                  "--output", "null"});
  }
  Result AtTheDesk(const std::string& words) const {
    return Run(words + " --station station --machine desk");
  }
  std::string SqlText(const std::string& query) const {
    return Shell("sqlite3 -cmd '.timeout 5000' station/Triskin.MDB \"" + query + "\"").out;
  }
  template <typename Condition>
  static bool Becomes(Condition condition) {
    const auto begin = std::time(nullptr);
    while (!condition()) {
      if (std::time(nullptr) - begin > kPatienceSec) return false;
      usleep(50000);
    }
    return true;
  }
  // Minutes of the hour as a campaign's marks; the first one begins in a minute at the earliest,
  // when the grid with it is composed.
  static std::string MinutesAhead() {
    const std::time_t now = std::time(nullptr);
    std::string marks;
    for (int ahead = 2; ahead <= 6; ++ahead) {
      const std::time_t then = now + 60 * ahead;
      std::tm local{};
      localtime_r(&then, &local);
      marks += (marks.empty() ? "" : ",") + std::to_string(local.tm_min);
    }
    return marks;
  }

  // A new grid is taken up behind a quarter of a title, with a minute of it left.
  static constexpr int kTitleSec = 90;
  static constexpr int kPatienceSec = 240;
};

// With the desk's priority the spot does not wait for the title's end: it begins in the first
// seconds of its minute.
TEST_F(TwoProcesses, ACampaignAndASettingOfTheDeskReachTheOthersAir) {
  Child air = Engine("machine");
  ASSERT_TRUE(Becomes([&] { return SqlText("SELECT COUNT(*) FROM Rapport") == "1\n"; }));
  Child desk = Engine("desk");
  ASSERT_TRUE(desk.Line().has_value());
  const Result set = AtTheDesk("settings set PrioritePubs 1");
  EXPECT_EQ(set.status, 0) << set.err;
  const Result added = AtTheDesk(
      "campaign add --file station/Bakery.wav --weekly --hours 0-23 --marks " + MinutesAhead());
  EXPECT_EQ(added.status, 0) << added.err;
  const std::string spots = "SELECT substr(HEURE, 7) FROM Rapport WHERE GENRE = 'PUB' LIMIT 1";
  ASSERT_TRUE(Becomes([&] { return SqlText(spots) != ""; }));
  EXPECT_LE(SqlText(spots), "06\n");
  EXPECT_EQ(SqlText("SELECT DISTINCT AUTEUR FROM Rapport WHERE GENRE = 'PUB'"), "Bakery\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "station/MajGrillePub.txt"));
}

}  // namespace
}  // namespace zemo
