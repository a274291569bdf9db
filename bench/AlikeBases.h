// Are the bases of several places alike, table by table, row by row? Each is read over into a file,
// whatever its engine.
#pragma once

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BaseSql.h"
#include "store/BasePlace.h"
#include "store/CarryOver.h"
#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/LockWait.h"

namespace zemo::bench {

class AlikeBases {
 public:
  // `path` of the file that is made of it. Throws StoreError.
  void Add(const std::string& name, const BasePlace& place, const std::string& path) {
    const auto base = place.closed(std::make_shared<LockWait>(kBusyTimeoutMs));
    base->Open(false);
    base->BeginReading();
    const auto copy = DBEngine::CreateDatabase(path);
    copy->Execute("PRAGMA synchronous = OFF");
    std::map<std::string, TableSum> sums;
    for (const TableSum& sum : CarryOver(*base, *copy, nullptr)) sums.emplace(sum.table, sum);
    copy->Close();
    bases_.push_back({name, path, std::move(sums)});
  }

  int64_t Rows() const {
    int64_t rows = 0;
    for (const auto& [table, sum] : bases_.front().sums) rows += sum.rows;
    return rows;
  }

  // How many tables of the others are not as the first one has them; tells rows of each.
  int Differing() const {
    int differing = 0;
    for (const Base& other : bases_)
      for (const auto& [table, sum] : bases_.front().sums) {
        const auto its = other.sums.find(table);
        if (its != other.sums.end() && its->second.rows == sum.rows &&
            its->second.checksum == sum.checksum)
          continue;
        ++differing;
        std::fprintf(stderr, "%s of %s is not as %s has it\n", table.c_str(), other.name.c_str(),
                     bases_.front().name.c_str());
        TellRows(bases_.front(), other, table);
        TellRows(other, bases_.front(), table);
      }
    return differing;
  }

 private:
  struct Base {
    std::string name, path;
    std::map<std::string, TableSum> sums;
  };

  static void TellRows(const Base& has, const Base& hasNot, const std::string& table) {
    const std::string sql = "SELECT * FROM " + table;
    auto rows = Ask(has.path, sql), others = Ask(hasNot.path, sql);
    std::sort(rows.begin(), rows.end());
    std::sort(others.begin(), others.end());
    decltype(rows) alone;
    std::set_difference(rows.begin(), rows.end(), others.begin(), others.end(),
                        std::back_inserter(alone));
    constexpr size_t kTold = 4;
    for (size_t i = 0; i < std::min(kTold, alone.size()); ++i) {
      std::string line;
      for (const std::string& value : alone[i]) line += value + '|';
      std::fprintf(stderr, "  only %s: %s\n", has.name.c_str(), line.c_str());
    }
  }

  std::vector<Base> bases_;
};

}  // namespace zemo::bench
