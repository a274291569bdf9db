#include "scheduling/LastAnswers.h"

#include <memory>

#include "station/Station.h"

namespace zemo {

namespace {
constexpr const char* kTitleTable = "Discotheque";
}

LastAnswers& LastAnswersOf(Station& station) {
  auto& answers = station.requests.lastAnswers;
  if (!answers) answers = std::make_shared<LastAnswers>();
  return *answers;
}

void TellLastAnswers(Station& station, const StoreError& fault) {
  LogNotice(station, "RequetePlaylist", fault.Number(),
            "the base cannot be read, the request goes by what was read last");
}

int32_t CountOrLast(Station& station, const std::string& table) {
  return AnswerOrLast(station, LastAnswersOf(station).counts[table],
                      [&] { return station.base.CountRecords(table); });
}

bool TitlesHave(Station& station, const std::string& column) {
  return AnswerOrLast(station, LastAnswersOf(station).titleColumns[column],
                      [&] { return station.base.Db().HasColumn(kTitleTable, column); });
}

}  // namespace zemo
