// Opening and filling the station's base, and the settings row that everybody reads.
#include "store/StationBase.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "store/DatabaseFiles.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

constexpr std::string_view kOpeningOrder[] = {"Discotheque",
                                              "DiscothequeJingle",
                                              "DiscothequeVirgule",
                                              "GrillePub",
                                              "Models",
                                              "Variete",
                                              "Toph",
                                              "Cnf",
                                              "Rapport",
                                              "Playlist",
                                              "Pls",
                                              "ModelSquelette",
                                              "VT"};

constexpr int kHours = 24;

// Runs one step after the other whatever becomes of each; Finish throws the first error.
class FirstError {
 public:
  template <typename Step>
  void Try(Step step) {
    try {
      step();
    } catch (const StoreError& error) {
      Note(error);
    }
  }
  void Note(const StoreError& error) {
    if (!error_) error_ = error;
  }
  void Finish() const {
    if (error_) throw StoreError(*error_);
  }

 private:
  std::optional<StoreError> error_;
};

void AddVariety(Recordset& table, const char* name, int64_t percent) {
  table.AddNew();
  table.Set("POURCENT", percent);
  table.Set("VARIETE", std::string(name));
  table.Update();
}

void SeedVariete(Recordset& table) {
  AddVariety(table, "NATIONAL", 40);
  AddVariety(table, "INTERNATIONAL", 60);
}

void SeedToph(Recordset& table) {
  for (int64_t hour = 0; hour < kHours; ++hour) {
    table.AddNew();
    table.Set("FICHIER", std::string());
    table.Set("SURIMPRESSION", int64_t{0});
    table.Set("HEURE", hour);
    table.Update();
  }
}

void SeedCnf(Recordset& table) {
  table.AddNew();
  table.Update();
}

// What a settings row holds of which nothing was said.
std::vector<Value> DefaultSettings() {
  std::vector<Value> row;
  for (const Field& field : FindSchemaTable("Cnf")->Fields) row.push_back(field.DefaultValue);
  return row;
}

bool CnfIsInOrder(TableDefs& defs) {
  const std::vector<Field>& wanted = FindSchemaTable("Cnf")->Fields;
  const std::vector<Field> present = defs.Item("Cnf").Fields;
  return present.size() >= wanted.size() &&
         std::equal(wanted.begin(), wanted.end(), present.begin(),
                    [](const Field& a, const Field& b) { return SameName(a.Name, b.Name); });
}

}  // namespace

StationBase::StationBase(BasePlace place, int busyTimeoutMs)
    : place_(std::move(place)),
      wait_(std::make_shared<LockWait>(busyTimeoutMs)),
      database_(place_.closed(wait_)),
      cnfRow_(DefaultSettings()) {}

StationBase::StationBase(std::string path, int busyTimeoutMs)
    : StationBase(FilePlace(std::move(path)), busyTimeoutMs) {}

StationBase::~StationBase() = default;

bool StationBase::IsThere() const {
  return !place_.isFile || DBEngine::DatabaseExists(place_.name);
}

bool StationBase::OpenOrCreateDatabase() {
  Close();
  RequirePlace();
  const bool created = !IsThere();
  database_->Open(created);
  return created;
}

void StationBase::RequirePlace() const {
  if (!place_.fault.empty()) throw StoreError(kErrBadDatabase, place_.fault);
}

bool StationBase::OpenDatabaseIfLost() {
  if (IsOpen() && !database_->FileIsLost()) return false;
  if (!place_.fault.empty() || !IsThere()) return false;
  database_->Open(false);
  cnfChecked_ = false;
  return true;
}

void StationBase::CreateMissingTables(const std::function<void(const std::string& table, int number,
                                                               const std::string& text)>& failed) {
  TableDefs& defs = Db().Tables();
  const auto isWhole = [&defs](const TableDef& table) {
    if (!defs.Has(table.Name)) return false;
    const TableDef present = defs.Item(table.Name);
    for (const Index& index : table.Indexes) {
      if (!present.FindIndex(index.Name)) return false;
    }
    return true;
  };
  std::vector<const TableDef*> missing;
  for (const TableDef& table : SchemaTables()) {
    if (!isWhole(table)) missing.push_back(&table);
  }
  if (missing.empty()) return;  // a full base is not even locked
  const auto attempt = [&failed](const std::string& name, const auto& step) {
    try {
      step();
      return true;
    } catch (const StoreError& error) {
      if (error.Number() == kErrTableExists || error.Number() == kErrIndexExists) return true;
      if (failed) failed(name, error.Number(), error.what());
      return false;
    }
  };
  // One transaction for all: a new base is there in one write to the disk. Where it cannot begin,
  // each of the tables has failed for this reason.
  std::optional<Transaction> transaction;
  for (const TableDef* table : missing) {
    attempt(table->Name, [&] {
      if (!transaction) transaction.emplace(Db());
    });
    if (!transaction) continue;
    if (attempt(table->Name, [&] { CreateTable(defs, table->Name); })) {
      attempt(table->Name, [&] { CreateIndexes(defs, table->Name); });
    }
  }
  if (transaction) attempt(missing.back()->Name, [&] { transaction->Commit(); });
}

void StationBase::OpenAllTables() {
  Database& database = Db();
  FirstError errors;
  errors.Try([&] { gaps_ = database.PutStandIns(); });
  tables_.clear();
  for (const std::string_view name : kOpeningOrder) {
    try {
      tables_.push_back({name, database.FindTable(name), std::nullopt});
    } catch (const StoreError& error) {
      tables_.push_back({name, nullptr, error});
      errors.Note(error);
    }
  }
  errors.Finish();
}

const StoredTable& StationBase::OpenedTable(std::string_view name) const {
  for (const TableOrFault& opened : tables_) {
    if (opened.name != name) continue;
    if (opened.fault) throw StoreError(*opened.fault);
    return *opened.table;
  }
  throw StoreError(kErrClosed, Path() + " is not open");
}

void StationBase::SeedFixedRows() {
  const struct {
    const char* name;
    void (*seed)(Recordset&);
  } fixed[] = {{"Variete", SeedVariete}, {"Toph", SeedToph}, {"Cnf", SeedCnf}};
  FirstError errors;
  for (const auto& entry : fixed) {
    errors.Try([&] {
      if (CountRecords(entry.name) != 0) return;
      Transaction transaction(Db());
      // Another station may have filled it before this one held the lock.
      if (CountRecords(entry.name) == 0) entry.seed(*Table(entry.name));
      transaction.Commit();
    });
  }
  errors.Finish();
}

void StationBase::Close() {
  tables_.clear();
  database_->Close();
  cnfChecked_ = false;
}

void StationBase::KeepFromOthers(std::unique_ptr<HeldDatabase> replaced) {
  replaced_ = std::move(replaced);
}

Database& StationBase::Db() {
  if (!IsOpen()) throw StoreError(kErrClosed, Path() + " is not open");
  return *database_;
}

bool StationBase::IsOpen() const {
  return database_->IsOpen();
}

int32_t StationBase::CountRecords(std::string_view table) {
  Database& database = Db();
  const int64_t counter = database.ChangeCounter();
  if (counter != countsCounter_) counts_.clear();
  countsCounter_ = counter;
  for (const auto& [name, count] : counts_) {
    if (name == table) return count;
  }
  const auto rows = database.OpenRecordset("SELECT COUNT(*) FROM " + std::string(table) + " ");
  counts_.emplace_back(table, static_cast<int32_t>(AsInt(rows->Field(0))));
  return counts_.back().second;
}

const Value& StationBase::ReadCnfField(int n) {
  if (!cnfChecked_) RefreshCnf();
  if (n < 1 || n > static_cast<int>(cnfRow_.size())) {
    throw StoreError(kErrNoSuchField, "Cnf has no field number " + std::to_string(n));
  }
  return cnfRow_[static_cast<size_t>(n) - 1];
}

void StationBase::RequireCnf() {
  if (cnfCounter_ < 0) ReadCnfRow();
}

// The air must not wait for a locked file to learn a setting that it knows: the wait is for the
// first reading only.
void StationBase::RefreshCnf() {
  cnfChecked_ = true;
  if (!IsOpen()) return;
  std::optional<NoLockWait> atOnce;
  if (cnfCounter_ >= 0) atOnce.emplace(*wait_);
  try {
    ReadCnfRow();
  } catch (const StoreError& error) {
    // What stood stands until the next check.
    if (cnfCounter_ >= 0 || error.MayPass()) return;
    cnfChecked_ = false;
    throw;
  }
}

void StationBase::ReadCnfRow() {
  const int64_t counter = Db().ChangeCounter();
  if (counter == cnfCounter_) return;
  // Columns that moved up would be read in their neighbours' places: not before the tables are
  // opened anew.
  TableDefs& defs = Db().Tables();
  if (cnfCounter_ >= 0 && defs.ChangedSinceStandIns() && !CnfIsInOrder(defs)) return;
  const auto row = Db().OpenRecordset("SELECT * FROM CNF");
  if (row->Eof()) throw StoreError(kErrNoCurrentRecord, "Cnf has no row");
  cnfRow_.resize(static_cast<size_t>(row->FieldCount()));
  for (int i = 0; i < row->FieldCount(); ++i) cnfRow_[static_cast<size_t>(i)] = row->Field(i);
  cnfCounter_ = counter;
}

}  // namespace zemo
