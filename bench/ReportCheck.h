// Does every element that went on air have its row in the report, in its order, and no row twice?
// The elements by the engine's events, the rows by the table.
#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "BaseSql.h"
#include "station/EngineEvents.h"
#include "station/OnAirList.h"

namespace zemo::bench {

class ReportCheck {
 public:
  struct Figures {
    size_t elements = 0, rows = 0;
    int missing = 0;     // elements without a row
    int extra = 0;       // rows that no element, or another one's, stands for
    int disordered = 0;  // rows before that of an earlier element
  };

  // Rows that are there already are none of its own.
  explicit ReportCheck(std::string base)
      : base_(std::move(base)),
        first_(Ask(base_, "SELECT COALESCE(MAX(CODE), 0) FROM Rapport").at(0).at(0)) {}

  void OnEvent(const Event& event) {
    if (event.name != "start" || event.Number("slot") > 1) return;
    if (event.Number("code") == Element::kVoiceTrack) return;  // leaves no row
    const std::string title = event.Text("title");
    started_.emplace_back(title, ++times_[title]);
    startedAt_.push_back(Clock::now());
  }

  // Elements of the last seconds may not have been written yet. Throws std::runtime_error when the
  // base cannot be read.
  Figures Compare() const {
    const auto settled = Clock::now() - std::chrono::seconds(5);
    const auto due = static_cast<size_t>(
        std::count_if(startedAt_.begin(), startedAt_.end(), [&](auto at) { return at < settled; }));
    std::map<Key, size_t> places;
    for (size_t i = 0; i < started_.size(); ++i) places[started_[i]] = i;

    const auto rows = Ask(base_, "SELECT AUTEUR || '  ' || TITRE FROM Rapport WHERE CODE > " +
                                     first_ + " ORDER BY CODE");
    Figures figures{due, rows.size()};
    std::map<std::string, int> times;
    std::vector<bool> written(started_.size(), false);
    size_t last = 0;
    for (const auto& row : rows) {
      const auto place = places.find({row[0], ++times[row[0]]});
      if (place == places.end()) {
        ++figures.extra;
        continue;
      }
      written[place->second] = true;
      figures.disordered += place->second < last ? 1 : 0;
      last = std::max(last, place->second);
    }
    for (size_t i = 0; i < due; ++i) figures.missing += written[i] ? 0 : 1;
    return figures;
  }

 private:
  using Clock = std::chrono::steady_clock;
  using Key = std::pair<std::string, int>;  // a title as the list shows it, and its how manieth

  std::string base_;
  std::string first_;  // the newest row before
  std::map<std::string, int> times_;
  std::vector<Key> started_;
  std::vector<Clock::time_point> startedAt_;
};

}  // namespace zemo::bench
