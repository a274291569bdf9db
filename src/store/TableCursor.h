// A table and the live cursors on it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Database.h"
#include "store/Recordset.h"
#include "store/TableDefs.h"

namespace zemo {

class Connection;
class Statement;

// SQL of the moves in one order.
struct TableOrder {
  std::optional<size_t> key;  // field of the index; none: by row number
  std::string first, last, seek, seekAnyCase;
  std::string nextEqual, nextHigher, nextNotNull;
  std::string previousEqual, previousLower, previousNull;
};

// What all cursors of a table share, so that one costs next to nothing to make.
class SqliteTable : public StoredTable, public std::enable_shared_from_this<SqliteTable> {
 public:
  SqliteTable(std::shared_ptr<Connection> connection, std::string_view name);

  std::unique_ptr<Recordset> Cursor() const override;

  const std::shared_ptr<Connection>& ItsConnection() const { return connection_; }
  const TableDef& Def() const { return *def_; }
  const std::string& Select() const { return select_; }  // "SELECT rowid, fields FROM table"
  std::shared_ptr<const TableOrder> OrderBy(std::optional<size_t> field) const;

 private:
  TableOrder MakeOrder(std::optional<size_t> key) const;

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<const TableDef> def_;
  std::string select_;
  mutable std::vector<std::shared_ptr<const TableOrder>> orders_;  // as far as asked for
};

// Holds the current row's values and its place in the order (key and row number), never a
// statement: each move asks the file for the neighbour of that place. Rows of equal key come in the
// order of their number, which is CODE where the table has one.
class TableCursor : public Recordset {
 public:
  explicit TableCursor(std::shared_ptr<const SqliteTable> table);

  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  bool Eof() const override;
  bool Bof() const override;
  int32_t RecordCount() override;
  int FieldCount() const override { return static_cast<int>(Def().Fields.size()); }
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

  Connection& Open() const;  // throws when the database or the cursor is closed
  const TableDef& Def() const { return table_->Def(); }
  size_t FieldAt(std::string_view name) const;
  void Settle() const;
  bool Load(Statement& query) const;
  bool LoadNeighbour(const std::string& equal, const std::string& beyond, const std::string& null);
  const Value& Key() const { return row_[*order_->key]; }
  Value Current(size_t field) const;
  void AddWhatIsLost();
  void InsertPending();
  void UpdatePending();
  void Reload();

  std::shared_ptr<const SqliteTable> table_;
  std::shared_ptr<Connection> connection_;  // null: the cursor is closed
  std::string index_;                       // current index; "": insertion order
  std::shared_ptr<const TableOrder> order_;

  // Mutable: a cursor goes to its first row when it is first looked at.
  mutable Place place_ = Place::kUnsettled;
  mutable std::vector<Value> row_;
  mutable int64_t rowNumber_ = 0;

  Pending pending_ = Pending::kNothing;
  std::vector<std::optional<Value>> changes_;
};

}  // namespace zemo
