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
constexpr char kSinceForm2[] = "CREATE TABLE zemo_closed (tableName TEXT PRIMARY KEY);\n";

constexpr char kQueue[] = "INSERT INTO zemo_queue (tableName, act, number, fields) SELECT ";

std::string Refuse(const std::string& text, const std::string& condition) {
  return "  SELECT RAISE(ABORT, '" + SqlQuoted(text) + "') FROM zemo_replica WHERE " + condition +
         ";\n";
}

std::string RefuseIn(Writing state, const std::string& text) {
  return Refuse(text, "onlyReads = " + std::to_string(static_cast<int>(state)));
}

class TableTriggers {
 public:
  explicit TableTriggers(const TableDef& table)
      : table_(table),
        name_(QuotedName(table.Name)),
        text_('\'' + SqlQuoted(table.Name) + '\''),
        key_(table.AutoField() ? QuotedName(table.AutoField()->Name) : "rowid") {}

  std::string Sql() const { return KindOfNumber() + OnInsert() + OnUpdate() + OnDelete(); }
  std::string DropSql() const {
    std::string sql;
    for (const char* suffix : {"_number", "_insert", "_update", "_delete"})
      sql += "DROP TRIGGER IF EXISTS " + NameOf(suffix) + ";\n";
    return sql;
  }

 private:
  std::string NameOf(const std::string& suffix) const {
    return QuotedName(std::string(kReplicaPrefix) + table_.Name + suffix);
  }
  std::string Trigger(const std::string& suffix, const std::string& moment,
                      const std::string& body) const {
    return "CREATE TRIGGER " + NameOf(suffix) + ' ' + moment + " ON " + name_ +
           " WHEN (SELECT quiet FROM zemo_replica) = 0 BEGIN\n" + body + "END;\n";
  }

  // Ahead of the row SQLite shows -1 for a number that it is still to give.
  std::string KindOfNumber() const {
    const std::string automatic =
        table_.AutoField() ? "(NEW." + key_ + " IS NULL OR NEW." + key_ + " = -1)" : "1";
    return Trigger("_number", "BEFORE INSERT",
                   RefuseWrites() + "  UPDATE zemo_replica SET automatic = " + automatic + ";\n");
  }

  std::string RefuseWrites() const {
    return RefuseIn(Writing::kRoleReads, kOnlyReads) + RefuseIn(Writing::kNewerBase, kBaseIsNewer) +
           Refuse(kTableOnlyRead,
                  "EXISTS (SELECT 1 FROM zemo_closed WHERE tableName = " + text_ + ")");
  }

  // The lowest of the machine's numbers that no row has: somebody may have given one of them to a
  // row of his by name. The row itself has whichever number. CROSS keeps the order of the two, the
  // few numbers first.
  std::string FreeNumber() const {
    const std::string of = "b.tableName = " + text_ + " AND b.next <= b.last";
    const std::string other = "t." + key_ + " <> NEW." + key_;
    return "(SELECT min(zemo_free) FROM (SELECT b.next AS zemo_free FROM zemo_numbers b WHERE " +
           of + " UNION ALL SELECT t." + key_ + " + 1 FROM zemo_numbers b CROSS JOIN " + name_ +
           " t ON t." + key_ + " BETWEEN b.next AND b.last - 1 WHERE " + of + " AND " + other +
           ") WHERE NOT EXISTS (SELECT 1 FROM " + name_ + " t WHERE t." + key_ +
           " = zemo_free AND " + other + "))";
  }

  // The row has the number that SQLite gave it, which another machine may give too, until it gets
  // one that the server has set apart for this machine.
  std::string OnInsert() const {
    const std::string given = "(SELECT given FROM zemo_replica)";
    return Trigger(
        "_insert", "AFTER INSERT",
        "  UPDATE zemo_replica SET quiet = 1, given = CASE WHEN automatic THEN coalesce(" +
            FreeNumber() + ", 0) ELSE NEW." + key_ + " END;\n" +
            Refuse(kNoNumbersLeft, "automatic AND given = 0") +
            "  UPDATE zemo_numbers SET next = " + given + " + 1 WHERE tableName = " + text_ +
            " AND " + given + " BETWEEN next AND last;\n  UPDATE " + name_ + " SET " + key_ +
            " = " + given + " WHERE " + key_ + " = NEW." + key_ + " AND " + key_ + " <> " + given +
            ";\n  " + kQueue + text_ + ", 'I', " + given + ", '';\n" +
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
                   RefuseWrites() + "  " + kQueue + text_ + ", 'U', OLD." + key_ +
                       ", changed FROM (SELECT " + changed +
                       " AS changed) WHERE changed <> '' AND " + sameRow + ";\n  " + kQueue +
                       text_ + ", 'D', OLD." + key_ + ", '' WHERE " + otherRow + ";\n  " + kQueue +
                       text_ + ", 'I', NEW." + key_ + ", '' WHERE " + otherRow + ";\n");
  }

  std::string OnDelete() const {
    return Trigger("_delete", "AFTER DELETE",
                   RefuseWrites() + "  " + kQueue + text_ + ", 'D', OLD." + key_ + ", '';\n");
  }

  const TableDef& table_;
  const std::string name_, text_, key_;
};

std::string TriggersOf(const std::vector<TableDef>& tables) {
  std::string sql;
  for (const TableDef& table : tables) sql += TableTriggers(table).Sql();
  return sql;
}

std::string DropTriggers(const std::vector<TableDef>& tables) {
  std::string sql;
  for (const TableDef& table : tables) sql += TableTriggers(table).DropSql();
  return sql;
}

}  // namespace

std::string ReplicaSql(const std::vector<TableDef>& tables) {
  return std::string(kOwnTables) + kSinceForm2 + TriggersOf(tables);
}

std::string RenewedReplicaSql(const std::vector<TableDef>& tables) {
  return DropTriggers(tables) + kSinceForm2 + TriggersOf(tables) +
         "UPDATE zemo_replica SET form = " + std::to_string(kReplicaForm) + ";\n";
}

std::string PlainFileSql(const std::vector<TableDef>& tables) {
  std::string sql = DropTriggers(tables);
  for (const char* own : {"replica", "queue", "numbers", "closed"})
    sql += "DROP TABLE IF EXISTS " + std::string(kReplicaPrefix) + own + ";\n";
  return sql;
}

}  // namespace zemo
