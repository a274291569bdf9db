// The titles that a request refused, a line each with the reasons. A skeleton cuts nearly all of a
// large library as doubles of an artist: their lines are made when somebody reads them.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zemo {

// Thread: the logic's.
class RefusedTitles {
 public:
  using LineAt = std::function<std::string(size_t)>;  // of the n-th from 0

  void Add(std::string line);
  // So many lines behind the others. `lineAt` is kept, with all that it holds, until they are made.
  void AddLater(size_t count, LineAt lineAt);
  void Clear();

  size_t Count() const { return made_.size() + later_; }
  // Lines from that one on, as many as there are and at most `most`.
  std::vector<std::string> Some(size_t from, size_t most) const;
  const std::vector<std::string>& All() const;

 private:
  mutable std::vector<std::string> made_;
  mutable size_t later_ = 0;  // lines behind them
  mutable LineAt lineAt_;
};

}  // namespace zemo
