// A table of a SQLite base, as its cursors read and write it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/TableRows.h"

namespace zemo {

class Connection;
class Statement;

class SqliteTable final : public TableRows {
 public:
  SqliteTable(std::shared_ptr<Connection> connection, std::string_view name);

  const TableDef& Def() const override { return *def_; }
  bool First(Order order, StoredRow& row) const override;
  bool Last(Order order, StoredRow& row) const override;
  bool Behind(Order order, StoredRow& row) const override;
  bool Ahead(Order order, StoredRow& row) const override;
  bool Find(Order order, const Value& key, StoredRow& row) const override;
  bool Read(StoredRow& row) const override;
  int64_t Count() const override;
  int64_t Insert(Changes& changes) const override;
  bool Change(int64_t number, const Changes& changes) const override;
  void Remove(int64_t number) const override;

 private:
  // SQL of the moves in one order.
  struct Moves {
    Order key;
    std::string first, last, seek, seekAnyCase;
    std::string nextEqual, nextHigher, nextNotNull;
    std::string previousEqual, previousLower, previousNull;
  };
  const Moves& By(Order order) const;
  Moves MakeMoves(Order key) const;
  bool Load(Statement& query, StoredRow& row) const;
  bool LoadNeighbour(const Moves& moves, StoredRow& row, const std::string& equal,
                     const std::string& beyond, const std::string& null) const;
  void AddWhatIsLost(Changes& changes) const;

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<const TableDef> def_;
  std::string select_;                                       // "SELECT rowid, fields FROM table"
  mutable std::vector<std::unique_ptr<const Moves>> moves_;  // as far as asked for
};

}  // namespace zemo
