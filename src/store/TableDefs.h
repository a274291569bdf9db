// The catalogue of a database: its tables with their fields and indexes, read and changed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Value.h"

namespace zemo {

enum class FieldType { kInt16, kInt32, kFloat64, kBool, kText, kMemo };

struct Field {
  std::string Name;
  FieldType Type = FieldType::kText;
  int Size = 0;                 // most characters of a kText; 0 for the other types
  bool AutoIncrement = false;   // the table's key, numbered by the engine, never reused
  bool AllowZeroLength = true;  // see Schema.cpp on why the store does not enforce it
  Value DefaultValue;           // Null: none

  // Of a table that is read through a stand-in, see StandIns.h.
  std::string ReadAs;        // SQL that is read instead of the column; empty: the column
  bool Missing = false;      // there is no column: what is written to it is dropped
  bool DefaultLost = false;  // the column has not this default
};

// An index on one field: the system has none on several.
struct Index {
  std::string Name;  // of its own table: two tables may each have a CODE
  std::string Field;
  bool Unique = false;
};

struct TableDef {
  std::string Name;
  std::vector<Field> Fields;  // in creation order
  std::vector<Index> Indexes;
  bool IsStandIn = false;  // queries read a view of this name, which has no row numbers
  std::string LostKey;     // field that the engine should number, and does not; empty: none

  const Field* FindField(std::string_view name) const;  // null: no such field
  const Index* FindIndex(std::string_view name) const;
  const Field* AutoField() const;  // the auto-increment field; null: none
};

// Tables come in the order of their names. Names know no case. A change outside a transaction is
// stored at once; stand-ins are gone then until the tables are opened again. Thread: the logic's.
// Operations throw StoreError.
class TableDefs {
 public:
  virtual ~TableDefs() = default;

  int Count();
  TableDef Item(int position);  // 0-based
  TableDef Item(std::string_view name);
  bool Has(std::string_view name);
  // Somebody changed the tables since Database::PutStandIns. Throws kErrLocked.
  virtual bool ChangedSinceStandIns() = 0;

  void Append(const TableDef& table);  // the table without its indexes; kErrTableExists
  void Delete(std::string_view table);
  void Rename(std::string_view table, std::string_view newName);  // its indexes go with it
  void AppendField(std::string_view table, const Field& field);   // behind the others
  void DeleteField(std::string_view table, std::string_view field);
  void AppendIndex(std::string_view table, const Index& index);  // kErrIndexExists
  void DeleteIndex(std::string_view table, std::string_view index);
  // No number that `from` has given, to a row that is gone or not, is given again by `to`.
  void TakeOverNumbers(std::string_view from, std::string_view to);
  // The last number that the table's key has given, to a row that is gone or not; 0: none, or no
  // key that gives them.
  int64_t LastNumber(std::string_view table);
  // The key gives only numbers above this one.
  void KeepNumbersAbove(std::string_view table, int64_t number);

 protected:
  // The engine's part. All: as the tables stand now, whoever changed them. The others are asked for
  // what can be done, with names as they are stored; an index that the key serves by itself is none
  // to be made.
  virtual const std::vector<std::shared_ptr<const TableDef>>& All() = 0;
  virtual void MakeTable(const TableDef& table) = 0;
  virtual void DropTable(const std::string& table) = 0;
  virtual void RenameTable(const std::string& table, const std::string& newName) = 0;
  virtual void MakeField(const TableDef& table, const Field& field) = 0;
  virtual void DropField(const std::string& table, const std::string& field) = 0;
  virtual void MakeIndex(const std::string& table, const Index& index) = 0;
  virtual void DropIndex(const std::string& table, const std::string& index) = 0;
  // Of a table with a key that gives numbers; as those above.
  virtual int64_t LastNumberOf(const TableDef& table) = 0;
  virtual void SetLastNumber(const TableDef& table, int64_t number) = 0;
  virtual void BeginChanges() = 0;
  virtual void CommitChanges() = 0;
  virtual void TakeBackChanges() = 0;  // those that are neither stored nor taken back yet

 private:
  friend class StructureTransaction;
  std::shared_ptr<const TableDef> Find(std::string_view table);      // null: no such table
  std::shared_ptr<const TableDef> Existing(std::string_view table);  // kErrNoSuchTable
};

// Changes of structure and of rows that are stored together, at Commit, or not at all. Not inside
// another transaction. Thread: the logic's.
class StructureTransaction {
 public:
  explicit StructureTransaction(TableDefs& tables);  // throws StoreError
  ~StructureTransaction();                           // without Commit: all is as it was
  StructureTransaction(const StructureTransaction&) = delete;
  void Commit();  // throws StoreError; all is as it was then

 private:
  TableDefs& tables_;
};

}  // namespace zemo
