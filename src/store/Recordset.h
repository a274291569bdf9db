// A cursor over rows, in one of two kinds with one face: a table (live, ordered by its current
// index, writable) or the snapshot of a query (rows as they were when it was opened, read only).
// Method names are the engine operations' own; Eof and Bof stand so because EOF is a macro of C.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/Value.h"

namespace zemo {

// Thread: the logic's. Every operation throws StoreError; field names know no case.
class Recordset {
 public:
  virtual ~Recordset() = default;

  // A fresh cursor stands on the first row, at Eof and Bof when there is none (MoveFirst and
  // MoveLast lead there too). MoveNext at Eof and MovePrevious at Bof throw kErrNoCurrentRecord.
  virtual void MoveFirst() = 0;
  virtual void MoveLast() = 0;
  virtual void MoveNext() = 0;
  virtual void MovePrevious() = 0;
  virtual bool Eof() const = 0;
  virtual bool Bof() const = 0;
  virtual int32_t RecordCount() = 0;

  virtual int FieldCount() const = 0;
  virtual const std::string& FieldName(int ordinal) const = 0;  // 0-based
  // The current row's value, or the one just Set while adding or editing.
  virtual Value Field(std::string_view name) const = 0;
  virtual Value Field(int ordinal) const = 0;  // 0-based

  // --- tables only ---
  virtual void SetIndex(std::string_view name) = 0;  // "" for insertion order
  // `op` is "=". On a hit the row is current; on a miss NoMatch, Eof and Bof are true and there is
  // no current row.
  virtual void Seek(std::string_view op, const Value& key) = 0;
  virtual bool NoMatch() const = 0;
  virtual void AddNew() = 0;  // fields not Set take their defaults
  virtual void Edit() = 0;    // of the row as it is stored now; a move or seek gives the edit up
  virtual void Set(std::string_view name, const Value& value) = 0;
  virtual void Update() = 0;  // writes what AddNew or Edit began; an added row becomes current
  virtual void Delete() = 0;  // the current row; MoveNext goes on to the one behind it

  virtual void Close() = 0;  // the destructor does it too

  // Readings of Field by name.
  std::string Text(std::string_view name) const { return AsText(Field(name)); }
  int64_t Int(std::string_view name) const { return AsInt(Field(name)); }
  double Real(std::string_view name) const { return AsReal(Field(name)); }
  bool Bool(std::string_view name) const { return AsBool(Field(name)); }
};

}  // namespace zemo
