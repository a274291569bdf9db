#include "store/replica/ReplicaSchema.h"

#include "store/Names.h"
#include "store/SqlText.h"

namespace zemo {

namespace {

constexpr char kOwnTables[] = R"(
CREATE TABLE zemo_replica (
  one INTEGER PRIMARY KEY DEFAULT 1 CHECK (one = 1), form INTEGER NOT NULL, machine TEXT NOT NULL,
  base TEXT NOT NULL, place INTEGER NOT NULL, placeMark TEXT NOT NULL, tables TEXT NOT NULL,
  program TEXT NOT NULL DEFAULT '',
  onlyReads INTEGER NOT NULL DEFAULT 0, quiet INTEGER NOT NULL DEFAULT 0,
  automatic INTEGER NOT NULL DEFAULT 0, given INTEGER NOT NULL DEFAULT 0);
CREATE TABLE zemo_queue (
  place INTEGER PRIMARY KEY AUTOINCREMENT, tableName TEXT NOT NULL, act TEXT NOT NULL,
  number INTEGER NOT NULL, fields TEXT NOT NULL DEFAULT '');
CREATE TABLE zemo_numbers (
  tableName TEXT NOT NULL, next INTEGER NOT NULL, last INTEGER NOT NULL);
)";

constexpr char kQueue[] = "INSERT INTO zemo_queue (tableName, act, number, fields) SELECT ";

std::string Refuse(const std::string& text, const std::string& condition) {
  return "  SELECT RAISE(ABORT, '" + SqlQuoted(text) + "') FROM zemo_replica WHERE " + condition +
         ";\n";
}

class TableTriggers {
 public:
  explicit TableTriggers(const TableDef& table)
      : table_(table),
        name_(QuotedName(table.Name)),
        text_('\'' + SqlQuoted(table.Name) + '\''),
        key_(table.AutoField() ? QuotedName(table.AutoField()->Name) : "rowid") {}

  std::string Sql() const { return KindOfNumber() + OnInsert() + OnUpdate() + OnDelete(); }

 private:
  std::string Trigger(const std::string& suffix, const std::string& moment,
                      const std::string& body) const {
    return "CREATE TRIGGER " + QuotedName(std::string(kReplicaPrefix) + table_.Name + suffix) +
           ' ' + moment + " ON " + name_ + " WHEN (SELECT quiet FROM zemo_replica) = 0 BEGIN\n" +
           body + "END;\n";
  }

  // Ahead of the row SQLite shows -1 for a number that it is still to give.
  std::string KindOfNumber() const {
    const std::string automatic =
        table_.AutoField() ? "(NEW." + key_ + " IS NULL OR NEW." + key_ + " = -1)" : "1";
    return Trigger("_number", "BEFORE INSERT",
                   Refuse(kOnlyReads, "onlyReads") +
                       "  UPDATE zemo_replica SET automatic = " + automatic + ";\n");
  }

  // The row has the number that SQLite gave it, which another machine may give too, until it gets
  // one that the server has set apart for this machine.
  std::string OnInsert() const {
    const std::string numbers = "zemo_numbers WHERE tableName = " + text_ + " AND next <= last";
    const std::string given = "(SELECT given FROM zemo_replica)";
    return Trigger(
        "_insert", "AFTER INSERT",
        Refuse(kNoNumbersLeft, "automatic AND NOT EXISTS (SELECT 1 FROM " + numbers + ")") +
            "  UPDATE zemo_replica SET quiet = 1, given = CASE WHEN automatic THEN (SELECT "
            "min(next) "
            "FROM " +
            numbers + ") ELSE NEW." + key_ + " END;\n" +
            "  UPDATE zemo_numbers SET next = next + 1 WHERE (SELECT automatic FROM zemo_replica) "
            "AND tableName = " +
            text_ + " AND next <= last AND next = " + given + ";\n" + "  UPDATE " + name_ +
            " SET " + key_ + " = " + given + " WHERE " + key_ + " = NEW." + key_ + " AND " + key_ +
            " <> " + given + ";\n  " + kQueue + text_ + ", 'I', " + given + ", '';\n" +
            "  UPDATE zemo_replica SET quiet = 0;\n");
  }

  // Byte by byte: a letter in another case is another value.
  std::string OnUpdate() const {
    std::string changed;
    for (const Field& field : table_.Fields) {
      const std::string column = QuotedName(field.Name);
      changed += (changed.empty() ? "" : " || ") +
                 ("CASE WHEN OLD." + column + " COLLATE BINARY IS NOT NEW." + column + " THEN '" +
                  SqlQuoted(field.Name) + "' || char(10) ELSE '' END");
    }
    const std::string sameRow = "NEW." + key_ + " = OLD." + key_;
    const std::string otherRow = "NEW." + key_ + " <> OLD." + key_;
    return Trigger("_update", "AFTER UPDATE",
                   Refuse(kOnlyReads, "onlyReads") + "  " + kQueue + text_ + ", 'U', OLD." + key_ +
                       ", changed FROM (SELECT " + changed +
                       " AS changed) WHERE changed <> '' AND " + sameRow + ";\n  " + kQueue +
                       text_ + ", 'D', OLD." + key_ + ", '' WHERE " + otherRow + ";\n  " + kQueue +
                       text_ + ", 'I', NEW." + key_ + ", '' WHERE " + otherRow + ";\n");
  }

  std::string OnDelete() const {
    return Trigger(
        "_delete", "AFTER DELETE",
        Refuse(kOnlyReads, "onlyReads") + "  " + kQueue + text_ + ", 'D', OLD." + key_ + ", '';\n");
  }

  const TableDef& table_;
  const std::string name_, text_, key_;
};

}  // namespace

std::string ReplicaSql(const std::vector<TableDef>& tables) {
  std::string sql = kOwnTables;
  for (const TableDef& table : tables) sql += TableTriggers(table).Sql();
  return sql;
}

}  // namespace zemo
