// A report of 2,000,000 rows, ten years of a station beside a library of 100,000 cards, and what
// looks at the time while something works on it.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "BigLibrary.h"
#include "platform/sim/SimMover.h"
#include "support/TestStation.h"

namespace zemo::bench {

inline constexpr int kRows = 2000000;
inline constexpr int kRowsADay = 500;
inline constexpr int kFirstDay = 42000;  // 27 December 2014
inline constexpr int kTitles = 20000;
inline constexpr int kCards = 100000;

inline std::string TenYearsSql() {
  const std::string title = "(i * 7919 % " + std::to_string(kTitles) + ")";
  return NumbersTo(kRows) +
         "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
         "LABEL, REFERENCE, DATENUM) SELECT strftime('%d/%m/%Y', '2014-12-27', '+' || (i / 500) || "
         "' days'), printf('%02d:%02d:%02d', i % 500 * 172 / 3600, i % 500 * 172 / 60 % 60, i % "
         "500 "
         "* 172 % 60), 'Composer ' || " +
         title + ", 'Artist ' || (" + title + " / 12), 'Title ' || " + title +
         ", 'GENRE ' || (i % 12), CASE i % 5 WHEN 0 THEN 'INTERNATIONAL' ELSE 'NATIONAL' END, "
         "'Label ' || (i % 90), 'REF ' || " +
         title + ", " + std::to_string(kFirstDay) + " + i / " + std::to_string(kRowsADay) +
         " + i % 500 * 172 / 86400.0 FROM n";
}

// 20 December 2014, whose titles no index finds.
inline std::string AccentsSql() {
  return NumbersTo(kRowsADay) +
         "INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) SELECT 'Éva ' || i, 'Été ' || i, " +
         std::to_string(kFirstDay - 7) + " + i / 1000.0 FROM n";
}

// Takes half a minute.
inline void AddLongReport(test::TestStation& on) {
  on.Load();
  on.Sql(CardsSql(kCards));
  on.Sql(TenYearsSql());
  on.Sql(AccentsSql());
}

// Looks at the time at each yield of some work, where the loop moves the sound on.
class YieldWatch : public SimMover {
 public:
  // `listed` tells whether what is waited for has come.
  YieldWatch(test::TestStation& on, std::function<bool()> listed)
      : on_(on), listed_(std::move(listed)) {
    on_.loop.SetSound(this);
  }
  ~YieldWatch() override { on_.loop.SetSound(&on_.sound); }
  YieldWatch(const YieldWatch&) = delete;

  void AdvanceTo(int64_t) override { Look(); }
  int64_t NextDueMs() const override { return kNever; }

  void Begin() {
    last_ = begin_ = Clock::now();
    listedMs_ = 0;
  }
  void Look() {
    const auto now = Clock::now();
    longestMs_ = std::max(longestMs_, Ms(now - last_));
    if (listedMs_ == 0 && listed_()) listedMs_ = Ms(now - begin_);
    last_ = now;
  }
  double LongestMs() const { return longestMs_; }
  double ListedMs() const { return listedMs_; }  // since Begin

 private:
  using Clock = std::chrono::steady_clock;
  static double Ms(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
  }

  test::TestStation& on_;
  const std::function<bool()> listed_;
  Clock::time_point begin_ = Clock::now(), last_ = begin_;
  double longestMs_ = 0, listedMs_ = 0;
};

}  // namespace zemo::bench
