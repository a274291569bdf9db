// What a run without a terminal tells of a silence, on the virtual clock.
#include <fcntl.h>
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

// As a service whose journal does not read: the pipe behind standard error is full, and a write to
// it would not come back.
TEST(RunFault, ThatNobodyReadsIsLeftOut) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  while (write(ends[1], "full", 4) > 0) {
  }
  fcntl(ends[1], F_SETFL, 0);
  const int before = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  alarm(60);  // ends the test that hangs
  RunDisplay(STDOUT_FILENO).ShowFault("nobody reads this");
  alarm(0);
  dup2(before, STDERR_FILENO);
  close(ends[1]);
  std::string text;
  std::array<char, 4096> bytes{};
  for (ssize_t count = 0; (count = read(ends[0], bytes.data(), bytes.size())) > 0;)
    text.append(bytes.data(), static_cast<size_t>(count));
  EXPECT_EQ(text.find("nobody"), std::string::npos);
  close(ends[0]);
  close(before);
}

}  // namespace
}  // namespace zemo::test
