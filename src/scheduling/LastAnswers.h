// What the base last said to the small questions of a request. Where it cannot be read now -
// another process has it, its file or its disk is gone - a request goes by that, and one line tells
// so. Thread: the logic's.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "scheduling/WeekModel.h"
#include "store/StoreError.h"

namespace zemo {

struct Station;

// A stored list and when it is due, as in Playlist.
struct DueList {
  int64_t code = 0;
  std::string date, hourMinute;
};

struct LastAnswers {
  std::array<std::optional<DayModel>, kDaysOfWeek + 1> models;  // by weekday, 1 Monday
  std::array<std::optional<DaySkeleton>, kDaysOfWeek + 1> skeletons;
  std::optional<std::vector<VarietyShare>> varieties;
  std::optional<std::pair<int32_t, int32_t>> runs;          // Alternation, NAT and INT
  std::map<std::string, std::optional<int32_t>> counts;     // rows, by table
  std::map<std::string, std::optional<bool>> titleColumns;  // that Discotheque has
  std::optional<std::vector<DueList>> lists;
  std::optional<std::vector<std::pair<int64_t, int32_t>>> listedTitles;  // list and CODE of each
  std::optional<int32_t> newestReportCode;
  std::optional<std::vector<std::string>> newestArtists;
};

LastAnswers& LastAnswersOf(Station& station);

void TellLastAnswers(Station& station, const StoreError& fault);  // once a minute

// What `ask` returns, which is kept in `last`. Where the base is out of reach: what was kept, and
// the fault where nothing was. Throws StoreError.
template <typename Answer, typename Ask>
Answer AnswerOrLast(Station& station, std::optional<Answer>& last, Ask ask) {
  try {
    last = ask();
  } catch (const StoreError& fault) {
    if (!last || !fault.MayPass()) throw;
    TellLastAnswers(station, fault);
  }
  return *last;
}

// As StationBase::CountRecords, and as Database::HasColumn of Discotheque.
int32_t CountOrLast(Station& station, const std::string& table);
bool TitlesHave(Station& station, const std::string& column);

}  // namespace zemo
