// What a run without a terminal tells of a silence, on the virtual clock.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>

#include "app/RunDisplay.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class RunSilence : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(pipe(ends_.data()), 0);
    display_ = std::make_unique<RunDisplay>(ends_[1]);
    display_->Show(on.station);
    on.station.engine.IsRunning = true;
  }
  void TearDown() override {
    for (const int end : ends_) close(end);
  }
  void Silence(const std::string& state) { display_->OnEvent({"silence", {{"state", state}}}); }
  // The lines of the second that ends then, from noon on.
  std::string LinesAt(int64_t atMs) {
    on.RunUntil(atMs);
    display_->ShowStatus();
    display_->ShowLine("-");
    std::array<char, 1000> bytes{};
    const ssize_t count = read(ends_[0], bytes.data(), bytes.size());
    const std::string lines(bytes.data(), static_cast<size_t>(count));
    return lines.substr(0, lines.rfind("12:00"));
  }
  TestStation on;

 private:
  std::array<int, 2> ends_{};
  std::unique_ptr<RunDisplay> display_;
};

TEST_F(RunSilence, IsToldOnceWhenItHasLastedThreeSecondsAndWhenItEnds) {
  Silence("begin");
  EXPECT_EQ(LinesAt(2900), "");
  EXPECT_EQ(LinesAt(3000), "12:00:03  silence on air\n");
  EXPECT_EQ(LinesAt(4000), "");
  Silence("end");
  EXPECT_EQ(LinesAt(5000), "12:00:04  sound again\n");
  EXPECT_EQ(LinesAt(9000), "");
}

TEST_F(RunSilence, EndsWithoutAWordWhereTheEngineStops) {
  Silence("begin");
  EXPECT_EQ(LinesAt(3000), "12:00:03  silence on air\n");
  on.station.engine.IsRunning = false;
  Silence("end");
  EXPECT_EQ(LinesAt(5000), "");
}

TEST_F(RunSilence, BetweenTwoElementsIsNotTold) {
  Silence("begin");
  EXPECT_EQ(LinesAt(2000), "");
  Silence("end");
  EXPECT_EQ(LinesAt(6000), "");
}

}  // namespace
}  // namespace zemo::test
