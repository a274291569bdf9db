// A step of the tick that fails, tick after tick: it is told once, and the next element starts on
// time all the same. What fails is the listener of the step's own flag, as a trace on a full disk
// would.
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int64_t kFirstStartMs = 100;               // the first tick
constexpr int64_t kTitleMs = 20000, kExitMs = 1600;  // PmixDef of a new base
constexpr int64_t kArmFromMs = 1050, kTickMs = 100;

struct FailingStep {
  const char* name;
  const char* flag;               // whose change fails within a tick
  void (*prepare)(TestStation&);  // before the start
  void (*arm)(TestStation&);      // between any two ticks: the next tick changes the flag
  const char* begin = "2026-11-21 12:05:00";
};

void Nothing(TestStation&) {}

const FailingStep kSteps[] = {
    {"Topage", "TopagePending", Nothing,
     [](TestStation& on) {
       on.station.lists.Topage = {"12:05"};
       on.station.engine.TopagePending = false;
     }},
    {"IntroOverlay", "IntroOverlayPending", Nothing,
     [](TestStation& on) { on.station.engine.IntroOverlayPending = true; }},
    {"Breaks", "LastGridCheckTimer",
     [](TestStation& on) { on.station.GPubJour.SetCell(1, GridCol::kMoment, "12:05"); },
     [](TestStation& on) { on.station.engine.LastGridCheckTimer = 0; }},
    {"HourPip", "HourPipPending", [](TestStation& on) { on.Set("MiniFinHeure", "0"); },
     [](TestStation& on) { on.station.engine.HourPipPending = true; }},
    {"EndOfHour", "FittingActive",
     [](TestStation& on) {
       on.Set("OptimiseToph", "-1");
       on.Set("HOptimise", "50");
     },
     [](TestStation& on) { on.station.engine.FittingActive = true; }},
    {"DayChange", "LastDay", Nothing, [](TestStation& on) { on.station.engine.LastDay = 0; }},
    {"NewHour", "HourBlockHandled", Nothing,
     [](TestStation& on) { on.station.engine.HourBlockHandled = true; }, "2026-11-21 12:00:00"},
    {"VoiceTrack", "VoiceTrackState", Nothing,
     [](TestStation& on) { on.station.engine.VoiceTrackState = -2; }},
    {"Drain", "DrainPending", Nothing,
     [](TestStation& on) { on.station.engine.DrainPending = true; }},
    {"RuleOfTheStart", "StartNextNow", Nothing, Nothing},
};

// The station on air with two titles, on which that flag cannot be changed within a tick.
void PutOnAir(TestStation& on, const char* flag) {
  for (int i = 0; i < 2; ++i) on.AppendCard(on.AddCard({.lengthMs = kTitleMs}));
  on.Start();
  on.RunUntil(kArmFromMs - kTickMs);
  on.listener = [&on, flag](const Event& event) {
    const bool changed = event.name == "flag" && on.seen.back()["name"] == flag;
    if (changed && on.station.engine.tickRunning && on.station.engine.mainTimerHolds == 0)
      throw std::runtime_error(std::string(flag) + " cannot be told");
  };
}

class TickFaultInEachStep : public testing::TestWithParam<FailingStep> {};

TEST_P(TickFaultInEachStep, IsToldOnceAndTheNextElementStartsOnTime) {
  const FailingStep& step = GetParam();
  TestStation on(step.begin);
  on.Load();
  step.prepare(on);
  PutOnAir(on, step.flag);
  for (int64_t atMs = kArmFromMs; atMs < kTitleMs; atMs += kTickMs)
    on.At(atMs, [&on, &step] { step.arm(on); });
  on.RunUntil(kTitleMs);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, kFirstStartMs + kTitleMs - kExitMs);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["text"], std::string(step.flag) + " cannot be told");
}

INSTANTIATE_TEST_SUITE_P(All, TickFaultInEachStep, testing::ValuesIn(kSteps),
                         [](const auto& step) { return std::string(step.param.name); });

// The extract ends in this very tick, though its step fails behind the request.
TEST(TickFault, OfAnExtractsEndDoesNotHoldTheNextElement) {
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  PutOnAir(on, "NextRequested");
  on.At(kArmFromMs, [&on] {
    on.station.engine.CheckExtrait = true;
    on.station.engine.ExtractEndMs = 5000;
  });
  on.RunUntil(8000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, kFirstStartMs + 5000);
  EXPECT_EQ(on.First("error")->members.at("where"), "MainTimer");
}

}  // namespace
}  // namespace zemo::test
