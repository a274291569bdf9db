// The catalogue's changes in SQLite's SQL.
#include "store/SqliteTableDefs.h"

#include "store/Connection.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/StoreError.h"

namespace zemo {

const std::vector<std::shared_ptr<const TableDef>>& SqliteTableDefs::All() {
  return connection_.AllTables();
}

bool SqliteTableDefs::ChangedSinceStandIns() {
  return connection_.StandInsAreOld();
}

void SqliteTableDefs::MakeTable(const TableDef& table) {
  Change(CreateTableSql(table));
}

void SqliteTableDefs::DropTable(const std::string& table) {
  Change("DROP TABLE " + QuotedName(table));
}

void SqliteTableDefs::RenameTable(const std::string& table, const std::string& newName) {
  Change("ALTER TABLE " + QuotedName(table) + " RENAME TO " + QuotedName(newName));
}

void SqliteTableDefs::MakeField(const TableDef& table, const Field& field) {
  Change("ALTER TABLE " + QuotedName(table.Name) + " ADD COLUMN " + FieldSql(table.Name, field));
}

void SqliteTableDefs::DropField(const std::string& table, const std::string& field) {
  Change("ALTER TABLE " + QuotedName(table) + " DROP COLUMN " + QuotedName(field));
}

void SqliteTableDefs::MakeIndex(const std::string& table, const Index& index) {
  Change(CreateIndexSql(table, index));
}

void SqliteTableDefs::DropIndex(const std::string& table, const std::string& index) {
  Change("DROP INDEX " + QuotedName(StoredIndexName(table, index)));
}

// A table of another tool may have given numbers without keeping the last.
int64_t SqliteTableDefs::LastNumberOf(const TableDef& table) {
  Statement last = connection_.Prepare("SELECT MAX(seq) FROM sqlite_sequence WHERE name = ?1");
  last.Bind(1, table.Name);
  return last.Step() ? last.Int(0) : 0;
}

void SqliteTableDefs::SetLastNumber(const TableDef& table, int64_t number) {
  connection_.Prepare("DELETE FROM sqlite_sequence WHERE name = ?1").Bind(1, table.Name).Run();
  connection_.Prepare("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)")
      .Bind(1, table.Name)
      .Bind(2, number)
      .Run();
}

void SqliteTableDefs::RequireOwn() const {
  if (connection_.IsReplica())
    throw StoreError(kErrReadOnly,
                     connection_.Path() + " is a replica: its tables are changed on their server");
}

void SqliteTableDefs::Change(const std::string& sql) {
  RequireOwn();
  connection_.DropStandIns();  // views would keep the structure that they read from changing
  connection_.ExecuteNow(sql.c_str());
  connection_.StructureChanged();
}

void SqliteTableDefs::BeginChanges() {
  RequireOwn();
  connection_.DropStandIns();  // within, a failure would bring their views back
  connection_.Begin();
}

void SqliteTableDefs::CommitChanges() {
  connection_.Commit();
}

void SqliteTableDefs::TakeBackChanges() {
  if (!connection_.InTransaction()) return;  // stored, or taken back already
  connection_.Rollback();
  connection_.StructureChanged();
}

}  // namespace zemo
