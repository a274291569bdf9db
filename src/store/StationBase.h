// The station's open base: the one Database object, its thirteen tables, the settings row.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/BasePlace.h"
#include "store/CnfFields.h"
#include "store/Database.h"
#include "store/StoreError.h"

namespace zemo {

class HeldDatabase;

// Thread: the logic's. Operations throw StoreError.
class StationBase {
 public:
  // Until Waiting() says otherwise each operation waits `busyTimeoutMs` for a lock.
  explicit StationBase(BasePlace place, int busyTimeoutMs = kBusyTimeoutMs);
  // Path of the base file, without regard to the case of "Triskin.MDB" in the station's folder.
  explicit StationBase(std::string path, int busyTimeoutMs = kBusyTimeoutMs);
  ~StationBase();

  // Creates the file when it is missing (true is returned then), and opens it. A server's base is
  // opened only.
  bool OpenOrCreateDatabase();
  // The thirteen creators with their indexes. `failed` hears of every error that is not "exists
  // already", with the table's name; a failed creation stops nothing.
  void CreateMissingTables(const std::function<void(const std::string& table, int number,
                                                    const std::string& text)>& failed);
  // A table that cannot be opened stops nothing; its error is thrown at the end, and whenever the
  // table is asked for. Columns that are missing or of another type are read as StandIns.h tells;
  // Gaps() says which, a line each.
  void OpenAllTables();
  const std::vector<std::string>& Gaps() const { return gaps_; }
  void SeedFixedRows();  // Variete, Toph and Cnf, each only when empty
  void Close();

  // Opens what stands at the path where the base is closed, or where its file was replaced or has
  // failed (a share that went away and came back). True when it did: the tables are to be opened
  // then. False when there is no need, or no file. What was open stays where the new one cannot be
  // opened. Looks at the folder first: costs next to nothing where all is well.
  bool OpenDatabaseIfLost();

  // The file that was the base up to now, and lies elsewhere from here on: another program that has
  // it open takes what this one writes beside the new file for its journal. Until it opens the base
  // anew it finds the old one locked: as long as this lives, or up to the next such file.
  void KeepFromOthers(std::unique_ptr<HeldDatabase> replaced);

  // How long the operations wait for a lock of another process.
  LockWait& Waiting() { return *wait_; }

  Database& Db();  // throws StoreError when closed
  bool IsOpen() const;
  // A cursor of the caller's own on one of the thirteen tables, as they were when they were opened;
  // on its first row, in order of insertion. One that is kept across a yield may find the base
  // closed.
  std::unique_ptr<Recordset> Table(std::string_view name) { return OpenedTable(name).Cursor(); }
  // For what is to end at its beginning where the table is not open.
  void RequireTable(std::string_view name) { OpenedTable(name); }
  // The file's path; of a server's base its URL without a password.
  const std::string& Path() const { return place_.name; }
  bool IsFile() const { return place_.isFile; }
  // The file is there. Whether a server has the base is told by opening it.
  bool IsThere() const;

  int32_t CountRecords(std::string_view table);

  // Field number n (from 1) of the settings row as last stored by anybody. The row is read again
  // only when the base has changed; call CheckCnf once at the head of a handler and after a yield.
  // While the row cannot be read the last one read stands; before the first the schema's defaults
  // where the file is out of reach, else StoreError. It is read without waiting, but for the first
  // time. The reference holds until the row is read again.
  const Value& ReadCnfField(int n);
  int64_t CnfInt(int n) { return AsInt(ReadCnfField(n)); }
  bool CnfBool(int n) { return AsBool(ReadCnfField(n)); }
  std::string CnfText(int n) { return AsText(ReadCnfField(n)); }
  // Throws StoreError where the row has never been read and cannot be now, so that what
  // ReadCnfField gives are defaults: for whoever would store them.
  void RequireCnf();
  void CheckCnf() { cnfChecked_ = false; }  // the next read asks the change counter

 private:
  void RequirePlace() const;
  void RefreshCnf();
  void ReadCnfRow();
  const StoredTable& OpenedTable(std::string_view name) const;

  BasePlace place_;
  std::shared_ptr<LockWait> wait_;
  std::unique_ptr<Database> database_;  // never null
  std::unique_ptr<HeldDatabase> replaced_;
  // Of the open base; the error of one that could not be opened.
  struct TableOrFault {
    std::string_view name;
    std::shared_ptr<const StoredTable> table;
    std::optional<StoreError> fault;
  };
  std::vector<TableOrFault> tables_;
  std::vector<std::string> gaps_;
  std::vector<Value> cnfRow_;
  int64_t cnfCounter_ = -1;  // change counter at which cnfRow_ was read; -1: defaults, or unknown
  bool cnfChecked_ = false;
  std::vector<std::pair<std::string, int32_t>> counts_;  // of tables, at countsCounter_
  int64_t countsCounter_ = -1;
};

}  // namespace zemo
