// A live cursor on one table.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Recordset.h"
#include "store/TableDefs.h"

namespace zemo {

class Connection;
class Statement;

// Holds the current row's values and its place in the order (key and row number), never a
// statement: each move asks the file for the neighbour of that place. Rows of equal key come in the
// order of their number, which is CODE where the table has one.
class TableCursor : public Recordset {
 public:
  TableCursor(std::shared_ptr<Connection> connection, std::string_view table);

  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  bool Eof() const override;
  bool Bof() const override;
  int32_t RecordCount() override;
  int FieldCount() const override { return static_cast<int>(table_->Fields.size()); }
  const std::string& FieldName(int ordinal) const override;
  Value Field(std::string_view name) const override;
  Value Field(int ordinal) const override;

  void SetIndex(std::string_view name) override;
  void Seek(std::string_view op, const Value& key) override;
  bool NoMatch() const override { return place_ == Place::kNoMatch; }
  void AddNew() override;
  void Edit() override;
  void Set(std::string_view name, const Value& value) override;
  void Update() override;
  void Delete() override;
  void Close() override;

 private:
  enum class Place {
    kUnsettled,  // on the first row, as soon as anybody asks
    kRow,        // row_ is current
    kDeleted,    // the current row was deleted: no values, but a place
    kBehindLast,
    kBeforeFirst,
    kEmpty,    // both of these
    kNoMatch,  // a Seek found nothing
  };
  enum class Pending { kNothing, kAdd, kEdit };
  // SQL of the moves in the current order, made once an index.
  struct Order {
    std::optional<size_t> key;  // field of the index; none: by row number
    std::string first, last, seek, seekAnyCase;
    std::string nextEqual, nextHigher, nextNotNull;
    std::string previousEqual, previousLower, previousNull;
  };

  Connection& Open() const;  // throws when the database or the cursor is closed
  void MakeOrder(std::optional<size_t> key);
  size_t FieldAt(std::string_view name) const;
  void Settle() const;
  bool Load(Statement& query) const;
  bool LoadNeighbour(const std::string& equal, const std::string& beyond, const std::string& null);
  const Value& Key() const { return row_[*order_.key]; }
  Value Current(size_t field) const;
  void AddWhatIsLost();
  void InsertPending();
  void UpdatePending();
  void Reload();

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<const TableDef> table_;
  std::string select_;  // "SELECT rowid, fields FROM table"
  std::string index_;   // current index; "": insertion order
  Order order_;

  // Mutable: a cursor goes to its first row when it is first looked at.
  mutable Place place_ = Place::kUnsettled;
  mutable std::vector<Value> row_;
  mutable int64_t rowNumber_ = 0;

  Pending pending_ = Pending::kNothing;
  std::vector<std::optional<Value>> changes_;
};

}  // namespace zemo
