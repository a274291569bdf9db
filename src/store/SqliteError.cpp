// Which StoreError a result of SQLite is.
#include "store/SqliteError.h"

#include <sqlite3.h>

#include "store/Schema.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr size_t kQueryShown = 200;  // characters of a query in an error text

std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  }
  return text;
}

bool Contains(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

// "CHECK constraint failed: Discotheque.AUTEUR holds at most 40 characters": behind the colon.
std::string BehindColon(const std::string& message) {
  const auto colon = message.find(": ");
  return colon == std::string::npos ? message : message.substr(colon + 2);
}

[[noreturn]] void ThrowConstraint(sqlite3* database, int extended, const std::string& message) {
  const std::string rule = BehindColon(message);
  if (extended == SQLITE_CONSTRAINT_CHECK) {
    if (Contains(rule, kWidthRule)) throw StoreError(kErrFieldTooSmall, rule);
    if (Contains(rule, kRangeRule)) throw StoreError(kErrOverflow, rule);
  }
  if (extended == SQLITE_CONSTRAINT_UNIQUE || extended == SQLITE_CONSTRAINT_PRIMARYKEY ||
      extended == SQLITE_CONSTRAINT_ROWID) {
    throw StoreError(kErrDuplicateKey, rule + " has this value already");
  }
  // What a replica's triggers say: nothing is wrong with the row, and it may be stored later.
  if (extended == SQLITE_CONSTRAINT_TRIGGER && IsReplicaFile(database))
    throw StoreError(kErrReadOnly, message);
  throw StoreError(kErrValueRefused, message);
}

int NumberOfQueryFault(const std::string& message) {
  if (Contains(message, "no such table")) return kErrNoSuchTable;
  if (Contains(message, "no such column") || Contains(message, "has no column named")) {
    return kErrNoSuchField;
  }
  if (Contains(message, "already exists")) {
    return message.starts_with("index") ? kErrIndexExists : kErrTableExists;
  }
  return kErrSyntax;
}

}  // namespace

bool IsReplicaFile(sqlite3* database) {
  return sqlite3_table_column_metadata(database, "main", "zemo_replica", nullptr, nullptr, nullptr,
                                       nullptr, nullptr, nullptr) == SQLITE_OK;
}

void ThrowSqlite(sqlite3* database, int result, const std::string& path, std::string_view query) {
  const int extended = database ? sqlite3_extended_errcode(database) : result;
  const std::string message = OneLine(database ? sqlite3_errmsg(database) : sqlite3_errstr(result));
  switch (result & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      throw StoreError(kErrLocked, path + " is locked by another program");
    case SQLITE_NOTADB:
      throw StoreError(kErrBadDatabase, path + " is not a database");
    case SQLITE_CORRUPT:
      throw StoreError(kErrBadDatabase, path + " is damaged: " + message);
    case SQLITE_READONLY:
      if (extended == SQLITE_READONLY_DBMOVED) {
        throw StoreError(kErrReadOnly, path + " was replaced or removed by another program");
      }
      [[fallthrough]];
    case SQLITE_PERM:
      throw StoreError(kErrReadOnly, path + " cannot be written: " + message);
    case SQLITE_CANTOPEN:  // on an open database: its journal, so the folder cannot be written
      throw StoreError(kErrReadOnly, path + " cannot be written: its folder is read only or full");
    case SQLITE_FULL:
      throw StoreError(kErrDiskFull, path + " cannot grow: the disk is full");
    case SQLITE_CONSTRAINT:
      ThrowConstraint(database, extended, message);
    case SQLITE_MISMATCH:
      throw StoreError(kErrValueRefused, "a key must be a whole number: " + message);
    case SQLITE_TOOBIG:
      throw StoreError(kErrFieldTooSmall, message);
    case SQLITE_ERROR:
      if (!query.empty()) {
        throw StoreError(NumberOfQueryFault(message),
                         message + ", in: " + OneLine(std::string(query.substr(0, kQueryShown))));
      }
      [[fallthrough]];
    default:
      throw StoreError(kErrOther, path + ": " + message);
  }
}

}  // namespace zemo
