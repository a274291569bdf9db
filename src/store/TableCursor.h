// The live cursor on a table, whichever engine stores it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/Recordset.h"
#include "store/TableRows.h"

namespace zemo {

// Holds the current row's values and its place in the order (key and row number), never a
// statement: each move asks the base for the neighbour of that place.
class TableCursor : public Recordset {
 public:
  explicit TableCursor(std::shared_ptr<const TableRows> table);

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

  const TableRows& Open() const;  // throws when the cursor is closed
  const TableDef& Def() const { return table_->Def(); }
  size_t FieldAt(std::string_view name) const;
  void Settle() const;
  Value Current(size_t field) const;
  void InsertPending();
  void UpdatePending();
  void Reload();
  [[noreturn]] void LoseRow();  // which others deleted

  std::shared_ptr<const TableRows> table_;
  bool closed_ = false;
  std::string index_;  // current index; "": insertion order
  TableRows::Order order_;

  // Mutable: a cursor goes to its first row when it is first looked at.
  mutable Place place_ = Place::kUnsettled;
  mutable StoredRow row_;

  Pending pending_ = Pending::kNothing;
  TableRows::Changes changes_;
};

}  // namespace zemo
