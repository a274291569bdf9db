// Days on which the clock of the studio jumps: summer time in the zones of the world, half hours,
// changes at midnight, a day left out, a clock that stood wrong. The station airs from three hours
// before to four hours behind the jump, from music that lasts as long as its rules ask for and no
// longer. Whatever the clock does, nothing is silent, each hour has its pip, each break comes at
// every minute that bears its time, and jingles go on.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "support/Campaigns.h"
#include "traffic/DayGridComposition.h"

namespace zemo::test {
namespace {

constexpr int64_t kMinuteMs = 60000;
constexpr int64_t kHourMs = 60 * kMinuteMs;
constexpr int64_t kJumpMs = 3 * kHourMs;  // since the begin
constexpr int64_t kEndMs = 7 * kHourMs;
constexpr int64_t kMostSilenceMs = 20000;
// A jingle comes ten minutes after the last one, the last break and the last pip, at the next
// element; none comes while the end of the hour is fitted.
constexpr int64_t kMostWithoutJingleMs = 35 * kMinuteMs;
constexpr int64_t kMostWhereFittedMs = 50 * kMinuteMs;

struct Jump {
  const char* name;
  const char* zone;     // with its rules, as POSIX writes them
  const char* begin;    // three hours before the jump
  int minutes;          // the clock goes on by so many
  bool byHand = false;  // the operator sets it, the zone has no part in it
  bool fitted = false;  // the end of the hour is fitted, the break stands by the pip
};

class ZoneOfTest {
 public:
  explicit ZoneOfTest(const char* zone) {
    if (const char* was = std::getenv("TZ")) before_ = was;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ZoneOfTest() {
    if (before_)
      setenv("TZ", before_->c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }
  ZoneOfTest(const ZoneOfTest&) = delete;

 private:
  std::optional<std::string> before_;
};

class ClockDay : public testing::TestWithParam<Jump> {
 protected:
  ClockDay() : zone(GetParam().zone), on(GetParam().begin) {}
  void SetUp() override {
    on.Load();
    on.station.base.Db().Execute("PRAGMA synchronous = OFF");  // hours of writes, no power loss
    std::filesystem::create_directory(on.stationDir.Path() + "/Sounds");
    on.Set("Jingles", "10");
    on.Set("EcartArtiste", "5");
    on.Set("DecalDiff", "1");
    on.Set("HOptimise", "45");
    on.Set("OptimiseToph", GetParam().fitted ? "-1" : "0");
    on.Set("PubAvecTopH", GetParam().fitted ? "1" : "0");
    on.Sql("UPDATE Toph SET SURIMPRESSION = -1, FICHIER = '" + Sound("pip", 5000) + "'");
    AddMusic();
    AddJingles();
    AddBreaks();
    ComposeTodaysGrid(on.station);
    on.seen.clear();
  }
  std::string Sound(const std::string& name, int64_t lengthMs) {
    return on.MakeSound("Sounds/" + name + ".wav", lengthMs);
  }
  // 54 titles of three minutes: 162 minutes, of which 120 rest.
  void AddMusic() {
    for (int i = 0; i < 54; ++i)
      on.AddCard({.file = Sound("title" + std::to_string(i), 180000),
                  .artist = "ARTIST" + std::to_string(i)});
    on.Sql("UPDATE Discotheque SET NBPASSJOUR = 100, ECARTMINUTES = 120");
    on.ModelOfOneGenre("POP");
  }
  void AddJingles() {
    std::string days, hours;
    for (int day = 1; day <= 7; ++day) {
      days += ", TRANCHE" + TwoDigits(day);
      hours += ", '" + std::string(24, '1') + "'";
    }
    for (int i = 0; i < 2; ++i)
      on.Sql(
          "INSERT INTO DiscothequeJingle (LIBELLE, FILENAME, DUREE, SURIMPRESSION, "
          "GENREASSOCIE, JingleExtraitYN, CODEASSOCIE" +
          days + ") VALUES ('JINGLE', '" + Sound("jingle" + std::to_string(i), 4000) +
          "', 4000, 0, '', 0, 0" + hours + ")");
  }
  void AddBreaks() {
    Campaign campaign{.advertiser = "SPOT",
                      .from = "JOURNALIER",
                      .to = "JOURNALIER",
                      .marks = {"18", "48"},
                      .lengthMs = 20000,
                      .file = Sound("spot", 20000)};
    for (int hour = 0; hour < 24; ++hour)
      for (const char* minute : {":18", ":48"})
        campaign.crosses.push_back(TwoDigits(hour) + minute);
    AddCampaign(on, campaign);
  }

  struct Due {
    int64_t atMs;
    std::string moment;  // "hh:mm"
  };
  void Look() {
    const std::string time = TimeText(on.station.Now());
    const std::string minute = time.substr(0, 5);
    if (time.substr(3) == "59:58") pips.push_back({on.loop.MonotonicMs(), minute});
    if (minute == lookedMinute) return;
    lookedMinute = minute;
    if (minute.ends_with(":18") || minute.ends_with(":48"))
      breaks.push_back({on.loop.MonotonicMs(), minute});
  }
  // Runs to the end, looking at the clock every second.
  void Air() {
    if (GetParam().byHand)
      on.At(kJumpMs, [&] { on.loop.ShiftWallClock(GetParam().minutes * kMinuteMs); });
    for (int64_t atMs = 1000; atMs < kEndMs; atMs += 1000) on.At(atMs, [&] { Look(); });
    on.Start();
    on.RunUntil(kEndMs);
  }
  std::vector<int64_t> JingleStarts() const {
    std::vector<int64_t> starts;
    for (const Seen& start : on.Starts())
      if (start["code"] == "-1") starts.push_back(start.atMs);
    return starts;
  }
  // Of a composition or of the tick; a fit places it up to a quarter of an hour before its time.
  bool BreakCame(const Due& due) const {
    for (const Seen& one : on.Events("break"))
      if (one["moment"].substr(0, 5) == due.moment && one["rows"] != "0" &&
          one.atMs <= due.atMs + 2000 && one.atMs >= due.atMs - 20 * kMinuteMs)
        return true;
    return false;
  }
  bool PipCame(const Due& due) const {
    for (const Seen& one : on.Events("overlay"))
      if (one["reason"] == "pip" && one.atMs >= due.atMs && one.atMs < due.atMs + 5000) return true;
    return false;
  }

  ZoneOfTest zone;
  TestStation on;
  std::vector<Due> pips, breaks;
  std::string lookedMinute;
};

TEST_P(ClockDay, KeepsItsMusicItsPipsItsBreaksAndItsJingles) {
  const LocalDateTime begin = on.station.Now();
  Air();
  // The clock did jump, and only once.
  const double wentOnDays = DateSerial(on.station.Now()) - DateSerial(begin);
  const auto wentOnMinutes = static_cast<int>(std::lround(wentOnDays * 1440));
  EXPECT_EQ(wentOnMinutes, 7 * 60 + GetParam().minutes);

  int64_t silentSinceMs = -1;
  for (const Seen& silence : on.Events("silence")) {
    if (silence["state"] == "begin") silentSinceMs = silence.atMs;
    if (silence["state"] == "end") {
      EXPECT_LE(silence.atMs - silentSinceMs, kMostSilenceMs) << "from " << silentSinceMs;
      silentSinceMs = -1;
    }
  }
  EXPECT_EQ(silentSinceMs, -1) << "silent to the end";

  EXPECT_GE(pips.size(), 6U);
  for (const Due& due : pips) EXPECT_TRUE(PipCame(due)) << due.moment << " at " << due.atMs;
  EXPECT_GE(breaks.size(), 12U);
  for (const Due& due : breaks) EXPECT_TRUE(BreakCame(due)) << due.moment << " at " << due.atMs;

  int64_t lastMs = 0;
  std::vector<int64_t> jingles = JingleStarts();
  jingles.push_back(kEndMs);
  for (const int64_t atMs : jingles) {
    EXPECT_LE(atMs - lastMs, GetParam().fitted ? kMostWhereFittedMs : kMostWithoutJingleMs)
        << "without a jingle from " << lastMs;
    lastMs = atMs;
  }
  EXPECT_TRUE(on.Events("error").empty()) << on.Events("error")[0]["text"];
}

constexpr const char* kParis = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kLordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";
constexpr const char* kHavana = "CST5CDT,M3.2.0/0,M11.1.0/1";
constexpr const char* kBeirut = "EET-2EEST,M3.5.0/0,M10.5.0/0";
constexpr const char* kSantiago = "<-04>4<-03>,M9.1.6/24,M4.1.6/24";
constexpr const char* kTroll = "<+00>0<+02>-2,M3.5.0/1,M10.5.0/3";
constexpr const char* kNoRule = "UTC0";

INSTANTIATE_TEST_SUITE_P(
    Jumps, ClockDay,
    testing::Values(
        Jump{"SummerTimeBegins", kParis, "2027-03-27 23:00:00", 60},
        Jump{"SummerTimeEnds", kParis, "2026-10-25 00:00:00", -60},
        Jump{"SummerTimeEndsInAFittedHour", kParis, "2026-10-25 00:00:00", -60, false, true},
        Jump{"HalfAnHourOn", kLordHowe, "2026-10-03 23:00:00", 30},
        Jump{"HalfAnHourBack", kLordHowe, "2026-04-04 23:00:00", -30},
        Jump{"HalfAnHourOnInAFittedHour", kLordHowe, "2026-10-03 23:00:00", 30, false, true},
        Jump{"HalfAnHourBackInAFittedHour", kLordHowe, "2026-04-04 23:00:00", -30, false, true},
        Jump{"OnAtMidnight", kHavana, "2026-03-07 21:00:00", 60},
        Jump{"BackToMidnight", kHavana, "2026-10-31 22:00:00", -60},
        Jump{"BackFromMidnight", kBeirut, "2026-10-24 21:00:00", -60},
        Jump{"BackFromTheEndOfTheDay", kSantiago, "2026-04-04 21:00:00", -60},
        Jump{"TwoHoursBack", kTroll, "2026-10-25 00:00:00", -120},
        Jump{"HalfAnHourOnToMidnight", kNoRule, "2026-11-20 20:30:00", 30, true},
        Jump{"HalfAnHourBackFromMidnight", kNoRule, "2026-11-20 21:00:00", -30, true},
        Jump{"ADayLeftOut", kNoRule, "2026-11-20 21:00:00", 24 * 60, true},
        Jump{"ADayTwice", kNoRule, "2026-11-20 21:00:00", -23 * 60, true},
        Jump{"AClockThatStoodAYearAhead", kNoRule, "2026-11-20 09:10:00", -365 * 1440, true}),
    [](const auto& jump) { return std::string(jump.param.name); });

}  // namespace
}  // namespace zemo::test
