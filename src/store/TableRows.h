// The rows of a table as its cursors ask for them: an end of an order, the neighbour of a place,
// the first of a key. What an engine has to know of a cursor.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "store/Database.h"
#include "store/TableDefs.h"
#include "store/Value.h"

namespace zemo {

// A row with its place: its number is CODE where the table has one, else the engine's own, in the
// order of insertion.
struct StoredRow {
  int64_t number = 0;
  std::vector<Value> values;  // of all fields, in their order
};

// What all cursors of a table share, so that one costs next to nothing to make. Rows of equal key
// come in the order of their number; Null is ahead of all keys, texts know no case. Operations
// throw StoreError. Thread: the logic's.
class TableRows : public StoredTable, public std::enable_shared_from_this<TableRows> {
 public:
  // Position of an index's field; none: the order of the numbers.
  using Order = std::optional<size_t>;
  // By field; none: not set.
  using Changes = std::vector<std::optional<Value>>;

  std::unique_ptr<Recordset> Cursor() const override;

  virtual const TableDef& Def() const = 0;
  // False, with `row` as it was, where there is no such row.
  virtual bool First(Order order, StoredRow& row) const = 0;
  virtual bool Last(Order order, StoredRow& row) const = 0;
  virtual bool Behind(Order order, StoredRow& row) const = 0;  // row is the place, there or gone
  virtual bool Ahead(Order order, StoredRow& row) const = 0;
  // The first of its key, in any case of an accented letter too.
  virtual bool Find(Order order, const Value& key, StoredRow& row) const = 0;
  virtual bool Read(StoredRow& row) const = 0;  // again, by its number
  virtual int64_t Count() const = 0;
  // Returns the row's number. What the engine fills in without the base is put into `changes`.
  virtual int64_t Insert(Changes& changes) const = 0;
  virtual bool Change(int64_t number, const Changes& changes) const = 0;  // false: it is gone
  virtual void Remove(int64_t number) const = 0;
};

}  // namespace zemo
