#include "station/RefusedTitles.h"

#include <algorithm>

namespace zemo {

void RefusedTitles::Add(std::string line) {
  All();
  made_.push_back(std::move(line));
}

void RefusedTitles::AddLater(size_t count, LineAt lineAt) {
  All();
  later_ = count;
  lineAt_ = std::move(lineAt);
}

void RefusedTitles::Clear() {
  made_.clear();
  later_ = 0;
  lineAt_ = nullptr;
}

std::vector<std::string> RefusedTitles::Some(size_t from, size_t most) const {
  std::vector<std::string> lines;
  const size_t end = from + std::min(most, Count() - std::min(from, Count()));
  for (size_t at = from; at < end; ++at)
    lines.push_back(at < made_.size() ? made_[at] : lineAt_(at - made_.size()));
  return lines;
}

const std::vector<std::string>& RefusedTitles::All() const {
  made_.reserve(Count());
  for (size_t at = 0; at < later_; ++at) made_.push_back(lineAt_(at));
  later_ = 0;
  lineAt_ = nullptr;
  return made_;
}

}  // namespace zemo
