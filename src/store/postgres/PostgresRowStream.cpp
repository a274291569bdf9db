#include "store/postgres/PostgresRowStream.h"

#include <utility>

namespace zemo {

PostgresRowStream::PostgresRowStream(PostgresLine& line, const std::string& sql,
                                     const PostgresParameters& parameters)
    : line_(line) {
  if (line_.Send(sql, parameters, end_)) line_.stream_ = this;
}

std::optional<PostgresResult> PostgresRowStream::Next() {
  if (!kept_.empty()) {
    PostgresResult row = std::move(kept_.front());
    kept_.pop_front();
    return row;
  }
  if (line_.stream_ != this) return std::nullopt;
  PostgresResult answer = line_.NextAnswer();
  if (answer.IsRow()) return answer;
  end_ = std::move(answer);
  line_.stream_ = nullptr;
  if (end_.IsAnswer()) line_.DropRest();
  return std::nullopt;
}

bool PostgresRowStream::CutOff() {
  if (line_.stream_ != this) return false;
  line_.stream_ = nullptr;
  line_.Cancel();
  return true;
}

void PostgresRowStream::KeepRest() {
  for (PostgresResult answer = line_.NextAnswer(); answer.IsAnswer(); answer = line_.NextAnswer()) {
    if (answer.IsRow())
      kept_.push_back(std::move(answer));
    else
      end_ = std::move(answer);
  }
}

}  // namespace zemo
